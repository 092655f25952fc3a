#include "timemachine_linux/files/bounded_call.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <unistd.h>

namespace norvane {

namespace {

TEST(BoundedCall, TakesTheAnswerOrEndsInTime) {
    EXPECT_EQ(callBounded(10, [] { return std::optional<std::string>("answer"); }), "answer");
    EXPECT_FALSE(callBounded(10, [] { return std::optional<std::string>(); }));
    EXPECT_FALSE(callBounded(0.01, []() -> std::optional<std::string> {
        for (;;)
            ::pause();
    }));
}

// A child that is stuck for ever would otherwise hold the caller's locks and output for ever.
TEST(BoundedCall, ChildHoldsNoFileOfItsCaller) {
    const int another = ::dup(STDOUT_FILENO);
    const auto text = callBounded(10, [] {
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
            files.insert(std::filesystem::read_symlink(entry.path()).string());
        std::string answer;
        for (const std::string& file : files)
            if (!file.starts_with("/proc/"))
                answer += file.substr(0, file.find('[')) + " ";
        return std::optional(answer);
    });
    ::close(another);
    EXPECT_EQ(text, "/dev/null pipe: ");
}

} // namespace

} // namespace norvane
