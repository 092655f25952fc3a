#include "platform/linux/autostart_file.h"

#include <cerrno>
#include <memory>
#include <string_view>
#include <unistd.h>
#include <utility>

#include <gio/gdesktopappinfo.h>

#include "platform/linux/user_folders.h"

namespace norvane {

namespace {

constexpr auto fileName = "/org.norvane.Norvane.desktop";
constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;
constexpr auto gnomeSwitch = "X-GNOME-Autostart-enabled";

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
using AppInfo = std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)>;

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

/// As one word of an Exec line (freedesktop.org Desktop Entry 1.5, "The Exec key").
std::string quoted(std::string_view word) {
    std::string result = "\"";
    for (const char c : word) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
            result += '\\';
        else if (c == '%')
            result += '%';
        result += c;
    }
    return result + '"';
}

bool startsProgram(const std::string& file) {
    // None also when the program of TryExec or Exec is missing.
    const AppInfo entry(g_desktop_app_info_new_from_filename(file.c_str()), g_object_unref);
    if (!entry || g_desktop_app_info_get_is_hidden(entry.get()) ||
        !g_desktop_app_info_has_key(entry.get(), G_KEY_FILE_DESKTOP_KEY_EXEC))
        return false;
    const bool switchedOff = g_desktop_app_info_has_key(entry.get(), gnomeSwitch) &&
                             !g_desktop_app_info_get_boolean(entry.get(), gnomeSwitch);
    return !switchedOff && g_desktop_app_info_get_show_in(entry.get(), nullptr);
}

KeyFile newEntry() {
    KeyFile entry(g_key_file_new(), g_key_file_unref);
    g_key_file_set_string(entry.get(), group, "Type", "Application");
    g_key_file_set_string(entry.get(), group, "Name", "Norvane");
    return entry;
}

/// Replaces the file at once. The error text; empty when it is written.
std::string write(const KeyFile& entry, const std::string& folder, const std::string& file) {
    if (!makeFolder(folder))
        return folder + ": " + g_strerror(errno);
    GError* error = nullptr;
    if (g_key_file_save_to_file(entry.get(), file.c_str(), &error))
        return {};
    std::string text = error->message;
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

bool AutostartFile::enabled() const { return startsProgram(exists(userFile_) ? userFile_ : systemFile()); }

void AutostartFile::enable(const Done& done) {
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
        done(userFile_ + ": " + g_strerror(errno));
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
