// The colours that the user chose for the desktop.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace norvane {

/// sRGB, each 0 to 1.
struct Rgb {
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const Rgb&) const = default;
};

struct AppearanceSettings {
    std::optional<Rgb> accent; ///< None: the user chose none, or the desktop knows no accent colour.
    bool dark = false;         ///< The user prefers dark windows.

    bool operator==(const AppearanceSettings&) const = default;
};

/// Main thread only.
class Appearance {
public:
    /// Destroying it ends the observation, at any time, also after the Appearance.
    class Observation {
    public:
        virtual ~Observation() = default;
    };

    virtual ~Appearance() = default;

    /// As known now: nothing chosen until the desktop has answered.
    [[nodiscard]] virtual AppearanceSettings current() const = 0;

    /// Calls `changed` after every change of current(), for as long as the result lives.
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(std::function<void()> changed) = 0;
};

} // namespace norvane
