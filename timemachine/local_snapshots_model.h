// The local snapshots of the startup disk, and which of them a backup on the destination covers.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/background.h"
#include "platform/file_system.h"
#include "platform/translator.h"
#include "timemachine/tm_util.h"

namespace norvane {

/// The tokens of the snapshots whose state a backup holds: one taken at the same time or up to 6 hours later.
[[nodiscard]] std::set<std::string> coveredSnapshots(const std::vector<TMUtil::LocalSnapshot>& snapshots,
                                                     const std::vector<Instant>& backupDates);

struct LocalSnapshotsState {
    std::vector<TMUtil::LocalSnapshot> snapshots; ///< Newest first.
    bool loading = true;                          ///< A refresh runs, or none has been asked for yet.
    bool busy = false;                            ///< A deletion runs.
    std::optional<std::string> errorMessage;      ///< Of the last deletion, as the user reads it.
    std::string startupVolumeName;
    std::optional<std::string> destinationName;
    /// The tokens of the covered snapshots; none when the destination's records cannot be read.
    std::optional<std::set<std::string>> onDestination;

    /// How many of the snapshots are nowhere else; 0 when that is not known.
    [[nodiscard]] std::int64_t uncoveredCount() const;
};

/// What it works with; the references must outlive all background work.
struct LocalSnapshotsServices {
    Background& background;
    const TMUtil& tmUtil;
    const FileSystem& files;
    const Translator& translator;
    std::function<Calendar()> calendar; ///< The user's as it is now; the tools name snapshots in it.
};

/// Main thread only; what blocks runs in the background. Refreshes may overlap, the last to end wins;
/// deletions do not: one that is asked for while another runs is dropped.
class LocalSnapshotsModel {
public:
    /// `changed` is called after every change of the state.
    LocalSnapshotsModel(LocalSnapshotsServices services, std::function<void()> changed);

    [[nodiscard]] const LocalSnapshotsState& state() const { return state_; }

    void refresh();
    /// Deletes the snapshots with these tokens, one after the other, and lists again whatever came of it.
    void deleteTokens(std::vector<std::string> tokens);
    void deleteAll();

private:
    struct Reading;
    struct Deletion;
    void take(Reading reading);
    void take(Deletion deletion);

    const LocalSnapshotsServices services_;
    const std::function<void()> changed_;
    LocalSnapshotsState state_;
    Lifetime lifetime_;
};

} // namespace norvane
