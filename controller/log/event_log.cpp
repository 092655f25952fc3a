#include "controller/log/event_log.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace norvane {

std::string logTimestamp(Instant instant) {
    using namespace std::chrono;
    static constexpr sys_days firstDay = year{0} / 1 / 1;
    static constexpr sys_days lastDay = year{9999} / 12 / 31;
    const auto printable = std::clamp<Instant>(instant, firstDay, lastDay + hours{24} - microseconds{1});
    const auto day = floor<days>(printable);
    const year_month_day date(day);
    const hh_mm_ss time(floor<seconds>(printable - day));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return text.data();
}

void EventLog::log(std::string_view message) const {
    std::string line = logTimestamp(clock_.now());
    line += ' ';
    line += message;
    line += '\n';
    file_.append(line);
}

} // namespace norvane
