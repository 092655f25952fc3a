// Background work on a pool of threads, delivered through Qt's event loop.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <deque>
#include <mutex>

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
    /// Of the main thread. Each event sent to it stands for one completion.
    class Receiver final : public QObject {
    public:
        explicit Receiver(QtBackground& background) : background_(background) {}
        bool event(QEvent* event) override;

    private:
        QtBackground& background_;
    };

    void runWork();
    void runCompletion();

    // Handed over under a mutex of our own rather than inside Qt's events: the thread sanitizer does not see
    // how Qt synchronizes, and could not tell a real race from it.
    std::mutex mutex_;
    std::deque<std::function<Completion()>> works_;
    std::deque<Completion> completions_;
    Receiver receiver_{*this};
    QThreadPool pool_;
};

} // namespace norvane
