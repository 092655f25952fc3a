// The program desktop-entries: prints, through GIO, every application of the user's and the system's folders
// that can be started. It waits for their disks as long as that takes, and is a program of its own because a
// process cannot end while one of its threads waits for a dead disk, nor take GIO's lock from it.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gio/gdesktopappinfo.h>
#include <memory>
#include <string>
#include <sys/prctl.h>

#include "platform/linux/applications/application_identity.h"
#include "platform/linux/applications/desktop_entry.h"
#include "platform/linux/files/program_search.h"

namespace {

using namespace norvane;

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

std::string programOf(const std::string& executable, ProgramSearch& programs) {
    return executable.empty() || startsOtherPrograms(executable) ? std::string() : programs.file(executable);
}

DesktopEntry entryOf(GDesktopAppInfo* file, GAppInfo* info, ProgramSearch& programs) {
    return {.id = withoutSuffix(textOf(g_app_info_get_id(info))),
            .program = programOf(firstWord(g_app_info_get_commandline(info)), programs),
            .name = adopted(g_desktop_app_info_get_locale_string(file, G_KEY_FILE_DESKTOP_KEY_NAME)),
            .icon = adopted(g_desktop_app_info_get_string(file, G_KEY_FILE_DESKTOP_KEY_ICON)),
            .shown = g_app_info_should_show(info) != FALSE};
}

void freeList(GList* list) { g_list_free_full(list, g_object_unref); }

std::vector<DesktopEntry> readEntries() {
    ProgramSearch programs(searchPathOfProcess(), ProgramSearch::Reach::everywhere);
    const std::unique_ptr<GList, void (*)(GList*)> all(g_app_info_get_all(), freeList);
    std::vector<DesktopEntry> entries;
    for (const GList* node = all.get(); node; node = node->next) {
        entries.push_back(
            entryOf(static_cast<GDesktopAppInfo*>(node->data), static_cast<GAppInfo*>(node->data), programs));
    }
    return entries;
}

} // namespace

int main() {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // whoever asked would have ended it, and cannot any more
    const std::string text = textOfEntries(readEntries());
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}
