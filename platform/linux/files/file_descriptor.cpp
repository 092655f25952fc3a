#include "platform/linux/files/file_descriptor.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>

namespace norvane {

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return false;
    }
    return true;
}

} // namespace norvane
