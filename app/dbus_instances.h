// The instances of this program on the session bus.
#pragma once

#include <QDBusConnection>

#include "app/single_instance.h"

namespace norvane {

/// Every instance queues for the name org.norvane.Norvane, so the bus knows them all and forgets one that
/// dies.
class DBusInstances final : public ProgramInstances {
public:
    /// Queues this process for the name.
    DBusInstances();

    [[nodiscard]] bool identified() const override { return identified_; }
    [[nodiscard]] std::int64_t ownProcessId() const override;
    [[nodiscard]] std::vector<std::int64_t> others() const override;
    void activate(std::int64_t processId) override;

private:
    struct Owner {
        QString uniqueName;
        std::int64_t processId;
    };
    [[nodiscard]] std::vector<Owner> otherOwners() const;

    QDBusConnection bus_;
    bool identified_ = false;
};

} // namespace norvane
