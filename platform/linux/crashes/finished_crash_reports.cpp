#include "platform/linux/crashes/finished_crash_reports.h"

#include <cstdlib>
#include <cxxabi.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/crashes/crash_report.h"
#include "platform/linux/files/small_file.h"

namespace norvane {

namespace {

std::string readable(const std::string& linkersName) {
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(linkersName.c_str(), nullptr, nullptr, nullptr), std::free);
    return name ? name.get() : linkersName;
}

/// Collected first: what is made meanwhile may be listed or not.
std::vector<std::filesystem::path> unfinishedReports(const std::string& folder) {
    std::vector<std::filesystem::path> reports;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        if (entry->path().extension() == ".crash" &&
            entry->path().filename().string().starts_with("Norvane-"))
            reports.push_back(entry->path());
    return reports;
}

/// None: it cannot be read.
std::optional<std::string> finishedReport(const std::filesystem::path& unfinished) {
    constexpr std::size_t largestReportBytes = std::size_t{4} << 20;
    std::string report = withReadableStack(readSmallFile(unfinished, largestReportBytes));
    std::error_code error;
    if (report.empty() && !std::filesystem::is_empty(unfinished, error))
        return std::nullopt;
    if (!report.ends_with(endOfCrashReport))
        report += "\nThe report breaks off here; no more of it could be written.\n";
    return report;
}

} // namespace

std::string withReadableStack(std::string_view report) {
    constexpr std::string_view beforeName = "  _Z";
    constexpr std::string_view behindName = " + 0x";
    std::string text;
    std::size_t at = report.find("\nStack:\n");
    std::size_t copied = 0;
    while (at != std::string_view::npos && (at = report.find(beforeName, at)) != std::string_view::npos) {
        const std::size_t begin = at + 2; // behind the spaces
        const std::size_t end = report.find(behindName, begin);
        if (end == std::string_view::npos)
            break;
        text.append(report, copied, begin - copied);
        text += readable(std::string(report.substr(begin, end - begin)));
        copied = at = end;
    }
    return text.append(report, copied);
}

void finishCrashReports(const std::string& reportsFolder) {
    for (const std::filesystem::path& unfinished : unfinishedReports(reportsFolder)) {
        std::filesystem::path finished = unfinished;
        finished.replace_extension(".ips");
        const auto report = finishedReport(unfinished);
        std::error_code error;
        if (report && replaceFileDurably(finished, *report))
            std::filesystem::remove(unfinished, error);
        else
            std::filesystem::rename(unfinished, finished, error);
    }
}

} // namespace norvane
