// A stack of its own for signal handlers of the calling thread.
#pragma once

#include <csignal>
#include <cstddef>
#include <memory>

namespace norvane {

/// While it lives, handlers installed with SA_ONSTACK run on it in the thread that made it: an overflow of
/// the thread's own stack can be told (sigaltstack(2)). Destroyed by the same thread, which gets its earlier
/// one back.
class AlternateSignalStack {
public:
    AlternateSignalStack() {
        stack_t stack{};
        stack.ss_sp = memory_.get();
        stack.ss_size = bytes;
        sigaltstack(&stack, &earlier_);
    }
    ~AlternateSignalStack() { sigaltstack(&earlier_, nullptr); }
    AlternateSignalStack(const AlternateSignalStack&) = delete;
    AlternateSignalStack& operator=(const AlternateSignalStack&) = delete;

private:
    static constexpr std::size_t bytes = 65536; // unwinding takes some kilobytes

    std::unique_ptr<std::byte[]> memory_ = std::make_unique<std::byte[]>(bytes);
    stack_t earlier_{};
};

} // namespace norvane
