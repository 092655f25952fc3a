// Runs a target over every file of the folders it is given, without a fuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz.h"

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::size_t count = 0;
    for (int index = 1; index < argc; ++index) {
        for (const auto& entry : fs::directory_iterator(argv[index])) {
            std::fprintf(stderr, "%s\n", entry.path().c_str());
            std::ifstream file(entry.path(), std::ios::binary);
            // A vector, not a string: a read past the end must not meet a terminating zero.
            std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            bytes.shrink_to_fit();
            norvane::fuzz({bytes.data(), bytes.size()});
            ++count;
        }
    }
    // An empty corpus would pass without having shown anything.
    return count > 0 ? 0 : 1;
}
