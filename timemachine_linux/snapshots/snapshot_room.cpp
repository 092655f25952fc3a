#include "timemachine_linux/snapshots/snapshot_room.h"

#include <array>
#include <fts.h>
#include <memory>
#include <sys/stat.h>
#include <unordered_map>

namespace norvane {

namespace {

class Count {
public:
    explicit Count(const std::function<bool()>& stopRequested) : stopRequested_(stopRequested) {}

    void visit(std::string folder) {
        const std::array<char*, 2> roots{folder.data(), nullptr};
        const std::unique_ptr<FTS, int (*)(FTS*)> walk(
            ::fts_open(roots.data(), FTS_PHYSICAL | FTS_XDEV, nullptr), ::fts_close);
        while (const FTSENT* entry = walk && !stopRequested_() ? ::fts_read(walk.get()) : nullptr)
            add(*entry);
    }

    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

private:
    void add(const FTSENT& entry) {
        constexpr std::int64_t blockBytes = 512; // stat(3type)
        switch (entry.fts_info) {
        case FTS_DP:
        case FTS_DNR: // as FTS_DP, of a folder that cannot be read
        case FTS_ERR:
        case FTS_NS:
            return;
        case FTS_D:
            break;
        default:
            if (!isLastName(*entry.fts_statp))
                return;
        }
        bytes_ += entry.fts_statp->st_blocks * blockBytes;
    }

    bool isLastName(const struct stat& status) {
        if (status.st_nlink < 2)
            return true;
        const auto names = names_.emplace(status.st_ino, 0).first;
        if (++names->second < status.st_nlink)
            return false;
        names_.erase(names);
        return true;
    }

    const std::function<bool()>& stopRequested_;
    std::int64_t bytes_ = 0;
    std::unordered_map<ino_t, nlink_t> names_; // of a file, seen so far; all are on one file system
};

} // namespace

std::optional<std::size_t> snapshotsHolding(std::int64_t bytes, const std::vector<std::string>& folders,
                                            const std::function<bool()>& stopRequested) {
    Count count(stopRequested);
    for (std::size_t i = 0; i < folders.size(); ++i) {
        count.visit(folders[i]);
        if (count.bytes() >= bytes)
            return i + 1;
    }
    return std::nullopt;
}

} // namespace norvane
