// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsystem.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

namespace {

std::vector<std::string> addresses(int family)
{
    std::vector<std::string> found;
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0)
        return found;
    for (ifaddrs* entry = list; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != family || (entry->ifa_flags & IFF_LOOPBACK))
            continue;
        char text[INET6_ADDRSTRLEN];
        const void* address =
            family == AF_INET ? static_cast<const void*>(&reinterpret_cast<sockaddr_in*>(entry->ifa_addr)->sin_addr)
                              : static_cast<const void*>(&reinterpret_cast<sockaddr_in6*>(entry->ifa_addr)->sin6_addr);
        if (inet_ntop(family, address, text, sizeof text))
            found.emplace_back(text);
    }
    freeifaddrs(list);
    return found;
}

}  // namespace

std::vector<std::string> getIPv4Addresses()
{
    return addresses(AF_INET);
}

std::vector<std::string> getIPv6Addresses()
{
    return addresses(AF_INET6);
}
