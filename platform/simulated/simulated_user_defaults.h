// A user's stored settings in memory, for tests.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/user_defaults.h"

namespace norvane {

/// Lives as long as the object. One thread at a time.
class SimulatedUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<PropertyList> object(const std::string& key) const override {
        const auto entry = values_.find(key);
        return entry == values_.end() ? std::nullopt : std::optional(entry->second);
    }

    void set(const std::string& key, PropertyList value) override {
        values_.insert_or_assign(key, std::move(value));
    }

    void remove(const std::string& key) override { values_.erase(key); }

private:
    std::map<std::string, PropertyList> values_;
};

} // namespace norvane
