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

    /// Whether the keyboard's focus comes to be there.
    static bool focusIsOn(const std::string& name) {
        return eventually([&] {
            const auto now = user().focused();
            return now && now->name == name;
        });
    }

    /// Presses Tab until the focus is where it began; the names of what had it.
    static Lines tabStops() {
        Lines names;
        QString first;
        for (int i = 0; i < 20; ++i) {
            const auto before = user().focused();
            user().type("Tab");
            (void)eventually([&] { return differs(before, user().focused()); }, 1);
            const auto element = user().focused();
            if (!element || element->path == first)
                break;
            if (names.empty())
                first = element->path;
            names.push_back(element->name);
        }
        return names;
    }

private:
    static bool differs(const std::optional<Element>& a, const std::optional<Element>& b) {
        return b && (!a || a->path != b->path);
    }

    static inline std::optional<PrivateBus> bus_;
    static inline std::optional<UiDriver> driver_;
};

} // namespace norvane
