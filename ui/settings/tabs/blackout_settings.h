// The Blackouts tab without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <functional>

#include "controller/backup_controller.h"
#include "ui/kit/debouncer.h"
#include "ui/kit/row_list.h"

namespace norvane {

/// Main thread only. Edits reach the controller after a quiet moment. Times are minutes since midnight, days
/// a mask with Sunday as bit 0; a position that does not exist changes nothing.
class BlackoutSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    /// "days", "start", "end", "crossesMidnight".
    Q_PROPERTY(QObject* windows READ windows CONSTANT)

public:
    BlackoutSettings(BackupController& controller, Timers& timers);

    /// The tab appears: it shows what the controller holds, unless an edit is still on its way there.
    void load();

    [[nodiscard]] QAbstractItemModel* windows() { return &windows_; }

    Q_INVOKABLE void setDays(int position, int days);
    Q_INVOKABLE void setStart(int position, int time);
    Q_INVOKABLE void setEnd(int position, int time);
    Q_INVOKABLE void add();
    Q_INVOKABLE void remove(int position);

private:
    void edit(int position, const std::function<void(BlackoutWindow&)>& change);
    void take(std::vector<BlackoutWindow> blackouts);
    void save();

    BackupController& controller_;
    Debouncer debouncer_;
    std::vector<BlackoutWindow> blackouts_;
    bool loaded_ = false;
    RowList windows_{{"days", "start", "end", "crossesMidnight"}};
};

} // namespace norvane
