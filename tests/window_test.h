// What tests of windows have in common: one desktop for all, and programs that show one state each.
#pragma once

#include <gtest/gtest.h>

#include "tests/ui_driver.h"

namespace norvane {

using Lines = std::vector<std::string>;

inline std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

class WindowTest : public testing::Test {
protected:
    static void TearDownTestSuite() {
        driver_.reset();
        bus_.reset();
    }
    void SetUp() override {
        if (const auto missing = UiDriver::missingProgram())
            GTEST_SKIP() << *missing << " is not installed";
        if (driver_)
            return;
        bus_.emplace(); // here and not for the suite, whose failures the test runner takes for skipped tests
        driver_.emplace(*bus_);
    }

    static UiDriver& user() { return *driver_; }

    /// A program whose window shows the state.
    static PeerProcess show(const std::string& state) {
        return PeerProcess({NORVANE_BIN_DIR "/tests/show_state", state}, user().variables());
    }

    static bool focusIsOn(const std::string& name) { return user().focusIsOn(name); }
    static Lines tabStops() { return user().tabStops(); }

private:
    static inline std::optional<PrivateBus> bus_;
    static inline std::optional<UiDriver> driver_;
};

} // namespace norvane
