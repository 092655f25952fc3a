#include "platform/simulated/simulated_time.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

std::int64_t microseconds(double seconds) { return static_cast<std::int64_t>(std::max(seconds, 0.0) * 1e6); }

} // namespace

struct SimulatedTime::TimerState {
    std::function<void()> action;
    Microseconds delay = 0;
    bool repeats = false;
    bool alive = true;
};

class SimulatedTime::EventTimer final : public Timer {
public:
    explicit EventTimer(std::shared_ptr<TimerState> state) : state_(std::move(state)) {}
    ~EventTimer() override { state_->alive = false; }

private:
    const std::shared_ptr<TimerState> state_; // shared with the event in the queue
};

SimulatedTime::SimulatedTime(Instant start) : wallAtZero_(start) {}
SimulatedTime::~SimulatedTime() = default;

Instant SimulatedTime::now() const { return wallAtZero_ + std::chrono::microseconds(elapsed_); }

void SimulatedTime::schedule(Microseconds delay, decltype(Event::what) what) {
    const Microseconds due = elapsed_ + delay;
    const auto place = std::partition_point(events_.begin(), events_.end(),
                                            [due](const Event& other) { return other.due > due; });
    events_.insert(place, {due, std::move(what)});
}

std::unique_ptr<Timer> SimulatedTime::startTimer(TimerState state) {
    const auto shared = std::make_shared<TimerState>(std::move(state));
    schedule(shared->delay, shared);
    return std::make_unique<EventTimer>(shared);
}

std::unique_ptr<Timer> SimulatedTime::once(double intervalSeconds, double /*toleranceSeconds*/,
                                           std::function<void()> action) {
    return startTimer({std::move(action), microseconds(intervalSeconds)});
}

std::unique_ptr<Timer> SimulatedTime::repeating(double intervalSeconds, double /*toleranceSeconds*/,
                                                std::function<void()> action) {
    const Microseconds interval = std::max<Microseconds>(microseconds(intervalSeconds), 1);
    return startTimer({std::move(action), interval, true});
}

void SimulatedTime::post(std::function<Completion()> work) { schedule(0, std::move(work)); }

void SimulatedTime::run(const std::shared_ptr<TimerState>& timer) {
    if (!timer->alive)
        return;
    if (timer->repeats)
        schedule(timer->delay, timer);
    timer->action(); // which may destroy the timer, but not its state
}

void SimulatedTime::run(const Work& work) {
    spent_ = 0;
    Completion completion = work();
    schedule(spent_, std::move(completion));
}

void SimulatedTime::advance(double seconds) { runDueUntil(elapsed_ + microseconds(seconds)); }

void SimulatedTime::advanceTo(Instant instant) { advance(secondsBetween(now(), instant)); }

bool SimulatedTime::step() {
    if (events_.empty())
        return false;
    const Event event = std::move(events_.back());
    events_.pop_back();
    elapsed_ = std::max(elapsed_, event.due);
    std::visit([this](const auto& what) { run(what); }, event.what);
    return true;
}

void SimulatedTime::runDueUntil(Microseconds end) {
    while (!events_.empty() && events_.back().due <= end)
        step();
    elapsed_ = std::max(elapsed_, end);
}

void SimulatedTime::setWallClock(Instant instant) {
    wallAtZero_ = instant - std::chrono::microseconds(elapsed_);
}

void SimulatedTime::sleep(double seconds) { setWallClock(plusSeconds(now(), seconds)); }

void SimulatedTime::spend(double seconds) { spent_ += microseconds(seconds); }

} // namespace norvane
