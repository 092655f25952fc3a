#include "ui/settings/updater_view_model.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "ui/settings/update_alert.h"

namespace norvane {

namespace {

TEST(UpdaterViewModel, ShowsWhatTheServiceAllowsFromTheBeginning) {
    SimulatedUpdateService::State state;
    state.can = true;
    state.automatic = true;
    {
        UpdaterViewModel model(std::make_unique<SimulatedUpdateService>(state));
        EXPECT_TRUE(state.started);
        EXPECT_TRUE(model.canCheckForUpdates());
        int changes = 0;
        model.onChange([&] { ++changes; });
        state.observer(false);
        EXPECT_FALSE(model.canCheckForUpdates());
        model.setAutomaticallyChecks(false);
        EXPECT_FALSE(model.automaticallyChecks());
        EXPECT_EQ(changes, 2);
        model.checkForUpdates();
        EXPECT_EQ(state.checks, 1);
    }
    EXPECT_FALSE(state.observer) << "the model is gone";
    EXPECT_FALSE(UpdaterViewModel(std::make_unique<SimulatedUpdateService>(state)).automaticallyChecks());
}

TEST(UpdateAlert, TellsEveryResultAndOffersAChoiceOnlyForANewerVersion) {
    using Kind = UpdateResult::Kind;
    struct Case {
        UpdateResult result;
        std::string message;
        std::string information;
        std::string buttons;
    };
    const Case cases[] = {
        {{Kind::available, "1.10.0", "https://example.org/new"},
         "Norvane 1.10.0 is available",
         "You have version 1.2.0. The web page of the new version says how to get it.",
         "Open Web Page|Not Now"},
        {{Kind::upToDate}, "Norvane is up to date", "You have version 1.2.0.", "OK|"},
        {{Kind::unreadable},
         "Norvane could not check for updates",
         "example.org gave an answer that Norvane cannot use. Try again later.",
         "OK|"},
        {{Kind::unreachable},
         "Norvane could not check for updates",
         "example.org did not answer. Check the network connection, or try again later.",
         "OK|"},
    };
    for (const Case& c : cases) {
        const AlertTexts texts = updateAlertTexts(c.result, {"1.2.0", "example.org"}, UntranslatedText());
        EXPECT_EQ(texts.message, c.message);
        EXPECT_EQ(texts.information, c.information);
        EXPECT_EQ(texts.button + "|" + texts.otherwise, c.buttons);
    }
}

} // namespace

} // namespace norvane
