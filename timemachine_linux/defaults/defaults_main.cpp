#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <unistd.h>

#include "platform/linux/time/system_clock.h"
#include "timemachine_linux/defaults/defaults_command.h"

namespace {

std::string logHeader() {
    const auto now = std::chrono::floor<std::chrono::milliseconds>(norvane::SystemClock().now());
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    std::array<char, 64> time{};
    const std::size_t length = std::strftime(time.data(), time.size(), "%Y-%m-%d %H:%M:%S", &local);
    std::array<char, 160> header{};
    std::snprintf(header.data(), header.size(), "%.*s.%03d defaults[%d:%d] ", static_cast<int>(length),
                  time.data(), static_cast<int>(now.time_since_epoch().count() % 1000), ::getpid(),
                  ::gettid());
    return header.data();
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const norvane::DefaultsCall call{{argv + (argc > 0 ? 1 : 0), argv + argc}, logHeader()};
    return norvane::runDefaults(call, std::cin, std::cout, std::cerr);
}
