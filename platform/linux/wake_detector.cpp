#include "platform/linux/wake_detector.h"

#include <utility>

namespace norvane {

namespace {

constexpr std::int64_t shortestSleepNanoseconds = 100'000'000; // the clocks are not read at the same instant

} // namespace

bool WakeDetector::clocksMoved(std::int64_t asleep) {
    if (asleep - asleep_ < shortestSleepNanoseconds)
        return false;
    asleep_ = asleep;
    toldByClocks_ = true;
    return true;
}

bool WakeDetector::wakeAnnounced(std::int64_t asleep) {
    asleep_ = asleep;
    return !std::exchange(toldByClocks_, false);
}

} // namespace norvane
