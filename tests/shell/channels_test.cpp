// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"
#include "support/text_checks.h"
#include "support/unix_socket.h"

#include <vyxdirs.h>
#include <vyxsession.h>

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using vyxtest::ChildOptions;
using vyxtest::Mount;
using vyxtest::ScopedEnv;
using Found = std::pair<std::string, bool>;

std::string advice(const std::string& what)
{
    const std::string indent(17, ' ');
    return what + "\n" + indent + "May be other user uses it.\n" + indent + "Ask administrator to check it.\n";
}

// Whatever the reader got within a moment; the FIFO is held open for
// reading throughout, so a writer would not have been turned away for want
// of a reader.
std::string unreadAfter(const std::string& fifo, const std::function<void()>& send)
{
    int fd = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_GE(fd, 0) << fifo;
    send();
    char buffer[256];
    ssize_t n = read(fd, buffer, sizeof buffer);
    close(fd);
    return std::string(buffer, n > 0 ? size_t(n) : 0);
}

// What a reader holding the FIFO open, as a window manager does, got of
// command; the send must succeed.
std::string sendToReader(const std::string& fifo, const char* command)
{
    return unreadAfter(fifo, [command] { EXPECT_TRUE(SendCommandToWM(nullptr, command)); });
}

// Plants what another user could leave at path: a FIFO (or a plain file)
// anyone may write, owned by uid.
std::string plant(const std::string& path, uid_t uid = getuid(), bool fifo = true)
{
    unlink(path.c_str());
    EXPECT_EQ(fifo ? mkfifo(path.c_str(), 0666) : close(open(path.c_str(), O_CREAT | O_WRONLY, 0666)), 0) << path;
    EXPECT_EQ(chmod(path.c_str(), 0666) | chown(path.c_str(), uid, uid), 0) << path;
    return path;
}

std::string sendCapturingErrors(const char* command)
{
    return vyxtest::stderrOf([command] { EXPECT_FALSE(SendCommandToWM(nullptr, command)); });
}

ChildOptions withRunUser(const std::string& dir, bool unprivileged = false)
{
    return {{Mount::bind(dir, "/var/run/user")}, false, unprivileged};
}

// The FIFO gets exactly the bytes sent, and one nobody reads fails the send
// at once rather than waiting for a reader.
TEST(ChannelPaths, FollowTheEnvironmentAndDisplayAndTheFifoGetsTheExactBytes)
{
    vyxtest::TempHome world;
    ScopedEnv display("DISPLAY", ":1.0"), runtime("XDG_RUNTIME_DIR", nullptr);
    ResetVyxDirs();
    const std::string fifo = world.path("tmp/vyx-wm-:1.0");  // the screen stays
    EXPECT_EQ(GetVyxWMFIFOPath(nullptr), Found(fifo, false));
    EXPECT_EQ(GetVyxDMFIFOPath(nullptr), Found("/var/run/xdmctl/dmctl-:1/socket", false));
    plant(fifo);
    EXPECT_EQ(GetVyxWMFIFOPath(nullptr), Found(fifo, true));
    EXPECT_EQ(sendToReader(fifo, "VYXWM_UPDATE_ICONFILENAME /a b|c\td\n"), "VYXWM_UPDATE_ICONFILENAME /a b|c\td\n");
    EXPECT_EQ(sendToReader(fifo, nullptr), "");
    alarm(10);  // a blocking open would hang here
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(vyxtest::stderrOf([] { EXPECT_FALSE(vyxSendCommandToWM(nullptr, "VYXWM_UPDATE_RECENTSMENU\n")); }),
              "");  // nobody reads
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    alarm(0);
    ScopedEnv runtimeSet("XDG_RUNTIME_DIR", world.path("run").c_str()), relative("DM_CONTROL", "dm");
    EXPECT_EQ(GetVyxWMFIFOPath(nullptr).first, world.path("run/vyx-wm-:1.0"));
    EXPECT_EQ(GetVyxDMFIFOPath(nullptr).first, "/var/run/xdmctl/dmctl-:1/socket");

    // One display manager serves every screen; a dot in the host name stays.
    ScopedEnv absolute("DM_CONTROL", world.path("dm").c_str()), host("DISPLAY", "host.example:0");
    EXPECT_EQ(GetVyxDMFIFOPath(nullptr).first, world.path("dm/dmctl-host.example:0/socket"));
    ScopedEnv hostScreen("DISPLAY", "host.example:0.2");
    EXPECT_EQ(GetVyxDMFIFOPath(nullptr).first, world.path("dm/dmctl-host.example:0/socket"));
    EXPECT_EQ(GetVyxWMFIFOPath(nullptr).first, world.path("run/vyx-wm-host.example:0.2"));
}

