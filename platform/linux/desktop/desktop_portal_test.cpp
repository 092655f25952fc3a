#include <fstream>
#include <functional>
#include <optional>

#include "platform/linux/desktop/desktop_email_composer.h"
#include "platform/linux/desktop/portal_appearance.h"
#include "tests/support/session_test.h"

#define SKIP_WITHOUT_PORTAL()                                                                                \
    SKIP_WITHOUT_MOCKS();                                                                                    \
    if (!std::filesystem::exists(portalProgram))                                                             \
    GTEST_SKIP() << "xdg-desktop-portal is not installed"

namespace norvane {

namespace {

constexpr auto portalProgram = "/usr/libexec/xdg-desktop-portal";
constexpr auto backend = "org.freedesktop.impl.portal.desktop.mock";

/// The real portal over a mock of a desktop.
class PortalTest : public SessionTest {
protected:
    PortalTest() {
        std::ofstream(folder.path("mock.portal"))
            << "[portal]\nDBusName=" << backend << "\nUseIn=mock\nInterfaces="
            << "org.freedesktop.impl.portal.Settings;org.freedesktop.impl.portal.Access;"
            << "org.freedesktop.impl.portal.Email;\n";
    }

    void startDesktop(const std::string& parameters = "{}") {
        desktop.emplace(mock(NORVANE_SOURCE_DIR "/tests/support/portal_backend_mock.py", parameters),
                        bus.variables());
        ASSERT_TRUE(bus.waitForName(backend)) << desktop->output();
        startPortal();
    }

    void startPortal() {
        auto variables = bus.variables();
        variables.push_back("XDG_DESKTOP_PORTAL_DIR=" + folder.path());
        variables.push_back("XDG_CURRENT_DESKTOP=mock");
        variables.push_back("XDG_DATA_HOME=" + folder.path());
        portal.emplace(std::vector<std::string>{portalProgram}, variables);
        ASSERT_TRUE(bus.waitForName("org.freedesktop.portal.Desktop")) << portal->output();
    }

    void desktopEmits(const std::string& interface, const std::string& signal, const std::string& signature,
                      const std::string& arguments) const {
        emit(backend, "/org/freedesktop/portal/desktop", "org.freedesktop.impl.portal." + interface, signal,
             signature, arguments);
    }

