#include "ui/updater_view_model.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

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

} // namespace
} // namespace norvane
