// Everything that the Local Snapshots window shows, finished: texts in the user's language, and yes or no.
#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <QtQmlIntegration>

#include "platform/formats.h"
#include "timemachine/local_snapshots_model.h"

namespace norvane {

/// All but the rows. An empty text means: nothing to show there.
struct LocalSnapshotsContent {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(bool loading MEMBER loading)
    Q_PROPERTY(bool empty MEMBER empty)
    Q_PROPERTY(QString caption MEMBER caption)
    Q_PROPERTY(QString error MEMBER error)
    Q_PROPERTY(bool busy MEMBER busy)
    Q_PROPERTY(bool canDeleteAll MEMBER canDeleteAll)

public:
    QString subtitle;
    bool loading = true; ///< What there is, is not known yet.
    bool empty = false;  ///< There are none.
    QString caption;
    QString error;
    bool busy = false; ///< Nothing can be deleted now.
    bool canDeleteAll = false;

    bool operator==(const LocalSnapshotsContent&) const = default;
};

/// What the user asked to delete, and has not confirmed yet.
struct PendingDeletion {
    enum class Kind { one, all };

    Kind kind = Kind::all;
    TMUtil::LocalSnapshot snapshot = {}; ///< Of kind `one`.
};

/// An empty title: nothing is asked.
struct DeletionQuestion {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString message MEMBER message)
    Q_PROPERTY(QString answer MEMBER answer)

public:
    QString title;
    QString message;
    QString answer; ///< Label of the button that deletes.

    bool operator==(const DeletionQuestion&) const = default;
};

/// Whether a backup holds the state of a snapshot, too.
enum class Coverage { unknown, covered, onlyLocal };

[[nodiscard]] Coverage coverageOf(const LocalSnapshotsState& state, const std::string& token);

[[nodiscard]] LocalSnapshotsContent localSnapshotsContent(const LocalSnapshotsState& state,
                                                          const Translator& texts);

/// The rows of the list: maps of "token", "date", "age" (at `now`), "badgeSymbol", "badge", "badgeWarns",
/// "badgeTip" and "deleteLabel". Without a badge its texts are empty.
[[nodiscard]] QList<QVariantMap> localSnapshotRows(const LocalSnapshotsState& state, Instant now,
                                                   const Formats& formats, const Translator& texts);

[[nodiscard]] DeletionQuestion deletionQuestion(const PendingDeletion& pending,
                                                const LocalSnapshotsState& state, const Formats& formats,
                                                const Translator& texts);

} // namespace norvane

Q_DECLARE_METATYPE(norvane::LocalSnapshotsContent)
Q_DECLARE_METATYPE(norvane::DeletionQuestion)
