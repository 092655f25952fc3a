// The tray item as an org.kde.StatusNotifierItem on the session bus (freedesktop.org StatusNotifierItem
// draft).
#pragma once

#include <memory>

#include "platform/tray_item.h"

namespace norvane {

class StatusNotifierItem final : public TrayItem {
public:
    StatusNotifierItem();
    ~StatusNotifierItem() override;

    void show(const TrayAppearance& appearance) override;
    void onActivate(std::function<void(int x, int y)> action) override;

private:
    class Object;
    std::unique_ptr<Object> object_;
};

} // namespace norvane
