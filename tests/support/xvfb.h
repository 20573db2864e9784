// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_XVFB_H
#define VYXCORE_TESTS_XVFB_H

// A real X server for tests: Xvfb with RandR, started on a display number it
// finds free itself (-displayfd), stopped on destruction.

#include "support/temp_home.h"

#include <memory>
#include <string>
#include <sys/types.h>

#include <gtest/gtest.h>

typedef struct _XDisplay Display;

namespace vyxtest {

class XvfbServer {
public:
    XvfbServer() = default;
    ~XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    // Starts the server and waits until it accepts connections. On failure
    // returns false with the reason in *error. With randr false the server
    // runs without the RandR extension.
    bool start(std::string* error, bool randr = true);
    void stop();

    int number() const { return m_number; }
    std::string displayName() const { return ":" + std::to_string(m_number); }

private:
    pid_t m_pid = -1;
    int m_number = -1;
};

// Makes the server look as a running window manager leaves it: a check
// window named in _NET_SUPPORTING_WM_CHECK on the root, carrying name in
// _NET_WM_NAME. Returns the check window.
unsigned long announceWindowManager(Display* display, const char* name);

// Fixture: each case gets its own server, DISPLAY pointing at it and an open
// connection in display().
class XvfbTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    Display* display() const { return m_display; }
    const XvfbServer& server() const { return m_server; }

private:
    XvfbServer m_server;
    Display* m_display = nullptr;
    std::unique_ptr<ScopedEnv> m_displayEnv;
};

}  // namespace vyxtest

#endif
