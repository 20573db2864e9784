// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_UNIQUEFD_P_H
#define VYXCORE_UNIQUEFD_P_H

#include <unistd.h>

#include <utility>

namespace Vyx::detail {

// Owns one file descriptor and closes it when it goes, so an early return
// can never leak one. Not shared between threads: each owner holds its own.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) { }
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd&& other) noexcept : m_fd(other.release()) { }
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }

    // Gives the descriptor up without closing it.
    int release() { return std::exchange(m_fd, -1); }

    // Closes what is held now and tells whether that worked: after a write,
    // a failed close can mean the data never reached the file.
    bool close() { return m_fd < 0 || ::close(release()) == 0; }

    // Closes what is held, then holds fd.
    void reset(int fd = -1)
    {
        const int old = std::exchange(m_fd, fd);
        if (old >= 0)
            ::close(old);
    }

private:
    int m_fd = -1;
};

}  // namespace Vyx::detail

#endif
