// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_DIRWALKER_P_H
#define VYXCORE_DIRWALKER_P_H

#include <dirent.h>

#include <string>

namespace Vyx::detail {

// Lists one directory, without "." and "..", and closes it when it goes.
// A directory that cannot be opened lists nothing; isOpen() tells the two
// apart where that matters. Not shared between threads.
class DirWalker {
public:
    explicit DirWalker(const char* path);
    explicit DirWalker(const std::string& path) : DirWalker(path.c_str()) { }
    // Takes over an open directory descriptor (closed with the walker, also
    // when it cannot be listed).
    static DirWalker fromDescriptor(int fd);
    ~DirWalker();
    DirWalker(DirWalker&& other) noexcept;
    DirWalker& operator=(DirWalker&& other) noexcept;
    DirWalker(const DirWalker&) = delete;
    DirWalker& operator=(const DirWalker&) = delete;

    bool isOpen() const { return m_dir != nullptr; }

    // The next entry, or nullptr at the end. Valid until the next call.
    const dirent* next();

    // The descriptor of the open directory, for the *at() calls; -1 if closed.
    int descriptor() const;

private:
    DirWalker() = default;
    DIR* m_dir = nullptr;
};

// True for the entries a listing leaves out: "." and "..".
inline bool isDotOrDotDot(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace Vyx::detail

#endif
