#include "timemachine_linux/rsync/rsync_outcome.h"

#include <gtest/gtest.h>

namespace norvane {
namespace {

TEST(RsyncOutcome, JudgesExitsByStatusAndByWhoMetTheError) {
    const std::string unreadable =
        R"(rsync: [sender] send_files failed to open "/h/a": Permission denied (13))";
    const std::string full = R"(rsync: [receiver] write failed on "/d/a": No space left on device (28))";
    const std::string summary =
        "rsync error: some files/attrs were not transferred (code 23) at main.c(1338)";
    struct Case {
        RsyncExit exit;
        bool stopRequested;
        ResultCode code;
        std::vector<std::string> notes;
    };
    const Case cases[] = {
        {{0, {}}, false, ResultCode::success, {}},
        {{0, {}}, true, ResultCode::success, {}},
        {{24, {R"(file has vanished: "/h/a")"}},
         false,
         ResultCode::success,
         {R"(file has vanished: "/h/a")"}},
        {{23, {unreadable, summary}}, false, ResultCode::success, {unreadable}},
        {{23, {unreadable, full, summary}}, false, ResultCode::destinationFull, {}},
        {{11, {full, summary}}, false, ResultCode::destinationFull, {}},
        {{23, {R"(rsync: [generator] mkdir "/d/a" failed: Disk quota exceeded (122))"}},
         false,
         ResultCode::destinationFull,
         {}},
        {{23, {R"(rsync: [receiver] rename "/d/.a" -> "a": Input/output error (5))"}},
         false,
         ResultCode::destinationFailing,
         {}},
        {{11, {R"(rsync: [receiver] mkstemp "/d/.a" failed: Read-only file system (30))"}},
         true,
         ResultCode::destinationFailing,
         {}},
        // A disk that answers nothing must not count as an empty folder.
        {{23, {R"(rsync: [sender] read errors mapping "/h/a": Input/output error (5))"}},
         false,
         ResultCode::copyFailed,
         {}},
        {{23, {unreadable, R"(rsync: [sender] link_stat "/h" failed: No such file or directory (2))"}},
         false,
         ResultCode::copyFailed,
         {}},
        {{23,
          {unreadable, R"(rsync: [receiver] mkstemp "/d/.a" failed: No such file or directory (2))",
           summary}},
         false,
         ResultCode::copyFailed,
         {}},
        {{23, {R"(rsync: [generator] failed to set times on "/d/a": Operation not permitted (1))"}},
         false,
         ResultCode::copyFailed,
         {}},
        {{23, {R"(rsync: [receiver] chgrp "/d/.a" failed: Input/output error (5))"}},
         false,
         ResultCode::destinationFailing,
         {}},
        {{23,
          {R"(rsync: [receiver] rsync_xal_set: lsetxattr("/d/a","user.n") failed: Operation not supported (95))",
           R"(rsync: [generator] set_acl: sys_acl_set_file(a, ACL_TYPE_ACCESS): Operation not supported (95))",
           R"(rsync: [receiver] chown "/d/.a" failed: Operation not permitted (1))", unreadable, summary}},
         false,
         ResultCode::success,
         {unreadable}},
        {{23, {}}, false, ResultCode::copyFailed, {}},
        {{20, {"rsync error: received SIGINT, SIGTERM, or SIGHUP (code 20)"}}, true, ResultCode::stopped, {}},
        {{20, {}}, false, ResultCode::copyFailed, {}},
        {{128 + 9, {}}, true, ResultCode::stopped, {}},
        {{127, {}}, false, ResultCode::copyFailed, {}},
    };
    for (const Case& c : cases) {
        const RsyncOutcome outcome = judgeRsyncExit(c.exit, c.stopRequested);
        const std::string hint =
            std::to_string(c.exit.status) + (c.exit.errors.empty() ? "" : c.exit.errors[0]);
        EXPECT_EQ(outcome.failure ? outcome.failure->code : ResultCode::success, c.code) << hint;
        EXPECT_FALSE(outcome.failure && outcome.failure->text.empty()) << hint;
        EXPECT_EQ(outcome.notes, c.notes) << hint;
    }
}

} // namespace
} // namespace norvane
