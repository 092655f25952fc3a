// How the rooms tell that something could not be done.
#pragma once

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace norvane {

/// Why something could not be done. What has nothing else to give returns an optional one: none, it is done.
struct Failure {
    std::string text; ///< For a person.
    int error = 0;    ///< errno(3), where a system call failed; 0: another reason.
};

/// Of the system call that failed last; `what` it was about stands before the reason.
[[nodiscard]] inline Failure systemFailure(const std::string& what = {}) {
    const int error = errno;
    return {(what.empty() ? what : what + ": ") + std::strerror(error), error};
}

/// The value, or why there is none.
template <class Value>
class Result {
public:
    Result(Value value) : held_(std::move(value)) {}
    Result(Failure failure) : held_(std::move(failure)) {}

    [[nodiscard]] explicit operator bool() const { return std::holds_alternative<Value>(held_); }
    [[nodiscard]] const Value& operator*() const { return std::get<Value>(held_); }
    [[nodiscard]] Value& operator*() { return std::get<Value>(held_); }
    [[nodiscard]] const Value* operator->() const { return &std::get<Value>(held_); }
    [[nodiscard]] Value valueOr(Value other) const { return *this ? **this : std::move(other); }
    [[nodiscard]] const Failure& failure() const { return std::get<Failure>(held_); }

private:
    std::variant<Value, Failure> held_;
};

} // namespace norvane
