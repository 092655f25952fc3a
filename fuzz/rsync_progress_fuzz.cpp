#include "fuzz/fuzz.h"
#include "timemachine_linux/rsync/rsync_progress.h"

namespace norvane {

/// The first byte says how long the pieces are that the rest is read in.
void fuzz(std::string_view input) {
    if (input.empty())
        return;
    const std::size_t pieceLength = 1 + static_cast<unsigned char>(input.front());
    const std::string_view text = input.substr(1);
    RsyncProgressReader whole;
    whole.feed(text);
    RsyncProgressReader pieces;
    for (std::size_t start = 0; start < text.size(); start += pieceLength) {
        const auto bytes = pieces.bytes();
        const auto files = pieces.files();
        pieces.feed(text.substr(start, pieceLength));
        check(pieces.bytes() >= bytes && pieces.files() >= files, "Figures never go back.");
    }
    check(pieces.bytes() == whole.bytes() && pieces.files() == whole.files(),
          "Where the stream is cut makes no difference.");
    if (const auto progress = parseRsyncProgressLine(text))
        check(progress->bytes >= 0 && progress->files.value_or(0) >= 0, "Figures are counts.");
}

} // namespace norvane
