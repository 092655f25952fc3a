#include "timemachine_linux/rsync/rsync_outcome.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(RsyncOutcome, JudgesExitsByStatusAndByWhoMetTheError) {
    using enum ResultCode;
    const std::string unreadable =
        R"(rsync: [sender] send_files failed to open "/h/a": Permission denied (13))";
    const std::string full = R"(rsync: [receiver] write failed on "/d/a": No space left on device (28))";
    const std::string summary =
        "rsync error: some files/attrs were not transferred (code 23) at main.c(1338)";
    const std::string vanished = R"(file has vanished: "/h/a")";
    struct Case {
        int status;
        std::vector<std::string> errors;
        bool stopRequested;
        ResultCode code;
        std::vector<std::string> notes = {};
    };
    const Case cases[] = {
        {0, {}, false, success},
        {0, {}, true, success},
        {24, {vanished}, false, success, {vanished}},
        {23, {unreadable, summary}, false, success, {unreadable}},
        {23, {unreadable, full, summary}, false, destinationFull},
        {11, {full, summary}, false, destinationFull},
        {23,
         {R"(rsync: [generator] mkdir "/d/a" failed: Disk quota exceeded (122))"},
         false,
         destinationFull},
        {23, {R"(rsync: [receiver] rename "/d/.a": Input/output error (5))"}, false, destinationFailing},
        {11, {R"(rsync: [receiver] mkstemp "/d/.a" failed: Read-only (30))"}, true, destinationFailing},
        // A disk that answers nothing must not count as an empty folder.
        {23, {R"(rsync: [sender] read errors mapping "/h/a": Input/output error (5))"}, false, copyFailed},
        {23, {unreadable, R"(rsync: [sender] link_stat "/h" failed: No such file (2))"}, false, copyFailed},
        {23, {unreadable, R"(rsync: [receiver] mkstemp "/d/.a" failed: No such (2))"}, false, copyFailed},
        {23, {R"(rsync: [generator] failed to set times on "/d/a": Not permitted (1))"}, false, copyFailed},
        {23, {R"(rsync: [receiver] chgrp "/d/.a" failed: I/O error (5))"}, false, destinationFailing},
        {23,
         {R"(rsync: [receiver] rsync_xal_set: lsetxattr("/d/a","user.n") failed: Not supported (95))",
          R"(rsync: [generator] set_acl: sys_acl_set_file(a, ACL_TYPE_ACCESS): Not supported (95))",
          R"(rsync: [receiver] chown "/d/.a" failed: Operation not permitted (1))", unreadable, summary},
         false,
         success,
         {unreadable}},
        {23, {}, false, copyFailed},
        {20, {"rsync error: received SIGINT, SIGTERM, or SIGHUP (code 20)"}, true, stopped},
        {20, {}, false, copyFailed},
        {128 + 9, {}, true, stopped},
        {127, {}, false, copyFailed},
    };
    for (const Case& c : cases) {
        const RsyncOutcome outcome = judgeRsyncExit({c.status, c.errors}, c.stopRequested);
        const std::string hint = std::to_string(c.status) + (c.errors.empty() ? "" : c.errors[0]);
        EXPECT_EQ(outcome.failure ? outcome.failure->code : success, c.code) << hint;
        EXPECT_FALSE(outcome.failure && outcome.failure->text.empty()) << hint;
        EXPECT_EQ(outcome.notes, c.notes) << hint;
    }
}

} // namespace

} // namespace norvane
