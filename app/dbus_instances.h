// The instances of this program on the session bus.
#pragma once

#include <QDBusConnection>

#include "app/single_instance.h"

namespace norvane {

/// Every instance queues for the name org.norvane.Norvane, so the bus knows them all and forgets one that
/// dies.
class DBusInstances final : public ProgramInstances {
public:
    /// Queues this process for the name. The token goes to the instance that is activated.
    explicit DBusInstances(QString activationToken);

    [[nodiscard]] bool identified() const override { return identified_; }
    [[nodiscard]] std::int64_t ownProcessId() const override;
    [[nodiscard]] std::vector<std::int64_t> others() const override;
    bool activate(std::int64_t processId) override;
    /// This process is an instance no more.
    void leave();

private:
    struct Owner {
        QString uniqueName;
        std::int64_t processId;
    };
    [[nodiscard]] std::vector<Owner> otherOwners() const;

    const QString activationToken_;
    QDBusConnection bus_;
    bool identified_ = false;
};

} // namespace norvane
