#include "ui/local_snapshots/local_snapshots_view_model.h"

#include <algorithm>
#include <utility>

namespace norvane {

LocalSnapshotsViewModel::LocalSnapshotsViewModel(const LocalSnapshotsServices& snapshots,
                                                 const LocalSnapshotsViewServices& services)
    : services_(services), texts_(snapshots.translator), model_(snapshots, [this] { show(); }) {}

LocalSnapshotsViewModel::~LocalSnapshotsViewModel() = default;

void LocalSnapshotsViewModel::opened() {
    ticker_ = services_.timers.repeating(1, 0, [this] { showAges(); });
    model_.refresh();
}

void LocalSnapshotsViewModel::closed() {
    ticker_.reset();
    cancel();
}

void LocalSnapshotsViewModel::askToDelete(const QString& token) {
    const auto& snapshots = model_.state().snapshots;
    const auto asked = std::find_if(snapshots.begin(), snapshots.end(),
                                    [&](const auto& one) { return one.token == token.toStdString(); });
    if (asked == snapshots.end() || model_.state().busy)
        return;
    pending_ = {PendingDeletion::Kind::one, *asked};
    showQuestion();
}

void LocalSnapshotsViewModel::askToDeleteAll() {
    if (!content_.canDeleteAll)
        return;
    pending_ = PendingDeletion{PendingDeletion::Kind::all};
    showQuestion();
}

void LocalSnapshotsViewModel::confirm() {
    const auto pending = std::exchange(pending_, std::nullopt);
    showQuestion();
    if (!pending)
        return;
    if (pending->kind == PendingDeletion::Kind::one)
        model_.deleteTokens({pending->snapshot.token});
    else
        model_.deleteAll();
}

void LocalSnapshotsViewModel::cancel() {
    pending_.reset();
    showQuestion();
}

void LocalSnapshotsViewModel::show() {
    showAges();
    showQuestion();
    LocalSnapshotsContent content = localSnapshotsContent(model_.state(), texts_);
    if (content == content_)
        return;
    content_ = std::move(content);
    Q_EMIT contentChanged();
}

void LocalSnapshotsViewModel::showAges() {
    rows_.set(localSnapshotRows(model_.state(), services_.clock.now(), services_.formats, texts_));
}

void LocalSnapshotsViewModel::showQuestion() {
    DeletionQuestion question = pending_
                                    ? deletionQuestion(*pending_, model_.state(), services_.formats, texts_)
                                    : DeletionQuestion();
    if (question == question_)
        return;
    question_ = std::move(question);
    Q_EMIT questionChanged();
}

} // namespace norvane
