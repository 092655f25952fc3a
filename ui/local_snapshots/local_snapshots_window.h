// The Local Snapshots window on the screen.
#pragma once

#include "ui/kit/kept_window.h"
#include "ui/local_snapshots/local_snapshots_view_model.h"

namespace norvane {

/// Main thread only.
class LocalSnapshotsWindow {
public:
    LocalSnapshotsWindow(UiEngine& engine, const LocalSnapshotsServices& snapshots,
                         const LocalSnapshotsViewServices& services)
        : model_(snapshots, services),
          window_(engine, "LocalSnapshots/LocalSnapshotsWindow", QVariant::fromValue(&model_),
                  {[this] { model_.opened(); }, [this] { model_.closed(); }}) {}

    /// Shows the window, in front of others.
    void open() { window_.open(); }

private:
    LocalSnapshotsViewModel model_;
    KeptWindow window_;
};

} // namespace norvane
