// Which application a process belongs to, by the traces that launchers leave (systemd's "Desktop
// Environments" naming of units; GIO's and Flatpak's notes). All pure; identifiers are desktop-file ids
// without
// ".desktop"; none where there is no trace.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

/// The text of /proc/PID/cgroup: units such as "app-gnome-firefox\x2desr-2211.scope",
/// "app-org.kde.dolphin@8f2.service" or "snap.firefox.firefox-<UUID>.scope".
[[nodiscard]] std::optional<std::string> applicationOfControlGroup(std::string_view cgroup);

/// The text of /proc/PID/environ: GIO_LAUNCHED_DESKTOP_FILE, where it was set for this very process.
[[nodiscard]] std::optional<std::string> applicationOfEnvironment(std::string_view environment,
                                                                  std::string_view processId);

/// The text of a sandbox' .flatpak-info.
[[nodiscard]] std::optional<std::string> applicationOfFlatpakInfo(std::string_view info);

/// Shells, language interpreters and launchers: whoever is started as one of these is another program.
[[nodiscard]] bool startsOtherPrograms(std::string_view executable);

/// What a process may be called: its executable, how it was called, and the script that it interprets. Paths,
/// or names to be looked up in PATH.
[[nodiscard]] std::vector<std::string> programsOfProcess(std::string executable, std::string_view arguments);

} // namespace norvane
