#include "platform/simulated/simulated_time_machine.h"

#include <algorithm>
#include <utility>

#include "platform/text/property_list_scalars.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

namespace {

constexpr double answerSeconds = 0.02;

PropertyList dateList(const std::vector<Instant>& dates) {
    PropertyList::Array list;
    for (Instant date : dates)
        list.push_back({date});
    return {list};
}

/// Time Machine thins what it keeps; here the oldest go.
void keepNewest(std::vector<Instant>& dates, Instant newest) {
    constexpr std::size_t kept = 2;
    if (dates.size() >= kept)
        dates.erase(dates.begin());
    dates.push_back(newest);
}

} // namespace

std::optional<CommandResult> SimulatedTimeMachine::run(const std::string& executablePath,
                                                       const std::vector<std::string>& arguments,
                                                       double /*timeoutSeconds*/) const {
    time_.spend(answerSeconds);
    statusQueries += arguments.front() == "status" ? 1 : 0;
    if (toolsMissing)
        return std::nullopt;
    catchUp();
    if (executablePath.ends_with("/defaults"))
        return defaults(arguments);
    if (arguments.front() == "deletelocalsnapshots" && arguments.size() == 2)
        return deleteLocalSnapshot(arguments[1]);
    if (arguments.front() != "status")
        commands.push_back("tmutil " + arguments.front());
    return tmutil(arguments.front());
}

CommandResult SimulatedTimeMachine::tmutil(const std::string& verb) const {
    if (verb == "status")
        return {0, statusText(), ""};
    if (verb == "destinationinfo")
        return name ? CommandResult{0, destinationText(), ""}
                    : CommandResult{1, "", "tmutil: No destinations configured.\n"};
    if (verb == "startbackup") {
        if (startsWith)
            return *startsWith;
        if (startsBackups)
            begin();
        return {};
    }
    if (verb == "stopbackup") {
        if (!ignoresStop)
            stopsAt_ = plusSeconds(time_.now(), stopSeconds);
        catchUp();
        return {};
    }
    if (verb == "listlocalsnapshots")
        return {0, localSnapshotsText(), ""};
    return {64, "", "tmutil: unknown verb\n"};
}

CommandResult SimulatedTimeMachine::deleteLocalSnapshot(const std::string& token) const {
    commands.push_back("tmutil deletelocalsnapshots " + token);
    if (undeletable.contains(token) || std::erase(localSnapshots, token) == 0)
        return {1, "", "tmutil: the snapshot could not be deleted\n"};
    return {};
}

CommandResult SimulatedTimeMachine::defaults(const std::vector<std::string>& arguments) const {
    if (!preferencesReadable)
        return {1, "", "could not be read\n"};
    if (arguments.front() == "read")
        return {0, autoBackup ? "1\n" : "0\n", ""};
    return {0, preferencesText(), ""};
}

void SimulatedTimeMachine::begin() const {
    if (startedAt_)
        return;
    startedAt_ = time_.now();
    stopsAt_.reset();
    keepNewest(attemptDates, *startedAt_);
}

bool SimulatedTimeMachine::running() const {
    catchUp();
    return startedAt_.has_value();
}

/// Ends a backup that was stopped, or whose time has passed, and tells of a snapshot once its time has come.
void SimulatedTimeMachine::catchUp() const {
    if (stopsAt_ && *stopsAt_ <= time_.now()) {
        stopsAt_.reset();
        startedAt_.reset();
    }
    if (startedAt_ && !stallsAt && secondsBetween(*startedAt_, time_.now()) >= backupSeconds) {
        const Instant end = plusSeconds(*startedAt_, backupSeconds);
        if (leavesSnapshots)
            lateSnapshot_ = {end, plusSeconds(end, snapshotDelaySeconds)};
        startedAt_.reset();
    }
    if (lateSnapshot_ && lateSnapshot_->toldFrom <= time_.now()) {
        keepNewest(usesSecondDestination && secondSnapshotDates ? *secondSnapshotDates : snapshotDates,
                   lateSnapshot_->date);
        lateSnapshot_.reset();
    }
}

std::string SimulatedTimeMachine::statusText() const {
    if (!startedAt_)
        return "Backup session status:\n{\n    ClientID = \"com.apple.backupd\";\n    Running = 0;\n}\n";
    const double fraction = std::clamp(secondsBetween(*startedAt_, time_.now()) / backupSeconds, 0.0, 1.0);
    auto bytes = static_cast<std::int64_t>(fraction * static_cast<double>(backupBytes));
    bytes = std::min(bytes, stallsAt.value_or(bytes));
    const auto remaining = static_cast<std::int64_t>(backupSeconds * (1 - fraction));
    if (!tellsProgress)
        return "Backup session status:\n{\n    BackupPhase = " + phase + ";\n    Running = 1;\n}\n";
    return "Backup session status:\n{\n    BackupPhase = " + phase +
           ";\n    ClientID = \"com.apple.backupd\";\n"
           "    Percent = \"" +
           realText(fraction) +
           "\";\n    Progress =     {\n        TimeRemaining = " + std::to_string(remaining) +
           ";\n        bytes = " + std::to_string(bytes) +
           ";\n        totalBytes = " + std::to_string(backupBytes) + ";\n    };\n    Running = 1;\n}\n";
}

std::string SimulatedTimeMachine::destinationText() const {
    std::string text = "====================================================\n";
    text += "Name          : " + *name + "\nKind          : " + kind + "\n";
    if (!url.empty())
        text += "URL           : " + url + "\n";
    if (mounted)
        text += "Mount Point   : " + mountPoint + "\n";
    return text + "ID            : 0C2A86A8-5C8C-4F5F-93C4-2C2D4B1F4E11\n";
}

std::string SimulatedTimeMachine::localSnapshotsText() const {
    std::string text = "Snapshots for disk /:\n";
    for (const std::string& token : localSnapshots)
        text += "com.apple.TimeMachine." + token + ".local\n";
    return text;
}

PropertyList SimulatedTimeMachine::destinationEntry(const std::vector<Instant>& snapshots) const {
    PropertyList::Array parameters;
    for (const std::string& parameter : messageParameters)
        parameters.push_back({parameter});
    return {PropertyList::Dictionary{{"SnapshotDates", dateList(snapshots)},
                                     {"AttemptDates", dateList(attemptDates)},
                                     {"BytesUsed", {bytesUsed}},
                                     {"BytesAvailable", {bytesAvailable}},
                                     {"RESULT", {result}},
                                     {"MessageParameters", {parameters}}}};
}

std::string SimulatedTimeMachine::preferencesText() const {
    // Asked for a hundred thousand times a simulated year, and seldom changed in between.
    const auto now = std::tie(name, snapshotDates, attemptDates, secondSnapshotDates, bytesUsed,
                              bytesAvailable, result, messageParameters, autoBackup);
    if (!preferencesText_.empty() && preferences_ == now)
        return preferencesText_;
    PropertyList::Dictionary preferences = {{"AutoBackup", {autoBackup}}};
    if (name) {
        PropertyList::Array destinations = {destinationEntry(snapshotDates)};
        if (secondSnapshotDates)
            destinations.push_back(destinationEntry(*secondSnapshotDates));
        preferences["Destinations"] = {std::move(destinations)};
    }
    preferences_ = now;
    preferencesText_ = writeXmlPropertyList({std::move(preferences)}, PlistDatePrecision::wholeSeconds);
    return preferencesText_;
}

} // namespace norvane
