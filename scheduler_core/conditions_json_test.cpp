#include "scheduler_core/conditions_json.h"

#include <cmath>
#include <gtest/gtest.h>

namespace norvane {

namespace {

const std::string defaultDocument =
    R"({"requireAC":false,"minBatteryPercent":0,"deferInLowPowerMode":false,"deferWhileCameraOrMicInUse":false,)"
    R"("blockedApps":[],"maxDeferralHours":4,"recheckMinutes":5})";

// The default document with one piece of its text replaced.
std::string replacing(const std::string& piece, const std::string& replacement) {
    std::string text = defaultDocument;
    return text.replace(text.find(piece), piece.size(), replacement);
}

TEST(ConditionsJson, WritesAndReadsEveryField) {
    const ConditionsConfig conditions{
        .requireAC = true,
        .minBatteryPercent = -30,
        .deferInLowPowerMode = true,
        .deferWhileCameraOrMicInUse = true,
        .blockedApps = {{"org.example.Editor", "Editor"}, {"b", "Zeichnen é \"\n"}},
        .maxDeferralHours = 2.5,
        .recheckMinutes = -1,
        .maxLoadPerCore = 0.8,
        .requireDestinationPresent = false};
    const std::string text =
        R"({"requireAC":true,"minBatteryPercent":-30,"deferInLowPowerMode":true,"deferWhileCameraOrMicInUse":true,)"
        R"("blockedApps":[{"bundleID":"org.example.Editor","name":"Editor"},)"
        R"({"bundleID":"b","name":"Zeichnen é \"\n"}],"maxDeferralHours":2.5,"recheckMinutes":-1,)"
        R"("maxLoadPerCore":0.8,"requireDestinationPresent":false})";
    EXPECT_EQ(encodeConditions(conditions), text);
    EXPECT_EQ(decodeConditions(text).value, conditions);
    EXPECT_EQ(encodeConditions(ConditionsConfig::defaultConditions()), defaultDocument);
    EXPECT_EQ(decodeConditions(defaultDocument).value, ConditionsConfig::defaultConditions());
    const auto nulls =
        replacing("{", R"({"maxLoadPerCore":null,"requireDestinationPresent":null,"unknown":[],)");
    EXPECT_EQ(decodeConditions(nulls).value, ConditionsConfig::defaultConditions());
}

TEST(ConditionsJson, RefusesTheWholeDocumentForAnyFault) {
    const std::string cases[] = {
        "[]",
        replacing(R"("requireAC":false)", R"("requireAC":0)"),
        replacing(R"("minBatteryPercent":0)", R"("minBatteryPercent":0.5)"),
        replacing(R"("deferInLowPowerMode":false,)", ""),
        replacing(R"("blockedApps":[])", R"("blockedApps":[{"bundleID":"x"}])"),
        replacing(R"("blockedApps":[])", R"("blockedApps":["x"])"),
        replacing(R"(,"recheckMinutes":5)", ""),
        replacing("{", R"({"requireDestinationPresent":1,)"),
    };
    for (const std::string& text : cases) {
        const auto decoded = decodeConditions(text);
        EXPECT_FALSE(decoded.value) << text;
        EXPECT_NE(decoded.error, "") << text;
    }
}

TEST(ConditionsJson, EncodesOnlyWhatCanBeReadBack) {
    ConditionsConfig conditions;
    conditions.maxLoadPerCore = INFINITY;
    EXPECT_EQ(encodeConditions(conditions), std::nullopt);
    conditions.maxLoadPerCore = std::nullopt;
    conditions.blockedApps = {{"\xFF", "no UTF-8"}};
    EXPECT_EQ(encodeConditions(conditions), std::nullopt);
}

} // namespace

} // namespace norvane
