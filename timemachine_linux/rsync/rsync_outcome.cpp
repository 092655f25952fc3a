#include "timemachine_linux/rsync/rsync_outcome.h"

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

bool fromSendingSide(std::string_view line) { return line.starts_with("rsync: [sender]"); }

template <std::size_t size>
bool endsWithOneOf(std::string_view line, const std::array<int, size>& numbers) {
    return std::any_of(numbers.begin(), numbers.end(),
                       [&](int number) { return endsWithError(line, number); });
}

bool saysFull(std::string_view line) {
    constexpr std::array full{28, 122}; // ENOSPC EDQUOT
    return fromReceivingSide(line) && endsWithOneOf(line, full);
}

bool saysFailing(std::string_view line) {
    constexpr std::array deviceErrors{5,   6,   19, 30,
                                      107, 116, 117}; // EIO ENXIO ENODEV EROFS ENOTCONN ESTALE EUCLEAN
    return fromReceivingSide(line) && endsWithOneOf(line, deviceErrors);
}

// The data of a file is there, and the destination cannot keep something about it: an access control list, an
// extended attribute, an owner that only root may give, a device or socket. The words are those of rsync 3.2.
bool saysNotKept(std::string_view line) {
    constexpr std::array<std::string_view, 6> steps{
        "set_acl: ", "rsync_xal_set: ", "rsync_xal_clear: ", "chown ", "chgrp ", "mknod "};
    constexpr std::array refusals{1, 7, 22, 38, 95}; // EPERM E2BIG EINVAL ENOSYS EOPNOTSUPP
    if (!fromReceivingSide(line) || !endsWithOneOf(line, refusals))
        return false;
    const std::string_view step = line.substr(line.find("] ") + 2);
    return std::any_of(steps.begin(), steps.end(),
                       [&](std::string_view known) { return step.starts_with(known); });
}

// rsync says these two of the folders it was told to copy, never of what lies in them.
bool missesSource(std::string_view line) {
    return line.starts_with("rsync: [sender] link_stat ") || line.starts_with("rsync: [sender] change_dir");
}

bool saysSourceFailing(std::string_view line) {
    constexpr std::array deviceErrors{5, 6, 19, 107, 116}; // EIO ENXIO ENODEV ENOTCONN ESTALE
    return fromSendingSide(line) && endsWithOneOf(line, deviceErrors);
}

bool isSummary(std::string_view line) {
    return line.empty() || line.starts_with("rsync error:") || line.starts_with("rsync warning:");
}

const std::string* firstLine(const std::vector<std::string>& lines, bool (*matches)(std::string_view)) {
    const auto found =
        std::find_if(lines.begin(), lines.end(), [&](const auto& line) { return matches(line); });
    return found == lines.end() ? nullptr : &*found;
}

RsyncOutcome failedBy(BackupFailure failure) { return {std::move(failure), {}}; }

} // namespace

bool isFatal(std::string_view line) {
    return (fromReceivingSide(line) && !saysNotKept(line)) || missesSource(line) || saysSourceFailing(line);
}

RsyncOutcome judgeRsyncExit(const RsyncExit& exit, bool stopRequested) {
    if (exit.status == 0)
        return {};
    if (const std::string* line = firstLine(exit.errors, saysFull))
        return failedBy({ResultCode::destinationFull, *line});
    if (const std::string* line = firstLine(exit.errors, saysFailing))
        return failedBy({ResultCode::destinationFailing, *line});
    const bool partial = exit.status == partialTransfer || exit.status == sourceFilesVanished;
    const std::string* line = firstLine(exit.errors, isFatal);
    if (partial && !line && !exit.errors.empty()) {
        RsyncOutcome outcome;
        std::copy_if(exit.errors.begin(), exit.errors.end(), std::back_inserter(outcome.notes),
                     [](const std::string& text) { return !isSummary(text) && !fromReceivingSide(text); });
        return outcome;
    }
    if (stopRequested)
        return failedBy({ResultCode::stopped, "The backup was stopped."});
    if (!line)
        line = firstLine(exit.errors, [](std::string_view text) { return !isSummary(text); });
    return failedBy({ResultCode::copyFailed, "rsync ended with status " + std::to_string(exit.status) +
                                                 (line ? ": " + *line : std::string())});
}

} // namespace norvane
