#include "platform/linux/applications/desktop_applications.h"

namespace norvane {

std::vector<InstalledApplication> DesktopApplications::known() const {
    std::vector<InstalledApplication> applications;
    for (const DesktopEntry& entry : entries_.known()) {
        if (entry.shown)
            applications.push_back({entry.id, entry.name.empty() ? entry.id : entry.name, entry.icon});
    }
    return applications;
}

} // namespace norvane
