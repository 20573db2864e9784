// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_UNIX_SOCKET_H
#define VYXCORE_TESTS_UNIX_SOCKET_H

// A stream socket bound to a name: a file in the file system, or a name in
// the abstract namespace as X servers hold them.

#include <string>

namespace vyxtest {

// The bound, not yet listening socket; -1 when it cannot be bound.
int bindUnixSocket(const std::string& name, bool abstract = false);

}  // namespace vyxtest

#endif
