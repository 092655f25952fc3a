// Everything that the panel shows, finished: texts in the user's language, and yes or no.
#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include "controller/controller_state.h"
#include "platform/formats.h"
#include "platform/translator.h"
#include "ui/kit/theme.h"

namespace norvane {

/// An empty text means: nothing to show there.
struct PanelContent {
    Q_GADGET
    QML_ANONYMOUS
    // The header.
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(norvane::Theme::Tint tint MEMBER tint)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    // The running backup.
    Q_PROPERTY(bool running MEMBER running)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(QString progressText MEMBER progressText)
    Q_PROPERTY(QString timeLeft MEMBER timeLeft)
    // The notices.
    Q_PROPERTY(bool stalled MEMBER stalled)
    Q_PROPERTY(QString willBackUpBy MEMBER willBackUpBy)
    Q_PROPERTY(QString deferredFrom MEMBER deferredFrom)
    Q_PROPERTY(bool skipArmed MEMBER skipArmed)
    Q_PROPERTY(bool catchUpPending MEMBER catchUpPending)
    Q_PROPERTY(QString runsBy MEMBER runsBy)
    Q_PROPERTY(bool crashed MEMBER crashed)
    Q_PROPERTY(bool autoBackupOn MEMBER autoBackupOn)
    // The facts.
    Q_PROPERTY(QString schedule MEMBER schedule)
    Q_PROPERTY(QString lastBackup MEMBER lastBackup)
    Q_PROPERTY(QString destination MEMBER destination)
    // The actions.
    Q_PROPERTY(QString backUpSymbol MEMBER backUpSymbol)
    Q_PROPERTY(QString backUpLabel MEMBER backUpLabel)
    Q_PROPERTY(bool canSkip MEMBER canSkip)
    Q_PROPERTY(bool paused MEMBER paused)
    Q_PROPERTY(QString lastEvent MEMBER lastEvent)

public:
    QString symbol;
    Tint tint = Tint::secondary;
    QString title;
    QString subtitle;
    bool running = false;
    double progress = -1; ///< 0 to 1; below 0: not known.
    QString progressText;
    QString timeLeft;
    bool stalled = false;
    QString willBackUpBy;
    QString deferredFrom;
    bool skipArmed = false;
    bool catchUpPending = false;
    QString runsBy;
    bool crashed = false;
    bool autoBackupOn = false;
    QString schedule;
    QString lastBackup;
    QString destination;
    QString backUpSymbol;
    QString backUpLabel;
    bool canSkip = false;
    bool paused = false;
    QString lastEvent;

    bool operator==(const PanelContent&) const = default;
};

/// How finely relative times are told: to the second where they are seen passing, or in begun minutes where
/// a text stays as it is for a while.
enum class TimeGrain { second, minute };

/// Relative times are those at `now`.
[[nodiscard]] PanelContent panelContent(const ControllerState& state, Instant now, const Formats& formats,
                                        const Translator& texts, TimeGrain grain = TimeGrain::second);

/// What happens to backups when the program quits.
[[nodiscard]] QString quitMessage(const ControllerState& state, const Translator& texts);

} // namespace norvane

Q_DECLARE_METATYPE(norvane::PanelContent)
