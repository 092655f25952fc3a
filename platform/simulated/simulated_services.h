// The remaining services of a simulated machine: plain fields that a test sets and reads.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/condition_measurements.h"
#include "platform/file_system.h"
#include "platform/formats.h"
#include "platform/log_file.h"
#include "platform/network_probe.h"
#include "platform/notifications.h"
#include "platform/process_activity.h"
#include "platform/system_events.h"
#include "platform/translator.h"
#include "platform/workspace.h"

namespace norvane {

struct SimulatedFileSystem final : FileSystem {
    std::set<std::string> paths;
    std::optional<std::int64_t> homeAvailableBytes = 500'000'000'000;
    std::map<std::string, std::vector<FolderEntry>> folders;

    bool exists(const std::string& path) const override { return paths.contains(path); }
    std::optional<std::int64_t> homeVolumeAvailableBytes() const override { return homeAvailableBytes; }
    std::optional<std::vector<FolderEntry>> list(const std::string& folder) const override {
        const auto found = folders.find(folder);
        return found == folders.end() ? std::nullopt : std::optional(found->second);
    }
};

struct SimulatedMeasurements final : ConditionMeasurements {
    PowerState power;
    bool camera = false;
    bool microphone = false;
    bool screenShared = false;
    std::optional<double> load;
    std::set<std::string> applications;
    int queries = 0;

    PowerState powerState() override { return ++queries, power; }
    bool cameraInUse() override { return ++queries, camera; }
    bool microphoneInUse() override { return ++queries, microphone; }
    bool screenIsShared() override { return ++queries, screenShared; }
    std::optional<double> loadPerCore() override { return ++queries, load; }
    std::set<std::string> runningApplications() override { return ++queries, applications; }
};

struct SimulatedNotifications final : Notifications {
    struct Posted {
        std::string title;
        std::string body;
        bool operator==(const Posted&) const = default;
    };
    std::vector<Posted> posted;

    void post(const std::string& title, const std::string& body) override { posted.push_back({title, body}); }
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

    bool canConnect(const NetworkEndpoint& endpoint, double /*timeoutSeconds*/) const override {
        tried.push_back(endpoint);
        const auto* host = std::get_if<HostEndpoint>(&endpoint);
        return host && answeringHosts.contains(host->host + ":" + std::to_string(host->port));
    }
};

struct SimulatedWorkspace final : Workspace {
    std::vector<std::string> opened;

    void openUrl(const std::string& url) override { opened.push_back(url); }
};

struct SimulatedLogFile final : LogFile {
    std::string text;

    void append(std::string_view bytes) override { text += bytes; }
};

/// Fixed forms in UTC, whatever the locale: "T14:07", "D2026-03-05 14:07", "5 bytes".
struct SimulatedFormats final : Formats {
    std::string shortTime(Instant instant) const override { return "T" + clockTime(instant); }
    std::string dateAndTime(Instant instant) const override {
        const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(instant));
        return "D" + std::to_string(static_cast<int>(day.year())) + "-" + twoDigits(unsigned(day.month())) +
               "-" + twoDigits(unsigned(day.day())) + " " + clockTime(instant);
    }
    std::string byteCount(std::int64_t bytes) const override { return std::to_string(bytes) + " bytes"; }

private:
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
