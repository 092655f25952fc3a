#include "timemachine_linux/session/backup_session_state.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "platform/linux/files/small_file.h"
#include "platform/text/property_list_xml.h"
#include "timemachine_linux/files/file_lock.h"

namespace norvane {

namespace {

std::string decimal(double fraction) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4f", fraction);
    return text.data();
}

// Time Machine prints -1 as long as it cannot tell.
std::string percentOf(const BackupSessionState& state) {
    return state.progress ? decimal(state.progress->fraction()) : "-1";
}

PropertyList::Dictionary progressDictionary(const CopyProgress& progress) {
    PropertyList::Dictionary dictionary{
        {"Percent", {decimal(progress.fraction())}},
        {"bytes", {progress.bytes}},
        {"files", {progress.files}},
        {"totalBytes", {progress.totalBytes}},
        {"totalFiles", {progress.totalFiles}},
    };
    if (progress.secondsRemaining)
        dictionary["TimeRemaining"] = {std::int64_t{std::llround(*progress.secondsRemaining)}};
    return dictionary;
}

} // namespace

SessionFiles::SessionFiles(const std::string& stateFolder)
    : folder(stateFolder), runLock(folder + "/backup.lock"), copyLock(folder + "/copy.lock"),
      status(folder + "/status.plist"), filter(folder + "/filter"), leftover(folder + "/leftover.plist"),
      log(folder + "/backup.log") {}

double CopyProgress::fraction() const {
    if (totalBytes > 0)
        return std::clamp(static_cast<double>(bytes) / static_cast<double>(totalBytes), 0.0, 1.0);
    if (totalFiles > 0)
        return std::clamp(static_cast<double>(files) / static_cast<double>(totalFiles), 0.0, 1.0);
    return 0;
}

double BackupSessionState::fractionOfProgressBar() const {
    constexpr double copyBegins = 0.05;
    constexpr double copyEnds = 0.95;
    if (phase == phase::finishing || phase == phase::thinningAfter)
        return copyEnds;
    if (phase == phase::copying)
        return copyBegins + (copyEnds - copyBegins) * (progress ? progress->fraction() : 0);
    return 0;
}

PropertyList statusOf(const BackupSessionState& state) {
    PropertyList::Dictionary status{
        {"BackupPhase", {state.phase}},
        {"ClientID", {std::string("com.apple.backupd")}},
        {"DateOfStateChange", {state.dateOfStateChange}},
        {"DestinationID", {state.destinationId}},
        {"DestinationMountPoint", {state.mountPoint}},
        {"FractionOfProgressBar", {decimal(state.fractionOfProgressBar())}},
        {"Percent", {percentOf(state)}},
        {"Running", {std::int64_t{1}}},
        {"Stopping", {std::int64_t{state.stopping}}},
    };
    if (state.progress)
        status["Progress"] = {progressDictionary(*state.progress)};
    return {std::move(status)};
}

PropertyList idleStatus() {
    return {PropertyList::Dictionary{{"ClientID", {std::string("com.apple.backupd")}},
                                     {"Percent", {std::string("-1")}},
                                     {"Running", {std::int64_t{0}}}}};
}

std::optional<double> estimateSecondsRemaining(const CopyProgress& progress, double elapsedSeconds) {
    constexpr double shortestSampleSeconds = 2;
    constexpr double bytesPerFile = 16384; // what a disk could have written while it makes one file
    const auto work = [&](std::int64_t bytes, std::int64_t files) {
        return static_cast<double>(bytes) + bytesPerFile * static_cast<double>(files);
    };
    const double done = work(progress.bytes, progress.files);
    const double total = work(progress.totalBytes, progress.totalFiles);
    if (elapsedSeconds < shortestSampleSeconds || done <= 0 || total <= done)
        return std::nullopt;
    return elapsedSeconds * (total - done) / done;
}

PropertyList currentStatus(const SessionFiles& files) {
    if (!FileLock::isHeld(files.runLock))
        return idleStatus();
    if (auto stored = parseXmlPropertyList(readSmallFile(files.status)))
        return *stored;
    // A worker has just taken the lock and has not said anything yet.
    return {PropertyList::Dictionary{{"BackupPhase", {std::string(phase::starting)}},
                                     {"ClientID", {std::string("com.apple.backupd")}},
                                     {"Percent", {std::string("-1")}},
                                     {"Running", {std::int64_t{1}}},
                                     {"Stopping", {std::int64_t{0}}}}};
}

} // namespace norvane
