// A whole simulated machine: its time, its Time Machine, its services and its user's settings.
#pragma once

#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "platform/simulated/simulated_time_machine.h"
#include "platform/simulated/simulated_user_defaults.h"

namespace norvane {

struct SimulatedMachine {
    /// The backup disk is connected.
    explicit SimulatedMachine(Instant start) : time(start) { files.paths.insert(timeMachine.mountPoint); }

    SimulatedTime time;
    SimulatedTimeMachine timeMachine{time};
    SimulatedUserDefaults defaults;
    SimulatedFileSystem files;
    SimulatedMeasurements measurements;
    SimulatedNotifications notifications;
    SimulatedSystemEvents systemEvents;
    SimulatedProcessActivity processActivity;
    SimulatedNetworkProbe network;
    SimulatedWorkspace workspace;
    SimulatedEmailComposer emailComposer;
    SimulatedLogFile logFile;
    SimulatedLoginItem loginItem;
    SimulatedApplications applications;
    SimulatedFormats formats;
    UntranslatedText texts;
};

} // namespace norvane
