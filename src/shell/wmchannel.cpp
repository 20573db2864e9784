// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The window manager's command FIFO: finding it (also for an administrator
// whose window manager runs as another user) and writing one command.

#include "vyxsession.h"

#include "core/diag_p.h"
#include "core/dirwalker_p.h"
#include "core/environment_p.h"
#include "core/uniquefd_p.h"
#include "shell/channels_p.h"
#include "vyxdirs.h"
#include "vyxstrings.h"
#include "vyxsystem.h"

#include <X11/Xlib.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

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
template <typename Visit> bool forEachEntry(const std::string& dir, Visit visit)
{
    Vyx::detail::DirWalker d(dir);
    while (const dirent* entry = d.next()) {
        if (visit(entry->d_name))
            return true;
    }
    return false;
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
        while (sigtimedwait(&pipeOnly, nullptr, &zero) < 0 && errno == EINTR) { }
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

// Why the file described by st must not receive our commands, meant for
// owner; empty when it may.
std::string refusal(const struct stat& st, uid_t owner)
{
    if (S_ISLNK(st.st_mode))
        return "it is a symbolic link";
    if (!S_ISFIFO(st.st_mode))
        return "it is not a FIFO";
    if (st.st_uid != owner)
        return Vyx::concat("it belongs to uid ", unsigned(st.st_uid), ", not to uid ", unsigned(owner));
    return std::string();
}

void notUsed(const std::string& path, const std::string& reason)
{
    Vyx::detail::diag(nullptr, "SendCommandToWM: %s not used: %s\n", path.c_str(), reason.c_str());
}

// The uid a directory entry under the runtime root is named after; false
// for any other name.
bool uidNamed(const char* name, uid_t* uid)
{
    if (!*name || std::strlen(name) > 10 || std::strspn(name, "0123456789") != std::strlen(name))
        return false;
    const unsigned long value = std::strtoul(name, nullptr, 10);
    if (value > 0xFFFFFFFEul)
        return false;
    *uid = uid_t(value);
    return true;
}

struct FifoChoice {
    std::string path;  // the FIFO, or the last candidate tried
    bool found = false;
    uid_t owner = 0;  // whom the FIFO found must belong to
    std::vector<std::pair<std::string, std::string>> refused;  // candidates present but unfit, and why
};

// Finds the window manager's FIFO. Existing is not enough: whoever can
// create the name first (in the shared temporary directory, say) would
// otherwise read every command we send, and a symbolic link there would
// make us write into any file it points at. So only a FIFO, reached without
// a symbolic link, owned by the user whose window manager it is, counts:
// ours at the default path, and in an administrator's scan the one owned by
// the user whose runtime directory holds it.
FifoChoice locateFifo(const std::string& displayName)
{
    FifoChoice choice;
    const std::string name = kFifoPrefix + displayName;
    // owner null: the directory holding path names no user, so nothing
    // there is taken.
    auto fits = [&](const std::string& path, const uid_t* owner) {
        choice.path = path;
        struct stat st;
        if (lstat(path.c_str(), &st) != 0)
            return false;
        std::string reason = owner ? refusal(st, *owner) : std::string("its directory names no user");
        if (!reason.empty()) {
            choice.refused.emplace_back(path, std::move(reason));
            return false;
        }
        choice.owner = *owner;
        choice.found = true;
        return true;
    };
    const std::string defaultPath = defaultFifoPath(displayName);
    const uid_t self = geteuid();
    if (fits(defaultPath, &self))
        return choice;
    if (getuid() != 0 && !administrator())
        return choice;

    // Another user's window manager on this display keeps its FIFO in that
    // user's runtime directory, named after the uid, or one level deeper
    // under "private", where the directory holding it names its user by
    // owning it.
    const std::string root = kRuntimeRoot;
    if (forEachEntry(root, [&](const char* entry) {
            uid_t uid;
            return fits(root + "/" + entry + "/" + name, uidNamed(entry, &uid) ? &uid : nullptr);
        }))
        return choice;
    const std::string privateRoot = kPrivateRuntimeRoot;
    forEachEntry(privateRoot, [&](const char* outer) {
        const std::string outerDir = privateRoot + "/" + outer;
        return forEachEntry(outerDir, [&](const char* inner) {
            const std::string dir = outerDir + "/" + inner;
            struct stat holder;
            const bool named = lstat(dir.c_str(), &holder) == 0 && S_ISDIR(holder.st_mode);
            return fits(dir + "/" + name, named ? &holder.st_uid : nullptr);
        });
    });
    return choice;
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
    const FifoChoice choice = locateFifo(Vyx::detail::channelDisplayName(display));
    return {choice.path, choice.found};
}

bool SendCommandToWM(Display* display, const char* command)
{
    const FifoChoice fifo = locateFifo(Vyx::detail::channelDisplayName(display));
    if (!fifo.found) {
        for (const auto& [path, reason] : fifo.refused)
            notUsed(path, reason);
        Vyx::detail::diag(nullptr,
                          "SendCommandToWM: Can't access WM fifo file %s.\n"
                          "                 May be other user uses it.\n"
                          "                 Ask administrator to check it.\n",
                          fifo.path.empty() ? "<undefined>" : fifo.path.c_str());
        return false;
    }
    // Non-blocking, so that a FIFO nobody reads fails at once (ENXIO)
    // instead of hanging the caller until a window manager starts. The path
    // was looked at before; what is opened is checked again, since the name
    // may have been replaced in between.
    const Vyx::detail::UniqueFd fifoFd(
        open(fifo.path.c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY));
    const int fd = fifoFd.get();
    if (fd < 0) {
        if (errno == ELOOP)
            notUsed(fifo.path, "it is a symbolic link");
        return false;
    }
    struct stat st;
    const std::string reason = fstat(fd, &st) == 0 ? refusal(st, fifo.owner) : std::string("it cannot be examined");
    if (!reason.empty()) {
        notUsed(fifo.path, reason);
        return false;
    }
    if (command && *command)
        writeWithoutSigpipe(fd, command, std::strlen(command));
    return true;
}

bool vyxSendCommandToWM(Display* display, const char* command)
{
    return SendCommandToWM(display, command);
}
