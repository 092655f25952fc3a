// The steps of the setup guide, and the states in which they look different.
#pragma once

#include <string>
#include <vector>

#include "tests/support/simulated_program.h"
#include "ui/onboarding/onboarding_view_model.h"

namespace norvane::screenshots {

struct OnboardingState {
    std::string name; ///< Of the picture.
    int step = 0;
    void (*reach)(SimulatedMachine& machine) = nullptr; ///< Before the program starts.
    void (*change)(OnboardingViewModel& guide) = nullptr;
};

[[nodiscard]] const std::vector<OnboardingState>& onboardingStates();

} // namespace norvane::screenshots
