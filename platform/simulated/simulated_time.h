// The clock, the timers and the background work of a simulated machine: time moves only when told.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "platform/background.h"
#include "platform/time/clock.h"
#include "platform/time/timers.h"

namespace norvane {

/// One thread, one queue of events. The wall clock and the running time that timers count are kept apart, so
/// that clock steps and sleep behave as on a real machine. Background work runs at once when its turn comes;
/// what it waits for (`spend`) only delays the delivery of its result.
class SimulatedTime final : public Clock, public Timers, public Background {
public:
    explicit SimulatedTime(Instant start);
    ~SimulatedTime() override;

    [[nodiscard]] Instant now() const override;
    [[nodiscard]] std::unique_ptr<Timer> once(double intervalSeconds, double toleranceSeconds,
                                              std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> repeating(double intervalSeconds, double toleranceSeconds,
                                                   std::function<void()> action) override;
    void post(std::function<Completion()> work) override;

    /// Lets the time pass and runs everything that falls due meanwhile.
    void advance(double seconds);
    void advanceTo(Instant instant);
    /// Runs the earliest event and moves the time there. False: nothing is left to happen.
    bool step();
    /// Runs what is due now, background work included, without letting time pass.
    void settle() { advance(0); }

    /// The process ends: what its background threads were doing, or were to deliver, is gone.
    void dropBackgroundWork();

    /// Sets the wall clock, as a user or NTP does; timers do not notice.
    void setWallClock(Instant instant);
    /// The machine sleeps: the wall clock goes on, timers stand still.
    void sleep(double seconds);

    /// From now on timers use their tolerance, and background work begins and delivers up to
    /// `maxLatencySeconds` late, each by a share from 0 to 1 that `random` gives.
    void disturb(std::function<double()> random, double maxLatencySeconds);

    // For those who watch.

    /// When the next event is due by the wall clock; none when nothing is left to happen.
    [[nodiscard]] std::optional<Instant> nextEvent() const;
    struct RunningTimers {
        int repeating = 0;
        std::vector<Instant> oneShots; ///< When each is due by the wall clock.
    };
    [[nodiscard]] RunningTimers runningTimers() const;

    /// For simulated services: the background work that runs now takes this much longer.
    void spend(double seconds);

private:
    using Microseconds = std::int64_t;
    using Work = std::function<Completion()>;
    struct TimerState;
    class EventTimer;
    struct Event {
        Microseconds due;
        std::variant<std::shared_ptr<TimerState>, Work, Completion> what;
    };

    [[nodiscard]] std::unique_ptr<Timer> startTimer(TimerState state);
    void schedule(Microseconds delay, decltype(Event::what) what);
    void run(const std::shared_ptr<TimerState>& timer);
    void run(const Work& work);
    static void run(const Completion& completion) { completion(); }
    void runDueUntil(Microseconds end);
    [[nodiscard]] Microseconds upTo(double seconds);

    Microseconds elapsed_ = 0; // what timers count
    Instant wallAtZero_;       // wall clock minus elapsed time
    Microseconds spent_ = 0;   // by the background work that runs now
    std::function<double()> random_;
    double maxLatencySeconds_ = 0;
    std::vector<Event> events_; // a handful: the earliest last, those due at once in reverse order
};

} // namespace norvane
