#include "platform/linux/event_loop/linux_system_events.h"

#include <QObject>
#include <QSocketNotifier>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <sys/timerfd.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

constexpr std::int64_t stepNanoseconds = 100'000'000; // smaller moves of the clock change no plan

std::int64_t nanosecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * 1'000'000'000 + now.tv_nsec;
}

std::int64_t wallMinusBootTime() { return nanosecondsOf(CLOCK_REALTIME) - nanosecondsOf(CLOCK_BOOTTIME); }

class LinuxObservation final : public QObject, public SystemEvents::Observation {
    Q_OBJECT

public:
    LinuxObservation(BusLink& systemBus, WakeDetector& wakeDetector, Appearance& appearance,
                     SystemEventHandlers handlers)
        : systemBus_(systemBus), wakeDetector_(wakeDetector), handlers_(std::move(handlers)),
          appearance_(appearance), accent_(appearance.current().accent),
          clockTimer_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)),
          clockNotifier_(clockTimer_.get(), QSocketNotifier::Read), wallOffset_(wallMinusBootTime()),
          appearanceObservation_(appearance.observe([this] { appearanceChanged(); })) {
        armClockTimer();
        connect(&clockNotifier_, &QSocketNotifier::activated, this, &LinuxObservation::clockTimerCancelled);
        connect(&systemBus_, &BusLink::reopened, this, &LinuxObservation::followLogind);
        followLogind();
        wakeDetector_.listen(handlers_.didWake);
    }

    ~LinuxObservation() override { wakeDetector_.listen({}); }
    LinuxObservation(const LinuxObservation&) = delete;
    LinuxObservation& operator=(const LinuxObservation&) = delete;

private Q_SLOTS:
    void prepareForSleep(bool starting) {
        if (starting)
            wakeDetector_.sleepAnnounced();
        else
            wakeDetector_.wakeAnnounced();
    }

private:
    void followLogind() {
        systemBus_.subscribe("org.freedesktop.login1", "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager", "PrepareForSleep", this,
                             SLOT(prepareForSleep(bool)));
    }

    /// Never expires by itself; only setting the clock, or a sleep, ends it.
    void armClockTimer() {
        constexpr std::time_t farFuture = 9'000'000'000; // the year 2255, within what the kernel takes
        itimerspec never{};
        never.it_value.tv_sec = farFuture;
        timerfd_settime(clockTimer_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
    }

    /// Cancelled by a sleep, the clock was set only if it moved against the running time.
    void clockTimerCancelled() {
        std::uint64_t expirations = 0;
        if (read(clockTimer_.get(), &expirations, sizeof expirations) < 0 && errno == EAGAIN)
            return;
        armClockTimer();
        const std::int64_t offset = wallMinusBootTime();
        const bool stepped = std::abs(offset - wallOffset_) >= stepNanoseconds;
        wallOffset_ = offset;
        wakeDetector_.lookAtClocks(); // first, because a new plan would pass over what was slept through
        if (stepped)
            handlers_.clockChanged();
    }

    void appearanceChanged() {
        const std::optional<Rgb> accent = appearance_.current().accent;
        if (std::exchange(accent_, accent) != accent)
            handlers_.accentColorChanged();
    }

    BusLink& systemBus_;
    WakeDetector& wakeDetector_;
    const SystemEventHandlers handlers_;
    Appearance& appearance_;
    std::optional<Rgb> accent_;
    FileDescriptor clockTimer_; // before the notifier, which must go first
    QSocketNotifier clockNotifier_;
    std::int64_t wallOffset_;
    const std::unique_ptr<Appearance::Observation> appearanceObservation_;
};

} // namespace

std::unique_ptr<SystemEvents::Observation> LinuxSystemEvents::observe(SystemEventHandlers handlers) {
    return std::make_unique<LinuxObservation>(systemBus_, wakeDetector_, appearance_, std::move(handlers));
}

} // namespace norvane

#include "linux_system_events.moc"
