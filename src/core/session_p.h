// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_CORE_SESSION_P_H
#define VYXCORE_CORE_SESSION_P_H

// The kind of session this process runs in, read from the environment
// alone. Directories, desktop entries, default applications and themes all
// depend on it, so it lives here, below them, and needs no X connection; the
// public functions of vyxsession.h answer with these. Safe from any thread.

#include <string>

namespace Vyx::detail {

// DESKTOP_SESSION, or null when it is unset or empty. The pointer belongs
// to the environment.
const char* sessionName();

// True in a kiosk session. Decided on the first call and kept for the life
// of the process.
bool isKioskSession();

// The suffix that selects this session's variant of a settings file; empty
// for the ordinary session.
std::string sessionConfigSuffix();

}  // namespace Vyx::detail

#endif
