#include "ui/settings/updater_view_model.h"

#include <utility>

namespace norvane {

namespace {

std::unique_ptr<UpdateService> started(std::unique_ptr<UpdateService> service) {
    service->start();
    return service;
}

} // namespace

UpdaterViewModel::UpdaterViewModel(std::unique_ptr<UpdateService> service)
    : service_(started(std::move(service))), automaticallyChecks_(service_->automaticallyChecksForUpdates()),
      observation_(service_->observeCanCheckForUpdates([this](bool can) {
          canCheckForUpdates_ = can;
          changed();
      })) {}

void UpdaterViewModel::setAutomaticallyChecks(bool automatically) {
    service_->setAutomaticallyChecksForUpdates(automatically);
    automaticallyChecks_ = automatically;
    changed();
}

void UpdaterViewModel::changed() const {
    if (observer_)
        observer_();
}

} // namespace norvane
