// Reading `rsync --info=progress2 --no-h`. Pure. Format: rsync(1), --progress and --info.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace norvane {

struct RsyncProgress {
    std::int64_t bytes = 0;            ///< Of the files transferred so far, the one under way included.
    std::optional<std::int64_t> files; ///< Transferred so far; a line within a file does not tell.

    bool operator==(const RsyncProgress&) const = default;
};

/// None: the text is no progress line.
[[nodiscard]] std::optional<RsyncProgress> parseRsyncProgressLine(std::string_view line);

/// Turns the stream, cut anywhere, into figures that never go back.
class RsyncProgressReader {
public:
    /// True: the figures have changed.
    bool feed(std::string_view bytes);

    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    [[nodiscard]] std::int64_t files() const { return files_; }

private:
    std::string line_;
    std::int64_t bytes_ = 0;
    std::int64_t files_ = 0;
};

} // namespace norvane
