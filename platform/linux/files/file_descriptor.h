// Owning file descriptors, and writing to them.
#pragma once

#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace norvane {

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : fd_(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.fd_, -1));
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return fd_; }
    [[nodiscard]] explicit operator bool() const { return fd_ >= 0; }
    [[nodiscard]] int release() { return std::exchange(fd_, -1); }
    void reset(int fd = -1) {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = fd;
    }

private:
    int fd_ = -1;
};

/// Both ends close-on-exec.
struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};

/// None: the system has no descriptors left.
[[nodiscard]] std::optional<Pipe> makePipe();

/// Writes all bytes. False: not all could be written; errno says why.
bool writeAll(int fd, std::string_view bytes);

} // namespace norvane
