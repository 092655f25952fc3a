// How well the backups do, and what the user is told about it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controller/controller_state.h"
#include "platform/formats.h"
#include "platform/notifications.h"
#include "platform/translator.h"
#include "platform/user_defaults.h"

namespace norvane {

/// `lastBackup`: end of the last finished backup; `failureStreak`: failures in a row since then.
[[nodiscard]] BackupHealth healthOf(std::optional<Instant> lastBackup, std::int64_t failureStreak,
                                    Instant now);

/// The user's notifications about backups, in the user's language. Shows nothing by itself. Main thread only.
class Alerts {
public:
    Alerts(const Translator& translator, const Formats& formats, UserDefaults& defaults)
        : translator_(translator), formats_(formats), defaults_(defaults) {}

    [[nodiscard]] Notification crashed() const;
    [[nodiscard]] Notification stalled(bool destinationVanished) const;
    /// `problem`: as the log has it.
    [[nodiscard]] Notification failed(const std::string& problem, std::int64_t failureStreak,
                                      Instant retryAt) const;

    /// All that is worth a warning in the history. A running backup may mend that there is no new one.
    [[nodiscard]] std::vector<Notification> warnings(const HealthData& data, bool backupRuns,
                                                     Instant now) const;
    /// A warning about one matter is shown once a day at most, over restarts of the program, too. True: it is
    /// now, and counts as shown.
    [[nodiscard]] bool mayWarn(const std::string& matter, Instant now);

private:
    [[nodiscard]] std::string translate(std::string_view text) const { return translator_.translate(text); }

    const Translator& translator_;
    const Formats& formats_;
    UserDefaults& defaults_;
};

} // namespace norvane
