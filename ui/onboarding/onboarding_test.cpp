#include <gtest/gtest.h>

#include "tests/support/simulated_program.h"
#include "ui/onboarding/onboarding_view_model.h"

namespace norvane {

namespace {

TEST(OnboardingContent, TellsWhoControlsTheTiming) {
    struct Case {
        std::optional<bool> autoBackupOn;
        bool off;
        const char* statusSymbol;
        const char* status;
        const char* caption;
        const char* controlSymbol;
        const char* control;
    };
    const auto stillOn =
        "Apple's automatic backups are still on — Norvane can't control timing until they're "
        "off.";
    for (const Case& c :
         {Case{false, true, "checkmark.circle.fill", "Automatic backups are OFF — Norvane is in control.",
               "ALREADY SET — HERE'S WHERE IT LIVES", "checkmark.circle",
               "Norvane controls your backup timing."},
          {true, false, "exclamationmark.circle.fill",
           "Apple's automatic backups are still ON — set the frequency to “Manually” below.",
           "HOW TO TURN IT OFF", "exclamationmark.triangle", stillOn},
          {{},
           false,
           "exclamationmark.circle.fill",
           "Couldn't read the current setting — follow the steps below to be sure.",
           "HOW TO TURN IT OFF",
           "exclamationmark.triangle",
           stillOn}}) {
        ControllerState state;
        state.autoBackupOn = c.autoBackupOn;
        const OnboardingContent content = onboardingContent(state, UntranslatedText());
        EXPECT_EQ(content.automaticOff, c.off);
        EXPECT_EQ(content.statusSymbol, c.statusSymbol);
        EXPECT_EQ(content.status, c.status);
        EXPECT_EQ(content.instructionsCaption, c.caption);
        EXPECT_EQ(content.controlSymbol, c.controlSymbol);
        EXPECT_EQ(content.control, c.control);
    }
}

TEST(OnboardingContent, NamesTheDestinationAndTheSchedule) {
    ControllerState state;
    state.schedule = Schedule::defaultSchedule();
    OnboardingContent content = onboardingContent(state, UntranslatedText());
    EXPECT_EQ(content.destination,
              "No backup disk is configured yet — choose one in Time Machine settings first.");
    EXPECT_EQ(content.schedule, "Schedule: Every 4 hours — change it anytime in Settings.");
    state.destinationName = "<b>%@</b>";
    content = onboardingContent(state, UntranslatedText());
    EXPECT_EQ(content.destination, "Backing up to “<b>%@</b>”.");
}

TEST(OnboardingContent, OnlyAsterisksAreMarkup) {
    struct Case {
        const char* marked;
        QString styled;
        const char* plain;
    };
    for (const Case& c :
         {Case{"2.  Set **A** to **B**", "2.&nbsp;&nbsp;Set <b>A</b> to <b>B</b>", "2.  Set A to B"},
          {"a < b & *c*", "a &lt; b &amp; *c*", "a < b & *c*"},
          {"**open", "<b>open", "open"},
          {"", "", ""}}) {
        EXPECT_EQ(styledText(c.marked), c.styled);
        EXPECT_EQ(unmarkedText(c.marked), c.plain);
    }
}

/// The disk takes its time to answer.
struct SlowTools final : CommandRunner {
    explicit SlowTools(SimulatedMachine& m) : machine(m) {}

    std::optional<CommandResult> run(const std::string& path, const std::vector<std::string>& arguments,
                                     double timeoutSeconds) const override {
        if (arguments.back() == "destinationinfo") {
            ++polls;
            machine.time.spend(diskSeconds);
        }
        return machine.timeMachine.run(path, arguments, timeoutSeconds);
    }

    SimulatedMachine& machine;
    mutable int polls = 0;
    double diskSeconds = 0;
};

struct Guide {
    Guide() { program.start(); }

    OnboardingViewModel& model() {
        if (!made)
            made = std::make_unique<OnboardingViewModel>(
                OnboardingServices{*program.controller, machine.time, program.tmUtil, machine.defaults,
                                   machine.loginItem, machine.notifications, machine.texts});
        return *made;
    }
    OnboardingViewModel& openOn(int step) {
        model().opened();
        machine.time.advance(1);
        while (model().step() < step)
            model().forward();
        return model();
    }
    int polls() { return std::exchange(tools.polls, 0); } ///< Since the last call.

