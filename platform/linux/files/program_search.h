// Which file a program's name means.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

/// $PATH.
[[nodiscard]] std::string searchPathOfProcess();

/// The first program of this name in $PATH, by the path that stands there; none when it is not installed.
[[nodiscard]] std::optional<std::string> findProgram(const std::string& name);

/// Remembers what it found, because most names are asked for again and again. One thread at a time.
class ProgramSearch {
public:
    enum class Reach {
        everywhere, ///< May wait for a disk or a network as long as that takes.
        prompt,     ///< Leaves out what lies on file systems that may never answer.
    };

    /// `searchPath`: as in $PATH.
    ProgramSearch(const std::string& searchPath, Reach reach);

    /// With symbolic links resolved, as far as a file system that is left out. Empty: no such program is in
    /// PATH. `name`: a path (of which nobody asks whether the program is there), or a name to be looked up.
    [[nodiscard]] const std::string& file(const std::string& name);

    /// Whether there is such a program; taken for granted on a file system that is left out.
    [[nodiscard]] bool has(const std::string& name);

    /// Whether PATH names folders that are left out.
    [[nodiscard]] bool leavesOut() const { return leavesOut_; }

private:
    [[nodiscard]] std::string find(const std::string& name) const;
    [[nodiscard]] std::string resolved(const std::string& path) const;
    [[nodiscard]] bool canBeStarted(const std::string& path) const;
    [[nodiscard]] bool mayWait(const std::string& path) const;

    std::vector<std::string> slowFolders_; // where the file systems that are left out are mounted
    std::vector<std::string> folders_;
    bool leavesOut_ = false;
    std::map<std::string, std::string> files_;
};

} // namespace norvane
