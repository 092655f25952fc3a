#include "platform/linux/event_loop/qt_timers.h"

#include <QSocketNotifier>
#include <algorithm>
#include <cmath>
#include <ctime>
#include <sys/timerfd.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
constexpr double longestSeconds = 3e9; // within what the kernel takes

std::int64_t runningTimeNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * nanosecondsPerSecond + now.tv_nsec;
}

timespec toTimespec(std::int64_t nanoseconds) {
    return {nanoseconds / nanosecondsPerSecond, nanoseconds % nanosecondsPerSecond};
}

std::int64_t nanoseconds(double seconds) {
    return static_cast<std::int64_t>(std::clamp(seconds, 0.0, longestSeconds) * 1e9);
}

/// With a second or more of tolerance, expiries move to whole seconds: timers that are due about the same
/// time then wake the processor once.
std::int64_t coalesced(std::int64_t due, double toleranceSeconds) {
    if (toleranceSeconds < 1)
        return due;
    return (due + nanosecondsPerSecond - 1) / nanosecondsPerSecond * nanosecondsPerSecond;
}

class TimerfdTimer final : public Timer {
public:
    TimerfdTimer(double intervalSeconds, double toleranceSeconds, bool repeats, std::function<void()> action,
                 std::function<void()> beforeAction)
        : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
          notifier_(new QSocketNotifier(descriptor_.get(), QSocketNotifier::Read)),
          action_(std::move(action)), beforeAction_(std::move(beforeAction)) {
        const std::int64_t interval = std::max<std::int64_t>(nanoseconds(intervalSeconds), 1);
        const std::int64_t due = coalesced(runningTimeNanoseconds() + interval, toleranceSeconds);
        const itimerspec setting{toTimespec(repeats ? interval : 0), toTimespec(due)};
        timerfd_settime(descriptor_.get(), TFD_TIMER_ABSTIME, &setting, nullptr);
        QObject::connect(notifier_, &QSocketNotifier::activated, [this] { expired(); });
    }

    ~TimerfdTimer() override {
        notifier_->disconnect();
        notifier_->setEnabled(false);
        notifier_->deleteLater(); // it may be calling us
    }

    TimerfdTimer(const TimerfdTimer&) = delete;
    TimerfdTimer& operator=(const TimerfdTimer&) = delete;

private:
    void expired() {
        std::uint64_t expirations = 0;
        if (read(descriptor_.get(), &expirations, sizeof expirations) != sizeof expirations)
            return;
        // Either of the two may destroy this timer.
        const std::function<void()> action = action_;
        const std::weak_ptr<bool> alive = alive_;
        if (const std::function<void()> beforeAction = beforeAction_)
            beforeAction();
        if (!alive.expired())
            action();
    }

    FileDescriptor descriptor_;
    QSocketNotifier* const notifier_;
    const std::function<void()> action_;
    const std::function<void()> beforeAction_;
    const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace

std::unique_ptr<Timer> QtTimers::once(double intervalSeconds, double toleranceSeconds,
                                      std::function<void()> action) {
    return std::make_unique<TimerfdTimer>(intervalSeconds, toleranceSeconds, false, std::move(action),
                                          beforeActions_);
}

std::unique_ptr<Timer> QtTimers::repeating(double intervalSeconds, double toleranceSeconds,
                                           std::function<void()> action) {
    return std::make_unique<TimerfdTimer>(intervalSeconds, toleranceSeconds, true, std::move(action),
                                          beforeActions_);
}

} // namespace norvane
