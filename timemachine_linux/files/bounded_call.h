// Asking a file system that may never answer.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace norvane {

/// Runs `question` in a child process and returns the text it gave; none when it gave none or did not end in
/// time. A thread would not do: a process cannot end while one of its threads is stuck in a dead file system.
/// The child has none of the caller's files open. `question` must neither throw nor touch anything but files.
/// The caller has no other threads.
[[nodiscard]] std::optional<std::string>
callBounded(double timeoutSeconds, const std::function<std::optional<std::string>()>& question);

} // namespace norvane
