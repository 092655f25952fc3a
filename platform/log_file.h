// The file behind the event log.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace norvane {

struct LogFileInfo {
    std::uint64_t size = 0;     ///< Bytes; 0 when there is no file.
    std::uint64_t identity = 0; ///< Another number: another file has taken the place.

    bool operator==(const LogFileInfo&) const = default;
};

class LogFile {
public:
    virtual ~LogFile() = default;

    /// Adds the bytes at the file's end, creating the file if need be. Failure is silent: the bytes are lost.
    virtual void append(std::string_view bytes) = 0;

    /// The file as it is now. Any thread.
    [[nodiscard]] virtual LogFileInfo info() const = 0;

    /// Up to `count` bytes from the offset; fewer where the file ends or cannot be read. Any thread.
    [[nodiscard]] virtual std::string read(std::uint64_t offset, std::size_t count) const = 0;
};

} // namespace norvane
