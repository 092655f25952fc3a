#include "timemachine_linux/backup/change_count.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unordered_set>
#include <utility>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/paths.h"

namespace norvane {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

class Walk {
public:
    Walk(const ChangeQuestion& question, const std::function<bool()>& stopRequested)
        : question_(question), stopRequested_(stopRequested),
          excluded_(question.excluded.begin(), question.excluded.end()) {
        for (const std::string& path : question.excluded)
            foldersWithExclusions_.insert(parentOf(path));
    }

    void visitSource(const std::string& source) {
        struct stat status {};
        if (::lstat(source.c_str(), &status) != 0)
            return;
        device_ = status.st_dev;
        if (!S_ISDIR(status.st_mode)) {
            visitFile(openBases(parentOf(source)), nameOf(source).c_str(), status);
            return;
        }
        pending_ = {source == "/" ? std::string() : source};
        while (!pending_.empty() && !stopRequested_()) {
            const std::string folder = std::move(pending_.back());
            pending_.pop_back();
            visitFolder(folder);
        }
    }

    [[nodiscard]] ChangeTotals totals() const { return totals_; }

private:
    [[nodiscard]] std::vector<FileDescriptor> openBases(const std::string& folder) const {
        std::vector<FileDescriptor> bases;
        for (const std::string& base : question_.bases)
            if (FileDescriptor opened(::open((base + folder).c_str(), folderFlags)); opened)
                bases.push_back(std::move(opened));
        return bases;
    }

    void visitFolder(const std::string& folder) {
        const int fd = ::open(folder.empty() ? "/" : folder.c_str(), folderFlags);
        struct stat status {};
        const bool known = fd >= 0 && ::fstat(fd, &status) == 0;
        if (!known || status.st_dev != device_) {
            if (known)
                totals_.otherFileSystems.push_back(folder);
            FileDescriptor(fd).reset();
            return;
        }
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(fd), ::closedir);
        const std::vector<FileDescriptor> bases = openBases(folder);
        const bool holdsExclusions = foldersWithExclusions_.count(folder) > 0;
        while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr) {
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            if (holdsExclusions && excluded_.count(folder + "/" + std::string(name)) > 0)
                continue;
            if (entry->d_type != DT_REG && entry->d_type != DT_DIR && entry->d_type != DT_UNKNOWN)
                continue;
            const bool isFolder = entry->d_type == DT_DIR;
            if (!isFolder && ::fstatat(fd, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            if (isFolder || S_ISDIR(status.st_mode))
                pending_.push_back(folder + "/" + std::string(name));
            else
                visitFile(bases, entry->d_name, status);
        }
    }

    void visitFile(const std::vector<FileDescriptor>& bases, const char* name, const struct stat& status) {
        if (!S_ISREG(status.st_mode))
            return;
        // All names of one file travel together, as one.
        if (status.st_nlink > 1 && !linked_.emplace(status.st_dev, status.st_ino).second)
            return;
        for (const FileDescriptor& base : bases) {
            struct stat copy {};
            if (::fstatat(base.get(), name, &copy, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(copy.st_mode) &&
                copy.st_size == status.st_size && copy.st_mtim.tv_sec == status.st_mtim.tv_sec &&
                (!question_.nanoseconds || copy.st_mtim.tv_nsec == status.st_mtim.tv_nsec))
                return;
        }
        totals_.bytes += status.st_size;
        ++totals_.files;
    }

    const ChangeQuestion& question_;
    const std::function<bool()>& stopRequested_;
    std::unordered_set<std::string> excluded_;
    std::unordered_set<std::string> foldersWithExclusions_;
    std::set<std::pair<dev_t, ino_t>> linked_;
    std::vector<std::string> pending_;
    dev_t device_ = 0;
    ChangeTotals totals_;
};

} // namespace

ChangeTotals countChanges(const ChangeQuestion& question, const std::function<bool()>& stopRequested) {
    Walk walk(question, stopRequested);
    for (const std::string& source : question.sources)
        walk.visitSource(source);
    return walk.totals();
}

} // namespace norvane
