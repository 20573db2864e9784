// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/unix_socket.h"

#include <cstddef>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vyxtest {

int bindUnixSocket(const std::string& name, bool abstract)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    // An abstract name starts with a NUL and is as long as the length says.
    const size_t skip = abstract ? 1 : 0;
    if (name.size() + skip >= sizeof address.sun_path)
        return -1;
    name.copy(address.sun_path + skip, name.size());
    const socklen_t length = abstract ? socklen_t(offsetof(sockaddr_un, sun_path) + 1 + name.size()) : sizeof address;
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

}  // namespace vyxtest
