#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

#include "platform/linux/measurements/capture_devices.h"
#include "platform/linux/measurements/pipewire_media.h"
#include "platform/linux/measurements/pulse_recording.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr auto limit = 80ms;
constexpr MediaUse nothing{};
constexpr MediaUse camera{true, false, false};
constexpr MediaUse microphone{false, true, false};
constexpr MediaUse screen{false, false, true};

class MediaServersTest : public testing::Test {
protected:
    MediaServersTest() {
        fs::permissions(runtime_.path(), fs::perms::owner_all);
        for (const char* name : {"XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"})
            setenv(name, runtime_.path().c_str(), 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.address().c_str(), 1);
        unsetenv("DISPLAY");
    }

    [[nodiscard]] static bool pactl(const std::vector<std::string>& words) {
        std::vector<std::string> all = {"pactl"};
        all.insert(all.end(), words.begin(), words.end());
        return PeerProcess(all).waitForExit() == 0;
    }
    [[nodiscard]] static bool pipeWireTells(const MediaUse& expected) {
        return eventually([&] { return pipeWireMediaUse(limit) == expected; });
    }
    [[nodiscard]] static bool pulseTells(bool expected) {
        return eventually([&] { return pulseRecordsMicrophone(limit) == expected; });
    }
    /// A recording that is known to the server.
    [[nodiscard]] static bool recordingIsListed() {
        return eventually([] {
            PeerProcess list({"pactl", "list", "short", "source-outputs"});
            list.waitForExit();
            return !list.output().empty();
        });
    }

    PrivateBus bus_;
    ScratchFolder runtime_;
};

class PipeWireTest : public MediaServersTest {
protected:
    static constexpr auto examples = "/usr/libexec/installed-tests/pipewire-0.3/examples";

    void SetUp() override {
        for (const char* program : {"pipewire", "wireplumber", "pipewire-pulse", "pw-record", "pactl"})
            if (!installed(program))
                GTEST_SKIP() << program << " is not installed";
        if (!fs::exists(examples))
            GTEST_SKIP() << "pipewire-tests is not installed";
        server_.emplace(std::vector<std::string>{"pipewire"});
        ASSERT_TRUE(eventually([&] { return fs::exists(runtime_.path("pipewire-0")); }));
        manager_.emplace(std::vector<std::string>{"wireplumber"});
        pulse_.emplace(std::vector<std::string>{"pipewire-pulse"});
        ASSERT_TRUE(eventually([&] { return pactl({"info"}); }));
    }

    static PeerProcess video(const std::string& program, const std::string& argument,
                             const std::string& properties) {
        return PeerProcess({examples + ("/" + program), argument},
                           {"PIPEWIRE_PROPS=" + properties, "SDL_VIDEODRIVER=dummy"});
    }

    std::optional<PeerProcess> server_, manager_, pulse_;
};

TEST_F(PipeWireTest, OnlyRecordingFromAMicrophoneCounts) {
    ASSERT_TRUE(pactl({"load-module", "module-null-sink", "sink_name=out"}));
    ASSERT_TRUE(
        pactl({"load-module", "module-null-sink", "sink_name=fakemic", "media.class=Audio/Source/Virtual"}));
    EXPECT_EQ(pipeWireMediaUse(limit), nothing);
    {
        const PeerProcess player({"pacat", "--device=out", "/dev/zero"});
        const PeerProcess recorder({"parecord", "--device=out.monitor", runtime_.path("a.wav")});
        ASSERT_TRUE(recordingIsListed()) << recorder.output();
        EXPECT_EQ(pipeWireMediaUse(limit), nothing) << "what a loudspeaker plays";
        EXPECT_FALSE(pulseRecordsMicrophone(limit));
    }
    {
        const PeerProcess recorder({"pw-record", "--target", "fakemic", runtime_.path("b.wav")});
        EXPECT_TRUE(pipeWireTells(microphone)) << recorder.output();
        EXPECT_TRUE(pulseTells(true)) << "native clients show there, too";
        for (PeerProcess* service : {&*server_, &*pulse_})
            service->freeze();
        EXPECT_EQ(pipeWireMediaUse(limit), nothing);
        EXPECT_FALSE(pulseRecordsMicrophone(limit));
        for (PeerProcess* service : {&*server_, &*pulse_})
            service->goOn();
        EXPECT_TRUE(pipeWireTells(microphone));
        EXPECT_TRUE(pulseTells(true));
    }
    EXPECT_TRUE(pipeWireTells(nothing));
    server_.reset();
    EXPECT_EQ(pipeWireMediaUse(limit), nothing) << "no server";
    EXPECT_FALSE(pulseRecordsMicrophone(limit));
}

