// The backup that is followed: asked for, running, and looked for among the snapshots when it has ended.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "timemachine/tm_util.h"

namespace norvane {

/// Knows what was seen of the backup and for how long each step may take. Runs no tool and no timer.
class BackupRun {
public:
    static constexpr int stallMinutes = 10;

    [[nodiscard]] bool running() const { return std::holds_alternative<Running>(state_); }

    /// Time Machine is asked for a backup. Another request takes this one's place.
    void request(Instant now);
    /// The request has come to nothing.
    void dropRequest();
    /// Asked for more than a minute ago, and not seen running since.
    [[nodiscard]] bool neverStarted(Instant now) const;

    /// Seen running, whoever asked for it: the request is done, and the backup before is looked for no more.
    void start(Instant now) { state_ = Running{now}; }
    enum class CopyNews { none, stalled, resumed };
    /// `bytes`: copied so far. Each stall is told once, and its end too.
    [[nodiscard]] CopyNews copied(std::int64_t bytes, Instant now);

    /// The user wants it to end; maybe before it was seen running.
    void requestStop(Instant now) { stopRequestedAt_ = now; }
    enum class End { stopped, unverified };
    /// No longer running. An unverified backup is looked for from now on.
    [[nodiscard]] End end(Instant now);

    /// When the backup that is looked for was first seen running; none: nothing is looked for.
    [[nodiscard]] std::optional<Instant> soughtSince() const;
    /// It was looked for in vain. False: for the last time, and the search is over.
    [[nodiscard]] bool lookAgain();
    void endSearch();

private:
    struct Search {
        Instant backupStart;
        int looks = 0; // in vain
    };
    /// A new request may come while the last backup is looked for.
    struct Idle {
        std::optional<Instant> requestedAt;
        std::optional<Search> search;
    };
    struct Copied {
        std::int64_t bytes;
        Instant since;
    };
    struct Running {
        Instant since;
        std::optional<Copied> copied = {};
        bool stalled = false;
    };

    std::variant<Idle, Running> state_;
    std::optional<Instant> stopRequestedAt_; // holds for the next end
};

/// Whether any destination tells of a snapshot of the backup that was first seen running at `start`. It is
/// dated up to two minutes before.
[[nodiscard]] bool hasSnapshotSince(const std::vector<TMUtil::DestinationStatus>& destinations,
                                    Instant start);

/// What Time Machine itself says went wrong, on the first destination that says anything; else empty. Goes
/// behind the message of a failure.
[[nodiscard]] std::string reportedError(const std::vector<TMUtil::DestinationStatus>& destinations);

} // namespace norvane
