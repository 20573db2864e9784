// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of display, open to shell: the library has one X
// error trap, and the folders above display use it rather than their own.

#ifndef VYXCORE_XERRORTRAP_P_H
#define VYXCORE_XERRORTRAP_P_H

// Keeps X errors away from Xlib's default handler, which ends the process.
// Windows of other clients can vanish between listing them and reading
// their properties; such a read must simply fail.

#include <X11/Xlib.h>

#include <mutex>

namespace Vyx::detail {

// While it lives, X errors only make the failing request fail. The handler is
// process-wide, so traps on any display are serialised: every swap of the
// handler in the library goes through here.
class XErrorTrap {
public:
    explicit XErrorTrap(Display* display);
    ~XErrorTrap();
    // Whether a request made since the trap was set failed; waits for the
    // server's answers first.
    bool errorOccurred() const;
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

private:
    std::unique_lock<std::mutex> m_lock;
    Display* m_display;
    XErrorHandler m_previous;
};

}  // namespace Vyx::detail

#endif
