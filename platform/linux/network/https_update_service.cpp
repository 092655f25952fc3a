#include "platform/linux/network/https_update_service.h"

#include <QUrl>
#include <utility>

#include "platform/linux/network/appcast.h"

namespace norvane {

namespace {

constexpr auto automaticKey = "automaticUpdateChecks.v1";
constexpr auto lastCheckKey = "lastUpdateCheck.v1";
constexpr double hour = 3600;
constexpr double day = 24 * hour;

class SharedObservation final : public UpdateService::Observation {
public:
    explicit SharedObservation(std::shared_ptr<void> observer) : observer_(std::move(observer)) {}

private:
    const std::shared_ptr<void> observer_;
};

bool isHttps(const QUrl& url) {
    return url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty();
}

} // namespace

HttpsUpdateService::HttpsUpdateService(UpdateFeed feed, UserDefaults& defaults, const Clock& clock,
                                       Timers& timers, TellUpdate tell)
    : feed_(std::move(feed)), defaults_(defaults), clock_(clock), timers_(timers), tell_(std::move(tell)) {}

void HttpsUpdateService::start() {
    constexpr double tolerance = 600;
    if (!isHttps(QUrl(feed_.url, QUrl::StrictMode)))
        return;
    hourly_ = timers_.repeating(hour, tolerance, [this] { checkIfDue(); });
    publishCanCheck();
    checkIfDue();
}

bool HttpsUpdateService::automaticallyChecksForUpdates() const {
    return !defaults_.object(automaticKey) || defaults_.boolean(automaticKey);
}

void HttpsUpdateService::setAutomaticallyChecksForUpdates(bool automatically) {
    defaults_.set(automaticKey, {automatically});
}

bool HttpsUpdateService::canCheckForUpdates() const { return hourly_ && !download_; }

std::unique_ptr<UpdateService::Observation>
HttpsUpdateService::observeCanCheckForUpdates(std::function<void(bool)> observer) {
    auto shared = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(shared);
    (*shared)(canCheckForUpdates());
    return std::make_unique<SharedObservation>(std::move(shared));
}

void HttpsUpdateService::checkForUpdates() {
    if (canCheckForUpdates())
        begin(true);
}

void HttpsUpdateService::checkIfDue() {
    if (!canCheckForUpdates() || !automaticallyChecksForUpdates())
        return;
    const double age = secondsBetween(defaults_.date(lastCheckKey).value_or(distantPast), clock_.now());
    const bool due = age >= day || age < 0; // a clock that was wrong must not put it off for years
    if (due)
        begin(false);
}

void HttpsUpdateService::begin(bool askedByUser) {
    download_ = std::make_unique<HttpsDownload>(
        QUrl(feed_.url), feed_.tls, feed_.timeoutMilliseconds,
        [this, askedByUser](const HttpsDownload::Answer& answer) { end(answer, askedByUser); });
    publishCanCheck();
}

void HttpsUpdateService::end(const HttpsDownload::Answer& answer, bool askedByUser) {
    using Kind = UpdateResult::Kind;
    download_.release()->deleteLater(); // it is what calls
    UpdateResult result{.kind = answer.came ? Kind::unreadable : Kind::unreachable};
    if (answer.document)
        result = readAppcast(*answer.document, feed_.ownVersion);
    if (result.kind == Kind::upToDate || result.kind == Kind::available)
        defaults_.set(lastCheckKey, {clock_.now()});
    publishCanCheck();
    if (askedByUser || result.kind == Kind::available)
        tell_(result, askedByUser);
}

void HttpsUpdateService::publishCanCheck() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    for (const std::weak_ptr<Observer>& weak : std::vector(observers_))
        if (const auto observer = weak.lock())
            (*observer)(canCheckForUpdates());
}

} // namespace norvane
