#include "platform/simulated/simulated_time.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

std::int64_t microseconds(double seconds) {
    constexpr double longest = 1e11; // 3,000 years; stored settings may ask for any wait
    return static_cast<std::int64_t>(std::clamp(seconds, 0.0, longest) * 1e6);
}

} // namespace

struct SimulatedTime::TimerState {
    std::function<void()> action;
    Microseconds delay = 0;
    double tolerance = 0;
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
    schedule(shared->delay + upTo(shared->tolerance), shared);
    return std::make_unique<EventTimer>(shared);
}

std::unique_ptr<Timer> SimulatedTime::once(double intervalSeconds, double toleranceSeconds,
                                           std::function<void()> action) {
    return startTimer({std::move(action), microseconds(intervalSeconds), toleranceSeconds});
}

std::unique_ptr<Timer> SimulatedTime::repeating(double intervalSeconds, double toleranceSeconds,
                                                std::function<void()> action) {
    const Microseconds interval = std::max<Microseconds>(microseconds(intervalSeconds), 1);
    return startTimer({std::move(action), interval, toleranceSeconds, true});
}

void SimulatedTime::post(std::function<Completion()> work) {
    schedule(upTo(maxLatencySeconds_), std::move(work));
}

SimulatedTime::Microseconds SimulatedTime::upTo(double seconds) {
    return random_ ? microseconds(random_() * seconds) : 0;
}

void SimulatedTime::run(const std::shared_ptr<TimerState>& timer) {
    if (!timer->alive)
        return;
    if (timer->repeats)
        schedule(timer->delay + upTo(timer->tolerance), timer);
    timer->action(); // which may destroy the timer, but not its state
}

void SimulatedTime::run(const Work& work) {
    spent_ = 0;
    Completion completion = work();
    schedule(spent_ + upTo(maxLatencySeconds_), std::move(completion));
}

void SimulatedTime::advance(double seconds) { runDueUntil(elapsed_ + microseconds(seconds)); }

void SimulatedTime::advanceTo(Instant instant) { advance(secondsBetween(now(), instant)); }

bool SimulatedTime::step() {
    if (events_.empty())
        return false;
    const Event event = std::move(events_.back());
    events_.pop_back();
    elapsed_ = std::max(elapsed_, event.due);
    std::visit([this](const auto& what) { this->run(what); }, event.what);
    return true;
}

void SimulatedTime::runDueUntil(Microseconds end) {
    while (!events_.empty() && events_.back().due <= end)
        step();
    elapsed_ = std::max(elapsed_, end);
}

void SimulatedTime::dropBackgroundWork() {
    std::erase_if(events_, [](const Event& event) {
        return !std::holds_alternative<std::shared_ptr<TimerState>>(event.what);
    });
}

void SimulatedTime::setWallClock(Instant instant) {
    wallAtZero_ = instant - std::chrono::microseconds(elapsed_);
}

void SimulatedTime::sleep(double seconds) { setWallClock(plusSeconds(now(), seconds)); }

void SimulatedTime::disturb(std::function<double()> random, double maxLatencySeconds) {
    random_ = std::move(random);
    maxLatencySeconds_ = maxLatencySeconds;
}

std::optional<Instant> SimulatedTime::nextEvent() const {
    if (events_.empty())
        return std::nullopt;
    return wallAtZero_ + std::chrono::microseconds(std::max(events_.back().due, elapsed_));
}

SimulatedTime::RunningTimers SimulatedTime::runningTimers() const {
    RunningTimers running;
    for (const Event& event : events_) {
        const auto* timer = std::get_if<std::shared_ptr<TimerState>>(&event.what);
        if (!timer || !(*timer)->alive)
            continue;
        if ((*timer)->repeats)
            ++running.repeating;
        else
            running.oneShots.push_back(wallAtZero_ + std::chrono::microseconds(event.due));
    }
    return running;
}

void SimulatedTime::spend(double seconds) { spent_ += microseconds(seconds); }

} // namespace norvane
