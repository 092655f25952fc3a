#include "platform/linux/crashes/crash_handler.h"

#include <alloca.h>
#include <bit>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/crashes/alternate_signal_stack.h"
#include "platform/linux/crashes/finished_crash_reports.h"
#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/small_file.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

volatile std::uintptr_t nowhere = 64; // not null: a sanitizer would speak up first
volatile int zero = 0;

int overflowStack(int depth) {
    volatile char page[4096];
    page[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : overflowStack(depth + 1) + page[0];
}

void inThread(void (*crash)()) {
    std::thread([crash] {
        const AlternateSignalStack stack;
        crash();
    }).join();
}

struct Case {
    const char* what;
    void (*crash)();
    int status;
    std::vector<const char*> told;
};

const Case cases[] = {
    {"wild write",
     [] { *std::bit_cast<volatile int*>(std::uintptr_t{nowhere}) = 1; },
     128 + SIGSEGV,
     {"SIGSEGV (11), address 0x40\n", "Thread:    main\n"}},
    {"stack overflow", [] { overflowStack(zero); }, 128 + SIGSEGV, {"SIGSEGV (11), address 0x"}},
    {"stack overflow of a worker",
     [] { inThread([] { overflowStack(zero); }); },
     128 + SIGSEGV,
     {"SIGSEGV (11)", "Thread:    background\n"}},
    {"abort", [] { std::abort(); }, 128 + SIGABRT, {"SIGABRT (6), raised by the program\n"}},
    {"exception",
     [] { inThread([] { throw std::runtime_error("cannot read /home/anna/file"); }); },
     128 + SIGABRT,
     {"Exception: std::runtime_error: cannot read ~/file\n"}},
    {"exception of no standard type",
     [] { inThread([] { throw 7; }); },
     128 + SIGABRT,
     {"Exception: int: \n"}},
    {"signal from elsewhere",
     [] {
         if (fork() == 0) {
             kill(getppid(), SIGBUS);
             _exit(0);
         }
         pause();
     },
     128 + SIGBUS,
     {"SIGBUS (7), sent by another process\n"}},
    {"two threads at once",
     [] {
         std::thread other([] { std::abort(); });
         std::abort();
     },
     128 + SIGABRT,
     {"\nStack:\n"}},
};

/// Of a child that installs the handler and crashes; 128 and the signal.
int statusOfCrash(const CrashReportSettings& settings, void (*crash)()) {
    const pid_t child = fork();
    if (child == 0) {
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
            std::signal(signal, SIG_DFL); // a sanitizer's own
        installCrashHandler(settings);
        crash();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// Finished as the next start does it.
std::string onlyReportIn(const std::string& folder) {
    finishCrashReports(folder);
    std::stringstream text;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_TRUE(std::regex_match(entry.path().filename().string(),
                                     std::regex(R"(Norvane-\d{4}-\d\d-\d\d-\d{6}\.ips)")));
        text << std::ifstream(entry.path()).rdbuf();
    }
    return text.str();
}

TEST(CrashHandler, LeavesAReportAndTheExitStatus) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const ScratchFolder folder;
        std::filesystem::create_directories(folder.path("reports"));
        std::ofstream log(folder.path("log"));
        for (int line = 1; line <= 1000; ++line)
            log << "line " << line << " about /home/anna/x and /home/annabel" << std::endl;
        EXPECT_EQ(statusOfCrash({folder.path("reports"), folder.path("log"), "/home/anna", "1.2.3"}, c.crash),
                  c.status);
        const std::string report = onlyReportIn(folder.path("reports"));
        for (const char* told : c.told)
            EXPECT_NE(report.find(told), std::string::npos) << told << " in\n" << report;
        EXPECT_NE(report.find("Version:   1.2.3\n"), std::string::npos);
        const std::string stack = report.substr(std::min(report.find("\nStack:\n"), report.size()));
        EXPECT_NE(stack.find("\nlinux_crashes_tests + 0x"), std::string::npos) << report;
        EXPECT_NE(report.find("\nEvent log:\nline 981 about ~/x and /home/annabel\n"), std::string::npos)
            << report;
        EXPECT_NE(report.find("\nline 1000 "), std::string::npos);
    }
}

TEST(CrashReports, NameTheFunctionsOfTheStackAsTheSourceDoes) {
    const std::pair<std::string, std::string> stacks[] = {
        {"a  _Z1fi + 0x1\n\nStack:\nm + 0x1  _Z1fi + 0x2\nm + 0x3  main + 0x4\nm + 0x5\n",
         "a  _Z1fi + 0x1\n\nStack:\nm + 0x1  f(int) + 0x2\nm + 0x3  main + 0x4\nm + 0x5\n"},
        {"\nStack:\n0x5\nm + 0x1  _Z! + 0x2\nm + 0x1  _ZN1a1bEv + 0x2",
         "\nStack:\n0x5\nm + 0x1  _Z! + 0x2\nm + 0x1  a::b() + 0x2"},
        {"\nStack:\nm + 0x1  _Z1f", "\nStack:\nm + 0x1  _Z1f"},
        {"no stack  _Z1fi + 0x1", "no stack  _Z1fi + 0x1"},
    };
    for (const auto& [report, expected] : stacks)
        EXPECT_EQ(withReadableStack(report), expected);
}

TEST(CrashReports, OfOneSecondAllStayAndTheHalfWrittenSaySo) {
    const ScratchFolder folder;
    const CrashReportSettings settings{folder.path(), "/nonexistent", "/", "1"};
    const auto crashAtOnce = [&](std::string_view text) {
        const FileDescriptor file(createCrashReport(settings, 0));
        EXPECT_TRUE(writeAll(file.get(), text));
    };
    crashAtOnce("first" + std::string(endOfCrashReport));
    finishCrashReports(folder.path());
    crashAtOnce("second");
    crashAtOnce("");
    std::filesystem::create_directory(folder.path("Norvane-1970-01-01-000001.ips.new")); // as if it were full
    finishCrashReports(folder.path());
    finishCrashReports(folder.path());
    const auto text = [&](const std::string& second) {
        return readSmallFile(folder.path("Norvane-1970-01-01-00000" + second + ".ips"));
    };
    EXPECT_EQ(text("0"), "first\nEnd of the report.\n");
    EXPECT_EQ(text("1"), "second") << "as it is";
    EXPECT_EQ(text("2"), "\nThe report breaks off here; no more of it could be written.\n");
}

TEST(CrashHandler, WithoutAPlaceForTheReportTheProgramStillEnds) {
    EXPECT_EQ(statusOfCrash({"/nonexistent", "/nonexistent", "/", "1"}, [] { std::abort(); }), 128 + SIGABRT);
}

#ifdef __x86_64__
/// The unwinder follows the frame pointer, as the function's frame has no fixed size, to where nothing is.
void crashWithBrokenFrame() {
    auto* const frame = static_cast<volatile char*>(alloca(static_cast<std::size_t>(zero) + 64));
    frame[0] = 1;
    asm volatile("mov $64, %%rbp\n\tmovl $1, 64" ::: "memory");
}

TEST(CrashHandler, ACrashWhileReportingEndsTheProgramAndKeepsWhatIsWritten) {
    const ScratchFolder folder;
    EXPECT_EQ(statusOfCrash({folder.path(), "/nonexistent", "/", "1"}, crashWithBrokenFrame), 128 + SIGSEGV);
    EXPECT_NE(onlyReportIn(folder.path()).find("\nEvent log:\n\nStack:\n\nThe report breaks off here"),
              std::string::npos);
}
#endif

} // namespace

} // namespace norvane
