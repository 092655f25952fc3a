// Coverage-guided fuzzing of the readers of foreign text (libFuzzer).
//
// One target is one file that defines fuzz(). Linked with libfuzzer_main.cpp it is driven by libFuzzer, with
// replay_main.cpp it reads its corpus once, as a test.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace norvane {

/// Reads one input and checks what the parser's header promises of the result. Keeps no state between calls.
void fuzz(std::string_view input);

/// Ends the process unless the promise holds; the fuzzer then keeps the input.
inline void check(bool holds, const char* promise) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", promise);
    std::abort();
}

} // namespace norvane
