#include "platform/linux/files/kept_user_defaults.h"

#include <utility>

namespace norvane {

KeptUserDefaults::KeptUserDefaults(std::string path, std::function<void()> cannotStore)
    : file_(std::move(path)), cannotStore_(std::move(cannotStore)) {}

std::optional<PropertyList> KeptUserDefaults::object(const std::string& key) const {
    {
        const std::lock_guard guard(mutex_);
        const auto entry = kept_.find(key);
        if (entry != kept_.end())
            return entry->second;
    }
    return file_.object(key);
}

void KeptUserDefaults::set(const std::string& key, PropertyList value) { store(key, std::move(value)); }

void KeptUserDefaults::remove(const std::string& key) { store(key, std::nullopt); }

void KeptUserDefaults::store(const std::string& key, std::optional<PropertyList> value) {
    const std::lock_guard writing(writing_);
    const Changes newest{{key, std::move(value)}};
    Changes all;
    {
        const std::lock_guard guard(mutex_);
        kept_.insert_or_assign(key, newest.begin()->second);
        all = kept_;
    }
    // Reads go on meanwhile.
    if (storeKept(all)) {
        const std::lock_guard guard(mutex_);
        kept_.clear();
    } else if (all.size() > 1 && storeKept(newest)) { // an older one is what the file refuses
        const std::lock_guard guard(mutex_);
        kept_.erase(key);
    } else if (const auto cannotStore = std::exchange(cannotStore_, {})) {
        cannotStore();
    }
}

bool KeptUserDefaults::storeKept(const Changes& changes) {
    return file_.update([&changes](PropertyList::Dictionary& entries) {
        for (const auto& [key, value] : changes) {
            if (value)
                entries.insert_or_assign(key, *value);
            else
                entries.erase(key);
        }
    });
}

} // namespace norvane
