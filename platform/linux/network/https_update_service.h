// Updates told by a feed on the web.
#pragma once

#include <QSslConfiguration>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/network/https_download.h"
#include "platform/time/clock.h"
#include "platform/time/timers.h"
#include "platform/update_service.h"
#include "platform/user_defaults.h"

namespace norvane {

struct UpdateFeed {
    QString url;        ///< Of an appcast; anything but an https URL: there is nobody to ask.
    QString ownVersion; ///< "1.2.0".
    /// None: the system's. Even an empty one would load the TLS library.
    std::optional<QSslConfiguration> tls = std::nullopt;
    int timeoutMilliseconds = 15000; ///< For the whole answer.
};

/// Automatic checks happen once a day, after failures every hour. The interfaces must outlive this object.
class HttpsUpdateService final : public UpdateService {
public:
    HttpsUpdateService(UpdateFeed feed, UserDefaults& defaults, const Clock& clock, Timers& timers,
                       TellUpdate tell);

    void start() override;
    [[nodiscard]] bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    [[nodiscard]] bool canCheckForUpdates() const override;
    [[nodiscard]] std::unique_ptr<Observation>
    observeCanCheckForUpdates(std::function<void(bool)> observer) override;
    void checkForUpdates() override;

private:
    using Observer = std::function<void(bool)>;

    void checkIfDue();
    void begin(bool askedByUser);
    void end(const HttpsDownload::Answer& answer, bool askedByUser);
    void publishCanCheck();

    const UpdateFeed feed_;
    UserDefaults& defaults_;
    const Clock& clock_;
    Timers& timers_;
    const TellUpdate tell_;
    std::vector<std::weak_ptr<Observer>> observers_;
    std::unique_ptr<Timer> hourly_;           // none: not started, or nobody to ask
    std::unique_ptr<HttpsDownload> download_; // none: no check runs
};

} // namespace norvane
