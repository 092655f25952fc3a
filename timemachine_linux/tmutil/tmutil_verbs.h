// What `tmutil` can be asked: one verb, one function.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// Exit statuses; the one for a wrong command line is EX_USAGE of sysexits.h.
inline constexpr int exitSuccess = 0;
inline constexpr int exitFailure = 1;
inline constexpr int exitUsage = 64;

/// The verbs about local snapshots take a volume. "/", a Mac's one volume with the user's files, stands for
/// every Btrfs subvolume that holds a source, wherever it is mounted; any other path for the subvolume that
/// holds it.
///
/// Runs the verb with its arguments; answers go to standard output, complaints to standard error. The exit
/// status.
int runVerb(std::string_view verb, const std::vector<std::string>& arguments);

/// The text of `tmutil help`.
[[nodiscard]] std::string usageText();

} // namespace norvane
