// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_FILEUTILS_H
#define VYXCORE_FILEUTILS_H

/// \file
/// File-system helpers over POSIX calls: listing trees by pattern, testing,
/// copying, removing and measuring files, numbered free names, path
/// expansion, symbolic links, busy files and whole-file locks. None throws
/// for ordinary failures; each answers false, 0, an empty string or an empty
/// list, with the messages noted below on standard error.
///
/// Threads: every function may be called from several threads at once; the only
/// state is the busy-path probe's, guarded by its own mutex. Results are owned
/// by the caller. Two answers are not reservations: a numbered free name can
/// be taken by another thread before it is used, and a file lock keeps other
/// processes out, not this process's other threads (see each).

#include "vyxexport.h"
#include "vyxstrings.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Appends to *out the full paths of the entries below dir whose names match
/// the shell pattern (fnmatch). Entries named ".", ".." and ".hidden" are
/// never listed. A non-matching directory is descended into while depth >= 1
/// (depth 0 lists dir alone); a matching directory is listed (unless
/// filesOnly) but not descended into. True when at least one path was added;
/// false for a null out or an unreadable dir.
VYX_EXPORT bool GetFileList(std::vector<std::string>* out, const char* dir, int depth, const char* pattern,
                            Vyx::tagged_bool<FilesOnly_tag> filesOnly);
/// The same, appending bare names instead of paths.
VYX_EXPORT bool GetFileNameList(std::vector<std::string>* out, const char* dir, int depth, const char* pattern,
                                Vyx::tagged_bool<FilesOnly_tag> filesOnly);

///@{
/// True when path can be examined with stat (symbolic links followed) and, if
/// nonEmpty, its size is at least one byte. False for a null path.
VYX_EXPORT bool fileExists(const char* path, bool nonEmpty);
VYX_EXPORT bool fileExists(const std::string& path, bool nonEmpty);
///@}

/// True when the text after the last "." of name is non-empty, at most
/// maxLength bytes and holds no "/". False for a null or empty name.
VYX_EXPORT bool fileNameExtension(const char* name, unsigned maxLength);

/// The path of an executable (stat succeeds, not a directory, owner-execute
/// bit set): name itself when absolute; else the first of each PATH element
/// + "/" + name (a built-in list when PATH is unset), then "./" + name. Empty
/// when none qualifies.
VYX_EXPORT std::string FindFileInPATH(const char* name);

/// path with a leading "~", "~user" or "$VARIABLE" expanded; other paths come
/// back unchanged and null gives empty. Failures print "Undefined environment
/// variable HOME", "Too long before delim: ...", "No user ... or failed to
/// get info" or "No environment variable ..." and fall back as documented in
/// the source.
VYX_EXPORT std::string ExtractPathName(const char* path);

/// Copies the file src to dst (into dst when it is a directory), in chunks of
/// at most 4095 bytes. False when src is a directory ("libvyxcore: can't copy
/// folder to file") or either file cannot be opened.
VYX_EXPORT bool vyxCopyFile(const char* src, const char* dst);

/// Removes path: a symbolic link is unlinked and never followed, a file is
/// unlinked, a directory is emptied recursively and, unless insideOnly,
/// removed. With insideOnly and keepDotDirectory a top-level ".directory"
/// file stays. True when everything asked for was removed.
VYX_EXPORT bool rmdirRecursive(const char* path, Vyx::tagged_bool<InsideOnly_tag> insideOnly,
                               Vyx::tagged_bool<KeepDotDirectoryFile_tag> keepDotDirectory);

/// True when the directory holds no entry (a ".directory" file not counted
/// with ignoreDotDirectory). A directory that cannot be opened counts as empty.
VYX_EXPORT bool isDirEmpty(const char* path, Vyx::tagged_bool<IgnoreDotDirectoryFile_tag> ignoreDotDirectory);

/// Bytes held by path: a file's or a symbolic link's own size, the sum over a
/// directory's tree (the directories' own sizes not counted); 0 for anything
/// else or anything that cannot be examined.
VYX_EXPORT int64_t vyxSizeOfPath(const char* path);

/// The first free name dir/name+ext, then dir/name[ ][(]N[)]+ext for N from
/// first to end - 1. An existing candidate that no process holds open is
/// removed and reused when deleteAndReuse. Returns (path, number), with
/// first - 1 for the bare name, or ("", -1) when every number is taken.
/// Nothing is created: two threads or processes asking at once may get the
/// same path, so create it with O_EXCL and ask again when that fails.
VYX_EXPORT std::pair<std::string, int> MakeNewNumberedPath(
    const char* dir, const char* name, const char* ext, bool space, bool parentheses, int first, int end,
    Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag> deleteAndReuse);
/// The same with no space, no parentheses and the numbers 0 to 1023.
VYX_EXPORT std::pair<std::string, int> MakeNewNumberedPath(
    const char* dir, const char* name, const char* ext, Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag> deleteAndReuse);

/// The canonical absolute path of path (after ExtractPathName); empty when it
/// cannot be resolved or, with checkExists, does not exist.
VYX_EXPORT std::string resolveSymLink(const char* path, Vyx::tagged_bool<CheckExists_tag> checkExists);

/// Makes link a relative symbolic link to target; both must lie in the home
/// directory. False otherwise or when symlink fails.
VYX_EXPORT bool makeRelativeSymlink(const char* target, const char* link);

/// True when some process holds path open, as /bin/fuser tells; false for a
/// null, empty or missing path, or when /bin/fuser is missing. The tool runs
/// without a shell, so no path can inject a command.
VYX_EXPORT bool isPathBusy(const char* path);

/// An advisory lock over the whole file of fd: shared with lockRead, else
/// exclusive; waits with blocking, else fails at once when held. False on
/// failure; errors other than EINTR/EAGAIN print "VyxLockedFile::lock():
/// fcntl: ...". The lock belongs to the process, as every fcntl lock does:
/// another thread of it is never kept out, and closing any descriptor of the
/// file in this process releases it. Threads need a mutex of their own.
VYX_EXPORT bool vyxLockFile(int fd, Vyx::tagged_bool<LockRead_tag> lockRead,
                            Vyx::tagged_bool<BlockingCall_tag> blocking);
/// Releases the lock of fd; false (with the same message) on failure.
VYX_EXPORT bool vyxUnlockFile(int fd);

#endif
