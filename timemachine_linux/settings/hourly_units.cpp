#include "timemachine_linux/settings/hourly_units.h"

#include <string_view>

namespace norvane {

namespace {

/// A word of a unit file (systemd.syntax(7), systemd.service(5) "Command lines", systemd.unit(5)
/// "Specifiers").
std::string quoted(std::string_view text, bool inCommand) {
    std::string word = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            word += '\\';
        if (c == '%' || (c == '$' && inCommand))
            word += c;
        if (c == '\n')
            word += "\\n";
        else
            word += c;
    }
    return word + "\"";
}

} // namespace

std::string hourlyService(const std::string& tmutil, const std::map<std::string, std::string>& variables) {
    // Nothing that the backup has started is to be killed with the unit.
    std::string text = "[Unit]\n"
                       "Description=Backup by Time Machine\n"
                       "\n"
                       "[Service]\n"
                       "Type=oneshot\n"
                       "KillMode=process\n";
    for (const auto& [name, value] : variables) {
        const std::string assignment = std::string(name).append("=").append(value);
        text.append("Environment=").append(quoted(assignment, false)).append("\n");
    }
    // A unit's own program may have no quotes in its path; an argument may.
    return text + "ExecStart=/usr/bin/env " + quoted(tmutil, true) + " startbackup --auto --block\n";
}

std::string hourlyTimer() {
    return "[Unit]\n"
           "Description=Backup by Time Machine every hour\n"
           "\n"
           "[Timer]\n"
           "OnCalendar=hourly\n"
           "Persistent=true\n"
           "\n"
           "[Install]\n"
           "WantedBy=timers.target\n";
}

} // namespace norvane
