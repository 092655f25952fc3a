// Opening URLs with the desktop's programs.
#pragma once

#include "platform/workspace.h"

namespace norvane {

class DesktopWorkspace final : public Workspace {
public:
    void openUrl(const std::string& url) override;
};

} // namespace norvane
