// The Schedule tab without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include "controller/backup_controller.h"
#include "ui/kit/debouncer.h"
#include "ui/kit/row_list.h"
#include "ui/settings/tabs/schedule_edit.h"

namespace norvane {

/// Main thread only. Edits reach the controller after a quiet moment. Times are minutes since midnight, days
/// a mask with Sunday as bit 0; a position that does not exist changes nothing.
class ScheduleSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(int mode READ mode WRITE setMode NOTIFY changed) ///< A Mode.
    Q_PROPERTY(QStringList modes READ modes CONSTANT)           ///< Their names, for a picker.
    Q_PROPERTY(double hours READ hours WRITE setHours NOTIFY changed)
    Q_PROPERTY(QString hoursText READ hoursText NOTIFY changed)
    Q_PROPERTY(QObject* times READ times CONSTANT)           ///< "time".
    Q_PROPERTY(QObject* weeklyRows READ weeklyRows CONSTANT) ///< "days", "time".

public:
    enum Mode {
        Interval = static_cast<int>(ScheduleEdit::Mode::interval),
        Daily = static_cast<int>(ScheduleEdit::Mode::daily),
        Weekly = static_cast<int>(ScheduleEdit::Mode::weekly),
    };
    Q_ENUM(Mode)

    ScheduleSettings(BackupController& controller, Timers& timers, const Translator& texts);

    /// The tab appears: it shows what the controller holds, unless an edit is still on its way there.
    void load();

    [[nodiscard]] int mode() const { return static_cast<int>(edit_.mode); }
    void setMode(int mode);
    [[nodiscard]] QStringList modes() const;
    [[nodiscard]] double hours() const { return edit_.hours; }
    void setHours(double hours);
    [[nodiscard]] QString hoursText() const;
    [[nodiscard]] QAbstractItemModel* times() { return &times_; }
    [[nodiscard]] QAbstractItemModel* weeklyRows() { return &weeklyRows_; }

    Q_INVOKABLE void setTime(int position, int time);
    Q_INVOKABLE void addTime();
    Q_INVOKABLE void removeTime(int position);
    Q_INVOKABLE void setRowDays(int position, int days);
    Q_INVOKABLE void setRowTime(int position, int time);
    Q_INVOKABLE void addRow();
    Q_INVOKABLE void removeRow(int position);

Q_SIGNALS:
    void changed();

private:
    void take(ScheduleEdit edit);
    void show();
    void save();

    BackupController& controller_;
    const Translator& texts_;
    Debouncer debouncer_;
    ScheduleEdit edit_;
    bool loaded_ = false;
    RowList times_{{"time"}};
    RowList weeklyRows_{{"days", "time"}};
};

} // namespace norvane
