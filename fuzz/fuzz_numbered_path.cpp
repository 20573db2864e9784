// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// MakeNewNumberedPath with names and extensions from the input, in a
// private directory that holds a few taken names.
#include <vyxfileutils.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

char g_dir[] = "/tmp/vyxcore-fuzz-XXXXXX";

void removeDir()
{
    rmdirRecursive(g_dir, Vyx::tagged_bool<InsideOnly_tag>(false), Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        if (!mkdtemp(g_dir))
            abort();
        for (const char* taken : {"/a", "/a0", "/a1.x", "/a (2)"})
            fclose(fopen((std::string(g_dir) + taken).c_str(), "w"));
        std::atexit(removeDir);
        return true;
    }();
    (void)prepared;
    if (size < 3)
        return 0;
    size_t split = data[0] % (size - 1) + 1;
    std::string name(reinterpret_cast<const char*>(data + 1), split - 1);
    std::string ext(reinterpret_cast<const char*>(data + split), size - split);
    name = name.c_str();  // as a C caller passes them
    ext = ext.c_str();
    bool space = data[1] & 1, parens = data[1] & 2;
    int first = static_cast<int8_t>(data[2]);
    auto result = MakeNewNumberedPath(g_dir, name.c_str(), ext.c_str(), space, parens, first, first + 5,
                                      Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag>(false));
    // The answer is a free name in the directory, or nothing at all.
    if (!result.first.empty() &&
        (result.first.compare(0, sizeof g_dir - 1, g_dir) != 0 || fileExists(result.first, false)))
        abort();
    if (result.first.empty() && result.second != -1)
        abort();
    return 0;
}
