#include "platform/linux/files/user_defaults_file.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/file_status.h"
#include "platform/linux/files/user_folders.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time) { return time.tv_sec * nanosecondsPerSecond + time.tv_nsec; }

/// Tells one content of a file from another without reading it.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0; ///< Nanoseconds, as `changed`.
    std::int64_t changed = 0;

    explicit Identity(const struct stat& status)
        : device(status.st_dev), inode(status.st_ino), size(status.st_size),
          modified(nanoseconds(status.st_mtim)), changed(nanoseconds(status.st_ctim)) {}
    bool operator==(const Identity&) const = default;
};

/// What stands in a file.
struct Content {
    enum class Kind { missing, settings, noSettings, inaccessible };

    Kind kind = Kind::missing;
    PropertyList::Dictionary entries;
    /// None when a later content could look the same.
    std::optional<Identity> identity;
};

std::optional<std::string> readToEnd(int descriptor) {
    std::string text;
    std::array<char, 16384> buffer{};
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count == 0)
            return text;
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return std::nullopt;
    }
}

/// File times advance with the timer tick, 10 ms at the slowest: a file that was changed this moment can be
/// changed again, in place or on a reused inode, without looking different.
bool isSettled(const Identity& identity) {
    constexpr std::int64_t twoTicks = 20'000'000;
    timespec now{};
    return ::clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0 &&
           nanoseconds(now) - identity.changed > twoTicks;
}

Content readContent(const std::string& path) {
    constexpr off_t sizeLimit = off_t{64} * 1024 * 1024; // nobody's settings: reading it would only stall
    Content content;
    // Without O_NONBLOCK opening a named pipe would wait for a writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        content.kind = errno == ENOENT ? Content::Kind::missing : Content::Kind::inaccessible;
        return content;
    }
    content.kind = Content::Kind::inaccessible;
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > sizeLimit)
        return content;
    const Identity identity(status);
    const bool settled = isSettled(identity);
    const auto text = readToEnd(file.get());
    if (!text)
        return content;
    auto list = parsePropertyList(*text);
    auto* const entries = list ? std::get_if<PropertyList::Dictionary>(&list->value) : nullptr;
    content.kind = entries ? Content::Kind::settings : Content::Kind::noSettings;
    if (entries)
        content.entries = std::move(*entries);
    if (settled)
        content.identity = identity;
    return content;
}

/// Whoever could read the old file can read the new one, when another user such as root writes it.
void takeOver(int descriptor, const struct stat& old) {
    const bool group = ::fchown(descriptor, old.st_uid, old.st_gid) == 0 ||
                       ::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
    // Rights of the old group are none of another group.
    ::fchmod(descriptor, old.st_mode & (group ? 0777U : 0707U));
}

bool writeNewFile(const std::string& path, std::string_view bytes, const std::string& replaced) {
    ::unlink(path.c_str()); // what a killed writer left
    const FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    struct stat old {};
    if (file && ::stat(replaced.c_str(), &old) == 0)
        takeOver(file.get(), old);
    return file && writeAll(file.get(), bytes) && ::fsync(file.get()) == 0;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// A new one belongs to the owner of its folder, who could not open root's.
FileDescriptor openLockFile(const std::string& path) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW;
    FileDescriptor lock(::open(path.c_str(), flags | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR));
    if (!lock)
        return FileDescriptor(::open(path.c_str(), flags | O_CREAT, S_IRUSR | S_IWUSR));
    struct stat folder {};
    if (::stat(folderOf(path).c_str(), &folder) == 0 && folder.st_uid != ::geteuid())
        static_cast<void>(::fchown(lock.get(), folder.st_uid, folder.st_gid) == 0); // only root may
    return lock;
}

