// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_READFILE_P_H
#define VYXCORE_READFILE_P_H

// The one way the library opens a file it did not write itself (a
// configuration file, a cache, a catalogue, a /proc entry) for reading.
// Whatever sits at the path, the call never blocks and never reads from
// anything but a regular file: a FIFO planted where a settings file belongs
// would otherwise hang the caller for ever, and a device or a socket has no
// contents to parse.

#include <cstdio>
#include <string>

namespace Vyx::detail {

// Opens path read-only, close-on-exec. The open itself is non-blocking (so a
// FIFO with no writer cannot hang it) and the flag is cleared once fstat has
// shown a regular file. Anything else (a FIFO, a socket, a device, a
// directory) is closed again and refused exactly as a missing file is:
// -1 with errno ENOENT. Any other failure: -1 with open's errno.
int openRegularFile(const char* path);

// The same as a stdio stream ("r"); null with errno as above.
FILE* fopenRegularFile(const char* path);

// Replaces out with the whole content of the regular file at path. The
// buffer is sized by fstat's answer, and the read goes on to the end of
// the file whatever it is by then, so a file that grows or shrinks while
// being read (or a /proc entry, which reports size 0) still reads
// completely. False (out emptied) when the file cannot be opened as above
// or a read fails.
bool readRegularFile(const char* path, std::string& out);

// Replaces out with everything in the open file fd from offset 0, without
// moving fd's offset; false (out emptied) when fd is not a regular file or
// a read fails. For callers that must keep their own descriptor open (a
// record lock is dropped by closing any descriptor of the file).
bool readRegularDescriptor(int fd, std::string& out);

}  // namespace Vyx::detail

#endif
