// No header of Qt here: it and GIO both claim the word "signals".
#include "platform/linux/desktop_entries.h"

#include <gio/gdesktopappinfo.h>
#include <memory>
#include <utility>

namespace norvane {

namespace {

std::string textOf(const char* text) { return text ? text : std::string(); }

std::string withoutSuffix(std::string id) {
    constexpr std::string_view suffix = ".desktop";
    if (id.ends_with(suffix))
        id.resize(id.size() - suffix.size());
    return id;
}

using Changes = std::map<std::string, std::filesystem::file_time_type>;

void addChanges(const std::string& dataFolder, Changes& changes) {
    const std::filesystem::path folder = dataFolder + "/applications";
    std::error_code error;
    changes[folder] = last_write_time(folder, error); // where it is missing: the lowest time
    std::filesystem::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code unreadable;
        changes[entry->path()] = last_write_time(entry->path(), unreadable);
    }
}

Changes changesNow() {
    Changes changes;
    addChanges(g_get_user_data_dir(), changes);
    for (const char* const* folder = g_get_system_data_dirs(); *folder; ++folder)
        addChanges(*folder, changes);
    return changes;
}

/// GIO's own answer (g_app_info_get_executable) keeps the quotes.
std::string firstWord(const char* commandLine) {
    char** words = nullptr;
    if (!commandLine || !g_shell_parse_argv(commandLine, nullptr, &words, nullptr))
        return {};
    std::string word = textOf(words[0]);
    g_strfreev(words);
    return word;
}

/// Takes the text over.
std::string adopted(char* text) {
    std::string copy = textOf(text);
    g_free(text);
    return copy;
}

DesktopEntry entryOf(GDesktopAppInfo* file, GAppInfo* info) {
    return {.id = withoutSuffix(textOf(g_app_info_get_id(info))),
            .path = textOf(g_desktop_app_info_get_filename(file)),
            .executable = firstWord(g_app_info_get_commandline(info)),
            .name = adopted(g_desktop_app_info_get_locale_string(file, G_KEY_FILE_DESKTOP_KEY_NAME)),
            .icon = adopted(g_desktop_app_info_get_string(file, G_KEY_FILE_DESKTOP_KEY_ICON)),
            .shown = g_app_info_should_show(info) != FALSE};
}

void freeList(GList* list) { g_list_free_full(list, g_object_unref); }

std::vector<DesktopEntry> readEntries() {
    const std::unique_ptr<GList, void (*)(GList*)> all(g_app_info_get_all(), freeList);
    std::vector<DesktopEntry> entries;
    for (const GList* node = all.get(); node; node = node->next) {
        entries.push_back(
            entryOf(static_cast<GDesktopAppInfo*>(node->data), static_cast<GAppInfo*>(node->data)));
    }
    return entries;
}

} // namespace

const std::vector<DesktopEntry>& DesktopEntries::current() {
    Changes changes = changesNow();
    if (changes != changes_) {
        entries_ = readEntries();
        changes_ = std::move(changes);
    }
    return entries_;
}

} // namespace norvane
