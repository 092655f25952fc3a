// Everything that the Time Machine pane shows, finished: texts in the user's language, and yes or no.
#pragma once

#include <QMetaType>
#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

#include "platform/formats.h"
#include "platform/translator.h"
#include "timemachine_linux/settings/backup_settings.h"

namespace norvane {

/// An empty text means: nothing to show there.
struct PaneContent {
    Q_GADGET
    QML_ANONYMOUS
    // The backup disk.
    Q_PROPERTY(bool hasDisk MEMBER hasDisk)
    Q_PROPERTY(QString diskName MEMBER diskName)
    Q_PROPERTY(QString diskFolder MEMBER diskFolder)
    Q_PROPERTY(QString diskState MEMBER diskState)
    Q_PROPERTY(bool connected MEMBER connected)
    Q_PROPERTY(QString latestBackup MEMBER latestBackup)
    Q_PROPERTY(bool canBrowse MEMBER canBrowse)
    Q_PROPERTY(QString chooseDisk MEMBER chooseDisk)
    Q_PROPERTY(QStringList notices MEMBER notices)
    // The frequency.
    Q_PROPERTY(int frequency MEMBER frequency)
    Q_PROPERTY(QString frequencyText MEMBER frequencyText)
    Q_PROPERTY(QString frequencyNotice MEMBER frequencyNotice)

public:
    enum Frequency { unset = -1, manually = 0, everyHour = 1 };
    Q_ENUM(Frequency)

    bool hasDisk = false;
    QString diskName;
    QString diskFolder;
    QString diskState;
    bool connected = false;
    QString latestBackup;
    bool canBrowse = false;
    QString chooseDisk; ///< What the button says.
    QStringList notices;
    int frequency = unset;
    QString frequencyText;
    QString frequencyNotice;

    bool operator==(const PaneContent&) const = default;
};

[[nodiscard]] PaneContent paneContent(const BackupSettingsState& state, const Formats& formats,
                                      const Translator& texts);

/// A path or a name: bytes that are no text show as their numbers.
[[nodiscard]] QString shownPath(const std::string& path);
/// The last part of a path.
[[nodiscard]] QString shownName(const std::string& path);

/// Why backups cannot go there; empty: they can.
[[nodiscard]] QString refusalText(const DestinationVerdict& verdict, const Translator& texts);
/// What its owner should know.
[[nodiscard]] QStringList noticeTexts(const DestinationVerdict& verdict, const Translator& texts);
/// In a line below the name: the path and the free space.
[[nodiscard]] QString offerDetails(const DestinationOffer& offer, const Formats& formats,
                                   const Translator& texts);

} // namespace norvane

Q_DECLARE_METATYPE(norvane::PaneContent)
