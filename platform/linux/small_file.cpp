#include "platform/linux/small_file.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "platform/linux/file_descriptor.h"

namespace norvane {

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
    const std::string temporary = path + ".new";
    FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file || !writeAll(file.get(), bytes))
        return false;
    file.reset();
    return std::rename(temporary.c_str(), path.c_str()) == 0;
}

} // namespace norvane
