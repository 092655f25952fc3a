#include "scheduler_core/conditions_config.h"

#include <functional>

#include <gtest/gtest.h>

namespace norvane {
namespace {

TEST(ConditionsConfig, KnowsWhetherAnythingCanDefer) {
    struct Case {
        std::function<void(ConditionsConfig&)> change;
        bool expected;
    };
    const Case cases[] = {
        {[](auto&) {}, false},
        {[](auto& c) { c.requireAC = true; }, true},
        {[](auto& c) { c.minBatteryPercent = 1; }, true},
        {[](auto& c) { c.minBatteryPercent = -1; }, false},
        {[](auto& c) { c.deferInLowPowerMode = true; }, true},
        {[](auto& c) { c.deferWhileCameraOrMicInUse = true; }, true},
        {[](auto& c) {
             c.blockedApps = {{"org.example.Editor", "Editor"}};
         },
         true},
        {[](auto& c) { c.maxDeferralHours = 12; }, false},
        {[](auto& c) { c.recheckMinutes = 1; }, false},
        {[](auto& c) { c.maxLoadPerCore = 0; }, true},
        {[](auto& c) { c.requireDestinationPresent = false; }, false},
        {[](auto& c) { c.requireDestinationPresent = true; }, true},
    };
    for (const auto& [change, expected] : cases) {
        ConditionsConfig conditions = ConditionsConfig::defaultConditions();
        change(conditions);
        EXPECT_EQ(conditions.hasAnyCondition(), expected);
    }
}

} // namespace
} // namespace norvane
