#include "tests/program_fixture.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace norvane {

namespace {

void pauseBriefly() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

} // namespace

ProgramFixture::ProgramFixture() {
    std::string pattern = testing::TempDir() + "norvane-XXXXXX";
    root_ = mkdtemp(pattern.data());
    for (const char* folder : {"home/Documents", "Backup Disk", "runtime"})
        std::filesystem::create_directories(path(folder));
    std::filesystem::permissions(path("runtime"), std::filesystem::perms::owner_all);
    (void)tmutil("setdestination '" + destination() + "'");
    (void)tmutil("disable");
    (void)defaults("write org.norvane.Norvane onboardingDone.v1 -bool true");
    (void)defaults("write com.apple.TimeMachine SourceFolders -array '" + source() + "'");
}

ProgramFixture::~ProgramFixture() {
    for (const pid_t process : processes_) {
        if (running(process)) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }
    (void)tmutil("stopbackup");
    while (tmutil("status").find("Running = 1") != std::string::npos)
        pauseBriefly();
    std::filesystem::remove_all(root_);
}

void ProgramFixture::makeBackupDue() {
    const std::string schedule = R"({"rules":[{"interval":{"hours":1}}],"blackouts":[]})";
    (void)defaults("write org.norvane.Norvane schedule.v1 -data $(printf %s '" + schedule +
                   "' | od -An -v -tx1 | tr -d ' \\n')");
    setLastBackupTwoHoursAgo();
    (void)defaults("write org.norvane.Norvane launchGraceMinutes.v1 -int 1");
}

void ProgramFixture::setLastBackupTwoHoursAgo() const {
    (void)defaults("write org.norvane.Norvane lastBackupDate.v1 -date $(date -u -d '2 hours ago' "
                   "+%Y-%m-%dT%H:%M:%SZ)");
}

std::string ProgramFixture::shell(const std::string& command) const {
    const std::string environment = "export HOME='" + path("home") + "' XDG_CONFIG_HOME='" + path("config") +
                                    "' XDG_STATE_HOME='" + path("state") + "' XDG_CACHE_HOME='" +
                                    path("cache") + "' XDG_RUNTIME_DIR='" + path("runtime") +
                                    "' DBUS_SESSION_BUS_ADDRESS='" + bus_.address() + "'; ";
    FILE* pipe = popen((environment + command).c_str(), "re");
    std::string output;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    pclose(pipe);
    if (output.ends_with('\n'))
        output.pop_back();
    return output;
}

std::string ProgramFixture::tmutil(const std::string& arguments) const {
    return shell("'" NORVANE_LIBEXEC_DIR "/tmutil' " + arguments);
}

std::string ProgramFixture::defaults(const std::string& arguments) const {
    return shell("'" NORVANE_LIBEXEC_DIR "/defaults' " + arguments);
}

pid_t ProgramFixture::start(const std::string& program, const std::vector<std::string>& variables) {
    const pid_t process = fork();
    if (process == 0) {
        std::vector<std::string> all = {"HOME=" + path("home"),
                                        "XDG_CONFIG_HOME=" + path("config"),
                                        "XDG_STATE_HOME=" + path("state"),
                                        "XDG_CACHE_HOME=" + path("cache"),
                                        "XDG_RUNTIME_DIR=" + path("runtime"),
                                        "DBUS_SESSION_BUS_ADDRESS=" + bus_.address(),
                                        "QT_QPA_PLATFORM=offscreen"};
        all.insert(all.end(), variables.begin(), variables.end());
        for (std::string& variable : all)
            putenv(variable.data());
        execl(program.c_str(), program.c_str(), nullptr);
        _exit(127);
    }
    processes_.push_back(process);
    return process;
}

bool ProgramFixture::running(pid_t process) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

std::optional<int> ProgramFixture::waitForExit(pid_t process, double seconds) {
    for (double waited = 0; waited < seconds; waited += 0.02) {
        int status = 0;
        if (waitpid(process, &status, WNOHANG) == process) {
            std::erase(processes_, process);
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        pauseBriefly();
    }
    return std::nullopt;
}

void ProgramFixture::action(const std::string& name) const {
    shell("gdbus call --session --dest org.norvane.Norvane --object-path /org/norvane/Norvane "
          "--method org.freedesktop.Application.ActivateAction '" +
          name + "' '[]' '{}' 2>&1");
}

std::string ProgramFixture::log() const {
    std::stringstream text;
    text << std::ifstream(path("state/norvane/Logs/Norvane.log")).rdbuf();
    return text.str();
}

std::optional<std::size_t> ProgramFixture::waitForLog(const std::string& text, double seconds,
                                                      std::size_t from) const {
    for (double waited = 0; waited < seconds; waited += 0.02) {
        const std::size_t found = log().find(text, from);
        if (found != std::string::npos)
            return found + text.size();
        pauseBriefly();
    }
    return std::nullopt;
}

} // namespace norvane
