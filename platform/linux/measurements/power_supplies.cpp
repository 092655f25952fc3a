#include "platform/linux/measurements/power_supplies.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/linux/files/small_file.h"

namespace norvane {

namespace {

struct Supply {
    std::string folder;

    [[nodiscard]] std::string attribute(const char* name) const {
        const std::string text = readSmallFile(folder + "/" + name, 64);
        return text.substr(0, text.find('\n'));
    }
};

std::vector<Supply> suppliesOfMachine(const std::string& folder) {
    std::vector<Supply> supplies;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        Supply supply{entry.path().string()};
        if (supply.attribute("scope") != "Device") // a mouse or a headset
            supplies.push_back(std::move(supply));
    }
    std::sort(supplies.begin(), supplies.end(),
              [](const Supply& a, const Supply& b) { return a.folder < b.folder; });
    return supplies;
}

std::optional<std::int64_t> percentOf(const Supply& battery) {
    const std::string text = battery.attribute("capacity");
    std::int64_t percent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
    if (error != std::errc() || end != text.data() + text.size() || percent < 0)
        return std::nullopt;
    return std::min(percent, std::int64_t{100}); // some firmware says more
}

} // namespace

PowerState powerFromSupplies(const std::string& folder) {
    std::optional<bool> adapterOnLine;
    std::optional<Supply> battery;
    for (const Supply& supply : suppliesOfMachine(folder)) {
        const std::string type = supply.attribute("type");
        if (type == "Mains" || type == "USB")
            adapterOnLine = adapterOnLine.value_or(false) || supply.attribute("online") == "1";
        else if ((type == "Battery" || type == "UPS") && !battery && supply.attribute("present") != "0")
            battery = supply;
    }
    if (!battery)
        return {};
    PowerState state;
    state.onAC = adapterOnLine.value_or(battery->attribute("status") != "Discharging");
    state.batteryPercent = percentOf(*battery);
    return state;
}

} // namespace norvane
