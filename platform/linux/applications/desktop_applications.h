// The installed applications as the desktop's menus show them.
#pragma once

#include <functional>
#include <utility>

#include "platform/installed_applications.h"
#include "platform/linux/applications/desktop_entries.h"

namespace norvane {

class DesktopApplications final : public InstalledApplications {
public:
    /// `entries` must outlive this object.
    explicit DesktopApplications(DesktopEntries& entries) : entries_(entries) {}

    [[nodiscard]] std::vector<InstalledApplication> known() const override;
    void refresh(std::function<void()> done) override { entries_.refresh(std::move(done)); }

private:
    DesktopEntries& entries_;
};

} // namespace norvane
