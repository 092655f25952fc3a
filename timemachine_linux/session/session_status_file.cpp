#include "timemachine_linux/session/session_status_file.h"

#include <algorithm>
#include <unistd.h>

#include "platform/linux/files/small_file.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

SessionStatusFile::SessionStatusFile(const Clock& clock, std::string path)
    : clock_(clock), path_(std::move(path)) {}

SessionStatusFile::~SessionStatusFile() { ::unlink(path_.c_str()); }

void SessionStatusFile::setDestination(const std::string& id, const std::string& mountPoint) {
    state_.destinationId = id;
    state_.mountPoint = mountPoint;
}

void SessionStatusFile::enter(const char* phase) {
    state_.phase = phase;
    state_.dateOfStateChange = clock_.now();
    write();
}

void SessionStatusFile::setTotals(std::int64_t bytes, std::int64_t files) {
    state_.progress = CopyProgress{0, 0, bytes, files, std::nullopt};
}

void SessionStatusFile::setCopied(std::int64_t bytes, std::int64_t files) {
    if (!state_.progress)
        return;
    CopyProgress& progress = *state_.progress;
    progress.bytes = std::min(bytes, progress.totalBytes);
    progress.files = std::min(files, progress.totalFiles);
    constexpr double shortestIntervalSeconds = 0.25;
    const Instant now = clock_.now();
    const double sinceWrite = secondsBetween(lastWrite_, now);
    if (sinceWrite >= 0 && sinceWrite < shortestIntervalSeconds)
        return;
    progress.secondsRemaining =
        estimateSecondsRemaining(progress, secondsBetween(state_.dateOfStateChange, now));
    write();
}

void SessionStatusFile::setStopping() {
    state_.stopping = true;
    write();
}

void SessionStatusFile::write() {
    lastWrite_ = clock_.now();
    replaceFile(path_, writeXmlPropertyList(statusOf(state_)));
}

} // namespace norvane
