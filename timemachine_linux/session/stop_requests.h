// How a worker learns that it shall stop: SIGTERM, from `tmutil stopbackup` or from a system that shuts down.
#pragma once

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

/// One object in a process without other threads. While it lives SIGTERM, SIGINT and SIGHUP are requests to
/// stop; signals that came earlier, while they were blocked, count too.
class StopRequests {
public:
    StopRequests();

    /// Becomes readable when a request has come.
    [[nodiscard]] int fd() const { return signals_.get(); }

    /// Whether one has ever come. A system call until it has.
    [[nodiscard]] bool requested();

private:
    FileDescriptor signals_;
    bool requested_ = false;
};

/// Around the start of a worker or of its child: no request is lost, and none ends the wrong process.
void blockStopSignals();
void unblockStopSignals();

} // namespace norvane
