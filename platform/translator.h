// User-visible text: looked up by its English text, then filled in.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace norvane {

class Translator {
public:
    virtual ~Translator() = default;

    /// The text in the user's language; the key itself when there is no translation.
    [[nodiscard]] virtual std::string translate(std::string_view englishText) const = 0;
};

using FormatArgument = std::variant<std::string, std::int64_t, double>;

/// Fills in the placeholders %@ (text), %d (integer) and %.1f (real, one decimal after a point) and %.0f
/// (real, none; a half goes to the even neighbour) in order; "%%" stands for one percent sign. A placeholder
/// without a fitting argument is left as it stands.
[[nodiscard]] std::string fillIn(std::string_view format, std::initializer_list<FormatArgument> arguments);

} // namespace norvane
