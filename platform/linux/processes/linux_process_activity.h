// Linux neither suspends nor throttles a process for having no window, so there is nothing to hold.
#pragma once

#include "platform/process_activity.h"

namespace norvane {

class LinuxProcessActivity final : public ProcessActivity {
public:
    [[nodiscard]] std::unique_ptr<Token> begin(std::uint64_t /*options*/,
                                               const std::string& /*reason*/) override {
        return std::make_unique<Token>();
    }
};

} // namespace norvane