// Nothing but the caller's own FIFO gets a command. An administrator
// reaches another user's window manager through the FIFO in a runtime
// directory named after that user's uid, or one under "private" in a
// directory that uid owns, and only if the user owns the FIFO too. Anyone
// else looks no further than their own.
TEST(WmFifo, OnlyTheCallersOwnFifoOrTheOneOfTheUserWhoseDirectoryHoldsIt)
{
    vyxtest::TempHome world;
    const std::string runUser = world.makeDir("runuser");  // no other user's FIFO to fall back on
    ScopedEnv display("DISPLAY", ":98");
    const std::string target = world.writeFile("victim", "original text\n");
    const std::string link = world.path("run/vyx-wm-:98");
    ASSERT_EQ(symlink(target.c_str(), link.c_str()), 0);
    VYX_EXPECT_CHILD(vyxtest::runInChild(withRunUser(runUser), [&] {
        std::string errors = sendCapturingErrors("HELLO\n");
        EXPECT_HAS(errors, link + " not used: it is a symbolic link\n");
        EXPECT_EQ(vyxtest::readFile(target), "original text\n");
        ScopedEnv other("DISPLAY", ":44");  // no FIFO here nor under /var/run/user
        EXPECT_EQ(sendCapturingErrors("X\n"),
                  advice("SendCommandToWM: Can't access WM fifo file " + world.path("run/vyx-wm-:44.")));

        // Without a runtime directory the FIFO lives in the shared temporary
        // directory, where another user may have made the name first.
        ScopedEnv shared("XDG_RUNTIME_DIR", nullptr), primary("DISPLAY", ":0");
        const std::string planted = world.path("tmp/vyx-wm-:0");
        plant(planted, 1234, false);
        errors = sendCapturingErrors("SECRET\n");
        EXPECT_HAS(errors, planted + " not used: it is not a FIFO\n");
        EXPECT_EQ(vyxtest::readFile(planted), "");
        plant(planted, 1234);
        EXPECT_EQ(unreadAfter(planted, [&] { errors = sendCapturingErrors("SECRET\n"); }), "");
        EXPECT_HAS(errors, planted + " not used: it belongs to uid 1234, not to uid 0\n");
    }));

    ScopedEnv admin("DISPLAY", ":6");
    for (const char* uid : {"1000", "1001"})
        ASSERT_EQ(chown(world.makeDir(std::string("runuser/") + uid).c_str(), std::stoi(uid), 0), 0);
    ASSERT_EQ(chown(world.makeDir("runuser/private/E/F").c_str(), 1002, 0), 0);
    VYX_EXPECT_CHILD(vyxtest::runInChild(withRunUser(runUser), [] {
        const std::string intruder = "/var/run/user/1000/vyx-wm-:6",
                          privateFifo = "/var/run/user/private/E/F/vyx-wm-:6", own = "/var/run/user/1001/vyx-wm-:6";
        plant(intruder, 1001);  // 1001's FIFO in 1000's directory
        plant(privateFifo, 0);  // root's FIFO in a directory of 1002
        std::string errors;
        EXPECT_EQ(unreadAfter(intruder, [&] { errors = sendCapturingErrors("X\n"); }), "");
        EXPECT_HAS(errors, intruder + " not used: it belongs to uid 1001, not to uid 1000\n");
        EXPECT_HAS(errors, privateFifo + " not used: it belongs to uid 0, not to uid 1002\n");

        plant(privateFifo, 1002);
        EXPECT_EQ(FindVyxWMFIFOPath(nullptr), Found(privateFifo, true));
        plant(own, 1001);  // searched before "private"
        EXPECT_EQ(sendToReader(own, "VYXWM_UPDATE_RECENTSMENU\n"), "VYXWM_UPDATE_RECENTSMENU\n");
    }));
    // The FIFOs found above stay, open to anyone who looks.
    VYX_EXPECT_CHILD(vyxtest::runInChild(withRunUser(runUser, true), [&] {
        ASSERT_NE(getuid(), 0u);
        EXPECT_EQ(FindVyxWMFIFOPath(nullptr), Found(world.path("run/vyx-wm-:6"), false));
    }));
}

