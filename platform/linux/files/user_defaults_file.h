// Stored settings as one XML property-list file per domain.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/user_defaults.h"

namespace norvane {

/// The settings of one domain. Several objects, in one process or many, may stand over the same file: each
/// sees the others' writes at once, a writer never loses another's key, and a reader never sees half a file.
/// A write takes the lock file beside it ("<path>.lock", flock(2)), reads, changes, and replaces the file
/// atomically. A file that is no property list reads as empty; the first write then keeps it aside as
/// "<path>.unreadable".
class UserDefaultsFile final : public UserDefaults {
public:
    explicit UserDefaultsFile(std::string path);
    ~UserDefaultsFile() override;

    [[nodiscard]] std::optional<PropertyList> object(const std::string& key) const override;
    void set(const std::string& key, PropertyList value) override;
    void remove(const std::string& key) override;

    /// Everything stored; none when there is no file or it is no dictionary.
    [[nodiscard]] std::optional<PropertyList::Dictionary> all() const;

    /// Changes the whole under the lock; blocks for a disk write. False: it could not be stored, and nothing
    /// has changed: the folder or file refuses, a value would not read back (text that is no UTF-8, too deep
    /// nesting), or another process has kept the lock for 10 seconds.
    bool update(const std::function<void(PropertyList::Dictionary&)>& change);

private:
    struct Cache;

    const std::string path_;
    std::unique_ptr<Cache> cache_; // what the file held when last read, with its identity; guarded by a mutex
};

} // namespace norvane
