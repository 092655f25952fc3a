#include "timemachine_linux/rsync_outcome.h"

#include <algorithm>
#include <array>

namespace norvane {
namespace {

constexpr int partialTransfer = 23;
constexpr int sourceFilesVanished = 24;

// rsync ends a message about a failed system call with the errno in parentheses, and names the process that
// met it; a file's name can imitate neither at both ends of the line.
bool endsWithError(std::string_view line, int number) {
    std::string ending(1, '(');
    ending += std::to_string(number);
    ending += ')';
    return line.ends_with(ending);
}

bool fromReceivingSide(std::string_view line) {
    return line.starts_with("rsync: [receiver]") || line.starts_with("rsync: [generator]");
}

bool saysFull(std::string_view line) {
    constexpr int noSpace = 28;
    constexpr int quotaExceeded = 122;
    return fromReceivingSide(line) && (endsWithError(line, noSpace) || endsWithError(line, quotaExceeded));
}

bool saysFailing(std::string_view line) {
    constexpr std::array deviceErrors{5,   6,   19, 30,
                                      107, 116, 117}; // EIO ENXIO ENODEV EROFS ENOTCONN ESTALE EUCLEAN
    return fromReceivingSide(line) && std::any_of(deviceErrors.begin(), deviceErrors.end(),
                                                  [&](int number) { return endsWithError(line, number); });
}

bool isSummary(std::string_view line) {
    return line.empty() || line.starts_with("rsync error:") || line.starts_with("rsync warning:");
}

const std::string* firstLine(const std::vector<std::string>& lines, bool (*matches)(std::string_view)) {
    const auto found =
        std::find_if(lines.begin(), lines.end(), [&](const auto& line) { return matches(line); });
    return found == lines.end() ? nullptr : &*found;
}

} // namespace

RsyncOutcome judgeRsyncExit(const RsyncExit& exit, bool stopRequested) {
    if (exit.status == 0)
        return {};
    if (const std::string* line = firstLine(exit.errors, saysFull))
        return {ResultCode::destinationFull, *line, {}};
    if (const std::string* line = firstLine(exit.errors, saysFailing))
        return {ResultCode::destinationFailing, *line, {}};
    if (exit.status == partialTransfer || exit.status == sourceFilesVanished) {
        RsyncOutcome outcome;
        std::copy_if(exit.errors.begin(), exit.errors.end(), std::back_inserter(outcome.notes),
                     [](const std::string& line) { return !isSummary(line); });
        return outcome;
    }
    if (stopRequested)
        return {ResultCode::stopped, "The backup was stopped.", {}};
    const std::string* line = firstLine(exit.errors, [](std::string_view text) { return !isSummary(text); });
    return {ResultCode::copyFailed,
            "rsync ended with status " + std::to_string(exit.status) + (line ? ": " + *line : std::string()),
            {}};
}

} // namespace norvane
