// No header of Qt here: it and GIO both claim the word "signals".
#include "platform/linux/desktop_entries.h"

#include <cstdlib>
#include <gio/gdesktopappinfo.h>
#include <memory>
#include <utility>

#include "platform/linux/application_identity.h"
#include "platform/linux/program_search.h"

namespace norvane {

namespace {

std::string textOf(const char* text) { return text ? text : std::string(); }

std::string withoutSuffix(std::string id) {
    constexpr std::string_view suffix = ".desktop";
    if (id.ends_with(suffix))
        id.resize(id.size() - suffix.size());
    return id;
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

DesktopEntry entryOf(GDesktopAppInfo* file, GAppInfo* info, ProgramSearch& programs) {
    return {.id = withoutSuffix(textOf(g_app_info_get_id(info))),
            .program = programOfEntry(firstWord(g_app_info_get_commandline(info)), programs),
            .name = adopted(g_desktop_app_info_get_locale_string(file, G_KEY_FILE_DESKTOP_KEY_NAME)),
            .icon = adopted(g_desktop_app_info_get_string(file, G_KEY_FILE_DESKTOP_KEY_ICON)),
            .shown = g_app_info_should_show(info) != FALSE};
}

void freeList(GList* list) { g_list_free_full(list, g_object_unref); }

std::vector<DesktopEntry> readEntries(const std::string& searchPath) {
    ProgramSearch programs(searchPath, ProgramSearch::Reach::everywhere);
    const std::unique_ptr<GList, void (*)(GList*)> all(g_app_info_get_all(), freeList);
    std::vector<DesktopEntry> entries;
    for (const GList* node = all.get(); node; node = node->next) {
        entries.push_back(
            entryOf(static_cast<GDesktopAppInfo*>(node->data), static_cast<GAppInfo*>(node->data), programs));
    }
    return entries;
}

} // namespace

std::string programOfEntry(const std::string& executable, ProgramSearch& programs) {
    if (executable.empty() || startsOtherPrograms(executable))
        return {};
    return programs.file(executable);
}

DesktopEntries::DesktopEntries(Background& background) : background_(background) { refresh(); }

void DesktopEntries::refresh(std::function<void()> done) {
    if (done)
        waiting_.push_back(std::move(done));
    if (std::exchange(reading_, true))
        return;
    const char* searchPath = std::getenv("PATH");
    runInBackground(
        background_, lifetime_,
        [path = std::string(searchPath ? searchPath : "")] { return readEntries(path); },
        [this](std::vector<DesktopEntry> entries) {
            entries_ = std::move(entries);
            reading_ = false;
            for (const auto& tell : std::exchange(waiting_, {}))
                tell();
        });
}

} // namespace norvane
