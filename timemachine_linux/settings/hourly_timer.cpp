#include "timemachine_linux/settings/hourly_timer.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <signal.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/files/program_search.h"
#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"
#include "timemachine_linux/settings/hourly_units.h"

namespace norvane {

namespace {

constexpr double systemctlSeconds = 10;

std::optional<Failure> writeUnit(const std::string& path, const std::string& text) {
    constexpr mode_t readable = 0644;
    return replaceFileDurably(path, text, readable) ? std::nullopt : std::optional(systemFailure(path));
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

} // namespace

HourlyTimer::HourlyTimer(const CommandRunner& runner, HourlyTimerPlaces places)
    : runner_(runner), places_(std::move(places)) {}

HourlyTimer::State HourlyTimer::state() const {
    const auto failure = control({"is-active", "--quiet", hourlyTimerUnit});
    if (failure && failure->error == ETIMEDOUT)
        return State::unknown;
    return failure ? State::inactive : State::active;
}

std::optional<Failure> HourlyTimer::start() const {
    const bool ran = state() == State::active;
    if (!makeFolder(places_.unitFolder))
        return systemFailure(places_.unitFolder);
    auto failure = writeUnit(places_.unitFolder + "/" + hourlyServiceUnit,
                             hourlyService(places_.tmutil, places_.variables));
    if (!failure)
        failure = writeUnit(places_.unitFolder + "/" + hourlyTimerUnit, hourlyTimer());
    if (!failure)
        failure = control({"daemon-reload"});
    if (!failure)
        failure = control({"enable", "--now", hourlyTimerUnit});
    if (!failure)
        failure = control({"is-active", "--quiet", hourlyTimerUnit});
    if (!failure || ran)
        return failure;
    (void)control({"disable", "--now", hourlyTimerUnit});
    removeUnits();
    return failure;
}

std::optional<Failure> HourlyTimer::stop() const {
    auto failure = control({"disable", "--now", hourlyTimerUnit});
    if (failure && state() != State::inactive)
        return failure;
    removeUnits();
    (void)control({"daemon-reload"});
    return std::nullopt;
}

std::optional<Failure> HourlyTimer::control(const std::vector<std::string>& words) const {
    if (places_.systemctl.empty())
        return Failure{"systemctl is not installed"};
    std::vector<std::string> arguments = {"--user", "--no-ask-password"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const auto result = runner_.run(places_.systemctl, arguments, systemctlSeconds);
    if (!result)
        return Failure{places_.systemctl + " cannot be started"};
    if (result->exitCode == 0)
        return std::nullopt;
    const std::string call = "systemctl --user " + words.front();
    // How the runner ends a tool that takes too long; systemctl(1) has no such exit statuses of its own.
    if (result->exitCode == SIGTERM || result->exitCode == SIGKILL)
        return Failure{call + " does not answer", ETIMEDOUT};
    const std::string complaint = firstLine(result->stderr);
    return Failure{complaint.empty() ? call + " failed" : complaint};
}

void HourlyTimer::removeUnits() const {
    for (const char* unit : {"/timers.target.wants/norvane-timemachine.timer", "/norvane-timemachine.timer",
                             "/norvane-timemachine.service"})
        ::unlink((places_.unitFolder + unit).c_str());
}

HourlyTimerPlaces hourlyTimerPlaces(const std::string& tmutil) {
    constexpr std::array names{"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"};
    HourlyTimerPlaces places{
        findProgram("systemctl").value_or(""), homeFolder() + "/.config/systemd/user", tmutil, {}};
    for (const char* name : names) {
        const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes it
        if (value && *value == '/')
            places.variables[name] = value;
    }
    if (const auto config = places.variables.find("XDG_CONFIG_HOME"); config != places.variables.end())
        places.unitFolder = config->second + "/systemd/user";
    return places;
}

} // namespace norvane
