#include "tests/screenshots/onboarding_states.h"

namespace norvane::screenshots {

const std::vector<OnboardingState>& onboardingStates() {
    using Machine = SimulatedMachine;
    const auto automatic = [](Machine& m) { m.timeMachine.autoBackup = true; };
    const auto unknown = [](Machine& m) {
        m.timeMachine.preferencesReadable = false;
        m.timeMachine.name.reset();
    };
    static const std::vector<OnboardingState> states = {
        {"welcome"},
        {"automatic-on", 1, automatic},
        {"automatic-off", 1},
        {"automatic-unknown", 1, unknown},
        {"automatic-long-name", 1,
         [](Machine& m) {
             m.timeMachine.name =
                 "The <b>very large</b> disk in the cupboard under the stairs of the house by the lake";
         }},
        {"cover", 2},
        {"cover-done", 2, nullptr,
         [](OnboardingViewModel& guide) {
             guide.setLaunchAtLogin(true);
             guide.enableAlerts();
         }},
        {"summary", 3},
        {"summary-automatic-on", 3, automatic},
    };
    return states;
}

} // namespace norvane::screenshots
