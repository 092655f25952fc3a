// The Conditions tab without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include "controller/backup_controller.h"
#include "ui/kit/debouncer.h"
#include "ui/kit/row_list.h"
#include "ui/settings/tabs/application_chooser.h"

namespace norvane {

/// Main thread only. Edits reach the controller after a quiet moment.
class ConditionsSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(bool deferWhileCameraOrMicInUse READ deferWhileCameraOrMicInUse WRITE
                   setDeferWhileCameraOrMicInUse NOTIFY changed)
    Q_PROPERTY(double busy READ busy WRITE setBusy NOTIFY changed)
    Q_PROPERTY(QVariantList busyChoices READ busyChoices CONSTANT)
    Q_PROPERTY(bool waitForDisk READ waitForDisk WRITE setWaitForDisk NOTIFY changed)
    Q_PROPERTY(QObject* blockedApps READ blockedApps CONSTANT) ///< "name", "bundleID".
    Q_PROPERTY(norvane::ApplicationChooser* chooser READ chooser CONSTANT)
    Q_PROPERTY(bool requireAC READ requireAC WRITE setRequireAC NOTIFY changed)
    Q_PROPERTY(bool deferInLowPowerMode READ deferInLowPowerMode WRITE setDeferInLowPowerMode NOTIFY changed)
    Q_PROPERTY(double minBatteryPercent READ minBatteryPercent WRITE setMinBatteryPercent NOTIFY changed)
    Q_PROPERTY(QVariantList batteryChoices READ batteryChoices CONSTANT)
    Q_PROPERTY(double maxDeferralHours READ maxDeferralHours WRITE setMaxDeferralHours NOTIFY changed)
    Q_PROPERTY(QString maxDeferralText READ maxDeferralText NOTIFY changed)
    Q_PROPERTY(double recheckMinutes READ recheckMinutes WRITE setRecheckMinutes NOTIFY changed)
    Q_PROPERTY(QVariantList recheckChoices READ recheckChoices CONSTANT)

public:
    ConditionsSettings(BackupController& controller, Timers& timers, InstalledApplications& applications,
                       const Translator& texts);

    /// The tab appears: it shows what the controller holds, unless an edit is still on its way there.
    void load();

    [[nodiscard]] bool deferWhileCameraOrMicInUse() const { return config_.deferWhileCameraOrMicInUse; }
    void setDeferWhileCameraOrMicInUse(bool defer);
    [[nodiscard]] double busy() const;
    void setBusy(double value);
    [[nodiscard]] QVariantList busyChoices() const;
    [[nodiscard]] bool waitForDisk() const;
    void setWaitForDisk(bool wait);
    [[nodiscard]] QAbstractItemModel* blockedApps() { return &blockedApps_; }
    [[nodiscard]] ApplicationChooser* chooser() { return &chooser_; }
    [[nodiscard]] bool requireAC() const { return config_.requireAC; }
    void setRequireAC(bool require);
    [[nodiscard]] bool deferInLowPowerMode() const { return config_.deferInLowPowerMode; }
    void setDeferInLowPowerMode(bool defer);
    [[nodiscard]] double minBatteryPercent() const { return static_cast<double>(config_.minBatteryPercent); }
    void setMinBatteryPercent(double percent);
    [[nodiscard]] QVariantList batteryChoices() const;
    [[nodiscard]] double maxDeferralHours() const { return config_.maxDeferralHours; }
    void setMaxDeferralHours(double hours);
    [[nodiscard]] QString maxDeferralText() const;
    [[nodiscard]] double recheckMinutes() const { return static_cast<double>(config_.recheckMinutes); }
    void setRecheckMinutes(double minutes);
    [[nodiscard]] QVariantList recheckChoices() const;

    Q_INVOKABLE void removeApp(int position);

Q_SIGNALS:
    void changed();

private:
    template <class Value>
    void set(Value ConditionsConfig::*field, Value value);
    void addApps(const std::vector<InstalledApplication>& applications);
    void take(ConditionsConfig config);

    BackupController& controller_;
    const Translator& texts_;
    Debouncer debouncer_;
    ConditionsConfig config_ = ConditionsConfig::defaultConditions();
    bool loaded_ = false;
    RowList blockedApps_{{"name", "bundleID"}};
    ApplicationChooser chooser_;
};

} // namespace norvane
