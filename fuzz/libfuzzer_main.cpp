// What libFuzzer's own main() calls.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    norvane::fuzz({reinterpret_cast<const char*>(data), size});
    return 0;
}
