#include "controller/log/log_follower.h"

#include <algorithm>

namespace norvane {

namespace {

constexpr std::size_t pieceBytes = 256 * 1024;
constexpr std::size_t tailBytes = 4096;

} // namespace

bool LogFollower::update() {
    const LogFileInfo info = file_.info();
    if (loaded_ && info == last_)
        return false;
    readTo(info);
    return true;
}

void LogFollower::updateAnew() { readTo(file_.info()); }

void LogFollower::readTo(const LogFileInfo& info) {
    if (!continues(info))
        restart();
    loaded_ = true;
    last_ = info;
    // To the size that was told, not further: else the next look would find a file that has not grown.
    while (offset_ < info.size) {
        const std::string piece =
            file_.read(offset_, std::min<std::uint64_t>(pieceBytes, info.size - offset_));
        if (piece.empty())
            break; // it shrank meanwhile, which the next look sees
        reader_.append(piece);
        offset_ += piece.size();
        tail_ = (tail_ + piece)
                    .substr(tail_.size() + piece.size() - std::min(tailBytes, tail_.size() + piece.size()));
    }
}

bool LogFollower::continues(const LogFileInfo& info) const {
    return loaded_ && info.identity == last_.identity && info.size >= offset_ &&
           file_.read(offset_ - tail_.size(), tail_.size()) == tail_;
}

void LogFollower::restart() {
    reader_ = EventLogReader();
    offset_ = 0;
    tail_.clear();
}

} // namespace norvane
