// What a forked child keeps of the files that its parent has open.
#pragma once

namespace norvane {

/// Closes every descriptor past standard error but these two, which may be the same.
void closeAllBut(int one, int other);

/// Standard input, output and error become /dev/null.
void redirectStandardStreams();

} // namespace norvane
