// The remaining services of a simulated machine: plain fields that a test sets and reads.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/condition_measurements.h"
#include "platform/email_composer.h"
#include "platform/file_system.h"
#include "platform/formats.h"
#include "platform/installed_applications.h"
#include "platform/log_file.h"
#include "platform/login_item.h"
#include "platform/network_probe.h"
#include "platform/notifications.h"
#include "platform/process_activity.h"
#include "platform/system_events.h"
#include "platform/translator.h"
#include "platform/update_service.h"
#include "platform/workspace.h"

namespace norvane {

struct SimulatedFileSystem final : FileSystem {
    std::set<std::string> paths;
    std::set<std::string> mountPoints; ///< Of disks; a path belongs to the one that it equals.
    std::optional<std::int64_t> homeAvailableBytes = 500'000'000'000;
    std::map<std::string, std::vector<FolderEntry>> folders;
    std::string startupVolumeName = "Startup Disk";

    bool exists(const std::string& path) const override { return paths.contains(path); }
    std::optional<std::string> mountPointOf(const std::string& path) const override {
        return mountPoints.contains(path) ? path : "/";
    }
    std::optional<std::int64_t> homeVolumeAvailableBytes() const override { return homeAvailableBytes; }
    std::string displayName(const std::string& path) const override {
        return path == "/" ? startupVolumeName : path;
    }
    std::optional<std::vector<FolderEntry>> list(const std::string& folder) const override {
        const auto found = folders.find(folder);
        return found == folders.end() ? std::nullopt : std::optional(found->second);
    }
};

struct SimulatedMeasurements final : ConditionMeasurements {
    PowerState power;
    MediaUse media;
    std::optional<double> load;
    std::set<std::string> applications;
    int queries = 0;

    PowerState powerState() override { return ++queries, power; }
    MediaUse mediaUse() override { return ++queries, media; }
    std::optional<double> loadPerCore() override { return ++queries, load; }
    std::set<std::string> runningApplications() override { return ++queries, applications; }
};

struct SimulatedNotifications final : Notifications {
    std::vector<Notification> posted;
    int permissionRequests = 0;

    void post(const Notification& notification) override { posted.push_back(notification); }
    void requestPermission() override { ++permissionRequests; }
    void onAnswer(NotificationAnswers /*answers*/) override {}
};

struct SimulatedSystemEvents final : SystemEvents {
    std::optional<SystemEventHandlers> handlers; ///< None: nobody observes.

    std::unique_ptr<Observation> observe(SystemEventHandlers given) override {
        struct Ending final : Observation {
            std::optional<SystemEventHandlers>& handlers;
            explicit Ending(std::optional<SystemEventHandlers>& observed) : handlers(observed) {}
            ~Ending() override { handlers.reset(); }
        };
        handlers = std::move(given);
        return std::make_unique<Ending>(handlers);
    }
};

struct SimulatedProcessActivity final : ProcessActivity {
    std::string reason; ///< Empty: no activity was begun.

    std::unique_ptr<Token> begin(std::uint64_t /*options*/, const std::string& given) override {
        reason = given;
        return std::make_unique<Token>();
    }
};

struct SimulatedNetworkProbe final : NetworkProbe {
    std::set<std::string> answeringHosts;
    mutable std::vector<NetworkEndpoint> tried;
    mutable double timeout = 0; ///< Of the last try.

    bool canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const override {
        tried.push_back(endpoint);
        timeout = timeoutSeconds;
        const auto* host = std::get_if<HostEndpoint>(&endpoint);
        return host && answeringHosts.contains(host->host + ":" + std::to_string(host->port));
    }
};

struct SimulatedEmailComposer final : EmailComposer {
    std::vector<Email> composed;

    void compose(const Email& email) override { composed.push_back(email); }
};

struct SimulatedWorkspace final : Workspace {
    std::vector<std::string> opened;
    std::vector<std::string> revealed;

    void openUrl(const std::string& url) override { opened.push_back(url); }
    void revealFile(const std::string& path) override { revealed.push_back(path); }
};

struct SimulatedLoginItem final : LoginItem {
    bool on = false;
    std::string error; ///< Of the next requests; they change nothing then.
    std::vector<bool> requests;

    bool enabled() const override { return on; }
    void enable(const Done& done) override { change(true, done); }
    void disable(const Done& done) override { change(false, done); }

private:
    void change(bool wanted, const Done& done) {
        requests.push_back(wanted);
        if (error.empty())
            on = wanted;
        done(error);
    }
};

struct SimulatedApplications final : InstalledApplications {
    std::vector<InstalledApplication> installed;

