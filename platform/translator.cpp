#include "platform/translator.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <optional>

namespace norvane {

namespace {

std::string rounded(double number, int decimals) {
    std::array<char, 384> buffer{}; // the largest double has 309 digits before the point
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                      std::chars_format::fixed, decimals);
    return {buffer.data(), result.ptr};
}

/// The argument as this placeholder wants it; none when it is of another type.
std::optional<std::string> filled(std::string_view placeholder, const FormatArgument& argument) {
    if (const auto* text = std::get_if<std::string>(&argument); text && placeholder == "%@")
        return *text;
    if (const auto* integer = std::get_if<std::int64_t>(&argument); integer && placeholder == "%d")
        return std::to_string(*integer);
    if (const auto* real = std::get_if<double>(&argument); real && placeholder == "%.1f")
        return rounded(*real, 1);
    if (const auto* real = std::get_if<double>(&argument); real && placeholder == "%.0f")
        return rounded(*real, 0);
    return std::nullopt;
}

std::string_view placeholderAt(std::string_view format) {
    for (const std::string_view known : {"%%", "%@", "%d", "%.1f", "%.0f"}) {
        if (format.starts_with(known))
            return known;
    }
    return {};
}

} // namespace

std::string fillIn(std::string_view format, std::initializer_list<FormatArgument> arguments) {
    std::string text;
    const auto* argument = arguments.begin();
    while (!format.empty()) {
        const std::string_view placeholder = placeholderAt(format);
        if (placeholder.empty()) {
            text += format.front();
            format.remove_prefix(1);
            continue;
        }
        format.remove_prefix(placeholder.size());
        if (placeholder == "%%")
            text += '%';
        else if (argument == arguments.end())
            text += placeholder;
        else
            text += filled(placeholder, *argument++).value_or(std::string(placeholder));
    }
    return text;
}

} // namespace norvane
