// The running worker's side of the status file.
#pragma once

#include "platform/time/clock.h"
#include "timemachine_linux/session/backup_session_state.h"

namespace norvane {

/// Keeps the state and writes it out, changes of progress at most four times a second. A write that fails is
/// forgotten: the backup matters more than its display.
class SessionStatusFile {
public:
    SessionStatusFile(const Clock& clock, std::string path);
    SessionStatusFile(const SessionStatusFile&) = delete;
    SessionStatusFile& operator=(const SessionStatusFile&) = delete;
    ~SessionStatusFile();

    void setDestination(const std::string& id, const std::string& mountPoint);
    void enter(const char* phase);
    void setTotals(std::int64_t bytes, std::int64_t files);

    /// Figures beyond the totals count as the totals: files may grow while they are copied.
    void setCopied(std::int64_t bytes, std::int64_t files);
    void setStopping();

private:
    void write();

    const Clock& clock_;
    const std::string path_;
    BackupSessionState state_;
    Instant lastWrite_{};
};

} // namespace norvane
