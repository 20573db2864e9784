// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The display manager's control socket, and its command-line control tool
// for status queries.

#include "vyxsession.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "core/spawn_p.h"
#include "core/uniquefd_p.h"
#include "shell/channels_p.h"
#include "vyxstrings.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const char kDmCtl[] = "/usr/bin/vyx-dmctl";
// The tool's answer is one line; longer lines are cut here.
constexpr size_t kDmCtlLineLimit = 998;
constexpr size_t kChunkSize = 4096;

// The first line of the tool's output for args, newline included when it
// fits; empty when the tool cannot be run or says nothing.
std::string firstLineOfDmCtl(std::vector<std::string> args)
{
    args.insert(args.begin(), kDmCtl);
    std::string output = Vyx::detail::runProgram(args, kDmCtlLineLimit).output;
    std::string::size_type newline = output.find('\n');
    if (newline != std::string::npos)
        output.resize(newline + 1);
    return output;
}

// One display manager serves every screen of a display, so its socket is
// named without the screen: ":0.1" gives ":0". A dot before the colon
// belongs to a host name ("host.example:0") and stays.
std::string withoutScreen(const std::string& displayName)
{
    std::string::size_type colon = displayName.rfind(':');
    std::string::size_type dot = displayName.rfind('.');
    if (colon != std::string::npos && dot != std::string::npos && dot > colon)
        return displayName.substr(0, dot);
    return displayName;
}

}  // namespace

std::pair<std::string, bool> GetVyxDMFIFOPath(Display* display)
{
    const char* control = Vyx::detail::envValue("DM_CONTROL");
    std::string path = control && control[0] == '/' ? std::string(control) + "/dmctl-" : "/var/run/xdmctl/dmctl-";
    path += withoutScreen(Vyx::detail::channelDisplayName(display));
    path += "/socket";
    bool writable = access(path.c_str(), W_OK) == 0;
    return {path, writable};
}

bool SendCommandToDMWithReply(Display* display, const char* command, FILE* out)
{
    const std::pair<std::string, bool> socketPath = GetVyxDMFIFOPath(display);
    const char* path = socketPath.first.c_str();
    if (!socketPath.second) {
        Vyx::detail::diag(nullptr,
                          "SendCommandToDM: Can't access DM fifo/socket file '%s'.\n"
                          "                 May be other user uses it.\n"
                          "                 Ask administrator to check it.\n",
                          path);
        return false;
    }
    if (!command)
        return true;

    const Vyx::detail::UniqueFd socketFd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int fd = socketFd.get();
    if (fd < 0) {
        Vyx::detail::diag(nullptr, "SendCommandToDM: Cannot create UNIX socket error=%s\n", std::strerror(errno));
        return false;
    }
    sockaddr_un address;
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    // A longer path is cut and the connection then fails, as it must.
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        int error = errno;
        Vyx::detail::diag(nullptr, "SendCommandToDM: Cannot connect socket %s error=%s\n", path, std::strerror(error));
        return false;
    }
    // Only the display manager (which runs as root) or a display manager of
    // our own may get our commands: anyone who could create the socket's
    // name would otherwise receive them and choose the reply. The listener's
    // credentials are asked of the connection itself, not of the file at
    // the path, which could be replaced between a look at it and the
    // connect.
    ucred peer = {};
    socklen_t peerSize = sizeof peer;
    if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &peerSize) != 0) {
        int error = errno;
        Vyx::detail::diag(nullptr, "SendCommandToDM: %s not used: its listener cannot be known (%s)\n", path,
                          std::strerror(error));
        return false;
    }
    if (peer.uid != 0 && peer.uid != geteuid()) {
        Vyx::detail::diag(nullptr, "SendCommandToDM: %s not used: its listener runs as uid %u\n", path,
                          unsigned(peer.uid));
        return false;
    }

    // Callers write the fields with spaces; the protocol separates them by
    // tabs. No line terminator: the display manager reads one message.
    char buffer[kChunkSize];
    size_t length = strnlen(command, sizeof buffer - 1);
    std::memcpy(buffer, command, length);
    for (size_t i = 0; i < length; ++i) {
        if (buffer[i] == ' ')
            buffer[i] = '\t';
    }
    // send() rather than write(): a display manager that hangs up must give
    // an error here, not a SIGPIPE that ends the caller.
    ssize_t written = send(fd, buffer, length, MSG_NOSIGNAL);
    if (written < 0 || static_cast<size_t>(written) < length) {
        int error = errno;
        Vyx::detail::diag(nullptr, "SendCommandToDM: Cannot write command to socket %s error=%s\n", path,
                          std::strerror(error));
        return false;
    }

    if (!out)
        out = stdout;
    while (true) {
        ssize_t n = read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            Vyx::detail::diag(nullptr, "SendCommandToDM: Cannot receive reply\n");
            break;
        }
        std::fwrite(buffer, 1, static_cast<size_t>(n), out);
        if (buffer[n - 1] == '\n')
            break;
    }
    return true;
}

bool SendCommandToDM(Display* display, const char* command)
{
    return SendCommandToDMWithReply(display, command, stdout);
}

std::vector<std::string> GetDMSessionsList()
{
    std::string line = firstLineOfDmCtl({"list"});
    if (!line.empty() && line.back() == '\n')
        line.pop_back();
    std::vector<std::string> sessions;
    // The reply starts with its status word ("ok"); the records follow it.
    for (std::string& field : Vyx::split(line.c_str(), "\t")) {
        if (!field.empty() && field.compare(0, 2, "ok") != 0)
            sessions.push_back(std::move(field));
    }
    return sessions;
}

int GetDMReserveNum()
{
    const std::string line = firstLineOfDmCtl({});
    const char* reserve = std::strstr(line.c_str(), "reserve ");
    if (!reserve)
        return 0;
    // As "%d" reads it (leading blanks, a sign, digits), but a number beyond
    // int is clamped instead of being undefined.
    const char* start = reserve + std::strlen("reserve ");
    char* end = nullptr;
    long value = std::strtol(start, &end, 10);
    if (end == start)
        return 0;
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}
