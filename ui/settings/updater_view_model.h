// The update controls of the settings, without the view.
#pragma once

#include <functional>
#include <memory>

#include "platform/update_service.h"

namespace norvane {

/// Exists once, for the whole process. Main thread only.
class UpdaterViewModel {
public:
    /// Starts the service.
    explicit UpdaterViewModel(std::unique_ptr<UpdateService> service);

    [[nodiscard]] bool canCheckForUpdates() const { return canCheckForUpdates_; }
    [[nodiscard]] bool automaticallyChecks() const { return automaticallyChecks_; }
    /// Called after each change of either; one at a time.
    void onChange(std::function<void()> observer) { observer_ = std::move(observer); }

    void setAutomaticallyChecks(bool automatically);
    void checkForUpdates() { service_->checkForUpdates(); }

private:
    void changed() const;

    const std::unique_ptr<UpdateService> service_;
    bool canCheckForUpdates_ = false;
    bool automaticallyChecks_;
    std::function<void()> observer_;
    std::unique_ptr<UpdateService::Observation> observation_;
};

} // namespace norvane
