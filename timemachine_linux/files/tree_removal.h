// Taking away folders that nobody shall see as a snapshot. Symbolic links are never followed.
#pragma once

#include <string>
#include <vector>

namespace norvane {

/// Removes the file, or the folder with all in it, folders that refuse writing included. False: something is
/// left. Nothing there counts as removed.
bool removeTree(const std::string& path);

/// Removes from the folder every file that has another name as well, in another snapshot or here. An
/// unfinished snapshot must hold none before rsync works in it again: rsync would change the mode or owner of
/// such a file in place, and so in the earlier snapshot that shares it.
bool removeSharedFiles(const std::string& folder);

/// Removes from a snapshot's folder what lies neither in one of the sources nor on the way to one, and what
/// is on the way without being a folder.
bool removeAllBut(const std::string& snapshotFolder, const std::vector<std::string>& sources);

} // namespace norvane
