// Reading the event log again and again, at the cost of what was added.
#pragma once

#include <cstdint>
#include <string>

#include "controller/log/event_log_reader.h"
#include "platform/log_file.h"

namespace norvane {

/// Gives what reading the whole file anew would give. Used by one thread at a time.
class LogFollower {
public:
    explicit LogFollower(const LogFile& file) : file_(file) {}

    /// Reads on to the end of the file; a file that shrank, was replaced or was rewritten is read from its
    /// start. Blocks while it reads. False: it is the file of the last time, in the same size, and was not
    /// looked into.
    bool update();
    /// As `update`, but looks into a file of the same size, too.
    void updateAnew();

    [[nodiscard]] std::vector<LogEntry> entries() const { return reader_.entries(); }

private:
    void readTo(const LogFileInfo& info);
    [[nodiscard]] bool continues(const LogFileInfo& info) const;
    void restart();

    const LogFile& file_;
    bool loaded_ = false; // at least once
    LogFileInfo last_;
    EventLogReader reader_;
    std::uint64_t offset_ = 0; // read so far
    std::string tail_;         // the last bytes before it, to recognise the file by
};

} // namespace norvane
