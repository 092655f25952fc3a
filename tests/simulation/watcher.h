// What must hold at every moment, whatever happens.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tests/simulation/world.h"

namespace norvane::simulation {

constexpr double longestFaultSeconds = 65; // until an answer that a fault delays has come
/// So shortly before its backup a snapshot is new even when its date loses the fraction of the second.
constexpr double surelyNewSeconds = 119;

/// For how long something has been wrong without a break.
class Lasting {
public:
    double seconds(bool wrong, Instant now) {
        if (!wrong)
            since_.reset();
        else if (!since_)
            since_ = now;
        return since_ ? secondsBetween(*since_, now) : 0;
    }
    void forget() { since_.reset(); }

private:
    std::optional<Instant> since_;
};

/// Looks at the program from outside: what it publishes, stores, logs, posts and runs. Keeps its own ledger
/// of what ought to be, from the log and from the truth of the simulated machine.
class Watcher {
public:
    explicit Watcher(World& world) : w_(world) {}

    /// After every step. The first rule that does not hold is kept.
    void look();
    /// The program was started (again): what it kept in memory is gone.
    void programStarted();

    [[nodiscard]] const std::optional<std::string>& violation() const { return violation_; }
    [[nodiscard]] const std::deque<std::string>& lastLines() const { return lastLines_; }

private:
    void require(bool holds, std::string_view rule);

    // What the log says (watcher_log.cpp).
    void readLog();
    void readLine(std::string_view line);
    void noteRequest(std::string_view message);
    void checkRequest(bool scheduled);
    void noteRun(std::string_view message);
    void noteEnd(std::string_view message);
    void noteStall(std::string_view message);
    void noteFailure(std::string_view message);
    void notePlan(std::string_view message);
    void noteWait(std::string_view message);
    [[nodiscard]] std::string_view expectedHealth() const;

    // What is shown, kept and done (watcher.cpp).
    void checkAlerts();
    void checkPlan();
    void checkTimers();
    void checkDeferral();
    void checkStore();
    [[nodiscard]] std::optional<Instant> latestPlan() const;
    void checkState();
    void checkCommands();
    void checkAttention();
    void checkStall();
    void checkWatchdogs();
    void checkPunctuality();
    void checkProspect();
    void forgetDurations();

    [[nodiscard]] const ControllerState& state() const { return w_.program.state(); }
    [[nodiscard]] Instant now() const { return w_.time.now(); }
    /// The wall clock never went back, so that later moments are later by it; sleep does no harm.
    [[nodiscard]] bool timeWentForward() const { return w_.stepsBack == 0; }
    [[nodiscard]] bool toolsAreFaulty() const {
        return w_.tools.faultRate > 0 || w_.timeMachine.toolsMissing;
    }
    [[nodiscard]] bool preferencesAreSilent() const;
    [[nodiscard]] bool diskIsGone() const;
    /// Before a disk is called gone, Time Machine is asked whether it is another one now.
    [[nodiscard]] bool mayAskForTheDisk() const { return diskIsGone() || w_.otherDiskChosen; }
    [[nodiscard]] bool conditionHolds() const;
    [[nodiscard]] bool newSnapshotIsTold(double atMostBeforeStart) const;

    World& w_;
    std::optional<std::string> violation_;
    std::deque<std::string> lastLines_;
    std::uint64_t looks_ = 0;

    // The ledger.
    std::int64_t failures_ = 0; // in a row
    std::int64_t expectedAlerts_ = 0;
    std::size_t alertsSeen_ = 0;
    std::optional<Instant> retryFloor_;
    std::optional<Instant> requestedAt_; // and not yet seen running
    std::optional<Instant> startedAt_;   // of the backup that runs, or of the last one
    std::optional<Instant> verifyingSince_;
    std::optional<Instant> stopRequestedAt_;
    std::optional<Instant> skipped_;
    std::optional<Instant> loggedPlan_;
    struct Warning {
        Instant at;
        bool stored = false; ///< That it was posted: else it may come again.
    };
    std::map<std::string, Warning> watchdogs_; // the last one of each kind
    std::int64_t startsAllowed_ = 0;           // requests that may still lead to a `startbackup`
    std::string shown_ = "Launched";           // the last line that the user should see
    bool running_ = false;
    bool logGrew_ = false;
    bool newPlanExplained_ = false;      ///< Something but a plan was logged since the last look.
    bool onlyWaits_ = false;             ///< Nothing else was logged since the last look.
    bool asked_ = false;                 ///< `startbackup` ran since the last request.
    std::optional<Instant> overruledAt_; // when the wait for better conditions last ended
    std::optional<Instant> lastBackup_;  // as the log tells
    std::optional<Instant> catchUpAt_;   // a missed backup is to be made up for then
    /// The program learned where the backups go while that was a local disk that was there, and its tools
    /// worked. Only then is it held to what it says of the disk.
    bool diskIsKnown_ = true;

    // As last seen.
    std::optional<DeferralInfo> deferral_;
    std::optional<Instant> plan_;
    int jumpsAtPlan_ = 0;
    int jumpsAtRequest_ = 0;
    int jumpsAtDeferral_ = 0;
    Instant deferredAt_; // the last time it was looked at
    std::optional<Instant> pausedUntil_;
    bool stalled_ = false;
    Schedule schedule_; // under which plan_ was checked

    // What may be wrong for a while, but not for long.
    int jumpsSeen_ = 0;
    Lasting toolsWork_;
    Lasting unseen_;
    Lasting wrongHealth_;
    Lasting overdue_;
    Lasting overduePause_;
    Lasting preferencesTell_; // of a destination
    Lasting newSnapshotTold_;
    Lasting stuck_;
    std::optional<std::int64_t> copiedBytes_; // as shown last
    Lasting fullDisk_;
    Lasting fullStartupDisk_;
    Lasting oldBackup_;
    Lasting wrongSwitch_;
};

} // namespace norvane::simulation
