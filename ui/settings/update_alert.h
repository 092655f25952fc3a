// What a check for updates that the user asked for came to, on the screen.
#pragma once

#include <memory>
#include <string>

#include "platform/translator.h"
#include "platform/update_service.h"
#include "platform/workspace.h"
#include "ui/kit/alert_window.h"

namespace norvane {

/// Who asked whom.
struct UpdateParties {
    std::string ownVersion; ///< "1.2.0"
    std::string host;       ///< Of the feed.
};

/// With a second button where there is a choice: a newer version has a page to be opened.
[[nodiscard]] AlertTexts updateAlertTexts(const UpdateResult& result, const UpdateParties& parties,
                                          const Translator& texts);

/// Main thread. At most one at a time, the latest.
class UpdateAlert {
public:
    /// The services must outlive this object.
    UpdateAlert(UiEngine& engine, Workspace& workspace, const Translator& texts, UpdateParties parties);

    /// Shows it in front of others. The page of a newer version is opened when the user says so.
    void show(const UpdateResult& result);

private:
    UiEngine& engine_;
    Workspace& workspace_;
    const Translator& texts_;
    const UpdateParties parties_;
    std::unique_ptr<AlertWindow> window_; // none: not shown
};

} // namespace norvane
