#include "platform/linux/event_loop/linux_system_events.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "tests/support/session_test.h"

namespace norvane {

namespace {

struct SimulatedAppearance final : Appearance {
    AppearanceSettings settings;
    std::function<void()> changed;

    AppearanceSettings current() const override { return settings; }
    std::unique_ptr<Observation> observe(std::function<void()> observer) override {
        changed = std::move(observer);
        return std::make_unique<Observation>();
    }
};

class SystemEventsTest : public SessionTest {
protected:
    std::unique_ptr<SystemEvents::Observation> observe() {
        return LinuxSystemEvents(link, wakeDetector, appearance)
            .observe({[this] { ++wakes; }, [this] { ++clockChanges; }, [this] { ++accentChanges; }});
    }

    BusLink link{bus.address(), std::chrono::milliseconds(10)};
    WakeDetector wakeDetector;
    SimulatedAppearance appearance;
    int wakes = 0;
    int clockChanges = 0;
    int accentChanges = 0;
};

TEST_F(SystemEventsTest, LogindTellsOfAWake) {
    SKIP_WITHOUT_MOCKS();
    auto observation = observe(); // before logind is there
    std::optional<PeerProcess> logind;
    const auto startLogind = [&] {
        logind.emplace(mock("logind", "{}", "--system"), bus.variables());
        ASSERT_TRUE(bus.waitForName("org.freedesktop.login1")) << logind->output();
    };
    startLogind();
    const auto wakesAfter = [this](const char* signature, const char* argument) {
        emit("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
             "PrepareForSleep", signature, argument);
        settle();
        return wakes;
    };
    EXPECT_EQ(wakesAfter("b", "[<true>]"), 0);
    EXPECT_EQ(wakesAfter("b", "[<false>]"), 1);
    EXPECT_EQ(wakesAfter("s", "[<'false'>]"), 1);
    EXPECT_EQ(wakesAfter("b", "[<false>]"), 2);
    bus.restart();
    ASSERT_TRUE(soon([this] { return link.connection().isConnected(); })) << "by itself";
    startLogind();
    EXPECT_EQ(wakesAfter("b", "[<false>]"), 3);
    observation.reset();
    EXPECT_EQ(wakesAfter("b", "[<false>]"), 3);
    EXPECT_EQ(clockChanges, 0);
}

TEST_F(SystemEventsTest, OnlyTheAccentOfTheAppearanceCounts) {
    bus.stop();
    const auto observation = observe();
    appearance.settings.dark = true;
    appearance.changed();
    EXPECT_EQ(accentChanges, 0);
    appearance.settings.accent = Rgb{1, 0, 0};
    appearance.changed();
    appearance.changed();
    EXPECT_EQ(accentChanges, 1);
}

} // namespace

} // namespace norvane
