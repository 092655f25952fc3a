// Locks between processes that the system takes back when their holder dies, however it dies.
#pragma once

#include <string>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

/// An exclusive lock on a whole file (an open file description lock, fcntl(2)). It belongs to the descriptor
/// and its copies: a child that inherits one holds the lock too, until the last copy is closed. Unlike
/// flock(2) it can be looked at without being taken, so a look never makes somebody else's attempt fail.
class FileLock {
public:
    /// Makes the file if need be. Fails with EAGAIN while somebody else holds the lock.
    [[nodiscard]] static Result<FileLock> tryAcquire(const std::string& path);

    [[nodiscard]] static bool isHeld(const std::string& path);

    [[nodiscard]] int fd() const { return file_.get(); }

    /// The file's content: what the holder has to say about itself.
    bool write(const std::string& text) const;

private:
    explicit FileLock(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
};

} // namespace norvane
