#include "platform/linux/applications/desktop_entry.h"

#include <nlohmann/json.hpp>

namespace norvane {

using Json = nlohmann::json;

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(DesktopEntry, id, program, name, icon, shown)

std::string textOfEntries(const std::vector<DesktopEntry>& entries) {
    return Json(entries).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<std::vector<DesktopEntry>> entriesOfText(std::string_view text) {
    try {
        return Json::parse(text).get<std::vector<DesktopEntry>>();
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

} // namespace norvane
