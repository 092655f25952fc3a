#include "settings_pane/pane_content.h"

#include "timemachine_linux/files/paths.h"
#include "ui/kit/view_values.h"

namespace norvane {

namespace {

/// As people call it.
std::string formatName(const std::string& fileSystem) {
    if (fileSystem == "exfat" || fileSystem == "fuse.exfat")
        return "exFAT";
    return fileSystem == "vfat" || fileSystem == "msdos" || fileSystem == "umsdos" ? "FAT" : fileSystem;
}

int frequencyOf(BackupFrequency frequency) {
    switch (frequency) {
    case BackupFrequency::unknown:
        return PaneContent::unset;
    case BackupFrequency::manual:
        return PaneContent::manually;
    case BackupFrequency::hourly:
    case BackupFrequency::hourlyWithoutTimer:
        return PaneContent::everyHour;
    }
    return PaneContent::unset;
}

const char* frequencyLabel(int frequency) {
    if (frequency == PaneContent::unset)
        return "Back up frequency: not set yet";
    return frequency == PaneContent::manually ? "Back up frequency: Manually"
                                              : "Back up frequency: Automatically every hour";
}

} // namespace

PaneContent paneContent(const BackupSettingsState& state, const Formats& formats, const Translator& texts) {
    const auto text = [&](const char* english) { return viewText(texts.translate(english)); };
    PaneContent content;
    content.chooseDisk = text(state.disk ? "Change Backup Disk…" : "Choose Backup Disk…");
    content.frequency = frequencyOf(state.frequency);
    content.frequencyText = text(frequencyLabel(content.frequency));
    if (state.frequency == BackupFrequency::hourlyWithoutTimer)
        content.frequencyNotice = text("Automatic backups are switched on, but nothing starts them. Choose a "
                                       "frequency again to set this right.");
    if (!state.disk)
        return content;
    const BackupDisk& disk = *state.disk;
    content.hasDisk = true;
    content.diskName = shownPath(disk.name);
    content.diskFolder = shownPath(disk.folder);
    content.connected = disk.connected;
    if (!disk.connected)
        content.diskState = text("Not connected");
    else if (disk.availableBytes)
        content.diskState =
            viewText(fillIn(texts.translate("%@ available"), {formats.byteCount(*disk.availableBytes)}));
    content.latestBackup =
        disk.latestBackup ? viewText(formats.dateAndTime(*disk.latestBackup)) : text("None yet");
    content.canBrowse = !disk.backupsFolder.empty();
    if (const QString refusal = refusalText(disk.verdict, texts); disk.connected && !refusal.isEmpty())
        content.notices.append(refusal);
    content.notices += noticeTexts(disk.verdict, texts);
    return content;
}

QString shownPath(const std::string& path) { return viewText(printable(path)); }

QString shownName(const std::string& path) {
    return path == "/" ? "/" : shownPath(path.substr(path.rfind('/') + 1));
}

QString refusalText(const DestinationVerdict& verdict, const Translator& texts) {
    const auto text = [&](const char* english) { return viewText(texts.translate(english)); };
    switch (verdict.problem) {
    case DestinationProblem::none:
        return {};
    case DestinationProblem::missing:
        return text("This folder does not exist any more.");
    case DestinationProblem::notAFolder:
        return text("This is not a folder.");
    case DestinationProblem::rootFolder:
        return text("The root folder cannot hold backups. Choose a folder in it.");
    case DestinationProblem::unprintable:
        return text("The path of this folder is no readable text. Rename it, or choose another one.");
    case DestinationProblem::isSource:
        return text("This folder is backed up itself, so it cannot hold the backups.");
    case DestinationProblem::insideBackup:
        return text("This folder lies in a backup, which must not change.");
    case DestinationProblem::readOnly:
        return text("This disk can be read, but not written to.");
    case DestinationProblem::notWritable:
        return text("You may not write to this folder.");
    case DestinationProblem::noHardLinks:
        return viewText(
            fillIn(texts.translate("%@ disks cannot hold backups: they lack the hard links by which backups "
                                   "share unchanged files. Format it as ext4, for example."),
                   {formatName(verdict.fileSystem)}));
    }
    return {};
}

QStringList noticeTexts(const DestinationVerdict& verdict, const Translator& texts) {
    QStringList notices;
    const auto notice = [&](const char* english, const std::string& folder) {
        if (!folder.empty())
            notices.append(viewText(fillIn(texts.translate(english), {printable(folder)})));
    };
    notice("This folder lies in “%@”, which is backed up. Backups leave it out.", verdict.insideSource);
    notice("This is on the same disk as “%@”. If that disk fails, the backups are lost with it.",
           verdict.sharesDiskWith);
    return notices;
}

QString offerDetails(const DestinationOffer& offer, const Formats& formats, const Translator& texts) {
    std::string details = printable(offer.folder);
    if (offer.availableBytes)
        details +=
            " — " + fillIn(texts.translate("%@ available"), {formats.byteCount(*offer.availableBytes)});
    return viewText(details);
}

} // namespace norvane
