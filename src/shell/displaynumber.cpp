// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsession.h"

#include "core/uniquefd_p.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {
constexpr int kLastDisplayNumber = 59535;
}

int getFreeXDisplayNumber(int start)
{
    for (int number = start < 0 ? 0 : start; number <= kLastDisplayNumber; ++number) {
        const Vyx::detail::UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (!fd)
            return -1;
        // An X server holds the abstract name "\0/tmp/.X11-unix/X<n>"; a
        // successful bind means nobody does. The name is released at once.
        sockaddr_un address;
        std::memset(&address, 0, sizeof address);
        address.sun_family = AF_UNIX;
        std::snprintf(address.sun_path, sizeof address.sun_path, "@/tmp/.X11-unix/X%d", number);
        address.sun_path[0] = '\0';
        socklen_t length = static_cast<socklen_t>(std::strlen(address.sun_path + 1) + 3);
        if (bind(fd.get(), reinterpret_cast<sockaddr*>(&address), length) == 0)
            return number;
    }
    return -1;
}
