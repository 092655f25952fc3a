#include "platform/linux/crashes/crash_handler.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <cxxabi.h>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <typeinfo>
#include <unistd.h>
#include <utility>

#include "platform/linux/crashes/alternate_signal_stack.h"
#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

constexpr std::array crashSignals = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

/// What a signal handler, which is handed nothing, has to find. Never destroyed: a crash may come at any
/// time.
struct Prepared {
    CrashReportSettings settings;
    AlternateSignalStack stack;
    std::array<struct sigaction, crashSignals.size()> earlierActions{};
};
Prepared* prepared = nullptr;

std::array<char, 1024> exceptionText;

void letSignalTakeEffect(int signal) {
    for (std::size_t i = 0; i < crashSignals.size(); ++i)
        if (crashSignals.at(i) == signal)
            sigaction(signal, &prepared->earlierActions.at(i), nullptr);
    raise(signal); // blocked here: delivered when the handler returns
}

/// A lock that the crashed program holds may stop the report for ever; the process has to end all the same.
void endInAnyCase() {
    constexpr unsigned patienceSeconds = 10;
    signal(SIGALRM, SIG_DFL);
    sigset_t alarmSignal;
    sigemptyset(&alarmSignal);
    sigaddset(&alarmSignal, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarmSignal, nullptr);
    alarm(patienceSeconds);
}

void handleCrash(int signal, siginfo_t* info, void* /*context*/) {
    static std::atomic<pid_t> reportingThread = 0;
    static_assert(std::atomic<pid_t>::is_always_lock_free);
    pid_t reporting = 0;
    if (reportingThread.compare_exchange_strong(reporting, gettid())) {
        endInAnyCase();
        const std::time_t now = std::time(nullptr);
        const FileDescriptor report(createCrashReport(prepared->settings, now));
        if (report)
            writeCrashReport(report.get(), prepared->settings, {signal, info, exceptionText.data(), now});
    } else if (reporting != gettid()) {
        for (;;) // the process ends when the other thread's report is complete
            pause();
    } // else the report itself crashed: what there is of it has to do
    letSignalTakeEffect(signal);
}

void noteException(const char* type, const char* message) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> readable(
        abi::__cxa_demangle(type, nullptr, nullptr, &status), std::free);
    std::snprintf(exceptionText.data(), exceptionText.size(), "%s: %s", readable ? readable.get() : type,
                  message);
}

[[noreturn]] void handleTerminate() {
    try {
        if (const std::exception_ptr exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::exception& exception) {
        noteException(typeid(exception).name(), exception.what());
    } catch (...) {
        noteException(abi::__cxa_current_exception_type()->name(), "");
    }
    std::abort();
}

/// Loads the unwinder and binds the functions that the handler calls, which is not safe inside one.
void rehearse() {
    const FileDescriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (nowhere)
        writeCrashReport(nowhere.get(), prepared->settings, {});
}

} // namespace

void installCrashHandler(CrashReportSettings settings) {
    prepared = new Prepared{.settings = std::move(settings), .stack = {}, .earlierActions = {}};
    rehearse();
    struct sigaction action {};
    action.sa_sigaction = handleCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    for (std::size_t i = 0; i < crashSignals.size(); ++i)
        sigaction(crashSignals.at(i), &action, &prepared->earlierActions.at(i));
    std::set_terminate(handleTerminate);
}

} // namespace norvane
