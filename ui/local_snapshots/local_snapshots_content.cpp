#include "ui/local_snapshots/local_snapshots_content.h"

#include <cmath>

#include "ui/kit/view_values.h"

namespace norvane {

namespace {

std::int64_t countOf(const LocalSnapshotsState& state) {
    return static_cast<std::int64_t>(state.snapshots.size());
}

/// Empty before the volume's name is known.
std::string subtitle(const LocalSnapshotsState& state, const Translator& texts) {
    if (state.startupVolumeName.empty())
        return {};
    if (state.destinationName)
        return fillIn(texts.translate("Restore points kept on “%@” (this Mac's startup disk) — separate from "
                                      "your backups on “%@”."),
                      {state.startupVolumeName, *state.destinationName});
    return fillIn(texts.translate("Restore points kept on “%@”, this Mac's startup disk — separate from your "
                                  "Time Machine backups."),
                  {state.startupVolumeName});
}

QVariantMap badgeOf(Coverage coverage, const LocalSnapshotsState& state, const Translator& texts) {
    const auto badge = [&texts](const char* symbol, std::string_view text, const std::string& tip,
                                bool warns) {
        return QVariantMap{{"badgeSymbol", symbol},
                           {"badge", viewText(texts.translate(text))},
                           {"badgeTip", viewText(tip)},
                           {"badgeWarns", warns}};
    };
    switch (coverage) {
    case Coverage::covered:
        return badge("checkmark.seal.fill", "In backups",
                     state.destinationName
                         ? fillIn(texts.translate("A completed backup on “%@” covers this restore point."),
                                  {*state.destinationName})
                         : texts.translate("A completed backup covers this restore point."),
                     false);
    case Coverage::onlyLocal:
        return badge(
            "exclamationmark.triangle.fill", "Only on this Mac",
            texts.translate("No completed backup on your backup drive covers this restore point yet."), true);
    case Coverage::unknown:
        break;
    }
    return {{"badgeSymbol", ""}, {"badge", ""}, {"badgeTip", ""}, {"badgeWarns", false}};
}

} // namespace

Coverage coverageOf(const LocalSnapshotsState& state, const std::string& token) {
    if (!state.onDestination)
        return Coverage::unknown;
    return state.onDestination->contains(token) ? Coverage::covered : Coverage::onlyLocal;
}

LocalSnapshotsContent localSnapshotsContent(const LocalSnapshotsState& state, const Translator& texts) {
    LocalSnapshotsContent content;
    content.subtitle = viewText(subtitle(state, texts));
    content.loading = state.loading;
    content.empty = !state.loading && state.snapshots.empty();
    content.caption = viewText(fillIn(texts.translate("%d SNAPSHOTS"), {countOf(state)}));
    content.error = viewText(state.errorMessage.value_or(""));
    content.busy = state.busy;
    content.canDeleteAll = !state.busy && !state.snapshots.empty();
    return content;
}

QList<QVariantMap> localSnapshotRows(const LocalSnapshotsState& state, Instant now, const Formats& formats,
                                     const Translator& texts) {
    QList<QVariantMap> rows;
    for (const TMUtil::LocalSnapshot& snapshot : state.snapshots) {
        const std::string date = formats.dateAndTime(snapshot.date);
        QVariantMap row = badgeOf(coverageOf(state, snapshot.token), state, texts);
        row["token"] = viewText(snapshot.token);
        row["date"] = viewText(date);
        row["age"] = viewText(formats.elapsedTime(std::abs(secondsBetween(snapshot.date, now))));
        row["deleteLabel"] = viewText(fillIn(texts.translate("Delete snapshot from %@"), {date}));
        rows.append(row);
    }
    return rows;
}

DeletionQuestion deletionQuestion(const PendingDeletion& pending, const LocalSnapshotsState& state,
                                  const Formats& formats, const Translator& texts) {
    const auto question = [&texts](std::string_view title, const std::string& message,
                                   std::string_view answer) {
        return DeletionQuestion{viewText(texts.translate(title)), viewText(message),
                                viewText(texts.translate(answer))};
    };
    if (pending.kind == PendingDeletion::Kind::one) {
        const char* const message =
            coverageOf(state, pending.snapshot.token) == Coverage::onlyLocal
                ? "The %@ restore point isn't in your backups yet — deleting it removes that point in time "
                  "permanently."
                : "The %@ snapshot will be removed from your startup disk. Your backups on the backup drive "
                  "are unaffected.";
        return question("Delete this local snapshot?",
                        fillIn(texts.translate(message), {formats.dateAndTime(pending.snapshot.date)}),
                        "Delete");
    }
    const char* const message =
        state.uncoveredCount() > 0
            ? "All %d local snapshots will be removed from your startup disk — including %d not in your "
              "backups yet, whose restore points will be lost permanently."
            : "All %d local snapshots will be removed from your startup disk to free space. Your backups on "
              "the backup drive are unaffected.";
    return question("Delete all local snapshots?",
                    fillIn(texts.translate(message), {countOf(state), state.uncoveredCount()}), "Delete All");
}

} // namespace norvane
