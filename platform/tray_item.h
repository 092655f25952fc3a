// The program's item in the desktop's tray.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace norvane {

struct TrayImage {
    int size = 0;                      ///< Width and height in pixels.
    std::vector<std::uint32_t> pixels; ///< Rows from the top, 0xAARRGGBB, not premultiplied; size × size.

    bool operator==(const TrayImage&) const = default;
};

struct TrayAppearance {
    std::string title;    ///< Bold first line of the tooltip.
    std::string subtitle; ///< Second line of the tooltip.
    std::string text;     ///< Beside the image, where trays show text; empty: none.
    /// A symbolic drawing in the program's icon theme, which trays show in their own foreground, so that it
    /// suits a light tray and a dark one; empty: the picture has colours of its own.
    std::string iconName;
    std::vector<TrayImage> images; ///< The same picture in several sizes; for trays without icon themes, too.
    std::string imageDescription;  ///< What the picture says, for those who cannot see it.

    bool operator==(const TrayAppearance&) const = default;
};

/// Main thread only. Shown wherever a tray is, also one that starts later or starts again; where there is
/// none, nothing happens.
class TrayItem {
public:
    virtual ~TrayItem() = default;

    virtual void show(const TrayAppearance& appearance) = 0;

    /// Called with the click's position in screen coordinates; 0, 0 when unknown.
    virtual void onActivate(std::function<void(int x, int y)> action) = 0;
};

} // namespace norvane
