// Finding the crash reports that earlier runs of this program left.
#pragma once

#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/user_defaults.h"

namespace norvane {

class CrashReporter {
public:
    /// `reportsFolder`: where crash reports are left. The interfaces must outlive this object.
    CrashReporter(UserDefaults& defaults, const FileSystem& files, const Clock& clock,
                  std::string reportsFolder);

    /// Paths of the reports that appeared since the last call, in any run; sorted by file name, so that the
    /// last is the newest. A report is found by one call at most. Lists a folder: background threads only.
    [[nodiscard]] std::vector<std::string> findNewReports() const;

private:
    UserDefaults& defaults_;
    const FileSystem& files_;
    const Clock& clock_;
    const std::string reportsFolder_;
};

} // namespace norvane
