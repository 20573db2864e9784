// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_CHILD_PROCESS_H
#define VYXCORE_TESTS_CHILD_PROCESS_H

// Runs a test body in a forked child: inside a private mount namespace with
// tmpfs or bind mounts over fixed system paths, in a private network
// namespace, or as an unprivileged user. GoogleTest assertions work in the
// body; their failures are printed by the child and fail the parent's case.
// Where the kernel refuses a namespace or a mount, the case is skipped with
// the reason, never passed.

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

#include <gtest/gtest.h>

namespace vyxtest {

struct Mount {
    enum class Kind {
        Tmpfs,  // an empty tmpfs over target (a directory)
        Bind  // source (file or directory) bound over target
    };
    Kind kind;
    std::string target;
    std::string source;  // Bind only
    std::string size = {};  // Tmpfs only: its "size=" option ("64k"); empty for the default

    static Mount tmpfs(std::string target, std::string size = {})
    {
        return {Kind::Tmpfs, std::move(target), {}, std::move(size)};
    }
    static Mount bind(std::string source, std::string target)
    {
        return {Kind::Bind, std::move(target), std::move(source)};
    }
};

struct ChildOptions {
    // Mounts made in a private mount namespace. A missing target is made in
    // a private overlay of its nearest existing parent, so the real file
    // system is never written.
    std::vector<Mount> mounts;
    // A private network namespace: an empty abstract socket namespace.
    bool privateNetwork = false;
    // Drop to this uid/gid (when running as root) after mounting.
    bool unprivileged = false;
    uid_t uid = 65534;
    gid_t gid = 65534;
};

struct ChildResult {
    enum class Outcome { Passed, Failed, Skipped };
    Outcome outcome = Outcome::Failed;
    std::string reason;
};

ChildResult runInChild(const ChildOptions& options, const std::function<void()>& body);

// Runs body(0) ... body(count - 1) in as many forked processes, released
// together once all are forked, and waits for them; true when every one
// exited normally with status 0.
bool runConcurrently(int count, const std::function<void(int)>& body);

}  // namespace vyxtest

// Use in the parent's test body: skips with the child's reason, or fails.
#define VYX_EXPECT_CHILD(result_expr)                                                                                  \
    do {                                                                                                               \
        const ::vyxtest::ChildResult vyx_child_result_ = (result_expr);                                                \
        if (vyx_child_result_.outcome == ::vyxtest::ChildResult::Outcome::Skipped)                                     \
            GTEST_SKIP() << vyx_child_result_.reason;                                                                  \
        EXPECT_EQ(vyx_child_result_.outcome, ::vyxtest::ChildResult::Outcome::Passed) << vyx_child_result_.reason;     \
    } while (0)

#endif
