// A user's stored settings: keys with property-list values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/text/property_list.h"

namespace norvane {

/// One application's settings of one user. Any thread. Nothing reports an error: what cannot be read is
/// absent, what cannot be written leaves the stored value as it was.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value as it stands now, whoever wrote it; none when the key is missing.
    [[nodiscard]] virtual std::optional<PropertyList> object(const std::string& key) const = 0;

    /// Stores the value at once.
    virtual void set(const std::string& key, PropertyList value) = 0;

    /// Removes the key if it is there.
    virtual void remove(const std::string& key) = 0;

    // Typed reading, the same for every store.

    /// None unless the value is binary data.
    [[nodiscard]] std::optional<std::string> data(const std::string& key) const;

    /// None unless the value is a date.
    [[nodiscard]] std::optional<Instant> date(const std::string& key) const;

    /// A number (fraction dropped) or a text that is wholly a number; 0 when missing or anything else.
    [[nodiscard]] std::int64_t integer(const std::string& key) const;

    /// A boolean, a number other than 0, or the texts "1", "YES" and "true"; false when missing or anything
    /// else.
    [[nodiscard]] bool boolean(const std::string& key) const;
};

} // namespace norvane