    SimulatedMachine machine{std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9}};
    SlowTools tools{machine};
    SimulatedProgram program{machine, tools, machine.defaults};
    std::unique_ptr<OnboardingViewModel> made;
};

TEST(Onboarding, GoesStepByStepAndEndsWithFinish) {
    Guide g;
    OnboardingViewModel& model = g.openOn(0);
    int finished = 0;
    QObject::connect(&model, &OnboardingViewModel::finished, [&] { ++finished; });
    model.back();
    for (int step = 0; step < 4; ++step) {
        EXPECT_EQ(model.step(), step);
        EXPECT_EQ(model.hasPrevious(), step > 0);
        EXPECT_EQ(model.isLast(), step == 3);
        EXPECT_EQ(model.position(), QString("Step %1 of 4").arg(step + 1));
        EXPECT_FALSE(g.program.store.onboardingDone());
        model.forward();
    }
    EXPECT_EQ(finished, 1);
    EXPECT_TRUE(g.program.store.onboardingDone());
    EXPECT_EQ(model.step(), 3) << "until the window is gone";
    model.closed();
    model.opened();
    EXPECT_EQ(model.step(), 0) << "who opens a finished guide reads it again";
    model.forward();
    model.closed();
    model.opened();
    EXPECT_EQ(model.step(), 1) << "an unfinished one goes on where it was";
}

TEST(Onboarding, SeesTheUserTurnTheScheduleOffWithinTwoSeconds) {
    Guide g;
    g.machine.timeMachine.autoBackup = true;
    OnboardingViewModel& model = g.openOn(1);
    EXPECT_FALSE(model.content().automaticOff);
    g.tools.diskSeconds = 10;
    g.machine.timeMachine.autoBackup = false;
    g.machine.time.advance(2);
    EXPECT_TRUE(model.content().automaticOff);
    (void)g.polls();
    g.machine.time.advance(20);
    EXPECT_EQ(g.polls(), 10);
    model.forward();
    g.machine.time.advance(20);
    EXPECT_EQ(g.polls(), 0) << "on another step";
    model.back();
    model.closed();
    g.machine.time.advance(20);
    EXPECT_EQ(g.polls(), 0) << "while closed";
    model.opened();
    g.machine.time.advance(2);
    EXPECT_EQ(g.polls(), 1);
}

TEST(Onboarding, SeesTheUserChooseADisk) {
    Guide g;
    g.machine.timeMachine.name.reset();
    OnboardingViewModel& model = g.openOn(1);
    EXPECT_TRUE(model.content().destination.startsWith("No backup disk"));
    for (const char* name : {"Disk", "Other"}) {
        g.machine.timeMachine.name = name;
        g.machine.time.advance(2);
        EXPECT_EQ(model.content().destination, "Backing up to “" + QString(name) + "”.");
    }
}

TEST(Onboarding, PassesOnWhatIsToCoverTheUser) {
    Guide g;
    g.machine.loginItem.on = true;
    EXPECT_TRUE(g.model().launchAtLogin());
    g.made.reset();
    g.machine.loginItem.on = false;
    OnboardingViewModel& model = g.openOn(2);
    EXPECT_FALSE(model.launchAtLogin());
    g.machine.loginItem.error = "no place for it";
    model.setLaunchAtLogin(true);
    EXPECT_TRUE(model.launchAtLogin()) << "failures are for the settings to tell";
    model.setLaunchAtLogin(false);
    EXPECT_EQ(g.machine.loginItem.requests, (std::vector<bool>{true, false}));

    EXPECT_FALSE(model.alertsRequested());
    model.enableAlerts();
    EXPECT_TRUE(model.alertsRequested());
    EXPECT_EQ(g.machine.notifications.permissionRequests, 1);
    model.openTimeMachineSettings();
    EXPECT_EQ(
        g.machine.workspace.opened,
        (std::vector<std::string>{"x-apple.systempreferences:com.apple.Time-Machine-Settings.extension"}));
}

} // namespace

} // namespace norvane
