// A program that was started from the medium it was handed out on is to be installed first.
#pragma once

namespace norvane {

/// Tells the user, and nothing else, until they quit; without a display it says so on standard error. The
/// exit status of the process. To be called inside a QGuiApplication.
[[nodiscard]] int runDiskImageAlert();

} // namespace norvane
