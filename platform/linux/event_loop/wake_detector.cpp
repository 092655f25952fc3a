#include "platform/linux/event_loop/wake_detector.h"

#include <ctime>
#include <utility>

namespace norvane {

namespace {

constexpr std::int64_t shortestSleepNanoseconds = 100'000'000; // the clocks are not read at the same instant

std::int64_t nanosecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * 1'000'000'000 + now.tv_nsec;
}

} // namespace

WakeDetector::WakeDetector(std::function<std::int64_t()> timeAsleep)
    : timeAsleep_(std::move(timeAsleep)), asleep_(timeAsleep_()) {}

std::int64_t WakeDetector::timeAsleepByTheClocks() {
    return nanosecondsOf(CLOCK_BOOTTIME) - nanosecondsOf(CLOCK_MONOTONIC);
}

void WakeDetector::lookAtClocks() {
    const std::int64_t asleep = timeAsleep_();
    if (asleep - asleep_ < shortestSleepNanoseconds)
        return;
    asleep_ = asleep;
    toldByClocks_ = true;
    tell();
}

void WakeDetector::wakeAnnounced() {
    asleep_ = timeAsleep_();
    if (!std::exchange(toldByClocks_, false))
        tell();
}

void WakeDetector::tell() const {
    if (woke_)
        woke_();
}

} // namespace norvane
