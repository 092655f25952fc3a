#include "platform/linux/event_loop/time_zone_watch.h"

#include <QSocketNotifier>
#include <array>
#include <string_view>
#include <sys/inotify.h>
#include <unicode/timezone.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

class TimeZoneWatch::Watcher {
public:
    Watcher(const std::string& folder, std::function<void()> changed)
        : inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)), notifier_(inotify_.get(), QSocketNotifier::Read),
          changed_(std::move(changed)) {
        // The link is renamed into place, or removed and made again.
        inotify_add_watch(inotify_.get(), folder.c_str(),
                          IN_MOVED_TO | IN_CREATE | IN_CLOSE_WRITE | IN_ONLYDIR);
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this] {
            if (localtimeChanged())
                changed_();
        });
    }

private:
    /// Reads all events that wait.
    [[nodiscard]] bool localtimeChanged() const {
        alignas(inotify_event) std::array<char, 4096> buffer{};
        bool found = false;
        for (ssize_t length = 0; (length = read(inotify_.get(), buffer.data(), buffer.size())) > 0;) {
            for (const char* at = buffer.data(); at < buffer.data() + length;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(at);
                at += sizeof(inotify_event) + event->len;
                found = found || (event->len > 0 && std::string_view(event->name) == "localtime");
            }
        }
        return found;
    }

    const FileDescriptor inotify_; // before the notifier, which must go first
    QSocketNotifier notifier_;
    const std::function<void()> changed_;
};

TimeZoneWatch::TimeZoneWatch(const std::string& folder, std::function<void()> changed)
    : watcher_(std::make_unique<Watcher>(folder, std::move(changed))) {}
TimeZoneWatch::~TimeZoneWatch() = default;

void adoptSystemTimeZone() { icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone()); }

} // namespace norvane
