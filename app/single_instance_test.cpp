#include "app/single_instance.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

struct FakeInstances final : ProgramInstances {
    bool known = true;
    std::vector<std::int64_t> running;
    std::int64_t activated = 0;
    bool answers = false;

    bool identified() const override { return known; }
    std::int64_t ownProcessId() const override { return 100; }
    std::vector<std::int64_t> others() const override { return running; }
    bool activate(std::int64_t processId) override {
        activated = processId;
        return answers;
    }
};

struct Case {
    const char* what;
    std::vector<std::int64_t> running;
    double othersEndAfterSeconds; // beyond 2: never within the wait
    bool known;
    std::int64_t activated;
    double waited;
};

TEST(SingleInstance, TheOldestStays) {
    const Case cases[] = {
        {"alone", {}, 9, true, 0, 0},
        {"older ones run", {70, 50, 120}, 9, true, 50, 2},
        {"only newer ones run", {120, 130}, 9, true, 0, 2},
        {"the older one ends in time", {50}, 1, true, 0, 1},
        {"the older one ends at the last look", {50}, 2, true, 0, 2},
        {"no identity", {50}, 9, false, 0, 0},
    };
    for (const Case& c : cases) {
        FakeInstances instances;
        instances.known = c.known;
        instances.running = c.running;
        double waited = 0;
        const auto older = olderInstance(instances, [&](double seconds) {
            waited += seconds;
            if (waited >= c.othersEndAfterSeconds)
                instances.running.clear();
        });
        EXPECT_EQ(older, c.activated == 0 ? std::nullopt
                                          : std::optional(OlderInstance{c.activated, instances.answers}))
            << c.what;
        EXPECT_EQ(instances.activated, c.activated) << c.what;
        EXPECT_EQ(waited, c.waited) << c.what;
    }
}

} // namespace

} // namespace norvane