TEST_F(PipeWireTest, TellsCamerasFromScreens) {
    struct Case {
        const char* what;
        const char* properties;
        MediaUse use;
    };
    const Case cases[] = {
        {"a camera", "{ media.class=Video/Source media.role=Camera node.name=seen }", camera},
        {"a screen as a device", "{ media.class=Video/Source media.role=\"\" node.name=seen }", screen},
        {"a screen as a stream", "{ media.class=Stream/Output/Video node.name=seen }", screen},
    };
    for (const Case& c : cases) {
        const PeerProcess source = video("video-src", "", c.properties);
        ASSERT_TRUE(eventually([&] {
            PeerProcess nodes({"pw-cli", "ls", "Node"});
            nodes.waitForExit();
            return nodes.output().find("\"seen\"") != std::string::npos;
        })) << source.output();
        EXPECT_EQ(pipeWireMediaUse(limit), nothing) << c.what << " that nobody watches";
        {
            const PeerProcess viewer = video("video-play", "seen", "{}");
            EXPECT_TRUE(pipeWireTells(c.use)) << c.what << viewer.output();
        }
        EXPECT_TRUE(pipeWireTells(nothing)) << c.what;
    }
}

TEST_F(MediaServersTest, ARealPulseAudioIsAskedTheSameWay) {
    if (!installed("pulseaudio") || !installed("parecord"))
        GTEST_SKIP() << "pulseaudio and pulseaudio-utils are not installed";
    EXPECT_FALSE(pulseRecordsMicrophone(limit)) << "no server";
    const PeerProcess server({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "-L",
                              "module-native-protocol-unix", "-L", "module-null-sink sink_name=out", "-L",
                              "module-null-source source_name=fakemic"});
    ASSERT_TRUE(eventually([] { return pactl({"info"}); })) << server.output();
    for (const auto& [source, counts] : {std::pair("out.monitor", false), {"fakemic", true}}) {
        const PeerProcess recorder({"parecord", std::string("--device=") + source, runtime_.path("a.wav")});
        ASSERT_TRUE(recordingIsListed()) << recorder.output();
        EXPECT_TRUE(pulseTells(counts)) << source;
        server.freeze();
        EXPECT_FALSE(pulseRecordsMicrophone(limit));
        server.goOn();
        EXPECT_TRUE(pulseTells(counts)) << source;
    }
}

TEST(CaptureDevices, OpenVideoDevicesCountExceptAtMediaServers) {
    const ScratchFolder folder;
    const auto end = std::chrono::steady_clock::now() + 1min;
    const std::string devices = folder.path("dev");
    fs::create_directory(devices);
    VideoDevices real("/proc", devices);
    EXPECT_FALSE(real.inUse(end)) << "no camera";
    for (const char* device : {"/video0", "/video2", "/video0"}) { // the last is a new one of the same name
        fs::remove(devices + device);
        std::ofstream(devices + device) << "x";
        EXPECT_FALSE(real.inUse(end)) << "nobody has it open";
        const std::ifstream open(devices + device);
        EXPECT_FALSE(real.inUse({})) << "no time left";
        for (int look = 1; look <= 2; ++look)
            EXPECT_TRUE(real.inUse(end)) << device << ", look " << look;
    }
    EXPECT_FALSE(real.inUse(end)) << "closed";
    const std::string process = folder.path("proc/4711");
    fs::create_directories(process + "/fd");
    fs::create_symlink(devices + "/video0", process + "/fd/9");
    for (const auto& [name, counts] : {std::pair("browser", true), {"wireplumber", false}}) {
        std::ofstream(process + "/comm") << name << "\n";
        EXPECT_EQ(VideoDevices(folder.path("proc"), devices).inUse(end), counts) << name;
    }
}

TEST(CaptureDevices, SoundCardsThatPlayDoNotCount) {
    const ScratchFolder folder;
    for (const auto& [stream, state, counts] : {std::tuple("pcm0p", "state: RUNNING\n", false),
                                                {"pcm0c", "closed\n", false},
                                                {"pcm0c", "state: RUNNING\nowner_pid   : 1\n", true}}) {
        const std::string status = folder.path("asound/card1/") + stream + "/sub0";
        fs::create_directories(status);
        std::ofstream(status + "/status") << state;
        EXPECT_EQ(soundCardCaptures(folder.path()), counts) << stream << " " << state;
    }
    EXPECT_FALSE(soundCardCaptures("/nonexistent"));
}

} // namespace

} // namespace norvane
