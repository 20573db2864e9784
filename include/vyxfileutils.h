#ifndef VYXCORE_FILEUTILS_H
#define VYXCORE_FILEUTILS_H

// File-system helpers over POSIX calls. None throws for ordinary failures.

#include "vyxexport.h"

#include <string>

// True when path can be examined with stat (symbolic links followed) and, if
// nonEmpty, its size is at least one byte. False for a null path.
VYX_EXPORT bool fileExists(const char* path, bool nonEmpty);
VYX_EXPORT bool fileExists(const std::string& path, bool nonEmpty);

#endif
