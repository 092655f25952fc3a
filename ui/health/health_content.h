// Everything that the Health window shows, finished: texts in the user's language, places and yes or no.
#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <QtQmlIntegration>

#include "controller/controller_state.h"
#include "platform/formats.h"
#include "platform/translator.h"
#include "scheduler_core/calendar.h"
#include "ui/kit/theme.h"

namespace norvane {

/// One figure. An empty detail is not shown.
struct StatTile {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(bool hasFraction READ hasFraction)
    Q_PROPERTY(double fraction READ shownFraction)
    Q_PROPERTY(bool warns READ warns)

public:
    QString title;
    QString value;
    QString detail;
    std::optional<double> fraction; ///< 0 to 1; none: no bar.
    std::optional<double> warnAbove;

    [[nodiscard]] bool hasFraction() const { return fraction.has_value(); }
    [[nodiscard]] double shownFraction() const { return fraction.value_or(0); }
    /// The bar has reached the limit.
    [[nodiscard]] bool warns() const { return fraction && warnAbove && *fraction >= *warnAbove; }

    bool operator==(const StatTile&) const = default;
};

/// All but the text that changes with the time.
struct HealthContent {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(norvane::Theme::Tint tint MEMBER tint)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(bool loading MEMBER loading)
    Q_PROPERTY(QVariantList tiles MEMBER tiles)
    Q_PROPERTY(QVariantMap chart MEMBER chart)
    Q_PROPERTY(QVariantList attempts MEMBER attempts)
    Q_PROPERTY(QString coffee MEMBER coffee)

public:
    QString symbol;
    Tint tint = Tint::green;
    QString title;
    bool loading = true; ///< Nothing below is known yet.
    QVariantList tiles;  ///< Four StatTiles.
    /// Empty without attempts. "bars": maps of "position", "height", "success", "text"; "dateMarks" and
    /// "minuteMarks": maps of "position", "label"; "crossHeight". All positions and heights from 0 to 1.
    QVariantMap chart;
    QVariantList attempts; ///< The latest, newest first: maps of "success", "date", "result".
    QString coffee;        ///< Empty: not offered.

    bool operator==(const HealthContent&) const = default;
};

[[nodiscard]] HealthContent healthContent(const ControllerState& state, const Calendar& calendar,
                                          const Formats& formats, const Translator& texts);

/// When the last backup was, as told at `now`.
[[nodiscard]] QString lastVerifiedBackup(const ControllerState& state, Instant now, const Formats& formats,
                                         const Translator& texts);

/// "89 sec", "2 min".
[[nodiscard]] std::string durationText(double seconds, const Translator& texts);

/// The median, in seconds (of an even number the upper one); none without any duration.
[[nodiscard]] std::optional<double> typicalDuration(const std::vector<HealthData::Attempt>& attempts);

} // namespace norvane

Q_DECLARE_METATYPE(norvane::StatTile)
Q_DECLARE_METATYPE(norvane::HealthContent)
