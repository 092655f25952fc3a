#include <QDBusConnectionInterface>
#include <optional>
#include <utility>

#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/desktop/dbus_notifications.h"
#include "tests/support/session_test.h"

namespace norvane {

namespace {

constexpr auto daemon = "org.freedesktop.Notifications";
constexpr auto daemonPath = "/org/freedesktop/Notifications";

class NotificationsTest : public SessionTest {
protected:
    NotificationsTest() {
        notifications.onAnswer({[this](const std::string& matter) {
                                    opened.push_back(matter);
                                    tokenSeen = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
                                },
                                [this] { ++backupsRequested; }});
    }

    [[nodiscard]] bool waitForDaemon() const {
        return soon([this] { return connection.interface()->isServiceRegistered(daemon).value(); });
    }

    /// Another program's notification.
    std::string notifyAsAnother(const std::string& title = "Another program's") const {
        return bus.gdbus({"call", "--session", "--dest", daemon, "--object-path", daemonPath, "--method",
                          "org.freedesktop.Notifications.Notify", "other", "0", "", title, "", "[]", "{}",
                          "--", "-1"});
    }

    BusLink link{bus.address(), std::chrono::milliseconds(10)};
    DBusNotifications notifications{link};
    std::vector<std::string> opened;
    QString tokenSeen; // by the window that was opened last
    int backupsRequested = 0;
};

TEST_F(NotificationsTest, ARealDaemonShowsEachMatterOnce) {
    SKIP_WITHOUT("dunst");
    SKIP_WITHOUT("Xvfb");
    const PrivateDisplay display(640, 480);
    auto variables = bus.variables();
    variables.push_back(display.variable());
    const auto dunstctl = [&](const std::vector<std::string>& words) {
        PeerProcess process(words, variables);
        process.waitForExit();
        return process.output();
    };
    const std::vector<std::string> program = {"dunst", "-print"};
    std::optional<PeerProcess> dunst(std::in_place, program, variables);
    ASSERT_TRUE(waitForDaemon()) << dunst->output();
    notifications.post({"Backup failed", "<Disk> & co", "failure", "Back Up Now"});
    ASSERT_TRUE(soonPrinted(*dunst, "body: '&lt;Disk&gt; &amp; co'")) << dunst->output();
    EXPECT_NE(dunst->output().find("\"back-up-now\": \"Back Up Now\""), std::string::npos);
    notifications.post({"Backup failed", "again", "failure"});
    notifications.post({"Startup disk is low on space", "5 GB", "sourceLow"});
    ASSERT_TRUE(soonPrinted(*dunst, "body: '5 GB'")) << dunst->output();
    EXPECT_EQ(dunstctl({"dunstctl", "count", "displayed"}), "2\n")
        << "the second failure stands in the place of the first";

    (void)dunstctl({"dunstctl", "action", "0"});
    EXPECT_TRUE(soon([this] { return !opened.empty(); }));

    // A new daemon gives the same ids to others.
    dunst.emplace(program, variables);
    ASSERT_TRUE(waitForDaemon());
    for (const char* const title : {"one", "two", "three", "four"}) // equal ones would be shown as one
        (void)notifyAsAnother(title);
    notifications.post({"Backup failed", "third", "failure"});
    EXPECT_TRUE(soonPrinted(*dunst, "body: 'third'")) << dunst->output();
    EXPECT_EQ(dunstctl({"dunstctl", "count", "displayed"}), "5\n");
}

TEST_F(NotificationsTest, TheCallFollowsWhatTheDaemonCan) {
    SKIP_WITHOUT_MOCKS();
    struct Case {
        const char* capabilities;
        const char* printed;
    };
    const Case cases[] = {
        {"body", R"(Notify "Norvane" 0 "org.norvane.Norvane" "Backup failed" "<Disk> & co" [])"},
        {"body body-markup", R"("Backup failed" "&lt;Disk&gt; &amp; co" [])"},
        {"body actions", R"("<Disk> & co" ["default", "Norvane", "back-up-now", "Back Up Now"])"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.capabilities);
        const PeerProcess mockDaemon(
            mock("notification_daemon", std::string("{\"capabilities\": \"") + c.capabilities + "\"}"),
            bus.variables());
        ASSERT_TRUE(waitForDaemon()) << mockDaemon.output();
        notifications.post({"Backup failed", "<Disk> & co", "failure", "Back Up Now"});
        EXPECT_TRUE(soonPrinted(mockDaemon, c.printed)) << mockDaemon.output();
    }
}

TEST_F(NotificationsTest, AnswersCountForOurOwnAlone) {
    SKIP_WITHOUT_MOCKS();
    const PeerProcess mockDaemon(mock("notification_daemon", R"({"capabilities": "actions"})"),
                                 bus.variables());
    ASSERT_TRUE(waitForDaemon()) << mockDaemon.output();
    ASSERT_EQ(notifyAsAnother(), "(uint32 1,)\n");
    notifications.post({"Backup failed", "", "failure", "Back Up Now"});
    ASSERT_TRUE(soonPrinted(mockDaemon, "Notify \"Norvane\" 0"));
    settle();
    const auto after = [this](const char* signal, const char* signature, const char* arguments) {
        emit(daemon, daemonPath, daemon, signal, signature, arguments);
        settle();
        return std::pair(opened.size(), backupsRequested);
    };
    using Answers = std::pair<std::size_t, int>;
    EXPECT_EQ(after("ActionInvoked", "us", "[<uint32 1>, <'default'>]"), Answers(0, 0))
        << "another program's";
    EXPECT_EQ(after("ActionInvoked", "us", "[<uint32 2>, <'no such'>]"), Answers(0, 0));
    EXPECT_EQ(after("ActionInvoked", "uu", "[<uint32 2>, <uint32 2>]"), Answers(0, 0))
        << "not the signal's types";
    EXPECT_EQ(after("ActionInvoked", "us", "[<uint32 2>, <'back-up-now'>]"), Answers(0, 1));
    EXPECT_EQ(tokenSeen, "");
    EXPECT_EQ(after("ActivationToken", "us", "[<uint32 2>, <'clicked'>]"), Answers(0, 1));
    EXPECT_EQ(after("ActionInvoked", "us", "[<uint32 2>, <'default'>]"), Answers(1, 1));
    EXPECT_EQ(tokenSeen, "clicked") << "so that the window comes to the front";
    EXPECT_EQ(after("NotificationClosed", "uu", "[<uint32 2>, <uint32 2>]"), Answers(1, 1));
    EXPECT_EQ(after("ActionInvoked", "us", "[<uint32 2>, <'default'>]"), Answers(1, 1))
        << "the id was given up";
    EXPECT_EQ(opened.front(), "failure");
    notifications.post({"Backup failed", "anew", "failure"});
    EXPECT_TRUE(soonPrinted(mockDaemon, R"(Notify "Norvane" 0 "org.norvane.Norvane" "Backup failed" "anew")"))
        << mockDaemon.output();
}

TEST_F(NotificationsTest, ADaemonThatHangsGetsTheNewestOnceItGoesOn) {
    SKIP_WITHOUT_MOCKS();
    const PeerProcess mockDaemon(mock("notification_daemon"), bus.variables());
    ASSERT_TRUE(waitForDaemon()) << mockDaemon.output();
    mockDaemon.freeze();
    for (const char* const body : {"first", "second", "third"})
        notifications.post({"Backup failed", body, "failure"});
    settle();
    mockDaemon.goOn();
    EXPECT_TRUE(soonPrinted(mockDaemon, "\"third\"")) << mockDaemon.output();
    EXPECT_EQ(mockDaemon.output().find("\"second\""), std::string::npos) << "nobody could have seen it";
}

TEST_F(NotificationsTest, ANewBusIsAsGoodAsTheOld) {
    SKIP_WITHOUT_MOCKS();
    const auto parameters = R"({"capabilities": "actions"})";
    for (const bool again : {false, true}) {
        if (again)
            bus.restart();
        const PeerProcess mockDaemon(mock("notification_daemon", parameters), bus.variables());
        ASSERT_TRUE(bus.waitForName(daemon)) << mockDaemon.output();
        ASSERT_TRUE(soon([this] { return link.ensureConnected(); }));
        notifications.post({"Backup failed", "", "failure"});
        EXPECT_TRUE(soonPrinted(mockDaemon, R"(Notify "Norvane" 0 )")) << mockDaemon.output();
        settle();
        emit(daemon, daemonPath, daemon, "ActionInvoked", "us", "[<uint32 1>, <'default'>]");
        EXPECT_TRUE(soon([&] { return opened.size() == (again ? 2U : 1U); }));
        mockDaemon.freeze();
        notifications.post({"Backup failed", "never answered", "failure"});
    }
}

TEST_F(NotificationsTest, TheBusMayBeKnownByTheFolderOfTheSessionAlone) {
    const ScratchFolder folder;
    const std::string socket = bus.address().substr(bus.address().find('/'));
    std::filesystem::create_directory_symlink(std::filesystem::path(socket).parent_path(),
                                              folder.path("run, 1"));
    setenv("XDG_RUNTIME_DIR", folder.path("run, 1").c_str(), 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_TRUE(BusLink(sessionBusAddress()).ensureConnected()) << sessionBusAddress();
}

TEST_F(NotificationsTest, WithoutADaemonOrABusNothingHappens) {
    const auto start = std::chrono::steady_clock::now();
    notifications.post({"Backup failed", "", "failure"});
    notifications.requestPermission();
    settle();
    bus.stop();
    notifications.post({"Backup failed", "", "failure"});
    BusLink none("unix:path=/nonexistent");
    DBusNotifications withoutBus(none);
    withoutBus.post({"Backup failed", "", "failure"});
    settle();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

} // namespace

} // namespace norvane
