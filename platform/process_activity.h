// Telling the system that the program works although no window is open.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace norvane {

class ProcessActivity {
public:
    /// Destroying it ends the activity.
    class Token {
    public:
        virtual ~Token() = default;
    };

    virtual ~ProcessActivity() = default;

    /// Keeps the system from suspending the process or throttling its timers while the token lives.
    [[nodiscard]] virtual std::unique_ptr<Token> begin(std::uint64_t options, const std::string& reason) = 0;
};

} // namespace norvane
