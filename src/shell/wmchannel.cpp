// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The window manager's command FIFO: finding it (also for an administrator
// whose window manager runs as another user) and writing one command.

#include "vyxsession.h"

#include "core/environment_p.h"
#include "shell/channels_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsystem.h"

#include <X11/Xlib.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char kFifoPrefix[] = "vyx-wm-";
const char kRuntimeRoot[] = "/var/run/user";
const char kPrivateRuntimeRoot[] = "/var/run/user/private";

std::string defaultFifoPath(const std::string& displayName)
{
    std::string dir = Vyx::detail::envString("XDG_RUNTIME_DIR");
    if (dir.empty())
        dir = GetVyxDir(TempDir);
    if (dir.empty())
        dir = "/tmp";
    return dir + "/" + kFifoPrefix + displayName;
}

// The group lookup keeps unlocked per-process answers; concurrent senders
// must not fill them at the same time.
bool administrator()
{
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    return isUserInGroup("orvel-admin");
}

// Calls visit(name) for each entry of dir but "." and ".." until it answers
// true; false when the directory cannot be read or nothing was accepted.
template <typename Visit>
bool forEachEntry(const std::string& dir, Visit visit)
{
    DIR* d = opendir(dir.c_str());
    if (!d)
        return false;
    bool accepted = false;
    while (dirent* entry = readdir(d)) {
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        if (visit(entry->d_name)) {
            accepted = true;
            break;
        }
    }
    closedir(d);
    return accepted;
}

// A window manager that vanished between our open and our write must not
// take the caller down with SIGPIPE. The signal is held off for this thread
// only, and one raised by our own write is consumed before the mask goes
// back, so the process's disposition is never touched.
void writeWithoutSigpipe(int fd, const char* data, size_t size)
{
    sigset_t pipeOnly, previous, pending;
    sigemptyset(&pipeOnly);
    sigaddset(&pipeOnly, SIGPIPE);
    sigemptyset(&pending);
    sigpending(&pending);
    const bool alreadyPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeOnly, &previous);
    ssize_t written = write(fd, data, size);
    if (written < 0 && errno == EPIPE && !alreadyPending) {
        const timespec zero = {0, 0};
        while (sigtimedwait(&pipeOnly, nullptr, &zero) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

}  // namespace

namespace Vyx::detail {

std::string channelDisplayName(Display* display)
{
    if (display)
        return DisplayString(display);
    return envString("DISPLAY");
}

}  // namespace Vyx::detail

std::pair<std::string, bool> GetVyxWMFIFOPath(Display* display)
{
    std::string path = defaultFifoPath(Vyx::detail::channelDisplayName(display));
    bool writable = access(path.c_str(), W_OK) == 0;
    return {path, writable};
}

std::pair<std::string, bool> FindVyxWMFIFOPath(Display* display)
{
    const std::string displayName = Vyx::detail::channelDisplayName(display);
    const std::string name = kFifoPrefix + displayName;
    std::string candidate = defaultFifoPath(displayName);
    if (fileExists(candidate, false))
        return {candidate, true};
    if (getuid() != 0 && !administrator())
        return {candidate, false};

    // Another user's window manager on this display keeps its FIFO in that
    // user's runtime directory, or one level deeper under "private".
    const std::string root = kRuntimeRoot;
    auto tryCandidate = [&](const std::string& dir) {
        candidate = dir + "/" + name;
        return fileExists(candidate, false);
    };
    if (forEachEntry(root, [&](const char* entry) { return tryCandidate(root + "/" + entry); }))
        return {candidate, true};
    const std::string privateRoot = kPrivateRuntimeRoot;
    bool found = forEachEntry(privateRoot, [&](const char* outer) {
        const std::string outerDir = privateRoot + "/" + outer;
        return forEachEntry(outerDir, [&](const char* inner) { return tryCandidate(outerDir + "/" + inner); });
    });
    return {candidate, found};
}

bool SendCommandToWM(Display* display, const char* command)
{
    const std::pair<std::string, bool> fifo = FindVyxWMFIFOPath(display);
    if (!fifo.second) {
        std::fprintf(stderr,
                     "SendCommandToWM: Can't access WM fifo file %s.\n"
                     "                 May be other user uses it.\n"
                     "                 Ask administrator to check it.\n",
                     fifo.first.empty() ? "<undefined>" : fifo.first.c_str());
        return false;
    }
    // Non-blocking, so that a FIFO nobody reads fails at once (ENXIO)
    // instead of hanging the caller until a window manager starts.
    int fd = open(fifo.first.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return false;
    if (command && *command)
        writeWithoutSigpipe(fd, command, std::strlen(command));
    close(fd);
    return true;
}

bool vyxSendCommandToWM(Display* display, const char* command)
{
    return SendCommandToWM(display, command);
}
