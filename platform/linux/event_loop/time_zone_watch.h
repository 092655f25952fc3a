// Following the system's time zone while the program runs.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace norvane {

/// Calls `changed` on the main thread after the file "localtime" of the folder was replaced (localtime(5);
/// /etc on a real system). A folder that cannot be watched never calls.
class TimeZoneWatch {
public:
    TimeZoneWatch(const std::string& folder, std::function<void()> changed);
    ~TimeZoneWatch();

private:
    class Watcher;
    const std::unique_ptr<Watcher> watcher_;
};

/// Makes ICU's default zone the system's again; ICU looks only once by itself.
void adoptSystemTimeZone();

} // namespace norvane
