#include "ui/texts/health_verdict.h"

namespace norvane {

HealthVerdict healthVerdict(BackupHealth health) {
    switch (health) {
    case BackupHealth::ok:
        return {"checkmark.shield.fill", Tint::green, "Backups are healthy"};
    case BackupHealth::stale:
        return {"exclamationmark.shield.fill", Tint::orange, "Backups need attention"};
    case BackupHealth::critical:
        break;
    }
    return {"xmark.shield.fill", Tint::red, "Backups are failing"};
}

} // namespace norvane
