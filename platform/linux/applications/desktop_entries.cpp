#include "platform/linux/applications/desktop_entries.h"

#include <optional>
#include <utility>

namespace norvane {

namespace {

constexpr double limitSeconds = 20; // disks that sleep take ten to wake up

std::optional<std::vector<DesktopEntry>> readEntries(const CommandRunner& runner, const std::string& reader) {
    const auto result = runner.run(reader, {}, limitSeconds);
    return result && result->exitCode == 0 ? entriesOfText(result->stdout) : std::nullopt;
}

} // namespace

DesktopEntries::DesktopEntries(Background& background, const CommandRunner& runner, std::string reader)
    : background_(background), runner_(runner), reader_(std::move(reader)) {
    refresh();
}

void DesktopEntries::refresh(std::function<void()> done) {
    if (done)
        waiting_.push_back(std::move(done));
    if (std::exchange(reading_, true))
        return;
    runInBackground(
        background_, lifetime_, [&runner = runner_, reader = reader_] { return readEntries(runner, reader); },
        [this](std::optional<std::vector<DesktopEntry>> entries) {
            if (entries)
                entries_ = std::move(*entries);
            reading_ = false;
            for (const auto& tell : std::exchange(waiting_, {}))
                tell();
        });
}

} // namespace norvane
