// Windows come to the front by the leave that the desktop gave, whichever way it comes.
#include <cstdlib>

#include "app/application_interface.h"
#include "app/dbus_instances.h"
#include "platform/linux/desktop/status_notifier_item.h"
#include "tests/support/session_test.h"

namespace norvane {

namespace {

TEST_F(SessionTest, WindowsSeeTheTokenThatCameWithTheUsersAct) {
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    const char* const variable = "XDG_ACTIVATION_TOKEN"; // which Qt reads when a window is to become active
    QStringList seen;
    const auto open = [&] { seen << qEnvironmentVariable(variable); };
    const ScratchFolder home;
    const DBusInstances older{""}; // than the program that is started last
    const ApplicationInterface interface({open, {{"health", open}}});
    StatusNotifierItem item("");
    item.onActivate([&](int, int) { open(); });
    const std::string itemName = "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1";
    const std::string both = "{'activation-token': <'new'>, 'desktop-startup-id': <'old'>}";
    struct Case {
        std::vector<std::string> words; ///< Of the call.
        QString token;
    };
    const std::vector<std::string> application = {"--dest", applicationBusName, "--object-path",
                                                  applicationObjectPath, "--method"};
    const std::vector<std::string> tray = {"--dest", itemName, "--object-path", "/StatusNotifierItem",
                                           "--method"};
    const auto call = [](std::vector<std::string> words, const std::vector<std::string>& more) {
        words.insert(words.begin(), {"gdbus", "call", "--session"});
        words.insert(words.end(), more.begin(), more.end());
        return words;
    };
    const std::string interfaceName = "org.freedesktop.Application.";
    for (const Case& c : {Case{call(application, {interfaceName + "Activate", both}), "new"},
                          {call(application, {interfaceName + "Activate", "{}"}), ""},
                          {call(application, {interfaceName + "ActivateAction", "health", "[]",
                                              "{'desktop-startup-id': <'old'>}"}),
                           "old"},
                          {call(tray, {"org.kde.StatusNotifierItem.Activate", "1", "2"}), "clicked"},
                          {call(tray, {"org.kde.StatusNotifierItem.Activate", "1", "2"}), ""},
                          {{NORVANE_BIN_DIR "/norvane"}, "of the second instance"}}) {
        seen.clear();
        if (c.token == "clicked") {
            const PeerProcess told(
                call(tray, {"org.kde.StatusNotifierItem.ProvideXdgActivationToken", "clicked"}),
                bus.variables());
            ASSERT_TRUE(soonPrinted(told, "()"));
        }
        std::vector<std::string> variables = bus.variables();
        variables.insert(variables.end(),
                         {"HOME=" + home.path(), "XDG_CONFIG_HOME=" + home.path(),
                          "QT_QPA_PLATFORM=offscreen", std::string(variable) + "=" + c.token.toStdString()});
        const PeerProcess caller(c.words, variables);
        EXPECT_TRUE(soon([&] { return !seen.empty(); })) << caller.output();
        EXPECT_EQ(seen, QStringList{c.token}) << c.words.back();
        EXPECT_FALSE(qEnvironmentVariableIsSet(variable)) << "it would go to later windows, and to children";
    }
}

} // namespace

} // namespace norvane
