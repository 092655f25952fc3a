#include "ui/health/health_view_model.h"

#include <utility>

namespace norvane {

HealthViewModel::HealthViewModel(HealthServices services, HealthActions actions)
    : services_(std::move(services)), actions_(std::move(actions)) {}

HealthViewModel::~HealthViewModel() = default;

void HealthViewModel::opened() {
    ticker_ = services_.timers.repeating(1, 0, [this] { tick(); });
    subscription_ = services_.controller.subscribe([this] { soon_.scheduleSoon([this] { show(); }); });
    show();
}

void HealthViewModel::closed() {
    subscription_.reset();
    ticker_.reset();
    soon_.cancel();
}

void HealthViewModel::show() {
    HealthContent content = healthContent(services_.controller.state(), services_.calendar(),
                                          services_.formats, services_.translator);
    if (content != content_) {
        content_ = std::move(content);
        Q_EMIT contentChanged();
    }
    tick();
}

void HealthViewModel::tick() {
    QString subtitle = lastVerifiedBackup(services_.controller.state(), services_.clock.now(),
                                          services_.formats, services_.translator);
    if (subtitle == subtitle_)
        return;
    subtitle_ = std::move(subtitle);
    Q_EMIT subtitleChanged();
}

} // namespace norvane
