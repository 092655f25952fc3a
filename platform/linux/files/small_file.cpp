#include "platform/linux/files/small_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

bool replace(const std::string& path, std::string_view bytes, mode_t mode, bool (*finish)(int file)) {
    const std::string temporary = path + ".new";
    ::unlink(temporary.c_str()); // what a killed writer left, or a link that leads elsewhere
    const FileDescriptor file(
        ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (!file)
        return false;
    if (writeAll(file.get(), bytes) && finish(file.get()) &&
        std::rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    const int error = errno;
    ::unlink(temporary.c_str()); // half of it, on a full disk
    errno = error;
    return false;
}

} // namespace

std::string readSmallFile(const std::string& path, std::size_t limitBytes) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::string bytes;
    std::array<char, 4096> chunk;
    while (file && bytes.size() < limitBytes) {
        const ssize_t count = ::read(file.get(), chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        bytes.append(chunk.data(), static_cast<std::size_t>(count));
    }
    if (bytes.size() > limitBytes)
        bytes.resize(limitBytes);
    return bytes;
}

bool replaceFile(const std::string& path, std::string_view bytes) {
    return replace(path, bytes, 0600, [](int) { return true; });
}

bool replaceFileDurably(const std::string& path, std::string_view bytes, mode_t mode) {
    return replace(path, bytes, mode, [](int file) { return ::fsync(file) == 0; });
}

} // namespace norvane
