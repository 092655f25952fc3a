#include "ui/settings/tabs/activity_list.h"

#include <utility>

#include "controller/log/log_follower.h"
#include "ui/kit/view_values.h"

namespace norvane {

namespace {

constexpr double checkSeconds = 5;
constexpr qsizetype shownCharacters = 500; // nobody reads more, and laying out a megabyte takes seconds

QString shown(std::string_view message) {
    const QString beginning = viewText(message.substr(0, 4 * static_cast<std::size_t>(shownCharacters)));
    return beginning.size() <= shownCharacters ? beginning : beginning.left(shownCharacters) + "…";
}

} // namespace

struct ActivityList::Row {
    LogLook look;
    QString message;
    std::optional<Instant> date;
};

ActivityList::ActivityList(const LogFile& log, Timers& timers, Background& background, const Formats& formats,
                           const Translator& texts)
    : timers_(timers), background_(background), formats_(formats), texts_(texts),
      follower_(std::make_shared<LogFollower>(log)) {}

ActivityList::~ActivityList() = default;

void ActivityList::appear() {
    timer_ = timers_.repeating(checkSeconds, 0, [this] { check(); });
    check(true);
}

QString ActivityList::countText() const {
    return viewText(fillIn("%d", {std::int64_t{entries_.count()}}) + texts_.translate(" events"));
}

ActivityList::Rows ActivityList::readOn(LogFollower& follower, bool appeared) {
    if (appeared)
        follower.updateAnew();
    else if (!follower.update())
        return std::nullopt;
    std::vector<Row> rows;
    for (const LogEntry& entry : follower.entries())
        rows.push_back({lookOf(entry.message), shown(entry.message), entry.date});
    return rows;
}

void ActivityList::check(bool appeared) {
    if (std::exchange(reading_, true))
        return;
    runInBackground(
        background_, lifetime_, [follower = follower_, appeared] { return readOn(*follower, appeared); },
        [this](const Rows& rows) {
            reading_ = false;
            if (rows)
                show(*rows);
        });
}

void ActivityList::show(const std::vector<Row>& rows) {
    QList<QVariantMap> entries;
    for (const Row& row : rows)
        entries.append(
            {{"symbol", viewText(row.look.symbol)},
             {"tint", static_cast<int>(row.look.tint)},
             {"message", row.message},
             {"date", row.date ? viewText(formats_.dateAndTimeWithSeconds(*row.date)) : QString()}});
    entries_.set(entries);
    loaded_ = true;
    Q_EMIT changed();
}

} // namespace norvane
