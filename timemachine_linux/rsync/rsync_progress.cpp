#include "timemachine_linux/rsync/rsync_progress.h"

#include <algorithm>
#include <charconv>

namespace norvane {

namespace {

constexpr std::size_t longestLine = 512; // a progress line has about 80 characters

std::optional<std::int64_t> leadingNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 0 ||
        (end != text.data() + text.size() && *end != ' ' && *end != ','))
        return std::nullopt;
    return number;
}

} // namespace

std::optional<RsyncProgress> parseRsyncProgressLine(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto bytes = leadingNumber(line);
    if (!bytes || line.find('%') == std::string_view::npos)
        return std::nullopt;
    RsyncProgress progress{*bytes, std::nullopt};
    constexpr std::string_view mark = "(xfr#";
    if (const std::size_t start = line.find(mark); start != std::string_view::npos)
        progress.files = leadingNumber(line.substr(start + mark.size()));
    return progress;
}

bool RsyncProgressReader::feed(std::string_view bytes) {
    bool changed = false;
    for (const char c : bytes) {
        if (c != '\r' && c != '\n') {
            if (line_.size() < longestLine)
                line_ += c;
            continue;
        }
        if (const auto progress = parseRsyncProgressLine(line_)) {
            const std::int64_t files = progress->files.value_or(files_);
            changed = changed || progress->bytes > bytes_ || files > files_;
            bytes_ = std::max(bytes_, progress->bytes);
            files_ = std::max(files_, files);
        }
        line_.clear();
    }
    return changed;
}

} // namespace norvane
