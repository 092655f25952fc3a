// The crash reports that earlier runs of this program left: finding them, and sending one if the user wants
// to.
#pragma once

#include <string>
#include <vector>

#include "platform/email_composer.h"
#include "platform/file_system.h"
#include "platform/time/clock.h"
#include "platform/user_defaults.h"

namespace norvane {

class CrashReporter {
public:
    /// `reportsFolder`: where crash reports are left; `supportAddress`: who gets them by e-mail. The
    /// interfaces must outlive this object.
    CrashReporter(UserDefaults& defaults, const FileSystem& files, const Clock& clock,
                  EmailComposer& composer, std::string reportsFolder, std::string supportAddress);

    /// Paths of the reports that appeared since the last call, in any run; sorted by file name, so that the
    /// last is the newest. A report is found by one call at most. Lists a folder: background threads only.
    [[nodiscard]] std::vector<std::string> findNewReports() const;

    /// Opens a message with the report attached, for the user to send. Main thread; failure is silent.
    void emailReport(const std::string& path) const;

private:
    UserDefaults& defaults_;
    const FileSystem& files_;
    const Clock& clock_;
    EmailComposer& composer_;
    const std::string reportsFolder_;
    const std::string supportAddress_;
};

} // namespace norvane
