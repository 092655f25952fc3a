#include "settings_pane/pane_view_model.h"

#include <QUrl>
#include <algorithm>
#include <utility>

#include "timemachine_linux/files/paths.h"
#include "ui/kit/view_values.h"

namespace norvane {

namespace {

constexpr double lookAgainSeconds = 3;

QList<QVariantMap> pathRows(const std::vector<std::string>& paths, bool removable) {
    QList<QVariantMap> rows;
    for (const std::string& path : paths)
        rows.append({{"path", shownPath(path)}, {"removable", removable}});
    return rows;
}

std::optional<std::string> pathAt(const std::vector<std::string>& paths, int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= paths.size())
        return std::nullopt;
    return paths[static_cast<std::size_t>(row)];
}

void addTo(std::vector<std::string>& paths, const std::string& path) {
    if (std::find(paths.begin(), paths.end(), path) == paths.end())
        paths.push_back(path);
}

} // namespace

PaneViewModel::PaneViewModel(const PaneServices& services)
    : services_(services), folderChooser_(services.settings, services.background, services.translator) {}

PaneViewModel::~PaneViewModel() = default;

void PaneViewModel::opened() {
    ticker_ = services_.timers.repeating(lookAgainSeconds, 0, [this] { look(); });
    look();
}

void PaneViewModel::closed() { ticker_.reset(); }

void PaneViewModel::look() {
    if (!reading_ && !changing())
        read();
    if (choosingDisk_ && !looking_)
        lookForDrives();
}

void PaneViewModel::read() {
    reading_ = true;
    runInBackground(
        services_.background, lifetime_, [&settings = services_.settings] { return settings.load(); },
        [this, number = ++readings_](BackupSettingsState state) {
            if (number == readings_)
                take(std::move(state));
        });
}

void PaneViewModel::take(BackupSettingsState state) {
    reading_ = false;
    known_ = true;
    busy_ = false;
    state_ = std::move(state);
    showState();
}

void PaneViewModel::lookForDrives() {
    looking_ = true;
    runInBackground(
        services_.background, lifetime_, [&settings = services_.settings] { return settings.drives(); },
        [this, number = ++looks_](std::vector<DestinationOffer> drives) {
            if (number != looks_)
                return;
            looking_ = false;
            offersKnown_ = true;
            drives_ = std::move(drives);
            showOffers();
            Q_EMIT changed();
        });
}

void PaneViewModel::change(Change change) {
    if (!busy_)
        trouble_.clear();
    busy_ = true;
    reading_ = false;
    ++readings_;
    const bool idle = !changing();
    if (!idle && change.subject != Change::folders) // of choices that have not begun only the last one counts
        changes_.erase(
            std::remove_if(changes_.begin() + 1, changes_.end(),
                           [&](const Change& earlier) { return earlier.subject == change.subject; }),
            changes_.end());
    changes_.push_back(std::move(change));
    if (idle)
        makeNextChange();
    showState();
}

void PaneViewModel::makeNextChange() {
    runInBackground(
        services_.background, lifetime_,
        [&settings = services_.settings, make = changes_.front().make] { return make(settings); },
        [this](const std::optional<Failure>& failure) { changeMade(failure); });
}

void PaneViewModel::changeMade(const std::optional<Failure>& failure) {
    const Change made = std::move(changes_.front());
    changes_.pop_front();
    if (failure && !hasLaterChoice(made)) {
        const QString complaint =
            viewText(fillIn(services_.translator.translate(made.complaint), {printable(failure->text)}));
        trouble_ += (trouble_.isEmpty() ? "" : "\n") + complaint;
    }
    if (changing())
        makeNextChange();
    else if (ticker_)
        read();
    Q_EMIT changed();
}

bool PaneViewModel::hasLaterChoice(const Change& change) const {
    return change.subject != Change::folders &&
           std::any_of(changes_.begin(), changes_.end(),
                       [&](const Change& later) { return later.subject == change.subject; });
}

void PaneViewModel::showState() {
    content_ = paneContent(state_, services_.formats, services_.translator);
    sources_.set(pathRows(state_.sources, state_.sources.size() > 1));
    exclusions_.set(pathRows(state_.exclusions, true));
    Q_EMIT changed();
}

QVariantList PaneViewModel::frequencies() const {
    return {QVariantMap{{"label", text("Manually")}, {"value", int{PaneContent::manually}}},
            QVariantMap{{"label", text("Automatically every hour")}, {"value", int{PaneContent::everyHour}}}};
}

void PaneViewModel::browseBackups() {
    if (state_.disk && !state_.disk->backupsFolder.empty())
        services_.workspace.openUrl(QUrl::fromLocalFile(viewText(state_.disk->backupsFolder))
                                        .toString(QUrl::FullyEncoded)
                                        .toStdString());
}

void PaneViewModel::setFrequency(int frequency) {
    const bool hourly = frequency == PaneContent::everyHour;
    state_.frequency = hourly ? BackupFrequency::hourly : BackupFrequency::manual;
    change({Change::frequency,
            hourly ? "Backups every hour need systemd's timers for users, which could not be set up: %@. The "
                     "frequency stays as it was."
                   : "The hourly timer could not be stopped: %@. The frequency stays as it was.",
            [hourly](BackupSettings& settings) { return settings.setHourly(hourly); }});
}

