// What can be told of a folder as a destination to be, without writing to it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvane {

enum class OfferRefusal {
    none,
    missing,
    notAFolder,
    rootFolder,
    unprintable, ///< The path is not UTF-8, or has control characters: it could not be told in one line.
    isSource,
    readOnly,    ///< The file system is.
    notWritable, ///< For this user.
    noHardLinks, ///< Snapshots share unchanged files by them.
};

struct OfferFacts {
    std::string folder; ///< Canonical where it exists.
    bool exists = true;
    bool isFolder = true;
    bool readOnly = false;
    bool writable = true;
    std::string fileSystem; ///< As the mount table names it, "ext4"; empty when unknown.
    std::string disk;       ///< Equal for folders on one disk; empty when unknown.
};

struct SourceFacts {
    std::string folder; ///< Canonical.
    std::string disk;
};

struct OfferCheck {
    OfferRefusal refusal = OfferRefusal::none;
    std::string fileSystem; ///< Of the folder.
    std::string
        insideSource; ///< The source that holds the folder, which backups leave out; empty: none does.
    std::string sharesDiskWith; ///< A source on the same disk, which would be lost with it; empty: none.

    bool operator==(const OfferCheck&) const = default;
};

[[nodiscard]] OfferCheck checkOffer(const OfferFacts& facts, const std::vector<SourceFacts>& sources);

/// Of those file systems that are known to have none; what is not known may have them.
[[nodiscard]] bool lacksHardLinks(std::string_view fileSystem);

/// Looks at the folder. On a mount that may never answer nothing is looked at but the mount table, and what
/// is unknown counts as good.
[[nodiscard]] OfferFacts offerFactsOf(const std::string& folder);

/// The disk that holds the folder: partitions of one disk, and what is encrypted on it, count as one.
[[nodiscard]] std::string diskOf(const std::string& folder);

} // namespace norvane