    std::vector<InstalledApplication> found; ///< By the last look.

    std::vector<InstalledApplication> known() const override { return found; }
    void refresh(std::function<void()> done) override {
        found = installed;
        done();
    }
};

/// What happens to it is seen in a state of the test's, as its owner keeps the service itself.
class SimulatedUpdateService final : public UpdateService {
public:
    struct State {
        bool can = false;
        bool automatic = false;
        bool started = false;
        int checks = 0;
        std::function<void(bool)> observer; ///< Empty: nobody observes.
    };
    explicit SimulatedUpdateService(State& state) : state_(state) {}

    void start() override { state_.started = true; }
    bool automaticallyChecksForUpdates() const override { return state_.automatic; }
    void setAutomaticallyChecksForUpdates(bool automatically) override { state_.automatic = automatically; }
    bool canCheckForUpdates() const override { return state_.can; }
    std::unique_ptr<Observation> observeCanCheckForUpdates(std::function<void(bool)> observer) override {
        struct Ending final : Observation {
            State& state;
            explicit Ending(State& observed) : state(observed) {}
            ~Ending() override { state.observer = nullptr; }
        };
        state_.observer = std::move(observer);
        state_.observer(state_.can);
        return std::make_unique<Ending>(state_);
    }
    void checkForUpdates() override { ++state_.checks; }

private:
    State& state_;
};

struct SimulatedLogFile final : LogFile {
    std::string text;
    std::uint64_t identity = 1;

    void append(std::string_view bytes) override { text += bytes; }
    LogFileInfo info() const override { return {text.size(), identity}; }
    std::string read(std::uint64_t offset, std::size_t count) const override {
        return offset < text.size() ? text.substr(offset, count) : std::string();
    }
};

/// Fixed forms in UTC, whatever the locale: "T14:07", "D2026-03-05 14:07", "in 60 s", "5 bytes". Weeks begin
/// on Monday.
struct SimulatedFormats final : Formats {
    std::string shortTime(Instant instant) const override { return "T" + clockTime(instant); }
    std::string dateAndTime(Instant instant) const override {
        return abbreviatedDate(instant) + " " + clockTime(instant);
    }
    std::string abbreviatedDate(Instant instant) const override {
        const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(instant));
        return "D" + std::to_string(static_cast<int>(day.year())) + "-" + monthAndDay(instant);
    }
    std::string monthAndDay(Instant instant) const override {
        const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(instant));
        return twoDigits(unsigned(day.month())) + "-" + twoDigits(unsigned(day.day()));
    }
    std::string dateAndTimeWithSeconds(Instant instant) const override {
        const auto time = std::chrono::floor<std::chrono::seconds>(instant.time_since_epoch());
        return dateAndTime(instant) + ":" + twoDigits(time.count() % 60);
    }
    std::string relativeTime(Instant instant, Instant now) const override {
        return "in " + elapsedTime(secondsBetween(now, instant));
    }
    bool uses24Hours() const override { return true; }
    std::string dayHalf(bool afternoon) const override { return afternoon ? "PM" : "AM"; }
    std::string weekdayName(int weekday) const override { return "day " + std::to_string(weekday); }
    std::string weekdaySymbol(int weekday) const override { return std::to_string(weekday); }
    int firstWeekday() const override { return 2; }
    std::string elapsedTime(double seconds) const override { return wholeSeconds(seconds) + " s"; }
    std::string roundTime(double seconds) const override { return "~" + wholeSeconds(seconds) + " s"; }
    std::string percentage(double fraction) const override {
        return std::to_string(static_cast<std::int64_t>(fraction * 100)) + " %";
    }
    std::string byteCount(std::int64_t bytes) const override { return std::to_string(bytes) + " bytes"; }

private:
    static std::string wholeSeconds(double seconds) {
        return std::to_string(static_cast<std::int64_t>(seconds));
    }
    static std::string twoDigits(long value) { return (value < 10 ? "0" : "") + std::to_string(value); }
    static std::string clockTime(Instant instant) {
        const std::chrono::hh_mm_ss time(instant - std::chrono::floor<std::chrono::days>(instant));
        return twoDigits(time.hours().count()) + ":" + twoDigits(time.minutes().count());
    }
};

struct UntranslatedText final : Translator {
    std::string translate(std::string_view englishText) const override { return std::string(englishText); }
};

} // namespace norvane