// A display manager: a process that takes one connection, keeps what it
// was sent in a file beside the socket, and answers with the given chunks a
// moment apart. Bound as root; with a uid it listens as that user, and the
// credentials a client sees are those of the listen.
class DmServer {
public:
    DmServer(const std::string& path, std::vector<std::string> reply, uid_t uid = 0) : m_got(path + ".got")
    {
        unlink(path.c_str());  // left by the server before
        const int listener = vyxtest::bindUnixSocket(path);
        const int got = open(m_got.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const bool listening = seteuid(uid) == 0 && listen(listener, 1) == 0;
        EXPECT_TRUE(seteuid(0) == 0 && listening && got >= 0) << path;
        m_pid = fork();
        if (m_pid == 0) {
            pollfd wait = {listener, POLLIN, 0};
            const int fd = poll(&wait, 1, 5000) > 0 ? accept(listener, nullptr, nullptr) : -1;
            char buffer[8192];
            ssize_t n;
            pollfd more = {fd, POLLIN, 0};
            while (poll(&more, 1, 300) > 0 && (n = read(fd, buffer, sizeof buffer)) > 0)
                (void)!write(got, buffer, size_t(n));
            for (const std::string& chunk : reply) {
                usleep(300000);
                send(fd, chunk.data(), chunk.size(), MSG_NOSIGNAL);  // the client may be gone
            }
            _exit(0);
        }
        close(listener);
        close(got);
    }
    ~DmServer() { command(); }
    // What the server was sent, once it is done.
    std::string command()
    {
        if (m_pid > 0) {
            int status = -1;
            waitpid(m_pid, &status, 0);
            EXPECT_EQ(status, 0) << "the server failed";
            m_pid = -1;
        }
        return vyxtest::readFile(m_got);
    }

private:
    pid_t m_pid = -1;
    const std::string m_got;
};

// What one exchange copied to the output stream.
std::string exchange(const char* command, bool expected)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&text, &size);
    EXPECT_EQ(SendCommandToDMWithReply(nullptr, command, out), expected);
    std::fclose(out);
    std::string copied(text, size);
    std::free(text);
    return copied;
}

// Fields go out separated by tabs and cut at the chunk size, the reply is
// copied up to its first line end, each failure says what went wrong, and a
// listener of another user's gets nothing.
TEST(DmSocket, ExchangesFailuresAndAnotherUsersListener)
{
    using vyxtest::stderrOf;
    vyxtest::TempHome world;
    ScopedEnv control("DM_CONTROL", world.path("dm").c_str()), display("DISPLAY", ":7.1");
    const std::string path = world.makeDir("dm/dmctl-:7") + "/socket";
    EXPECT_EQ(stderrOf([] { EXPECT_EQ(exchange("list", false), ""); }),
              advice("SendCommandToDM: Can't access DM fifo/socket file '" + path + "'."));
    {
        DmServer server(path, {"ok\t:0 alice", " vyx\n", "late\n"});
        EXPECT_EQ(exchange("list sessions  now", true), "ok\t:0 alice vyx\n");
        EXPECT_EQ(server.command(), "list\tsessions\t\tnow");
    }
    // The socket file outlives its server; a probe asks nobody.
    EXPECT_EQ(exchange(nullptr, true), "");
    EXPECT_EQ(stderrOf([] { EXPECT_FALSE(SendCommandToDM(nullptr, "list")); }),
              "SendCommandToDM: Cannot connect socket " + path + " error=Connection refused\n");
    {
        DmServer server(path, {"ok\n"});
        EXPECT_EQ(exchange(std::string(5000, 'x').c_str(), true), "ok\n");
        EXPECT_EQ(server.command(), std::string(4095, 'x'));
    }
    {
        DmServer server(path, {});  // hangs up without a word
        EXPECT_EQ(stderrOf([] { EXPECT_EQ(exchange("reserve", true), ""); }),
                  "SendCommandToDM: Cannot receive reply\n");
    }
    DmServer server(path, {}, 4321);
    EXPECT_EQ(stderrOf([] { EXPECT_FALSE(SendCommandToDM(nullptr, "list")); }),
              "SendCommandToDM: " + path + " not used: its listener runs as uid 4321\n");
    EXPECT_EQ(server.command(), "") << "the command never went out";
}

// The display manager's control tool, a script in a private mount
// namespace that answers only to exactly the arguments expected; with QUIET
// set, "list" prints nothing and no display is reserved.
TEST(DmCtl, SessionsAndReserveDisplays)
{
    vyxtest::TempHome world;
    const std::string tool = world.writeFile(
        "vyx-dmctl", "#!/bin/sh\nif [ -n \"$QUIET\" ]; then [ $# = 0 ] && echo 'reserve none'\n"
                     "elif [ $# = 1 ] && [ \"$1\" = list ]; then printf 'ok\\t:0 alice\\t\\t:1 bob\\nnot read\\n'\n"
                     "elif [ $# = 0 ]; then echo 'displays 2 reserve 3 active'; fi\n");
    chmod(tool.c_str(), 0755);
    VYX_EXPECT_CHILD(vyxtest::runInChild({{Mount::bind(tool, "/usr/bin/vyx-dmctl")}}, [] {
        EXPECT_EQ(GetDMSessionsList(), (std::vector<std::string> {":0 alice", ":1 bob"}));
        EXPECT_EQ(GetDMReserveNum(), 3);
        setenv("QUIET", "1", 1);
        EXPECT_TRUE(GetDMSessionsList().empty());
        EXPECT_EQ(GetDMReserveNum(), 0);
    }));
}

}  // namespace
