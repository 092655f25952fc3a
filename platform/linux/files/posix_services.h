// The small services that need nothing but the C library.
#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/log_file.h"

namespace norvane {

class PosixFileSystem final : public FileSystem {
public:
    /// `home`: the user's home folder.
    explicit PosixFileSystem(std::string home);

    /// Asks a child process, for 150 ms at most, what lies below the root of a mount that may never answer.
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] std::optional<std::string> mountPointOf(const std::string& path) const override;
    [[nodiscard]] std::string displayName(const std::string& path) const override;
    [[nodiscard]] std::optional<std::int64_t> homeVolumeAvailableBytes() const override;
    [[nodiscard]] std::optional<std::vector<FolderEntry>> list(const std::string& folder) const override;

private:
    const std::string home_;
};

/// Opens the file anew each time, so that it may be moved or removed at any time. A file that cannot be
/// opened is left alone and the line is lost.
class PosixLogFile final : public LogFile {
public:
    explicit PosixLogFile(std::string path);

    void append(std::string_view bytes) override;
    [[nodiscard]] LogFileInfo info() const override;
    [[nodiscard]] std::string read(std::uint64_t offset, std::size_t count) const override;

private:
    const std::string path_;
};

} // namespace norvane
