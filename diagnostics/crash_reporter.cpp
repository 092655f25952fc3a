#include "diagnostics/crash_reporter.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

constexpr auto lastCheckKey = "crashReporter.lastCheck.v1";

bool isOwnReport(std::string_view fileName) {
    constexpr std::string_view extension = ".ips";
    return fileName.starts_with("Norvane") && fileName.ends_with(extension);
}

} // namespace

CrashReporter::CrashReporter(UserDefaults& defaults, const FileSystem& files, const Clock& clock,
                             EmailComposer& composer, std::string reportsFolder, std::string supportAddress)
    : defaults_(defaults), files_(files), clock_(clock), composer_(composer),
      reportsFolder_(std::move(reportsFolder)), supportAddress_(std::move(supportAddress)) {}

std::vector<std::string> CrashReporter::findNewReports() const {
    const Instant lastCheck = defaults_.date(lastCheckKey).value_or(distantPast);
    // Stored before the scan: a scan that fails must not announce the same report at every start.
    defaults_.set(lastCheckKey, {clock_.now()});
    std::vector<std::string> names;
    for (const FolderEntry& entry : files_.list(reportsFolder_).value_or(std::vector<FolderEntry>{}))
        if (isOwnReport(entry.name) && entry.created.value_or(distantPast) > lastCheck)
            names.push_back(entry.name);
    std::sort(names.begin(), names.end());
    for (std::string& name : names)
        name.insert(0, reportsFolder_ + "/");
    return names;
}

void CrashReporter::emailReport(const std::string& path) const {
    composer_.compose(
        {.recipient = supportAddress_,
         .subject = "Norvane crash report",
         .body = "Crash report attached. Add any details about what you were doing when it happened:\n\n",
         .attachment = path});
}

} // namespace norvane
