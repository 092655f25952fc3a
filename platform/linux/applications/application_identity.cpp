#include "platform/linux/applications/application_identity.h"

#include <algorithm>
#include <array>

#include "platform/text/escapes.h"

namespace norvane {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end = 0; end != std::string_view::npos; text.remove_prefix(end + 1)) {
        end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
    }
    return parts;
}

bool removeSuffix(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix))
        return false;
    text.remove_suffix(suffix.size());
    return true;
}

std::string_view afterLast(std::string_view text, char separator) {
    return text.substr(text.rfind(separator) + 1);
}

std::optional<std::string> nonEmpty(std::string text) {
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

/// "snap.NAME.APP-UUID.scope", "snap.NAME.APP.UUID.scope" and "snap.NAME.APP.service"; the entry is NAME_APP.
std::optional<std::string> applicationOfSnap(std::string_view unit) {
    const auto parts = split(unit, '.');
    if (parts.size() < 4)
        return std::nullopt;
    constexpr std::size_t uuidLength = 36;
    std::string_view application = parts[2];
    if (application.size() > uuidLength + 1 &&
        std::count(application.end() - uuidLength, application.end(), '-') == 4)
        application.remove_suffix(uuidLength + 1);
    return std::string(parts[1]) + "_" + std::string(application);
}

std::optional<std::string> applicationOfUnit(std::string_view unit) {
    if (unit.starts_with("snap."))
        return applicationOfSnap(unit);
    if (!unit.starts_with("app-"))
        return std::nullopt;
    std::size_t partsAfterId = 0;
    if (removeSuffix(unit, ".scope"))
        partsAfterId = 1; // what makes the unit unique
    else if (removeSuffix(unit, ".service"))
        unit = unit.substr(0, unit.find('@'));
    else
        return std::nullopt;
    const auto parts = split(unit, '-'); // "app", perhaps the launcher, the id, perhaps something unique
    if (parts.size() < 2 + partsAfterId)
        return std::nullopt;
    return nonEmpty(withoutEscapes(parts[parts.size() - 1 - partsAfterId], "\\x", 2, 16));
}

/// The id of a file is its path below a folder "applications", with dashes for slashes.
std::optional<std::string> idOfEntryFile(std::string_view path) {
    if (!removeSuffix(path, ".desktop"))
        return std::nullopt;
    constexpr std::string_view folder = "/applications/";
    const std::size_t start = path.find(folder);
    std::string id(start == std::string_view::npos ? afterLast(path, '/')
                                                   : path.substr(start + folder.size()));
    std::replace(id.begin(), id.end(), '/', '-');
    return nonEmpty(std::move(id));
}

} // namespace

std::optional<std::string> applicationOfControlGroup(std::string_view cgroup) {
    for (const std::string_view line : split(cgroup, '\n'))
        if (line.starts_with("0::") || line.find(":name=systemd:") != std::string_view::npos)
            if (auto id = applicationOfUnit(afterLast(line, '/')))
                return id;
    return std::nullopt;
}

std::optional<std::string> applicationOfEnvironment(std::string_view environment,
                                                    std::string_view processId) {
    constexpr std::string_view file = "GIO_LAUNCHED_DESKTOP_FILE=";
    constexpr std::string_view process = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
    std::optional<std::string> id;
    bool ownNote = false; // children inherit both
    for (const std::string_view variable : split(environment, '\0')) {
        if (variable.starts_with(file))
            id = idOfEntryFile(variable.substr(file.size()));
        else if (variable.starts_with(process))
            ownNote = variable.substr(process.size()) == processId;
    }
    return ownNote ? id : std::nullopt;
}

std::optional<std::string> applicationOfFlatpakInfo(std::string_view info) {
    constexpr std::string_view key = "name=";
    bool inGroup = false;
    for (const std::string_view line : split(info, '\n')) {
        if (line.starts_with("["))
            inGroup = line == "[Application]";
        else if (inGroup && line.starts_with(key))
            return nonEmpty(std::string(line.substr(key.size())));
    }
    return std::nullopt;
}

bool startsOtherPrograms(std::string_view executable) {
    constexpr std::array<std::string_view, 22> names{
        "sh",  "bash", "dash", "zsh",  "fish", "ksh",  "busybox", "env",    "flatpak", "snap", "bwrap",
        "gjs", "mono", "wine", "java", "node", "ruby", "sudo",    "pkexec", "nohup",   "nice", "xdg-open"};
    constexpr std::array<std::string_view, 4> families{"python", "perl", "lua", "php"}; // python3.11
    const std::string_view name = afterLast(executable, '/');
    return std::find(names.begin(), names.end(), name) != names.end() ||
           std::any_of(families.begin(), families.end(),
                       [&](std::string_view family) { return name.starts_with(family); });
}

std::vector<std::string> programsOfProcess(std::string executable, std::string_view arguments) {
    if (std::string_view path = executable; removeSuffix(path, " (deleted)"))
        executable.resize(path.size()); // replaced by an update while it runs
    const auto words = split(arguments, '\0');
    const bool interprets = startsOtherPrograms(executable);
    std::vector<std::string> programs;
    if (!interprets && !executable.empty())
        programs.push_back(std::move(executable));
    if (!words.front().empty() && !startsOtherPrograms(words.front()))
        programs.emplace_back(words.front());
    if (interprets && words.size() > 1 && words[1].starts_with('/'))
        programs.emplace_back(words[1]);
    return programs;
}

} // namespace norvane
