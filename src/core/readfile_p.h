#ifndef VYXCORE_READFILE_P_H
#define VYXCORE_READFILE_P_H

// The one way the library opens a file it did not write itself for reading.
// Whatever sits at the path, the call never blocks and never reads from
// anything but a regular file: a FIFO planted where a settings file belongs
// would otherwise hang the caller for ever, and a directory or a device has
// no contents to parse.

#include <string>

namespace Vyx::detail {

// Opens path read-only, close-on-exec. The open itself is non-blocking (so a
// FIFO with no writer cannot hang it) and the flag is cleared once fstat has
// shown a regular file. Anything else (a FIFO, a socket, a device, a
// directory) is closed again and refused exactly as a missing file is:
// -1 with errno ENOENT. Any other failure: -1 with open's errno.
int openRegularFile(const char* path);

// Replaces out with the whole content of the regular file at path, read to
// its end whatever its size is by then. False (out emptied) when the file
// cannot be opened as above or a read fails.
bool readRegularFile(const char* path, std::string& out);

}  // namespace Vyx::detail

#endif
