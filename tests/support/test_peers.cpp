#include "tests/support/test_peers.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace norvane {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// This process' environment with some variables replaced.
std::vector<std::string> environmentWith(const std::vector<std::string>& variables) {
    std::vector<std::string> all = variables; // the first of a name counts
    for (char** inherited = environ; *inherited; ++inherited) {
        const std::string variable = *inherited;
        const std::string name = variable.substr(0, variable.find('=') + 1);
        if (std::none_of(variables.begin(), variables.end(),
                         [&](const std::string& replaced) { return replaced.starts_with(name); }))
            all.push_back(variable);
    }
    return all;
}

} // namespace

std::string textOf(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

ScratchFolder::ScratchFolder() {
    path_ = std::filesystem::temp_directory_path() / "norvane-XXXXXX";
    if (!mkdtemp(path_.data()))
        throw std::runtime_error("no temporary folder: " + path_);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

PeerProcess::PeerProcess(const std::vector<std::string>& words, const std::vector<std::string>& variables) {
    auto arguments = words;
    auto environment = environmentWith(variables);
    const std::string outputPath = folder_.path("output");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, outputPath.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    const int error = posix_spawnp(&id_, words.front().c_str(), &files, &attributes,
                                   pointersTo(arguments).data(), pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0)
        throw std::runtime_error("cannot start " + words.front());
}

PeerProcess::~PeerProcess() { end(); }

std::string PeerProcess::output() const { return textOf(folder_.path("output")); }

bool PeerProcess::waitForOutput(const std::string& text, double seconds) const {
    return eventually([&] { return output().find(text) != std::string::npos; }, seconds);
}

std::optional<int> PeerProcess::waitForExit(double seconds) {
    (void)eventually(
        [this] {
            int status = 0;
            if (!status_ && waitpid(id_, &status, WNOHANG) == id_)
                status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return status_.has_value();
        },
        seconds);
    return status_;
}

void PeerProcess::freeze() const { kill(-id_, SIGSTOP); }

void PeerProcess::goOn() const { kill(-id_, SIGCONT); }

void PeerProcess::end() {
    kill(-id_, SIGKILL); // the whole group, also when its first process has ended
    if (!status_)
        (void)waitForExit();
}

PrivateDisplay::PrivateDisplay(int width, int height)
    // Without its errors, which tell of other displays before the number of this one.
    : server_({"sh", "-c",
               "exec Xvfb -displayfd 1 -noreset -nolisten tcp -screen 0 " + std::to_string(width) + "x" +
                   std::to_string(height) + "x24 -fbdir '" + folder_.path() + "' 2>/dev/null"}) {
    if (!server_.waitForOutput("\n"))
        throw std::runtime_error("no X server: " + server_.output());
    const std::string number = server_.output();
    variable_ = "DISPLAY=:" + number.substr(0, number.find('\n'));
}

std::uint32_t PrivateDisplay::pixel(int x, int y) const {
    // A window dump (XWDFile.h): words of 32 bits, the header's with the most significant byte first.
    std::ifstream dump(folder_.path("Xvfb_screen0"), std::ios::binary);
    const auto wordAt = [&dump](std::streamoff place) {
        std::array<unsigned char, 4> bytes{};
        dump.seekg(place);
        dump.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
        return bytes;
    };
    const auto header = [&wordAt](std::streamoff field) {
        const auto bytes = wordAt(4 * field);
        return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
               std::uint32_t{bytes[2]} << 8U | bytes[3];
    };
    constexpr std::streamoff colorSize = 12;
    const std::streamoff pixels = header(0) + colorSize * header(19);
    const auto bytes = wordAt(pixels + std::streamoff{header(12)} * y + std::streamoff{4} * x);
    return std::uint32_t{bytes[2]} << 16U | std::uint32_t{bytes[1]} << 8U | bytes[0];
}

PrivateBus::PrivateBus() : address_("unix:path=" + folder_.path("bus")) {
    std::ofstream(folder_.path("bus.conf"))
        << R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><listen>)"
        << address_ << R"(</listen><policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";
    restart();
}

void PrivateBus::restart() {
    stop();
    std::filesystem::remove(folder_.path("bus"));
    daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--print-address",
                                             "--config-file=" + folder_.path("bus.conf")});
    if (!daemon_->waitForOutput("unix:"))
        throw std::runtime_error("no bus: " + daemon_->output());
}

std::vector<std::string> PrivateBus::variables() const {
    return {"DBUS_SESSION_BUS_ADDRESS=" + address_, "DBUS_SYSTEM_BUS_ADDRESS=" + address_};
}

std::string PrivateBus::gdbus(const std::vector<std::string>& words) const {
    std::vector<std::string> all = {"gdbus"};
    all.insert(all.end(), words.begin(), words.end());
    PeerProcess client(all, variables());
    client.waitForExit();
    return client.output();
}

bool PrivateBus::waitForName(const std::string& name, double seconds) const {
    const std::vector<std::string> question = {"call",
                                               "--session",
                                               "--dest",
                                               "org.freedesktop.DBus",
                                               "--object-path",
                                               "/",
                                               "--method",
                                               "org.freedesktop.DBus.NameHasOwner",
                                               name};
    return eventually([&] { return gdbus(question).find("true") != std::string::npos; }, seconds);
}

bool installed(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        folder.append("/").append(program);
        if (access(folder.c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

} // namespace norvane
