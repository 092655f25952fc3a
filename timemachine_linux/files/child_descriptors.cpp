#include "timemachine_linux/files/child_descriptors.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace norvane {

void closeAllBut(int one, int other) {
    const auto low = static_cast<unsigned>(std::min(one, other));
    const auto high = static_cast<unsigned>(std::max(one, other));
    constexpr unsigned first = STDERR_FILENO + 1;
    if (low > first)
        ::close_range(first, low - 1, 0);
    if (high > low + 1)
        ::close_range(low + 1, high - 1, 0);
    ::close_range(high + 1, ~0U, 0);
}

void redirectStandardStreams() {
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(null, stream);
    if (null > STDERR_FILENO)
        ::close(null);
}

} // namespace norvane
