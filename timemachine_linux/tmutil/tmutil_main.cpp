// The program `tmutil`: backups of this machine, by the verbs that a Mac's tool of this name has.
#include <cstdio>
#include <string>
#include <vector>

#include "timemachine_linux/tmutil/tmutil_verbs.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(norvane::usageText().c_str(), stderr);
        return norvane::exitUsage;
    }
    const int result = norvane::runVerb(argv[1], std::vector<std::string>(argv + 2, argv + argc));
    return std::fflush(stdout) == 0 ? result : norvane::exitFailure;
}
