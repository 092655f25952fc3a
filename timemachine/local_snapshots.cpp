// Local snapshots: reading what `tmutil listlocalsnapshots` prints.
#include <algorithm>

#include "platform/text/digit_pattern.h"
#include "platform/text/white_space.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

constexpr std::string_view namePrefix = "com.apple.TimeMachine.";
constexpr std::string_view nameSuffix = ".local";

/// "yyyy-MM-dd-HHmmss" and nothing else.
std::optional<WallTime> wallTimeFrom(std::string_view token) {
    if (!fitsPattern(token, "dddd-dd-dd-dddddd"))
        return std::nullopt;
    return WallTime{digitsAt(token, 0, 4),  digitsAt(token, 5, 2),  digitsAt(token, 8, 2),
                    digitsAt(token, 11, 2), digitsAt(token, 13, 2), digitsAt(token, 15, 2)};
}

/// None for headings and for other programs' snapshots.
std::optional<TMUtil::LocalSnapshot> snapshotFrom(std::string_view line, const Calendar& calendar) {
    std::string_view name = trimHorizontal(line);
    if (!name.starts_with(namePrefix) || !name.ends_with(nameSuffix) ||
        name.size() < namePrefix.size() + nameSuffix.size())
        return std::nullopt;
    name.remove_prefix(namePrefix.size());
    name.remove_suffix(nameSuffix.size());
    const auto wallTime = wallTimeFrom(name);
    const auto date = wallTime ? calendar.instantAt(*wallTime) : std::nullopt;
    if (!date)
        return std::nullopt;
    return TMUtil::LocalSnapshot{*date, std::string(name)};
}

} // namespace

std::vector<TMUtil::LocalSnapshot> TMUtil::parseLocalSnapshots(std::string_view text,
                                                               const Calendar& calendar) {
    std::vector<LocalSnapshot> snapshots;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (auto snapshot = snapshotFrom(text.substr(0, end), calendar))
            snapshots.push_back(std::move(*snapshot));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const auto& one, const auto& other) { return one.date > other.date; });
    return snapshots;
}

} // namespace norvane
