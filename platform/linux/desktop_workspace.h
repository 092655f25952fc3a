// Opening URLs and folders with the desktop's programs.
#pragma once

#include "platform/workspace.h"

namespace norvane {

class DesktopWorkspace final : public Workspace {
public:
    void openUrl(const std::string& url) override;
    /// Asks org.freedesktop.FileManager1 (freedesktop.org File Manager D-Bus Interface).
    void revealFile(const std::string& path) override;
};

} // namespace norvane
