// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "display/xerrortrap_p.h"

namespace {

std::mutex g_trapMutex;
bool g_errorOccurred = false;  // guarded by g_trapMutex

// The failed request reports the error to its caller; it is only noted.
int recordError(Display*, XErrorEvent*)
{
    g_errorOccurred = true;
    return 0;
}

}  // namespace

namespace Vyx::detail {

XErrorTrap::XErrorTrap(Display* display) : m_lock(g_trapMutex), m_display(display)
{
    // Errors of earlier requests belong to whoever made them.
    XSync(m_display, False);
    g_errorOccurred = false;
    m_previous = XSetErrorHandler(recordError);
}

bool XErrorTrap::errorOccurred() const
{
    XSync(m_display, False);
    return g_errorOccurred;
}

XErrorTrap::~XErrorTrap()
{
    XSync(m_display, False);
    XSetErrorHandler(m_previous);
}

}  // namespace Vyx::detail