/// The lock is held while the result lives. Gives up after about 10 s: a holder that was stopped must not
/// stop everyone else.
std::optional<FileDescriptor> lockFile(const std::string& path) {
    constexpr int attempts = 10'000;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        FileDescriptor lock = openLockFile(path);
        if (!lock)
            return std::nullopt;
        if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
            // Somebody may have deleted the file between the two calls; the next writer would lock another
            // one.
            if (isSameFile(fileStatus(lock.get()), fileStatus(path)))
                return lock;
        } else if (errno != EWOULDBLOCK && errno != EINTR) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return std::nullopt;
}

/// Where a symbolic link leads, so that a write changes the file and leaves the link.
std::string withoutLinks(const std::string& path) {
    char* const resolved = ::realpath(path.c_str(), nullptr);
    if (!resolved)
        return path;
    std::string result = resolved;
    std::free(resolved);
    return result;
}

/// Puts the finished file in place of the old one.
bool replace(const std::string& path, const std::string& finished, bool keepOld) {
    const std::string aside = path + ".unreadable";
    if (keepOld && std::rename(path.c_str(), aside.c_str()) != 0)
        return false;
    if (std::rename(finished.c_str(), path.c_str()) == 0)
        return true;
    if (keepOld)
        std::rename(aside.c_str(), path.c_str());
    return false;
}

/// Only while holding the lock, which also makes the name of the new file safe to share.
bool store(const std::string& path, PropertyList::Dictionary entries, bool keepOld) {
    const std::string text = writeXmlPropertyList(PropertyList{std::move(entries)});
    // One value that cannot be read back, such as text that is not UTF-8, would take all others with it.
    if (!parseXmlPropertyList(text))
        return false;
    const std::string finished = path + ".new";
    if (!writeNewFile(finished, text, path) || !replace(path, finished, keepOld)) {
        ::unlink(finished.c_str());
        return false;
    }
    // The new content stands; should the folder not take a sync, a power cut may bring back the old one,
    // whole.
    const FileDescriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.get());
    return true;
}

} // namespace

struct UserDefaultsFile::Cache {
    std::mutex mutex;
    Content content;

    /// What the file holds now. Hold the mutex.
    const Content& current(const std::string& path) {
        struct stat status {};
        const bool exists = ::stat(path.c_str(), &status) == 0;
        if (!exists || !content.identity || *content.identity != Identity(status))
            content = readContent(path);
        return content;
    }
};

UserDefaultsFile::UserDefaultsFile(std::string path)
    : path_(std::move(path)), cache_(std::make_unique<Cache>()) {}

UserDefaultsFile::~UserDefaultsFile() = default;

std::optional<PropertyList> UserDefaultsFile::object(const std::string& key) const {
    const std::lock_guard guard(cache_->mutex);
    const Content& content = cache_->current(path_);
    const auto entry = content.entries.find(key);
    if (entry == content.entries.end())
        return std::nullopt;
    return entry->second;
}

std::optional<PropertyList::Dictionary> UserDefaultsFile::all() const {
    const std::lock_guard guard(cache_->mutex);
    const Content& content = cache_->current(path_);
    if (content.kind != Content::Kind::settings)
        return std::nullopt;
    return content.entries;
}

void UserDefaultsFile::set(const std::string& key, PropertyList value) {
    update([&](PropertyList::Dictionary& entries) { entries.insert_or_assign(key, std::move(value)); });
}

void UserDefaultsFile::remove(const std::string& key) {
    update([&](PropertyList::Dictionary& entries) { entries.erase(key); });
}

bool UserDefaultsFile::update(const std::function<void(PropertyList::Dictionary&)>& change) {
    // Reads on other threads go on meanwhile: this neither uses the cache nor takes its mutex.
    const std::string path = withoutLinks(path_);
    if (!makeFolder(folderOf(path)))
        return false;
    const auto lock = lockFile(path + ".lock");
    if (!lock)
        return false;
    const Content stored = readContent(path);
    if (stored.kind == Content::Kind::inaccessible)
        return false;
    PropertyList::Dictionary entries = stored.entries;
    change(entries);
    if (entries == stored.entries)
        return true;
    return store(path, std::move(entries), stored.kind == Content::Kind::noSettings);
}

} // namespace norvane
