#include "vyxfileutils.h"

#include <sys/stat.h>

bool fileExists(const char* path, bool nonEmpty)
{
    struct stat st;
    if (!path || stat(path, &st) != 0)
        return false;
    return !nonEmpty || st.st_size >= 1;
}

bool fileExists(const std::string& path, bool nonEmpty)
{
    return fileExists(path.c_str(), nonEmpty);
}
