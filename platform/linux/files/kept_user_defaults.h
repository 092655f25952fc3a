// Settings that last for the life of the program even where they cannot be stored.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/linux/files/user_defaults_file.h"

namespace norvane {

/// Stands over a file. What the file refuses (a read-only folder, a full disk) is kept in memory and read
/// from there, until a later write goes through and takes it along. Any thread.
class KeptUserDefaults final : public UserDefaults {
public:
    /// Calls `cannotStore` once, at the first refusal, on the thread that writes.
    KeptUserDefaults(std::string path, std::function<void()> cannotStore);

    [[nodiscard]] std::optional<PropertyList> object(const std::string& key) const override;
    void set(const std::string& key, PropertyList value) override;
    void remove(const std::string& key) override;

private:
    using Changes = std::map<std::string, std::optional<PropertyList>>; // none: removed

    void store(const std::string& key, std::optional<PropertyList> value);
    bool storeKept(const Changes& changes);

    UserDefaultsFile file_;
    std::mutex writing_;                // one write at a time; before the other
    std::function<void()> cannotStore_; // empty once it was called
    mutable std::mutex mutex_;
    Changes kept_; // guarded by mutex_, changed only while writing_ is held
};

} // namespace norvane
