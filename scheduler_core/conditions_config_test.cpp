#include "scheduler_core/conditions_config.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(ConditionsConfig, AnyOneConditionCanDefer) {
    EXPECT_FALSE(ConditionsConfig::defaultConditions().hasAnyCondition());
    EXPECT_FALSE((ConditionsConfig{false, -5, false, false, {}, 4, 5, {}, false}).hasAnyCondition());
    const ConditionsConfig cases[] = {{true, 0, false, false, {}, 4, 5, {}, {}},
                                      {false, 1, false, false, {}, 4, 5, {}, {}},
                                      {false, 0, true, false, {}, 4, 5, {}, {}},
                                      {false, 0, false, true, {}, 4, 5, {}, {}},
                                      {false, 0, false, false, {}, 4, 5, 0.8, {}},
                                      {false, 0, false, false, {}, 4, 5, {}, true},
                                      {false, 0, false, false, {{"editor", "Editor"}}, 4, 5, {}, {}}};
    for (const ConditionsConfig& conditions : cases)
        EXPECT_TRUE(conditions.hasAnyCondition()) << &conditions - cases;
}

} // namespace

} // namespace norvane