    ScratchFolder folder;
    std::optional<PeerProcess> desktop;
    std::optional<PeerProcess> portal;
};

TEST_F(PortalTest, ColoursComeFromTheFirstKeyThatHoldsOne) {
    SKIP_WITHOUT_PORTAL();
    PortalAppearance appearance(connection, false);
    int changes = 0;
    auto observation = appearance.observe([&changes] { ++changes; });
    EXPECT_EQ(appearance.current(), AppearanceSettings()) << "there is no portal yet";
    startDesktop(R"({"accent": [0.25, 0.5, 1], "kdeAccent": "51,102,255", "scheme": 1})");
    const Rgb ofKde{0.2, 0.4, 1};
    ASSERT_TRUE(soon([&] { return appearance.current() == AppearanceSettings{Rgb{0.25, 0.5, 1}, true}; }));
    EXPECT_EQ(changes, 1);

    struct Case {
        const char* space;
        const char* key;
        const char* value;
        AppearanceSettings expected;
    };
    const auto freedesktop = "org.freedesktop.appearance";
    const auto kde = "org.kde.kdeglobals.General";
    const Case cases[] = {
        {freedesktop, "color-scheme", "<uint32 2>", {Rgb{0.25, 0.5, 1}, false}},
        {freedesktop, "accent-color", "<(1.0, 0.0, 0.5)>", {Rgb{1, 0, 0.5}, false}},
        {freedesktop, "accent-color", "<(-1.0, 0.0, 0.5)>", {ofKde, false}},
        {freedesktop, "color-scheme", "<'dark'>", {ofKde, false}},
        {freedesktop, "color-scheme", "<uint32 1>", {ofKde, true}},
        {freedesktop, "accent-color", "<(0.5, 0.5)>", {ofKde, true}},
        {freedesktop, "accent-color", "<'blue'>", {ofKde, true}},
        {kde, "AccentColor", "<'51,102'>", {std::nullopt, true}},
        {kde, "AccentColor", "<'0,0,0'>", {Rgb{0, 0, 0}, true}},
        {kde, "AccentColor", "<'0,0,256'>", {std::nullopt, true}},
        {kde, "AccentColor", "<'0,0,blue'>", {std::nullopt, true}},
        {"org.example", "accent-color", "<(1.0, 1.0, 1.0)>", {std::nullopt, true}},
        {freedesktop, "accent-color", "<(1.0, 1.0, 1.0)>", {Rgb{1, 1, 1}, true}},
    };
    for (const Case& c : cases) {
        desktopEmits("Settings", "SettingChanged", "ssv",
                     std::string("[<'") + c.space + "'>, <'" + c.key + "'>, <" + c.value + ">]");
        ASSERT_TRUE(soon([&] { return appearance.current() == c.expected; })) << c.key << ' ' << c.value;
    }
    EXPECT_EQ(changes, 9) << "told of changes alone";

    observation.reset();
    portal.reset();
    startPortal();
    EXPECT_TRUE(soon([&] {
        return appearance.current() == AppearanceSettings{Rgb{0.25, 0.5, 1}, true};
    })) << "a portal that comes again is asked";
    EXPECT_EQ(changes, 9) << "nobody observes any more";
}

class EmailTest : public PortalTest {
protected:
    EmailTest() {
        std::ofstream(report) << "report";
        // xdg-email hands the message to this "browser", as it does without a desktop.
        const std::string mailProgram = folder.path("mail program");
        std::ofstream(mailProgram) << "#!/bin/sh\nprintf '%s\\n' \"$1\" >>'" << folder.path("mail") << "'\n";
        std::filesystem::permissions(mailProgram, std::filesystem::perms::owner_all);
        for (const char* variable : {"XDG_CURRENT_DESKTOP", "DISPLAY", "KDE_FULL_SESSION", "DESKTOP_SESSION"})
            qunsetenv(variable);
        qputenv("BROWSER", mailProgram.c_str());
        qputenv("XDG_DATA_HOME", folder.path().c_str());
        qputenv("XDG_CONFIG_HOME", folder.path().c_str());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str());
    }

    [[nodiscard]] bool composes(const QDBusConnection& through, const std::function<bool()>& arrived) const {
        DesktopEmailComposer composer(through);
        composer.compose({.recipient = "support@example.org",
                          .subject = "A & B?",
                          .body = "Body äß:\n\n",
                          .attachment = report});
        return soon(arrived);
    }
    [[nodiscard]] std::string handedOver() const { return textOf(folder.path("mail")); }

    const std::string report = folder.path("Norvane 1.ips");
};

TEST_F(EmailTest, ThePortalGetsTheWholeMessage) {
    SKIP_WITHOUT_PORTAL();
    startDesktop();
    const auto told = [&](const std::string& text) {
        return desktop->output().find(text) != std::string::npos;
    };
    EXPECT_TRUE(composes(connection, [&] { return told("Body äß:\n\n\""); })) << desktop->output();
    EXPECT_TRUE(told("\"attachments\": [\"" + report + "\"]")) << desktop->output();
    EXPECT_TRUE(told(R"("addresses": ["support@example.org"], "subject": "A & B?")")) << desktop->output();
    EXPECT_EQ(handedOver(), "");
}

TEST_F(EmailTest, WithoutAPortalThatAnswersTheToolIsAsked) {
    SKIP_WITHOUT_PORTAL();
    SKIP_WITHOUT("xdg-email");
    std::string expected;
    const auto toolIsAsked = [&](const QDBusConnection& through) {
        expected += "mailto:support@example.org?subject=A%20%26%20B%3F&body=Body%20%C3%A4%C3%9F%3A&attach=" +
                    folder.path() + "/Norvane%201.ips\n";
        return composes(through, [&] { return handedOver() == expected; });
    };
    EXPECT_TRUE(toolIsAsked(QDBusConnection("no such bus"))) << handedOver();
    EXPECT_TRUE(toolIsAsked(connection)) << handedOver();
    startDesktop();
    portal->freeze();
    EXPECT_TRUE(toolIsAsked(connection)) << handedOver();
}

} // namespace

} // namespace norvane
