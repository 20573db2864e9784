// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_ATOMICFILE_P_H
#define VYXCORE_ATOMICFILE_P_H

#include <functional>
#include <string>
#include <string_view>

namespace Vyx::detail {

// Replaces the file at path with content so that a reader, a crash or a full
// disk never sees half of it: the text goes to a new file in the same
// directory, is flushed to disk, and is renamed over the old one. An
// existing file keeps its permission bits; when path is a symbolic link the
// file it points to is replaced and the link stays. False (and nothing
// changed) on failure. With durable false the data is not forced to disk
// before the rename: readers still never see half a file, but a crash may
// lose the new content, which suits caches that are rebuilt anyway.
bool writeFileAtomically(const std::string& path, const std::string& content, bool durable = true);

// Replaces the file at path with content through a new file made beside
// it with mkstemp (so mode 0600, owned by the caller) and renamed over it.
// Unlike writeFileAtomically, a symbolic link at path is replaced, never
// followed, and the old file's mode is not carried over: for files that only
// their owner may write and read. Not forced to disk. False, and nothing
// changed, on failure.
bool replacePrivateFile(const std::string& path, const std::string& content);
// The same for content that write gives the new file's descriptor a piece
// at a time, so that a large file is never held whole in memory; write
// returns false when a piece could not be written.
bool replacePrivateFile(const std::string& path, const std::function<bool(int fd)>& write);

// Writes all of content to fd, going on after short writes and EINTR; false
// on any other failure (a full disk).
bool writeAll(int fd, std::string_view content);

}  // namespace Vyx::detail

#endif
