// The Activity tab without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <memory>
#include <optional>
#include <vector>

#include "platform/background.h"
#include "platform/formats.h"
#include "platform/log_file.h"
#include "platform/time/timers.h"
#include "platform/translator.h"
#include "ui/kit/row_list.h"
#include "ui/settings/tabs/log_look.h"

namespace norvane {

class LogFollower;

/// Main thread only. The log is read in the background; what was read stays when the tab is left.
class ActivityList : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(bool loaded READ loaded NOTIFY changed) ///< The log was read at least once.
    /// Newest first: "symbol", "tint", "message", "date".
    Q_PROPERTY(QObject* entries READ entries CONSTANT)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)

public:
    /// `log` must outlive every background work.
    ActivityList(const LogFile& log, Timers& timers, Background& background, const Formats& formats,
                 const Translator& texts);
    ~ActivityList() override;

    /// While the tab is shown the log is looked at every 5 seconds, and right now.
    void appear();
    void disappear() { timer_.reset(); }

    [[nodiscard]] bool loaded() const { return loaded_; }
    [[nodiscard]] QAbstractItemModel* entries() { return &entries_; }
    [[nodiscard]] QString countText() const;

Q_SIGNALS:
    void changed();

private:
    struct Row;
    using Rows = std::optional<std::vector<Row>>; // none: the log has not changed
    [[nodiscard]] static Rows readOn(LogFollower& follower, bool appeared);
    void check(bool appeared = false);
    void show(const std::vector<Row>& rows);

    Timers& timers_;
    Background& background_;
    const Formats& formats_;
    const Translator& texts_;
    const std::shared_ptr<LogFollower> follower_; // the background's while reading_
    bool reading_ = false;
    bool loaded_ = false;
    RowList entries_{{"symbol", "tint", "message", "date"}};
    std::unique_ptr<Timer> timer_;
    Lifetime lifetime_;
};

} // namespace norvane
