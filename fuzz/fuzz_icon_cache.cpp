// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The icon-theme.cache reader on arbitrary bytes, written as the cache of a
// real theme directory whose subdirectories are older than it, so that the
// reader gets past the freshness checks into the hash table.
//
// The same bytes feed a theme's own record of its cache and the per-name
// answers its lookups draw from it, directory by directory.
//
// Input: byte 0 gives the length (mod 16) of an icon name taken from the
// bytes after it; the rest is the cache. That name, a fixed one and the
// printable strings of the cache are looked up.
#include "themes/iconfiles_p.h"
#include "vyxicontheme.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

const char* const kSubdirs[] = {"a", "16x16", "16x16/apps", "48x48", "48x48/apps", "scalable", "scalable/apps"};

std::string g_root;

void removeTheme()
{
    for (int i = sizeof kSubdirs / sizeof *kSubdirs - 1; i >= 0; --i)
        rmdir((g_root + "/theme/" + kSubdirs[i]).c_str());
    unlink((g_root + "/theme/icon-theme.cache").c_str());
    rmdir((g_root + "/theme").c_str());
    rmdir(g_root.c_str());
}

// Made once: the theme and its subdirectories, dated long ago.
const std::string& themeDir()
{
    static const std::string theme = [] {
        const char* tmp = getenv("TMPDIR");
        std::string templ = std::string(tmp && *tmp ? tmp : "/tmp") + "/vyx-fuzz-icons-XXXXXX";
        if (!mkdtemp(&templ[0]))
            abort();
        g_root = templ;
        std::string dir = g_root + "/theme";
        mkdir(dir.c_str(), 0755);
        for (const char* sub : kSubdirs)
            mkdir((dir + "/" + sub).c_str(), 0755);
        struct timespec old[2] = {{1000000000, 0}, {1000000000, 0}};
        for (const char* sub : kSubdirs)
            utimensat(AT_FDCWD, (dir + "/" + sub).c_str(), old, 0);
        // Creating the cache below touches the theme directory itself.
        int fd = open((dir + "/icon-theme.cache").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (fd >= 0)
            close(fd);
        utimensat(AT_FDCWD, dir.c_str(), old, 0);
        atexit(removeTheme);
        return dir;
    }();
    return theme;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const std::string& theme = themeDir();
    size_t nameLength = data[0] % 16;
    if (nameLength > size - 1)
        nameLength = size - 1;
    std::string name(reinterpret_cast<const char*>(data) + 1, nameLength);
    const uint8_t* cache = data + 1 + nameLength;
    size_t cacheSize = size - 1 - nameLength;

    // Rewritten in place, so the theme directory keeps its old date.
    int fd = open((theme + "/icon-theme.cache").c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0)
        return 0;
    bool written = write(fd, cache, cacheSize) == static_cast<ssize_t>(cacheSize);
    close(fd);
    if (!written)
        return 0;

    VyxIconCacheGtkReader reader(theme);
    reader.lookup(name);
    reader.lookup("a");
    std::vector<std::string> names = {name, "a"};
    for (size_t i = 0; i < cacheSize && names.size() < 10;) {
        size_t end = i;
        while (end < cacheSize && cache[end] >= 0x20 && cache[end] < 0x7F)
            ++end;
        if (end > i)
            names.emplace_back(reinterpret_cast<const char*>(cache) + i, end - i);
        i = end + 1;
    }
    // Every answer is a string of the file, NUL included.
    auto inFile = [&](const char* dir) {
        if (!memmem(cache, cacheSize, dir, strlen(dir) + 1))
            abort();
    };
    for (const std::string& n : names) {
        for (const char* dir : reader.lookup(n))
            inFile(dir);
    }

    // A theme's lookups: each name asked of the cache, and of every
    // directory as the listing sees it (older than the cache, so taken
    // from it where the cache lists it).
    using namespace Vyx::detail;
    IconThemeCache record(theme);
    auto list = std::make_shared<IconDirList>();
    std::vector<const char*> cachedDirs;
    if (record.isValid()) {
        for (const SeenDirectory& dir : record.directories())
            cachedDirs.push_back(dir.first.data());
    }
    list->cache = record.isValid() ? &record : nullptr;
    list->idOfCacheIndex.assign(cachedDirs.size(), IconProbe::kNoDir);
    const uint16_t base = list->addBase(theme);
    std::vector<uint32_t> ids;
    for (const char* sub : kSubdirs) {
        int32_t index = IconDirList::kNotInCache;
        for (size_t i = 0; i < cachedDirs.size(); ++i) {
            inFile(cachedDirs[i]);
            if (strcmp(cachedDirs[i], sub) == 0)
                index = int32_t(i);
        }
        ids.push_back(list->add(base, sub, index));
        if (index >= 0)
            list->idOfCacheIndex[size_t(index)] = ids.back();
    }
    IconProbe probe(std::make_shared<IconListing>(list, 0), &record);
    for (const std::string& n : names) {
        probe.setName(n);
        for (const IconCacheImage& image : probe.cacheImages()) {
            inFile(image.dir);
            if (image.index >= cachedDirs.size())
                abort();
        }
        probe.mayHoldAny(ids.data(), ids.size());
        probe.listedNowhere();
        for (size_t k = 0; k < ids.size(); ++k) {
            probe.withExtension(ids[k], theme, kSubdirs[k], {kPngFile, kSvgFile, kXpmFile});
            probe.asIs(ids[k], theme, kSubdirs[k]);
        }
    }
    reader.read16(static_cast<uint32_t>(cacheSize) - 2);
    reader.read32(static_cast<uint32_t>(cacheSize) & ~3u);
    return 0;
}
