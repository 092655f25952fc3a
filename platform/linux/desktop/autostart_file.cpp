#include "platform/linux/desktop/autostart_file.h"

#include <cerrno>
#include <cstdlib>
#include <glib.h>
#include <memory>
#include <sstream>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "platform/linux/files/program_search.h"
#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"

namespace norvane {

namespace {

constexpr auto fileName = "/org.norvane.Norvane.desktop";
constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;
constexpr auto gnomeSwitch = "X-GNOME-Autostart-enabled";

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
using Texts = std::unique_ptr<char*, decltype(&g_strfreev)>;

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

/// As one word of an Exec line (freedesktop.org Desktop Entry 1.5, "The Exec key").
std::string quoted(std::string_view word) {
    std::string result = "\"";
    for (const char c : word) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
            result += '\\';
        result += c;
    }
    return result + '"';
}

KeyFile noEntry() { return {g_key_file_new(), g_key_file_unref}; }

/// Empty when it has no such key.
std::string textOf(const KeyFile& entry, const char* key) {
    char* const value = g_key_file_get_string(entry.get(), group, key, nullptr);
    std::string text = value ? value : "";
    g_free(value);
    return text;
}

bool isTrue(const KeyFile& entry, const char* key) {
    return g_key_file_get_boolean(entry.get(), group, key, nullptr) != FALSE;
}

std::string firstWord(const std::string& commandLine) {
    char** words = nullptr;
    if (!g_shell_parse_argv(commandLine.c_str(), nullptr, &words, nullptr))
        return {};
    const Texts owner(words, g_strfreev);
    return words[0];
}

/// Whether the list is there and names this desktop.
bool names(const KeyFile& entry, const char* list, const std::string& desktop) {
    const Texts listed(g_key_file_get_string_list(entry.get(), group, list, nullptr, nullptr), g_strfreev);
    return listed && g_strv_contains(listed.get(), desktop.c_str());
}

/// OnlyShowIn and NotShowIn; the desktop's own names, most important first, are in XDG_CURRENT_DESKTOP.
bool isForThisDesktop(const KeyFile& entry) {
    const char* const variable = std::getenv("XDG_CURRENT_DESKTOP");
    std::istringstream desktops(variable ? variable : "");
    for (std::string desktop; std::getline(desktops, desktop, ':');) {
        if (names(entry, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN, desktop))
            return true;
        if (names(entry, G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN, desktop))
            return false;
    }
    return !g_key_file_has_key(entry.get(), group, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN, nullptr);
}

/// `text`: of a desktop entry.
bool startsProgram(const std::string& text) {
    const KeyFile entry = noEntry();
    if (!g_key_file_load_from_data(entry.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr) ||
        textOf(entry, G_KEY_FILE_DESKTOP_KEY_TYPE) != G_KEY_FILE_DESKTOP_TYPE_APPLICATION ||
        isTrue(entry, G_KEY_FILE_DESKTOP_KEY_HIDDEN) || !isForThisDesktop(entry))
        return false;
    const bool switchedOff =
        g_key_file_has_key(entry.get(), group, gnomeSwitch, nullptr) && !isTrue(entry, gnomeSwitch);
    ProgramSearch programs(searchPathOfProcess(), ProgramSearch::Reach::prompt);
    const std::string condition = textOf(entry, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
    return !switchedOff && (condition.empty() || programs.has(condition)) &&
           programs.has(firstWord(textOf(entry, G_KEY_FILE_DESKTOP_KEY_EXEC)));
}

KeyFile newEntry() {
    KeyFile entry = noEntry();
    g_key_file_set_string(entry.get(), group, "Type", "Application");
    g_key_file_set_string(entry.get(), group, "Name", "Norvane");
    return entry;
}

/// For whoever wanted the login items changed.
std::string whyNot(int error, const std::string& folder) {
    const std::string quotedFolder = "“" + folder + "”";
    switch (static_cast<GFileError>(error)) {
    case G_FILE_ERROR_EXIST:
    case G_FILE_ERROR_NOTDIR:
        return "Couldn't change your login items: " + quotedFolder + " should be a folder, but is not.";
    case G_FILE_ERROR_ACCES:
    case G_FILE_ERROR_PERM:
    case G_FILE_ERROR_ROFS:
        return "Couldn't change your login items: you are not allowed to change the folder " + quotedFolder +
               ".";
    case G_FILE_ERROR_NOSPC:
        return "Couldn't change your login items: the disk is full.";
    default:
        return "Couldn't change your login items in the folder " + quotedFolder + ".";
    }
}

std::string whyNotNow(const std::string& folder) { return whyNot(g_file_error_from_errno(errno), folder); }

/// Replaces the file at once. The error text; empty when it is written.
std::string write(const KeyFile& entry, const std::string& folder, const std::string& file) {
    if (!makeFolder(folder))
        return whyNotNow(folder);
    GError* error = nullptr;
    if (g_key_file_save_to_file(entry.get(), file.c_str(), &error))
        return {};
    std::string text = whyNot(error->code, folder);
    g_error_free(error);
    return text;
}

} // namespace

AutostartFile::Folders AutostartFile::Folders::ofUser() {
    Folders folders{std::string(g_get_user_config_dir()) + "/autostart", {}};
    for (const char* const* folder = g_get_system_config_dirs(); *folder; ++folder)
        folders.system.push_back(std::string(*folder) + "/autostart");
    return folders;
}

AutostartFile::AutostartFile(Folders folders, std::string program)
    : folders_(std::move(folders)), userFile_(folders_.user + fileName), program_(std::move(program)) {}

bool AutostartFile::enabled() const {
    return startsProgram(readSmallFile(exists(userFile_) ? userFile_ : systemFile()));
}

void AutostartFile::enable(const Done& done) {
    // The key wants it doubled, but systemd and GLib look for such a program under the doubled name.
    if (program_.find('%') != std::string::npos)
        return done("“" + program_ + "” can't be started at login, because there is a % in its name.");
    const KeyFile entry = newEntry();
    g_key_file_set_string(entry.get(), group, "Icon", "org.norvane.Norvane");
    g_key_file_set_string(entry.get(), group, "Exec", quoted(program_).c_str());
    g_key_file_set_string(entry.get(), group, "TryExec", program_.c_str());
    g_key_file_set_boolean(entry.get(), group, gnomeSwitch, TRUE);
    done(write(entry, folders_.user, userFile_));
}

void AutostartFile::disable(const Done& done) {
    // Removed, because not every desktop heeds a switch inside it; unless it must mask one of the system.
    if (!systemFile().empty()) {
        const KeyFile mask = newEntry();
        g_key_file_set_boolean(mask.get(), group, "Hidden", TRUE);
        done(write(mask, folders_.user, userFile_));
    } else if (unlink(userFile_.c_str()) == 0 || errno == ENOENT) {
        done({});
    } else {
        done(whyNotNow(folders_.user));
    }
}

std::string AutostartFile::systemFile() const {
    for (const std::string& folder : folders_.system) {
        if (exists(folder + fileName))
            return folder + fileName;
    }
    return {};
}

} // namespace norvane
