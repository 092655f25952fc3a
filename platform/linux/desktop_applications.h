// The installed applications as the desktop's menus show them.
#pragma once

#include "platform/installed_applications.h"
#include "platform/linux/desktop_entries.h"

namespace norvane {

class DesktopApplications final : public InstalledApplications {
public:
    [[nodiscard]] std::vector<InstalledApplication> all() override;

private:
    DesktopEntries entries_;
};

} // namespace norvane
