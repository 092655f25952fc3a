// The digits of times, for views.
#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include "ui/kit/controls/clock_digits.h"
#include "ui/kit/view_values.h"

namespace norvane {

/// As in ui/kit/controls/clock_digits.h.
class UiClockDigits : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(ClockDigits)
    QML_SINGLETON

public:
    Q_INVOKABLE [[nodiscard]] static QString hour(int time, bool hours24) {
        return viewText(hourDigits(time, hours24));
    }
    Q_INVOKABLE [[nodiscard]] static QString minute(int time) { return viewText(minuteDigits(time)); }
    Q_INVOKABLE [[nodiscard]] static int withHour(int time, const QString& digits, bool hours24) {
        return withTypedHour(time, digits.toStdString(), hours24);
    }
    Q_INVOKABLE [[nodiscard]] static int withMinute(int time, const QString& digits) {
        return withTypedMinute(time, digits.toStdString());
    }
    Q_INVOKABLE [[nodiscard]] static int withHourStepped(int time, int by) {
        return norvane::withHourStepped(time, by);
    }
    Q_INVOKABLE [[nodiscard]] static int withMinuteStepped(int time, int by) {
        return norvane::withMinuteStepped(time, by);
    }
    Q_INVOKABLE [[nodiscard]] static int inOtherHalf(int time) { return norvane::inOtherHalf(time); }
};

} // namespace norvane
