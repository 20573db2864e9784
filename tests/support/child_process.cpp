// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"

#include "support/temp_home.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vyxtest {

namespace {

constexpr int kSkipStatus = 77;

// Reports why the child cannot run the body and ends it as "skipped".
[[noreturn]] void skipChild(int pipeFd, const std::string& what)
{
    const std::string reason = what + ": " + std::strerror(errno);
    (void)!write(pipeFd, reason.data(), reason.size());  // the exit status says "skipped" anyway
    _exit(kSkipStatus);
}

bool exists(const std::string& path)
{
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

std::string parentOf(const std::string& path)
{
    std::string::size_type slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

// Makes target exist without writing the real file system: the nearest
// existing ancestor is covered by an overlay whose upper layer lives on a
// tmpfs, and the missing levels are created there.
void makeMountPoint(const std::string& target, bool directory, const std::string& scratch, int pipeFd)
{
    std::string ancestor = parentOf(target);
    while (!exists(ancestor))
        ancestor = parentOf(ancestor);

    static int layer = 0;
    std::string base = scratch + "/layer" + std::to_string(layer++);
    if (mkdir(base.c_str(), 0755) != 0 || mkdir((base + "/upper").c_str(), 0755) != 0 ||
        mkdir((base + "/work").c_str(), 0755) != 0)
        skipChild(pipeFd, "mkdir " + base);
    std::string options = "lowerdir=" + ancestor + ",upperdir=" + base + "/upper,workdir=" + base + "/work";
    if (mount("overlay", ancestor.c_str(), "overlay", 0, options.c_str()) != 0)
        skipChild(pipeFd, "overlay over " + ancestor);

    // Every level below the ancestor is missing: make each one.
    for (std::string::size_type slash = ancestor.size(); slash != std::string::npos;) {
        slash = target.find('/', slash + 1);
        const std::string level = target.substr(0, slash);
        const bool file = slash == std::string::npos && !directory;
        const int fd = file ? open(level.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644) : -1;
        if (file ? fd < 0 || close(fd) != 0 : mkdir(level.c_str(), 0755) != 0)
            skipChild(pipeFd, "create " + level);
    }
}

void prepareChild(const ChildOptions& options, const std::string& scratch, int pipeFd)
{
    int flags = 0;
    if (!options.mounts.empty())
        flags |= CLONE_NEWNS;
    if (options.privateNetwork)
        flags |= CLONE_NEWNET;
    if (flags && unshare(flags) != 0)
        skipChild(pipeFd, "unshare");

    if (!options.mounts.empty()) {
        if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            skipChild(pipeFd, "make / private");
        if (mount("tmpfs", scratch.c_str(), "tmpfs", 0, "mode=0755") != 0)
            skipChild(pipeFd, "tmpfs over " + scratch);
        for (const Mount& m : options.mounts) {
            bool directory = true;
            if (m.kind == Mount::Kind::Bind) {
                struct stat st;
                if (stat(m.source.c_str(), &st) != 0)
                    skipChild(pipeFd, "stat " + m.source);
                directory = S_ISDIR(st.st_mode);
            }
            if (!exists(m.target))
                makeMountPoint(m.target, directory, scratch, pipeFd);
            const std::string tmpfsOptions = m.size.empty() ? "mode=0755" : "mode=0755,size=" + m.size;
            int rc = m.kind == Mount::Kind::Tmpfs
                         ? mount("tmpfs", m.target.c_str(), "tmpfs", 0, tmpfsOptions.c_str())
                         : mount(m.source.c_str(), m.target.c_str(), nullptr, MS_BIND, nullptr);
            if (rc != 0)
                skipChild(pipeFd, "mount over " + m.target);
        }
    }

    if (options.unprivileged && geteuid() == 0) {
        if (setgroups(0, nullptr) != 0 || setgid(options.gid) != 0 || setuid(options.uid) != 0)
            skipChild(pipeFd, "drop privileges");
    }
}

}  // namespace

ChildResult runInChild(const ChildOptions& options, const std::function<void()>& body)
{
    ChildResult result;
    char scratchTemplate[] = "/tmp/vyxcore-ns-XXXXXX";
    std::string scratch;
    if (!options.mounts.empty()) {
        if (!mkdtemp(scratchTemplate)) {
            result.reason = std::string("mkdtemp: ") + std::strerror(errno);
            return result;
        }
        scratch = scratchTemplate;
    }

    int fds[2];
    std::fflush(nullptr);
    const pid_t pid = pipe(fds) == 0 ? fork() : -1;
    if (pid < 0) {
        result.reason = std::string("pipe or fork: ") + std::strerror(errno);
        return result;
    }
    if (pid == 0) {
        close(fds[0]);
        prepareChild(options, scratch, fds[1]);
        // Only the body's own failures count, not the parent's earlier ones.
        const ::testing::TestResult* result = ::testing::UnitTest::GetInstance()->current_test_info()->result();
        auto failures = [result] {
            int count = 0;
            for (int i = 0; i < result->total_part_count(); ++i)
                count += result->GetTestPartResult(i).failed();
            return count;
        };
        const int failedBefore = failures();
        try {
            body();
        } catch (const std::exception& e) {
            ADD_FAILURE() << "exception in child: " << e.what();
        } catch (...) {
            ADD_FAILURE() << "unknown exception in child";
        }
        std::fflush(nullptr);
        _exit(failures() > failedBefore ? 1 : 0);
    }

    close(fds[1]);
    char buffer[512];
    ssize_t n;
    while ((n = read(fds[0], buffer, sizeof buffer)) > 0)
        result.reason.append(buffer, static_cast<size_t>(n));
    close(fds[0]);

    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
    if (!scratch.empty())
        removeTree(scratch);

    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.outcome = code == kSkipStatus ? ChildResult::Outcome::Skipped
                     : code == 0         ? ChildResult::Outcome::Passed
                                         : ChildResult::Outcome::Failed;
    if (code != kSkipStatus && code != 0)
        result.reason = WIFSIGNALED(status) ? "child killed by signal " + std::to_string(WTERMSIG(status))
                                            : "child failed (exit status " + std::to_string(code) + ")";
    return result;
}

bool runConcurrently(int count, const std::function<void(int)>& body)
{
    // Every child waits until the parent closes the pipe, so that the last
    // one forked does not find the work of the first already done.
    int start[2];
    if (pipe(start) != 0)
        return false;
    std::vector<pid_t> children;
    for (int i = 0; i < count; ++i) {
        const pid_t pid = fork();
        if (pid == 0) {
            close(start[1]);
            char go;
            while (read(start[0], &go, 1) < 0 && errno == EINTR) { }
            body(i);
            _exit(0);
        }
        if (pid > 0)
            children.push_back(pid);
    }
    close(start[0]);
    close(start[1]);
    bool ok = children.size() == size_t(count);
    for (pid_t pid : children) {
        int status = 0;
        ok = waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0 && ok;
    }
    return ok;
}

}  // namespace vyxtest
