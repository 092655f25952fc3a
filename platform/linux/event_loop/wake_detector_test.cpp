#include "platform/linux/event_loop/wake_detector.h"

#include <QCoreApplication>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/linux/event_loop/qt_timers.h"

namespace norvane {

namespace {

constexpr std::int64_t second = 1'000'000'000;

TEST(WakeDetector, TellsEachSleepOnce) {
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
        std::int64_t asleep = 5 * second;
        WakeDetector detector([&asleep] { return asleep; });
        bool told = false;
        detector.listen([&told] { told = true; });
        for (std::size_t i = 0; i < c.steps.size(); ++i) {
            const Step& step = c.steps[i];
            asleep = (5 + step.secondsAsleep) * second + 1000;
            told = false;
            if (step.witness == sleep)
                detector.sleepAnnounced();
            else if (step.witness == clocks)
                detector.lookAtClocks();
            else
                detector.wakeAnnounced();
            EXPECT_EQ(told, step.told) << c.what << ", step " << i;
        }
    }
}

TEST(WakeDetector, TellsOfAWakeBeforeAnyTimerThatFellDue) {
    for (const bool repeating : {false, true}) {
        for (const bool cancels : {false, true}) {
            std::int64_t asleep = 0;
            WakeDetector detector([&asleep] { return asleep; });
            QtTimers timers([&detector] { detector.lookAtClocks(); });
            std::string events;
            std::unique_ptr<Timer> timer;
            const auto action = [&events] { events += "fire "; };
            timer = repeating ? timers.repeating(0.01, 0, action) : timers.once(0.01, 0, action);
            detector.listen([&] {
                events += "wake ";
                if (cancels)
                    timer.reset();
            });
            asleep = 60 * second;
            bool over = false;
            const auto end = QtTimers().once(0.015, 0, [&over] { over = true; });
            while (!over)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            EXPECT_EQ(events.substr(0, 10), cancels ? "wake " : "wake fire ") << "repeating: " << repeating;
        }
    }
}

/// The kernel tells which clock each descriptor of a timer counts by (proc_pid_fdinfo(5)).
TEST(QtTimers, StandStillInSleep) {
    const auto timer = QtTimers().once(60, 0, [] {});
    std::string clocks;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream info(descriptor.path());
        for (std::string line; std::getline(info, line);)
            if (line.starts_with("clockid:"))
                clocks += line;
    }
    EXPECT_EQ(clocks, "clockid: " + std::to_string(CLOCK_MONOTONIC));
}

} // namespace

} // namespace norvane
