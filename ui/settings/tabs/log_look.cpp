#include "ui/settings/tabs/log_look.h"

#include <algorithm>
#include <array>

namespace norvane {

namespace {

struct Rule {
    std::array<std::string_view, 3> words; // in lower case; an empty one is none
    LogLook look;
};

constexpr std::array<Rule, 7> rules = {{
    {{"finished"}, {"checkmark.circle.fill", Tint::green}},
    {{"failed", "never started", "error"}, {"xmark.octagon.fill", Tint::red}},
    {{"missed", "catching up"}, {"exclamationmark.arrow.circlepath", Tint::orange}},
    {{"waiting", "deferred"}, {"hourglass", Tint::secondary}},
    {{"scheduled for"}, {"calendar.badge.clock", Tint::secondary}},
    {{"started", "requested"}, {"arrow.triangle.2.circlepath", Tint::secondary}},
    {{"paused", "skip"}, {"pause.circle", Tint::secondary}},
}};

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool contains(std::string_view message, std::string_view word) {
    const auto found = std::search(message.begin(), message.end(), word.begin(), word.end(),
                                   [](char letter, char wanted) { return lowerCase(letter) == wanted; });
    return !word.empty() && found != message.end();
}

} // namespace

LogLook lookOf(std::string_view message) {
    for (const Rule& rule : rules) {
        if (std::any_of(rule.words.begin(), rule.words.end(),
                        [message](std::string_view word) { return contains(message, word); }))
            return rule.look;
    }
    return {"info.circle", Tint::secondary};
}

} // namespace norvane