void PaneViewModel::showOptions(bool show) {
    showsOptions_ = show;
    trouble_.clear();
    Q_EMIT changed();
}

void PaneViewModel::chooseDisk() {
    choosingDisk_ = true;
    offersKnown_ = false;
    drives_.clear();
    folderOffer_.reset();
    chosenFolder_.reset();
    trouble_.clear();
    showOffers();
    lookForDrives();
    Q_EMIT changed();
}

void PaneViewModel::showOffers() {
    QList<QVariantMap> rows;
    const auto add = [&](const DestinationOffer& offer) {
        const QString refusal = refusalText(offer.verdict, services_.translator);
        rows.append(
            {{"name", shownName(offer.folder)},
             {"details",
              refusal.isEmpty() ? offerDetails(offer, services_.formats, services_.translator) : refusal},
             {"network", offer.network},
             {"usable", refusal.isEmpty()},
             {"chosen", chosenFolder_ == offer.folder}});
    };
    std::for_each(drives_.begin(), drives_.end(), add);
    if (folderOffer_)
        add(*folderOffer_);
    offers_.set(rows);
}

const DestinationOffer* PaneViewModel::chosenOffer() const {
    if (!chosenFolder_)
        return nullptr;
    if (folderOffer_ && folderOffer_->folder == *chosenFolder_)
        return &*folderOffer_;
    for (const DestinationOffer& drive : drives_)
        if (drive.folder == *chosenFolder_)
            return &drive;
    return nullptr;
}

QString PaneViewModel::offersNote() const {
    return text(offersKnown_ ? "No drive is connected. A folder will do, too." : "Looking for drives…");
}

bool PaneViewModel::canUseDisk() const {
    const DestinationOffer* offer = chosenOffer();
    return offer && offer->verdict.usable();
}

QStringList PaneViewModel::diskNotices() const {
    const DestinationOffer* offer = chosenOffer();
    return offer ? noticeTexts(offer->verdict, services_.translator) : QStringList();
}

void PaneViewModel::selectOffer(int row) {
    const auto at = static_cast<std::size_t>(row);
    if (row >= 0 && at < drives_.size())
        chosenFolder_ = drives_[at].folder;
    else if (folderOffer_ && at == drives_.size())
        chosenFolder_ = folderOffer_->folder;
    showOffers();
    Q_EMIT changed();
}

void PaneViewModel::chooseDiskFolder() {
    folderChooser_.begin(
        text("Choose a Folder for the Backups"), services_.home, [this](const std::string& folder) {
            runInBackground(
                services_.background, lifetime_,
                [&settings = services_.settings, folder] { return settings.offerOf(folder); },
                [this](DestinationOffer offer) {
                    chosenFolder_ = offer.folder;
                    folderOffer_ = std::move(offer);
                    for (const DestinationOffer& drive : drives_)
                        if (drive.folder == *chosenFolder_) // it is in the list already
                            folderOffer_.reset();
                    showOffers();
                    Q_EMIT changed();
                });
        });
}

void PaneViewModel::useDisk() {
    if (!canUseDisk())
        return;
    choosingDisk_ = false;
    change(
        {Change::disk, "The backup disk was not changed: %@",
         [folder = *chosenFolder_](BackupSettings& settings) { return settings.chooseDestination(folder); }});
}

void PaneViewModel::cancelDisk() {
    choosingDisk_ = false;
    Q_EMIT changed();
}

void PaneViewModel::addSource() {
    folderChooser_.begin(
        text("Choose a Folder to Back Up"), services_.home, [this](const std::string& folder) {
            addTo(state_.sources, folder);
            change({Change::folders, "The folder was not added: %@",
                    [folder](BackupSettings& settings) { return settings.addSource(folder); }});
        });
}

void PaneViewModel::removeSource(int row) {
    const auto path = pathAt(state_.sources, row);
    if (!path || state_.sources.size() == 1)
        return;
    std::erase(state_.sources, *path);
    change({Change::folders, "The folder was not removed: %@",
            [path = *path](BackupSettings& settings) { return settings.removeSource(path); }});
}

void PaneViewModel::addExclusion() {
    folderChooser_.begin(
        text("Choose a Folder to Leave Out"), services_.home, [this](const std::string& folder) {
            addTo(state_.exclusions, folder);
            change({Change::folders, "The folder was not added: %@",
                    [folder](BackupSettings& settings) { return settings.addExclusion(folder); }});
        });
}

void PaneViewModel::removeExclusion(int row) {
    const auto path = pathAt(state_.exclusions, row);
    if (!path)
        return;
    std::erase(state_.exclusions, *path);
    change({Change::folders, "The folder was not removed: %@",
            [path = *path](BackupSettings& settings) { return settings.removeExclusion(path); }});
}

QString PaneViewModel::text(const char* english) const {
    return viewText(services_.translator.translate(english));
}

} // namespace norvane
