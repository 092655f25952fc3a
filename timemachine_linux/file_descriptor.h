// Owning one file descriptor.
#pragma once

#include <unistd.h>

#include <string>
#include <string_view>
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

/// Writes all bytes. False: not all could be written; errno says why.
bool writeAll(int fd, std::string_view bytes);

/// The file's first bytes, at most `limitBytes`; empty when it cannot be read.
[[nodiscard]] std::string readSmallFile(const std::string& path, std::size_t limitBytes = 65536);

/// Replaces the file in one step, mode 0600, through "<path>.new". A reader sees the old or the new content,
/// never a part. It survives a crash of the program; after a power cut it may be the old one.
bool replaceFile(const std::string& path, std::string_view bytes);

} // namespace norvane
