// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/dirwalker_p.h"

#include <unistd.h>

#include <utility>

namespace Vyx::detail {

DirWalker::DirWalker(const char* path) : m_dir(path ? opendir(path) : nullptr) { }

DirWalker DirWalker::fromDescriptor(int fd)
{
    DirWalker walker;
    if (fd >= 0) {
        walker.m_dir = fdopendir(fd);
        if (!walker.m_dir)
            ::close(fd);
    }
    return walker;
}

DirWalker::~DirWalker()
{
    if (m_dir)
        closedir(m_dir);
}

DirWalker::DirWalker(DirWalker&& other) noexcept : m_dir(std::exchange(other.m_dir, nullptr)) { }

DirWalker& DirWalker::operator=(DirWalker&& other) noexcept
{
    if (this != &other) {
        if (m_dir)
            closedir(m_dir);
        m_dir = std::exchange(other.m_dir, nullptr);
    }
    return *this;
}

const dirent* DirWalker::next()
{
    if (!m_dir)
        return nullptr;
    while (const dirent* entry = readdir(m_dir)) {
        if (!isDotOrDotDot(entry->d_name))
            return entry;
    }
    return nullptr;
}

int DirWalker::descriptor() const
{
    return m_dir ? dirfd(m_dir) : -1;
}

}  // namespace Vyx::detail
