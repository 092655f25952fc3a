#include "platform/linux/files/small_file.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

bool replace(const std::string& path, std::string_view bytes, bool (*finish)(int file)) {
    const std::string temporary = path + ".new";
    const FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file)
        return false;
    if (writeAll(file.get(), bytes) && finish(file.get()) &&
        std::rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    ::unlink(temporary.c_str()); // half of it, on a full disk
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
    return replace(path, bytes, [](int) { return true; });
}

bool replaceFileDurably(const std::string& path, std::string_view bytes) {
    return replace(path, bytes, [](int file) { return ::fsync(file) == 0; });
}

} // namespace norvane
