#include "platform/text/property_list.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <rapidcheck.h>
#include <vector>

#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;
using namespace std::string_literals;
using namespace std::chrono_literals;

constexpr auto signedMax = std::numeric_limits<std::int64_t>::max();
constexpr auto signedMin = std::numeric_limits<std::int64_t>::min();

PropertyList text(std::string value) { return {std::move(value)}; }
PropertyList integer(std::int64_t value) { return {value}; }
PropertyList bytes(std::string value) { return {PropertyListData{std::move(value)}}; }
PropertyList at(std::int64_t microseconds) { return {Instant(std::chrono::microseconds(microseconds))}; }
std::string plist(const std::string& content) { return "<plist version=\"1.0\">" + content + "</plist>"; }

std::string repeated(const std::string& part, int count) {
    std::string result;
    for (int index = 0; index < count; ++index)
        result += part;
    return result;
}

PropertyList sample() {
    return {Dictionary{
        {"text", text("Größe <&> \"quoted\"\r\n\t \xF0\x9F\x98\x80")},
        {"", text("")},
        {"numbers", {Array{integer(signedMin), {std::uint64_t{1} << 63}, {0.1}, {-2.5e300}, {true}}}},
        {"blob", bytes("\0\xFF\x10 abcdefgh"s)},
        {"empty", {Array{bytes(""), {Dictionary{}}, {Array{}}}}},
        {"date", at(1714558500'250000)}}};
}

struct Case {
    std::string input;
    PropertyList expected;
};

TEST(PropertyListXml, ReadsEveryType) {
    const std::vector<Case> cases = {
        {"<string> a &lt;&amp;&#228;&#x1F600;<![CDATA[<&amp;]]><!-- no --> </string>",
         text(" a <&ä\xF0\x9F\x98\x80<&amp; ")},
        {"<string/>", text("")},
        {"<string>a\r\nb&#13;</string>", text("a\nb\r")},
        {"<integer> -9223372036854775808 </integer>", integer(signedMin)},
        {"<integer>+7</integer>", integer(7)},
        {"<integer>18446744073709551615</integer>", {std::numeric_limits<std::uint64_t>::max()}},
        {"<real>1e3</real>", {1000.0}},
        {"<real>-Infinity</real>", {-std::numeric_limits<double>::infinity()}},
        {"<true/>", {true}},
        {"<false></false>", {false}},
        {"<data>\n\tAP8Q\n\tIA==\n</data>", bytes("\0\xFF\x10 "s)},
        {"<data/>", bytes("")},
        {"<date>1970-01-01T00:00:00Z</date>", at(0)},
        {"<date>2024-05-01T10:15:00.25Z</date>", at(1714558500'250000)},
        {"<date>1969-12-31T23:59:59.999999Z</date>", at(-1)},
        {"<date>2000-02-29T00:00:00Z</date>", at(951782400'000000)},
        {"<date>294247-01-10T04:00:54.775807Z</date>", {distantFuture}},
        {"<date>-290308-12-21T19:59:05.224192Z</date>", {distantPast}},
        {"<array> <true/> <!-- no --> <array/> </array>", {Array{{true}, {Array{}}}}},
        {"<dict><key>a</key><integer>1</integer><key>a</key><integer>2</integer></dict>",
         {Dictionary{{"a", integer(2)}}}},
    };
    for (const auto& [input, expected] : cases)
        EXPECT_EQ(parsePropertyList(plist(input)), expected) << input;
    EXPECT_TRUE(std::isnan(*parsePropertyList(plist("<real>nan</real>"))->number()));
    EXPECT_EQ(parsePropertyList("\xEF\xBB\xBF<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"b\">]>\n" +
                                plist("<true/>") + "\n<!-- end -->"),
              PropertyList{true});
}

TEST(PropertyListXml, RefusesAnythingElse) {
    for (const char* const content : {"",
                                      "<integer>12x</integer>",
                                      "<integer/>",
                                      "<integer>1.5</integer>",
                                      "<integer>- 1</integer>",
                                      "<integer>+-1</integer>",
                                      "<integer>18446744073709551616</integer>",
                                      "<real>0x10</real>",
                                      "<real>1e999</real>",
                                      "<real>1,5</real>",
                                      "<real/>",
                                      "<true>1</true>",
                                      "<data>A</data>",
                                      "<data>A===</data>",
                                      "<data>AA===</data>",
                                      "<data>AA==AAAA</data>",
                                      "<data>A*==</data>",
                                      "<date>garbage</date>",
                                      "<date>2023-02-29T00:00:00Z</date>",
                                      "<date>2024-05-01T24:00:00Z</date>",
                                      "<date>2024-05-01T23:59:60Z</date>",
                                      "<date>2024-05-01T10:15:00</date>",
                                      "<date>2024-05-01T10:15:00.Z</date>",
                                      "<date>2024-05-01T10:15:00.1234567Z</date>",
                                      "<date>2024-05-01T+1:15:00Z</date>",
                                      "<date>294247-01-10T04:00:54.775808Z</date>",
                                      "<date>-290308-12-21T19:59:05.224191Z</date>",
                                      "<date>999999-01-01T00:00:00Z</date>",
                                      "<dict><key>a</key></dict>",
                                      "<dict><string>a</string></dict>",
                                      "<dict><true/><key>a</key></dict>",
                                      "<dict>x<key>a</key><true/></dict>",
                                      "<array>x</array>",
                                      "<array><nonsense/></array>",
                                      "<string><b/></string>",
                                      "<key>a</key>",
                                      "<true/><true/>",
                                      "x<true/>",
                                      "<string>&unknown;</string>",
                                      "<string>&amp</string>",
                                      "<string>&#0;</string>",
                                      "<string>&#xDFFF;</string>",
                                      "<string>&#x110000;</string>",
                                      "<string>\xC3\x28</string>",
                                      "<string>\xED\xA0\x80</string>",
                                      "<string>\xC0\x80</string>"})
        EXPECT_FALSE(parsePropertyList(plist(content))) << content;
    for (const std::string& document :
         {"<true/>"s, plist("<string>a\0b</string>"s), plist("<true/>") + plist("<true/>"),
          plist("<true/>") + "x", " <?xml version=\"1.0\"?>" + plist("<true/>"),
          plist("<?xml version=\"1.0\"?><true/>"), plist("<true/>") + "<?xml version=\"1.0\"?>",
          "<!DOCTYPE plist><!DOCTYPE plist>" + plist("<true/>"), plist("<true/>") + "<!DOCTYPE plist>",
          plist("<true a='1' a='2'/>"), "<plist a='1' b='1' a='1'><true/></plist>"s, "<?xml"s,
          "<!DOCTYPE plist"s, "<plists><true/></plists>"s, "<plist><true/>"s, "<plist>"s, "<!---->"s,
          "bplist00"s + '\0'})
        EXPECT_FALSE(parsePropertyList(document)) << document;
}

TEST(PropertyListXml, DoesNotExpandDeclaredEntities) {
    const std::string document =
        "<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY f SYSTEM \"file:///etc/passwd\">]>";
    EXPECT_FALSE(parsePropertyList(document + plist("<string>&a;</string>")));
    EXPECT_FALSE(parsePropertyList(document + plist("<string>&f;</string>")));
}

TEST(PropertyListXml, WritesTheCommonLayout) {
    const PropertyList list{Dictionary{{"B", {Array{}}}, {"A", {Array{at(1714558500'250000), bytes("hi")}}}}};
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
        "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";
    EXPECT_EQ(
        writeXmlPropertyList(list, PlistDatePrecision::wholeSeconds),
        head +
            "<dict>\n\t<key>A</key>\n\t<array>\n\t\t<date>2024-05-01T10:15:00Z</date>\n\t\t<data>\n\t\taGk=\n"
            "\t\t</data>\n\t</array>\n\t<key>B</key>\n\t<array/>\n</dict>\n</plist>\n");
    EXPECT_NE(writeXmlPropertyList(list).find("<date>2024-05-01T10:15:00.25Z</date>"), std::string::npos);
}

TEST(PropertyListText, ReadsEveryForm) {
    const std::vector<Case> cases = {
        {"  a_$/:.-9 ", text("a_$/:.-9")},
        {R"("\a\b\f\n\r\t\v\"\'\\\101\0512\351\U00e9\Ud83d\UDE00")",
         text("\a\b\f\n\r\t\v\"'\\A)2éé\xF0\x9F\x98\x80")},
        // An escape that means nothing is what follows the backslash; no character is U+FFFD.
        {R"("\q\ä\U12\U12G4\400\Ud83d\Ude00\Ud83d\U0041\Ud83d\Ud83d")",
         text("qäU12U12G4\uFFFD\xF0\x9F\x98\x80\uFFFDA\uFFFD\uFFFD")},
        {"'it \"is\" \\\nä'", text("it \"is\" \nä")},
        {"\"\"", text("")},
        {"<00ff 10\n20>", bytes("\0\xFF\x10 "s)},
        {"<>", bytes("")},
        {"(1, \"2\" ,<33>,)", {Array{text("1"), text("2"), bytes("3")}}},
        {"()", {Array{}}},
        {"{}", {Dictionary{}}},
        {"/* head { */{ a = 1; // tail }\n\"b c\"=(x);a=2;}// end",
         {Dictionary{{"a", text("2")}, {"b c", {Array{text("x")}}}}}},
    };
    for (const auto& [input, expected] : cases)
        EXPECT_EQ(parsePropertyList(input), expected) << input;
}

TEST(PropertyListText, RefusesAnythingElse) {
    for (const char* const input :
         {"",         " ",     "a b",   "{} x",    "{a=1}", "{a=;}", "{a;}",     "{=1;}", "{a=1;", "{a=1;;}",
          "{(a)=1;}", "(",     "(1 2)", "(,)",     "(1,,)", "(1",    "<0>",      "<2 0>", "<0g>",  "<00",
          "\"open",   "'open", "\"\\",  "/* open", "a /",   "ä",     "\"\xFF\"", "=",     ";",     "}"})
        EXPECT_FALSE(parsePropertyList(input)) << input;
}

TEST(PropertyListText, WritesAsTheToolsPrint) {
    const PropertyList list{
        Dictionary{{"Percent", {0.4213}},
                   {"_raw", integer(-1)},
                   {"Name", text("a\"b\\\n\xC3\xA4")},
                   {"When", at(1714558500'250000)},
                   {"Blob", bytes("abcdef")},
                   {"Progress", {Dictionary{{"bytes", integer(12)}, {"done", {true}}, {"big", {1e15}}}}},
                   {"List", {Array{{Dictionary{}}, text(""), {Array{}}}}}}};
    EXPECT_EQ(writeTextPropertyList(list), R"({
    Blob = <61626364 6566>;
    List =     (
                {
        },
        "",
                (
        )
    );
    Name = "a\"b\\\n\U00e4";
    Percent = "0.4213";
    Progress =     {
        big = 1000000000000000;
        bytes = 12;
        done = 1;
    };
    When = "2024-05-01 10:15:00 +0000";
    "_raw" = "-1";
})");
}

TEST(PropertyList, RoundTripsAnyValue) {
    EXPECT_EQ(parsePropertyList(writeXmlPropertyList(sample())), sample());
    const auto toText = [](const std::vector<std::uint32_t>& points) {
        std::string result;
        for (const std::uint32_t point : points) {
            const std::uint32_t inRange = point % 0x110000;
            const bool isText =
                (inRange >= 0x20 || inRange == '\r') && (inRange < 0xD800 || inRange > 0xDFFF);
            appendUtf8(result, isText ? static_cast<char32_t>(inRange) : U'\n');
        }
        return result;
    };
    EXPECT_TRUE(rc::check([&](const std::vector<std::uint32_t>& points, std::int64_t number, double real,
                              const std::string& blob) {
        const std::string string = toText(points);
        const PropertyList texts{Dictionary{{string, {Array{text(string), bytes(blob)}}}}};
        RC_ASSERT(parsePropertyList(writeTextPropertyList(texts)) == texts);
        const PropertyList all{Array{integer(number), {real}, at(number), bytes(blob)}};
        RC_ASSERT(parsePropertyList(writeXmlPropertyList(all)) == all);
        RC_ASSERT(parsePropertyList(writeXmlPropertyList(texts)) == texts);
    }));
    EXPECT_EQ(parsePropertyList(writeXmlPropertyList(text("a\x01\0b"s))), text("a\uFFFD\uFFFDb"))
        << "XML has no control characters";
}

TEST(PropertyList, RefusesEveryTruncation) {
    const std::string xml = writeXmlPropertyList(sample());
    for (std::size_t length = 0; length < xml.rfind('>'); ++length)
        EXPECT_FALSE(parsePropertyList(xml.substr(0, length))) << length;
    const std::string old = writeTextPropertyList(sample());
    for (std::size_t length = 0; length < old.size(); ++length)
        EXPECT_FALSE(parsePropertyList(old.substr(0, length))) << length;
}

TEST(PropertyList, RefusesDeepNesting) {
    const auto nestedXml = [](int depth) {
        return plist(repeated("<array>", depth) + repeated("</array>", depth));
    };
    const auto nestedText = [](int depth) { return repeated("(", depth) + repeated(")", depth); };
    EXPECT_TRUE(parsePropertyList(nestedXml(maxPropertyListDepth)));
    EXPECT_TRUE(parsePropertyList(nestedText(maxPropertyListDepth)));
    for (const int depth : {maxPropertyListDepth + 1, 200'000}) {
        EXPECT_FALSE(parsePropertyList(nestedXml(depth)));
        EXPECT_FALSE(parsePropertyList(nestedText(depth)));
        EXPECT_FALSE(parsePropertyList(repeated("{a=", depth)));
        EXPECT_FALSE(parsePropertyList(plist(repeated("<dict><key>a</key>", depth))));
    }
}

TEST(PropertyList, ConvertsNumbers) {
    struct NumberCase {
        PropertyList list;
        std::optional<double> number;
        std::optional<std::int64_t> exact;
    };
    const std::vector<NumberCase> cases = {
        {integer(signedMax), 0x1p63, signedMax},
        {{std::uint64_t{1} << 63}, 0x1p63, std::nullopt},
        {{-0x1p63}, -0x1p63, signedMin},
        {{0x1p63}, 0x1p63, std::nullopt},
        {{2.5}, 2.5, std::nullopt},
        {{std::numeric_limits<double>::infinity()}, std::numeric_limits<double>::infinity(), std::nullopt},
        {{true}, 1.0, 1},
        {text("1"), std::nullopt, std::nullopt},
        {at(1), std::nullopt, std::nullopt},
    };
    for (const auto& [list, number, exact] : cases) {
        EXPECT_EQ(list.number(), number);
        EXPECT_EQ(list.exactInteger(), exact);
    }
}

} // namespace

} // namespace norvane
