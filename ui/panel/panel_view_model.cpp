#include "ui/panel/panel_view_model.h"

#include <utility>

namespace norvane {

PanelViewModel::PanelViewModel(PanelServices services, PanelActions actions)
    : services_(services), actions_(std::move(actions)) {
    refresh();
}

PanelViewModel::~PanelViewModel() = default;

void PanelViewModel::opened() {
    cancelQuit();
    subscription_ = services_.controller.subscribe([this] { soon_.scheduleSoon([this] { refresh(); }); });
    ticker_ = services_.timers.repeating(1, 0, [this] { refresh(); });
    refresh();
}

void PanelViewModel::closed() {
    subscription_.reset();
    ticker_.reset();
    soon_.cancel();
}

void PanelViewModel::pauseForHours(int hours) {
    constexpr double secondsPerHour = 3600;
    services_.controller.pause(plusSeconds(services_.clock.now(), hours * secondsPerHour));
}

void PanelViewModel::emailReport() {
    if (const auto report = services_.controller.state().pendingCrashReport)
        services_.crashReporter.emailReport(*report);
    services_.controller.clearPendingCrashReport();
}

void PanelViewModel::askToQuit() {
    quitMessage_ = norvane::quitMessage(services_.controller.state(), services_.translator);
    confirmingQuit_ = true;
    Q_EMIT quitChanged();
    services_.controller.refreshAutoBackupFlag();
}

void PanelViewModel::cancelQuit() {
    confirmingQuit_ = false;
    Q_EMIT quitChanged();
}

void PanelViewModel::refresh() {
    PanelContent content = panelContent(services_.controller.state(), services_.clock.now(),
                                        services_.formats, services_.translator);
    if (content == content_)
        return;
    content_ = std::move(content);
    Q_EMIT contentChanged();
}

} // namespace norvane
