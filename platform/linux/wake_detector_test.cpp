#include "platform/linux/wake_detector.h"

#include <gtest/gtest.h>
#include <vector>

namespace norvane {
namespace {

TEST(WakeDetector, TellsEachSleepOnce) {
    constexpr std::int64_t second = 1'000'000'000;
    enum class Witness { clocks, sleep, wake };
    struct Step {
        Witness witness;
        std::int64_t secondsAsleep;
        bool told;
    };
    struct Case {
        const char* what;
        std::vector<Step> steps;
    };
    using enum Witness;
    const Case cases[] = {
        {"logind first", {{sleep, 0, false}, {wake, 60, true}, {clocks, 60, false}}},
        {"the clocks first", {{sleep, 0, false}, {clocks, 60, true}, {wake, 60, false}, {clocks, 60, false}}},
        {"no logind", {{clocks, 60, true}, {clocks, 60, false}, {clocks, 90, true}}},
        {"the sleep was not announced", {{clocks, 60, true}, {wake, 60, false}}},
        {"logind comes after a sleep without it", {{clocks, 60, true}, {sleep, 60, false}, {wake, 90, true}}},
        {"a sleep that failed", {{sleep, 0, false}, {wake, 0, true}}},
        {"the clock was set", {{clocks, 0, false}}},
        {"two sleeps",
         {{sleep, 0, false}, {clocks, 60, true}, {wake, 60, false}, {sleep, 60, false}, {wake, 90, true}}},
    };
    for (const Case& c : cases) {
        WakeDetector detector(5 * second);
        for (std::size_t i = 0; i < c.steps.size(); ++i) {
            const Step& step = c.steps[i];
            const std::int64_t asleep = (5 + step.secondsAsleep) * second + 1000;
            bool told = false;
            if (step.witness == sleep)
                detector.sleepAnnounced();
            else
                told = step.witness == clocks ? detector.clocksMoved(asleep) : detector.wakeAnnounced(asleep);
            EXPECT_EQ(told, step.told) << c.what << ", step " << i;
        }
    }
}

} // namespace
} // namespace norvane
