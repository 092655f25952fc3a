// Background work on a pool of threads, delivered through Qt's event loop.
#pragma once

#include <QObject>
#include <QThreadPool>

#include "platform/background.h"

namespace norvane {

/// Made on the main thread. The works spend their time waiting for child processes, which have priorities of
/// their own; the threads keep the normal one, and end when idle.
class QtBackground final : public Background {
public:
    QtBackground();
    /// Waits for works that have begun; their results are dropped.
    ~QtBackground() override;

    void post(std::function<Completion()> work) override;

    /// Waits up to a second for works that have begun. False: some still run.
    [[nodiscard]] bool waitForDone();

private:
    QObject mainThread_; // completions are queued to its thread, and dropped with it
    QThreadPool pool_;
};

} // namespace norvane
