// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/spawn_p.h"

#include "core/uniquefd_p.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Vyx::detail {

ProgramResult runProgram(const std::vector<std::string>& argv, size_t maxOutput)
{
    ProgramResult result;
    if (argv.empty())
        return result;
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return result;
    UniqueFd output(fds[0]), input(fds[1]);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, input.get(), STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    std::vector<char*> args;
    for (const std::string& arg : argv)
        args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);

    pid_t pid = -1;
    int rc = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    input.reset();
    if (rc != 0)
        return result;
    result.started = true;

    char buffer[4096];
    ssize_t n;
    while ((n = read(output.get(), buffer, sizeof buffer)) != 0) {
        if (n < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        size_t room = maxOutput - result.output.size();
        result.output.append(buffer, static_cast<size_t>(n) < room ? static_cast<size_t>(n) : room);
    }
    // Before the wait: a child still writing must find the pipe gone.
    output.reset();

    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
    result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

int startProgram(const std::vector<std::string>& argv, const std::string& workingDir, std::string* error)
{
    auto fail = [error](int code) {
        if (error)
            *error = std::strerror(code);
        return -1;
    };
    if (argv.empty() || argv[0].empty())
        return fail(ENOENT);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (!workingDir.empty())
        posix_spawn_file_actions_addchdir_np(&actions, workingDir.c_str());

    // The program starts with no blocked signals and the default handlers,
    // whatever the caller had set for itself (an ignored SIGPIPE or SIGCHLD
    // would otherwise be inherited across exec).
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<char*> args;
    for (const std::string& arg : argv)
        args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);

    pid_t pid = -1;
    int rc = posix_spawnp(&pid, args[0], &actions, &attributes, args.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0)
        return fail(rc);
    return pid;
}

}  // namespace Vyx::detail
