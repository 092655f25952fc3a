#include "timemachine_linux/local_snapshots/local_snapshot_name.h"

#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {

namespace {

constexpr std::string_view prefix = "com.apple.TimeMachine.";
constexpr std::string_view suffix = ".local";

} // namespace

std::string localSnapshotName(std::string_view token) {
    return std::string(prefix).append(token).append(suffix);
}

std::optional<std::string> localSnapshotToken(std::string_view name) {
    if (name.size() < prefix.size() + suffix.size() || !name.starts_with(prefix) || !name.ends_with(suffix))
        return std::nullopt;
    name.remove_prefix(prefix.size());
    name.remove_suffix(suffix.size());
    if (!parseSnapshotName(name))
        return std::nullopt;
    return std::string(name);
}

} // namespace norvane
