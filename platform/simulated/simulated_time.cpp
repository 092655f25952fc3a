#include "platform/simulated/simulated_time.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

std::int64_t microseconds(double seconds) { return static_cast<std::int64_t>(std::max(seconds, 0.0) * 1e6); }

} // namespace

class SimulatedTime::EventTimer final : public Timer {
public:
    ~EventTimer() override { *alive = false; }

    const std::shared_ptr<bool> alive = std::make_shared<bool>(true); // shared with the event in the queue
};

SimulatedTime::SimulatedTime(Instant start) : wallAtZero_(start) {}
SimulatedTime::~SimulatedTime() = default;

Instant SimulatedTime::now() const { return wallAtZero_ + std::chrono::microseconds(elapsed_); }

void SimulatedTime::schedule(Microseconds due, std::function<void()> action) {
    events_.emplace(due, std::move(action));
}

std::unique_ptr<Timer> SimulatedTime::once(double intervalSeconds, double /*toleranceSeconds*/,
                                           std::function<void()> action) {
    auto timer = std::make_unique<EventTimer>();
    schedule(elapsed_ + microseconds(intervalSeconds), [alive = timer->alive, action = std::move(action)] {
        if (*alive)
            action();
    });
    return timer;
}

std::unique_ptr<Timer> SimulatedTime::repeating(double intervalSeconds, double /*toleranceSeconds*/,
                                                std::function<void()> action) {
    auto timer = std::make_unique<EventTimer>();
    struct Repetition {
        SimulatedTime& time;
        Microseconds interval;
        std::shared_ptr<bool> alive;
        std::shared_ptr<std::function<void()>> action;

        void operator()() const {
            if (!*alive)
                return;
            time.schedule(time.elapsed_ + interval, *this);
            const auto keepAlive = action; // the action may destroy the timer
            (*keepAlive)();
        }
    };
    const Microseconds interval = std::max<Microseconds>(microseconds(intervalSeconds), 1);
    schedule(elapsed_ + interval, Repetition{*this, interval, timer->alive,
                                             std::make_shared<std::function<void()>>(std::move(action))});
    return timer;
}

void SimulatedTime::post(std::function<Completion()> work) {
    schedule(elapsed_, [this, work = std::move(work)] {
        spent_ = 0;
        Completion completion = work();
        schedule(elapsed_ + spent_, std::move(completion));
    });
}

void SimulatedTime::advance(double seconds) { runDueUntil(elapsed_ + microseconds(seconds)); }

void SimulatedTime::advanceTo(Instant instant) { advance(secondsBetween(now(), instant)); }

bool SimulatedTime::step() {
    if (events_.empty())
        return false;
    const auto first = events_.begin();
    elapsed_ = std::max(elapsed_, first->first);
    const auto action = std::move(first->second);
    events_.erase(first);
    action();
    return true;
}

void SimulatedTime::runDueUntil(Microseconds end) {
    while (!events_.empty() && events_.begin()->first <= end)
        step();
    elapsed_ = std::max(elapsed_, end);
}

void SimulatedTime::setWallClock(Instant instant) {
    wallAtZero_ = instant - std::chrono::microseconds(elapsed_);
}

void SimulatedTime::sleep(double seconds) { setWallClock(plusSeconds(now(), seconds)); }

void SimulatedTime::spend(double seconds) { spent_ += microseconds(seconds); }

} // namespace norvane
