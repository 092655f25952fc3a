// The result of reading a stored document.
#pragma once

#include <optional>
#include <string>

namespace norvane {

/// Either a value or the reason why there is none.
template <class T>
struct Decoded {
    std::optional<T> value;
    std::string error; ///< English, for a log or a test; empty when there is a value.
};

} // namespace norvane
