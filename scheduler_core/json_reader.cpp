#include "scheduler_core/json_reader.h"

#include <cmath>
#include <set>
#include <vector>

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
    void operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        constexpr int maxDepth = 64;
        if (depth > maxDepth)
            throw Error("The document is nested too deeply.");
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
    return Json::parse(text, [&check](int depth, Json::parse_event_t event, const Json& parsed) {
        check(depth, event, parsed);
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
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX)
        throw Error("The number " + value.dump() + " is too large.");
    if (value.is_number_float()) {
        const auto real = value.get<double>();
        if (real != std::trunc(real) || real < -limit || real >= limit)
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
