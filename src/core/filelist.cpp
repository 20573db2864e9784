// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxfileutils.h"

#include "core/dirwalker_p.h"

#include <fnmatch.h>
#include <sys/stat.h>

namespace {

// The one lister behind GetFileList and GetFileNameList.
void listInto(std::vector<std::string>* out, const std::string& dir, int depth, const char* pattern, bool filesOnly,
              bool namesOnly)
{
    Vyx::detail::DirWalker handle(dir);
    const bool needsSlash = dir.empty() || dir.back() != '/';
    while (const dirent* entry = handle.next()) {
        const char* name = entry->d_name;
        if (Vyx::equal(name, ".hidden"))
            continue;
        bool isDir = entry->d_type == DT_DIR;
        bool matches = fnmatch(pattern, name, 0) == 0 && !(filesOnly && isDir);
        if (!matches && !((isDir || entry->d_type == DT_UNKNOWN) && depth >= 1))
            continue;  // most entries of a big tree: no path built for them
        std::string path = needsSlash ? Vyx::concat(dir, '/', name) : Vyx::concat(dir, name);
        if (!matches) {
            listInto(out, path, depth - 1, pattern, filesOnly, namesOnly);
            continue;
        }
        if (filesOnly && entry->d_type == DT_UNKNOWN) {
            // The file system did not say what this is: ask.
            struct stat st;
            if (stat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode))
                continue;
        }
        out->push_back(namesOnly ? std::string(name) : std::move(path));
    }
}

bool list(std::vector<std::string>* out, const char* dir, int depth, const char* pattern, bool filesOnly,
          bool namesOnly)
{
    if (!out || !dir || !pattern)
        return false;
    size_t before = out->size();
    listInto(out, dir, depth, pattern, filesOnly, namesOnly);
    return out->size() > before;
}

}  // namespace

bool GetFileList(std::vector<std::string>* out, const char* dir, int depth, const char* pattern,
                 Vyx::tagged_bool<FilesOnly_tag> filesOnly)
{
    return list(out, dir, depth, pattern, static_cast<bool>(filesOnly), false);
}

bool GetFileNameList(std::vector<std::string>* out, const char* dir, int depth, const char* pattern,
                     Vyx::tagged_bool<FilesOnly_tag> filesOnly)
{
    return list(out, dir, depth, pattern, static_cast<bool>(filesOnly), true);
}
