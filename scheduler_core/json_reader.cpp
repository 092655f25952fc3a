#include "scheduler_core/json_reader.h"

#include <cmath>
#include <limits>
#include <set>
#include <vector>

#include "platform/text/truncation.h"

namespace norvane::json_reader {

namespace {

const Json& expect(bool isRightType, const char* typeName, const Json& value) {
    if (!isRightType)
        throw Error(std::string("Expected ") + typeName + ", found " + value.type_name() + ".");
    return value;
}

// Refuses during parsing what the finished value would no longer show.
class StructureCheck {
public:
    void operator()(Json::parse_event_t event, const Json& parsed) {
        if (event == Json::parse_event_t::object_start)
            openObjects_.emplace_back();
        else if (event == Json::parse_event_t::object_end)
            openObjects_.pop_back();
        else if (event == Json::parse_event_t::key && !openObjects_.back().insert(parsed).second)
            throw Error("The key " + parsed.dump() + " occurs twice in one object.");
    }

private:
    std::vector<std::set<std::string>> openObjects_; // the keys seen so far, outermost first
};

} // namespace

Json parse(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        throw Error("The document starts with a byte order mark.");
    StructureCheck check;
    if (text.find('\0') != std::string_view::npos) // which the parser takes for the end
        throw Error("The document has a zero byte.");
    return Json::parse(text, [&check](int /*depth*/, Json::parse_event_t event, const Json& parsed) {
        check(event, parsed);
        return true;
    });
}

const Json& object(const Json& value) { return expect(value.is_object(), "an object", value); }

const Json& array(const Json& value) { return expect(value.is_array(), "an array", value); }

bool boolean(const Json& value) { return expect(value.is_boolean(), "a boolean", value).get<bool>(); }

std::string string(const Json& value) {
    return expect(value.is_string(), "a string", value).get<std::string>();
}

double number(const Json& value) { return expect(value.is_number(), "a number", value).get<double>(); }

std::int64_t integer(const Json& value) {
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX)
        throw Error("The number " + value.dump() + " is too large.");
    if (value.is_number_float()) {
        const auto real = value.get<double>();
        const auto whole = truncated(real);
        // Integers below the range, rounded, look like its least one.
        if (!whole || *whole == std::numeric_limits<std::int64_t>::min() || real != std::trunc(real))
            throw Error("Expected a whole number, found " + value.dump() + ".");
    }
    return expect(value.is_number(), "a whole number", value).get<std::int64_t>();
}

const Json& required(const Json& value, const char* key) {
    const auto entry = object(value).find(key);
    if (entry == value.end())
        throw Error(std::string("The key \"") + key + "\" is missing.");
    return *entry;
}

const Json* optional(const Json& value, const char* key) {
    const auto entry = object(value).find(key);
    return entry == value.end() || entry->is_null() ? nullptr : &*entry;
}

} // namespace norvane::json_reader
