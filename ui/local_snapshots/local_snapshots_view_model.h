// The Local Snapshots window without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <memory>
#include <optional>

#include "platform/time/clock.h"
#include "platform/time/timers.h"
#include "ui/kit/row_list.h"
#include "ui/local_snapshots/local_snapshots_content.h"

namespace norvane {

/// What it needs beside the snapshots; all of it must outlive the view-model.
struct LocalSnapshotsViewServices {
    const Clock& clock;
    Timers& timers;
    const Formats& formats;
};

/// Main thread only.
class LocalSnapshotsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(norvane::LocalSnapshotsContent content READ content NOTIFY contentChanged)
    Q_PROPERTY(QObject* rows READ rows CONSTANT) ///< See localSnapshotRows.
    Q_PROPERTY(norvane::DeletionQuestion question READ question NOTIFY questionChanged)

public:
    LocalSnapshotsViewModel(const LocalSnapshotsServices& snapshots,
                            const LocalSnapshotsViewServices& services);
    ~LocalSnapshotsViewModel() override;

    /// Opening lists the snapshots anew; while the window is shown, the ages go on.
    void opened();
    void closed();

    [[nodiscard]] const LocalSnapshotsContent& content() const { return content_; }
    [[nodiscard]] QAbstractItemModel* rows() { return &rows_; }
    [[nodiscard]] const DeletionQuestion& question() const { return question_; }

    Q_INVOKABLE void askToDelete(const QString& token);
    Q_INVOKABLE void askToDeleteAll();
    /// Does what the question asks for.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void contentChanged();
    void questionChanged();

private:
    void show();
    void showAges();
    void showQuestion();

    const LocalSnapshotsViewServices services_;
    const Translator& texts_;
    LocalSnapshotsModel model_;
    std::optional<PendingDeletion> pending_;
    LocalSnapshotsContent content_;
    RowList rows_{{"token", "date", "age", "badgeSymbol", "badge", "badgeWarns", "badgeTip", "deleteLabel"}};
    DeletionQuestion question_;
    std::unique_ptr<Timer> ticker_; // runs while the window is open
};

} // namespace norvane
