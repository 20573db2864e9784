// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/xvfb.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vyxtest {

namespace {
constexpr int kStartTimeoutMs = 15000;
}

XvfbServer::~XvfbServer()
{
    stop();
}

bool XvfbServer::start(std::string* error, bool randr)
{
    int fds[2];
    const pid_t pid = pipe(fds) == 0 ? fork() : -1;
    if (pid < 0) {
        *error = std::string("pipe or fork: ") + std::strerror(errno);
        return false;
    }
    if (pid == 0) {
        close(fds[0]);
        int devnull = open("/dev/null", O_RDWR);
        if (devnull >= 0) {
            dup2(devnull, STDIN_FILENO);
            dup2(devnull, STDOUT_FILENO);
            dup2(devnull, STDERR_FILENO);
        }
        std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
               randr ? "+extension" : "-extension", "RANDR", "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    m_pid = pid;

    std::string answer;
    pollfd pfd {fds[0], POLLIN, 0};
    char buffer[32];
    for (ssize_t n; answer.find('\n') == std::string::npos && poll(&pfd, 1, kStartTimeoutMs) > 0 &&
                    (n = read(fds[0], buffer, sizeof buffer)) > 0;)
        answer.append(buffer, static_cast<size_t>(n));
    close(fds[0]);
    if (answer.find('\n') == std::string::npos) {
        *error = "Xvfb did not start (is the xvfb package installed?)";
        stop();
        return false;
    }
    m_number = std::atoi(answer.c_str());
    return true;
}

void XvfbServer::stop()
{
    if (m_pid <= 0)
        return;
    kill(m_pid, SIGTERM);
    int status;
    while (waitpid(m_pid, &status, 0) < 0 && errno == EINTR) { }
    m_pid = -1;
}

void XvfbTest::SetUp()
{
    std::string error;
    ASSERT_TRUE(m_server.start(&error)) << error;
    m_displayEnv = std::make_unique<ScopedEnv>("DISPLAY", m_server.displayName().c_str());
    m_display = XOpenDisplay(m_server.displayName().c_str());
    ASSERT_NE(m_display, nullptr) << "cannot connect to " << m_server.displayName();
}

void XvfbTest::TearDown()
{
    if (m_display)
        XCloseDisplay(m_display);
    m_display = nullptr;
    m_server.stop();
    m_displayEnv.reset();
}

unsigned long announceWindowManager(Display* display, const char* name)
{
    const Window root = DefaultRootWindow(display);
    Window check = XCreateSimpleWindow(display, root, 0, 0, 1, 1, 0, 0, 0);
    XChangeProperty(display, root, XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), XA_WINDOW, 32,
                    PropModeReplace, reinterpret_cast<unsigned char*>(&check), 1);
    XChangeProperty(display, check, XInternAtom(display, "_NET_WM_NAME", False),
                    XInternAtom(display, "UTF8_STRING", False), 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(name), static_cast<int>(std::strlen(name)));
    XSync(display, False);
    return check;
}

}  // namespace vyxtest
