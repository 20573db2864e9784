// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/run_program.h"

#include <cerrno>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vyxtest {

ProgramRun runProgram(const std::vector<std::string>& argv, unsigned timeLimit)
{
    ProgramRun run;
    int out[2], err[2];
    if (argv.empty() || pipe(out) != 0 || pipe(err) != 0)
        return run;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        close(out[0]);
        close(err[0]);
        std::vector<char*> args;
        for (const std::string& arg : argv)
            args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        if (timeLimit)
            alarm(timeLimit);
        execvp(args[0], args.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    // Both streams at once, so that a program filling one never blocks.
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* into[2] = {&run.out, &run.err};
    for (int open = 2; open > 0;) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !fds[i].revents)
                continue;
            char buffer[4096];
            ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                into[i]->append(buffer, static_cast<size_t>(n));
            } else if (n == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

}  // namespace vyxtest
