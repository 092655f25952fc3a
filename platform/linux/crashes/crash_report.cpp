#include "platform/linux/crashes/crash_report.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

// Not on the alternate stack, which is small. Only one thread of the process writes a report.
std::array<char, 16384> logBytes;
std::array<void*, 128> stackFrames;

constexpr int logLines = 20;

bool continuesFileName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
}

/// Text without memory from the heap.
class Text {
public:
    Text& operator<<(std::string_view text) {
        const std::size_t count = std::min(text.size(), bytes_.size() - size_);
        std::copy_n(text.begin(), count, bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += count;
        return *this;
    }
    Text& number(std::uint64_t value, int base = 10, std::size_t width = 0) {
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.begin(), digits.end(), value, base).ptr;
        const auto count = static_cast<std::size_t>(end - digits.begin());
        for (std::size_t missing = count; missing < width; ++missing)
            *this << "0";
        return *this << std::string_view(digits.data(), count);
    }
    Text& hex(std::uint64_t value) { return (*this << "0x").number(value, 16); }

    [[nodiscard]] std::string_view view() const { return {bytes_.data(), size_}; }
    /// Ends the text with a zero byte.
    [[nodiscard]] const char* path() {
        bytes_[std::min(size_, bytes_.size() - 1)] = '\0';
        return bytes_.data();
    }

private:
    std::array<char, 4096> bytes_{};
    std::size_t size_ = 0;
};

/// "2026-11-22 20:55:43" with the given separators.
void appendTime(Text& text, std::time_t time, std::string_view beforeTime, std::string_view inTime) {
    using namespace std::chrono;
    const sys_seconds instant{seconds(time)};
    const auto day = floor<days>(instant);
    const year_month_day date(day);
    const hh_mm_ss clock(instant - day);
    text.number(static_cast<std::uint64_t>(static_cast<int>(date.year())), 10, 4) << "-";
    text.number(static_cast<unsigned>(date.month()), 10, 2) << "-";
    text.number(static_cast<unsigned>(date.day()), 10, 2) << beforeTime;
    text.number(static_cast<std::uint64_t>(clock.hours().count()), 10, 2) << inTime;
    text.number(static_cast<std::uint64_t>(clock.minutes().count()), 10, 2) << inTime;
    text.number(static_cast<std::uint64_t>(clock.seconds().count()), 10, 2);
}

std::string_view signalName(int signal) {
    switch (signal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGILL:
        return "SIGILL";
    case SIGFPE:
        return "SIGFPE";
    case SIGABRT:
        return "SIGABRT";
    default:
        return "signal";
    }
}

void writeShortened(int fd, std::string_view text, std::string_view home) {
    std::size_t written = 0;
    if (home.size() > 1) {
        for (auto at = text.find(home); at != std::string_view::npos; at = text.find(home, at + 1)) {
            const std::size_t end = at + home.size();
            if (end < text.size() && continuesFileName(text[end]))
                continue; // a longer name
            writeAll(fd, text.substr(written, at - written));
            writeAll(fd, "~");
            written = end;
        }
    }
    writeAll(fd, text.substr(written));
}

void writeSignal(int fd, const Crash& crash) {
    Text text;
    text << "Signal:    " << signalName(crash.signal) << " (";
    text.number(static_cast<std::uint64_t>(crash.signal)) << ")";
    if (crash.info && crash.info->si_code > 0)
        (text << ", address ").hex(reinterpret_cast<std::uintptr_t>(crash.info->si_addr));
    else if (crash.info)
        text << (crash.info->si_pid == getpid() ? ", raised by the program" : ", sent by another process");
    text << "\nThread:    " << (gettid() == getpid() ? "main" : "background") << "\n";
    writeAll(fd, text.view());
}

void writeStack(int fd) {
    writeAll(fd, "\nStack:\n");
    const int count = backtrace(stackFrames.data(), static_cast<int>(stackFrames.size()));
    for (int i = 0; i < count; ++i) {
        const void* const frame = stackFrames.at(static_cast<std::size_t>(i));
        const auto address = reinterpret_cast<std::uintptr_t>(frame);
        Dl_info info{};
        Text text;
        if (dladdr(frame, &info) != 0 && info.dli_fname) {
            const std::string_view module(info.dli_fname);
            text << module.substr(module.rfind('/') + 1) << " + ";
            text.hex(address - reinterpret_cast<std::uintptr_t>(info.dli_fbase));
        } else {
            text.hex(address);
        }
        if (info.dli_sname)
            (text << "  " << info.dli_sname << " + ")
                .hex(address - reinterpret_cast<std::uintptr_t>(info.dli_saddr));
        writeAll(fd, text.view());
        writeAll(fd, "\n");
    }
}

/// The last bytes of the file, from the beginning of a line on.
std::string_view endOfLog(const char* path) {
    const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0)
        return {};
    const auto room = static_cast<off_t>(logBytes.size());
    const off_t start = std::max<off_t>(0, status.st_size - room);
    const ssize_t count = pread(file.get(), logBytes.data(), logBytes.size(), start);
    std::string_view lines(logBytes.data(), static_cast<std::size_t>(std::max<ssize_t>(0, count)));
    if (start > 0)
        lines.remove_prefix(std::min(lines.size(), lines.find('\n') + 1));
    return lines;
}

std::string_view lastLines(std::string_view text) {
    std::size_t from = text.ends_with('\n') ? text.size() - 1 : text.size();
    for (int lines = 0; lines < logLines && from != std::string_view::npos; ++lines)
        from = from == 0 ? std::string_view::npos : text.rfind('\n', from - 1);
    return from == std::string_view::npos ? text : text.substr(from + 1);
}

} // namespace

int createCrashReport(const CrashReportSettings& settings, std::time_t time) {
    constexpr int seconds = 10; // a program that is started again after each crash can be quick
    for (int later = 0; later < seconds; ++later) {
        const auto nameWith = [&](std::string_view extension) {
            Text path;
            path << settings.reportsFolder << "/Norvane-";
            appendTime(path, time + later, "-", "");
            return path << extension;
        };
        if (access(nameWith(".ips").path(), F_OK) == 0)
            continue;
        const int file =
            open(nameWith(".crash").path(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file >= 0 || errno != EEXIST)
            return file;
    }
    return -1;
}

void writeCrashReport(int fd, const CrashReportSettings& settings, const Crash& crash) {
    Text text;
    text << "Program:   Norvane\nVersion:   " << settings.version << "\nTime:      ";
    appendTime(text, crash.time, " ", ":");
    text << " +0000\n";
    writeAll(fd, text.view());
    writeSignal(fd, crash);
    if (*crash.exception) {
        writeAll(fd, "Exception: ");
        writeShortened(fd, crash.exception, settings.homeFolder);
        writeAll(fd, "\n");
    }
    // The log first: reading it cannot crash, unwinding a broken stack can.
    writeAll(fd, "\nEvent log:\n");
    writeShortened(fd, lastLines(endOfLog(settings.logFile.c_str())), settings.homeFolder);
    writeStack(fd);
    writeAll(fd, endOfCrashReport);
    fsync(fd);
}

} // namespace norvane
