// One life, from a seed: simulate YEARS SEED. Prints what broke a rule, if anything did.
#include "tests/simulation/simulation.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const double years = argc == 3 ? std::strtod(argv[1], nullptr) : 0;
    if (!(years > 0)) {
        std::fputs("Usage: simulate YEARS SEED\n", stderr);
        return 2;
    }
    const auto outcome = norvane::simulation::simulate(std::strtoull(argv[2], nullptr, 10), years);
    std::fputs(outcome.report.c_str(), stdout);
    return outcome.violation.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
