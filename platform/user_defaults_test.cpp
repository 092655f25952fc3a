#include "platform/user_defaults.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>
#include <vector>

namespace norvane {

namespace {

class OneValue final : public UserDefaults {
public:
    explicit OneValue(std::optional<PropertyList> value) : value_(std::move(value)) {}
    [[nodiscard]] std::optional<PropertyList> object(const std::string&) const override { return value_; }
    void set(const std::string&, PropertyList) override {}
    void remove(const std::string&) override {}

private:
    std::optional<PropertyList> value_;
};

TEST(UserDefaults, ReadsNumbersAndBooleansLeniently) {
    struct Case {
        std::optional<PropertyList> stored;
        std::int64_t integer;
        bool boolean;
    };
    using namespace std::string_literals;
    const std::vector<Case> cases = {
        {std::nullopt, 0, false},
        {{{std::int64_t{-3}}}, -3, true},
        {{{2.9}}, 2, true},
        {{{-0.5}}, 0, true},
        {{{1e300}}, 0, true},
        {{{std::numeric_limits<double>::quiet_NaN()}}, 0, true},
        {{{std::uint64_t{1} << 63}}, 0, true},
        {{{true}}, 1, true},
        {{{"1"s}}, 1, true},
        {{{"-12.7"s}}, -12, false},
        {{{"9223372036854775807"s}}, std::numeric_limits<std::int64_t>::max(), false},
        {{{"12x"s}}, 0, false},
        {{{" 1"s}}, 0, false},
        {{{"YES"s}}, 0, true},
        {{{"true"s}}, 0, true},
        {{{"yes"s}}, 0, false},
        {{{PropertyListData{"1"}}}, 0, false},
        {{{PropertyList::Array{}}}, 0, false},
    };
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const OneValue store(cases[index].stored);
        EXPECT_EQ(store.integer("key"), cases[index].integer) << index;
        EXPECT_EQ(store.boolean("key"), cases[index].boolean) << index;
    }
}

TEST(UserDefaults, ReadsDataAndDatesStrictly) {
    using namespace std::string_literals;
    const Instant instant(std::chrono::microseconds(5));
    EXPECT_EQ(OneValue(PropertyList{PropertyListData{"x"}}).data("key"), "x");
    EXPECT_EQ(OneValue(PropertyList{"x"s}).data("key"), std::nullopt);
    EXPECT_EQ(OneValue(PropertyList{instant}).date("key"), instant);
    EXPECT_EQ(OneValue(PropertyList{std::int64_t{5}}).date("key"), std::nullopt);
    EXPECT_EQ(OneValue(std::nullopt).date("key"), std::nullopt);
}

} // namespace

} // namespace norvane
