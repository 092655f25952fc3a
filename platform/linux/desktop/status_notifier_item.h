// The tray item as an org.kde.StatusNotifierItem on the session bus (freedesktop.org StatusNotifierItem
// draft).
#pragma once

#include <memory>
#include <string>

#include "platform/tray_item.h"

namespace norvane {

class StatusNotifierItem final : public TrayItem {
public:
    /// `iconThemePath`: the folder that holds the program's "hicolor".
    explicit StatusNotifierItem(const std::string& iconThemePath);
    ~StatusNotifierItem() override;

    void show(const TrayAppearance& appearance) override;
    void onActivate(std::function<void(int x, int y)> action) override;

private:
    class Object;
    std::unique_ptr<Object> object_;
};

} // namespace norvane
