// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsystem.h"

#include "core/environment_p.h"
#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "vyxstrings.h"

#include <cstdio>
#include <cstring>
#include <mutex>

namespace {

constexpr unsigned kLightCpuMhz = 999;
constexpr unsigned kLightMemoryKb = 253680;

// The first line of path that starts with prefix, or empty. Whole lines are
// compared, so the middle of a long "flags" line can never pass for a match.
std::string firstLineStarting(const char* path, const char* prefix)
{
    std::string found;
    if (FILE* file = Vyx::detail::fopenRegularFile(path)) {
        Vyx::detail::forEachLine(file, [&](std::string& line) {
            if (found.empty() && Vyx::startsWith(line, prefix))
                found.swap(line);
        });
        std::fclose(file);
    }
    return found;
}

}  // namespace

unsigned GetMemTotal()
{
    static unsigned total = 0;
    static std::once_flag once;
    std::call_once(once, [] {
        std::string line = firstLineStarting("/proc/meminfo", "MemTotal:");
        if (!line.empty() && std::sscanf(line.c_str() + 9, "%32u", &total) != 1)
            total = 0;
    });
    return total;
}

unsigned GetCPUMhz()
{
    static unsigned mhz = 0;
    static std::once_flag once;
    std::call_once(once, [] {
        std::string line = firstLineStarting("/proc/cpuinfo", "cpu MHz");
        const char* colon = line.size() > 7 ? std::strchr(line.c_str() + 7, ':') : nullptr;
        float value = 0;
        // "%12f" still admits "inf" and twelve digits, which do not fit: such
        // a rate counts as unknown rather than converting out of range.
        if (colon && std::sscanf(colon + 1, "%12f", &value) == 1 && value > 0 && value < 4294967296.0f)
            mhz = static_cast<unsigned>(value);
    });
    return mhz;
}

bool lightPlatform()
{
    unsigned mhz = GetCPUMhz();
    unsigned memory = GetMemTotal();
    // An unknown figure (0) never makes a platform light.
    return (mhz != 0 && mhz <= kLightCpuMhz) || (memory != 0 && memory < kLightMemoryKb);
}

bool isAlsaActive()
{
    FILE* file = Vyx::detail::fopenRegularFile("/proc/asound/cards");
    if (!file)
        return false;
    char line[49];
    bool read = std::fgets(line, sizeof line, file) != nullptr;
    std::fclose(file);
    return read && !Vyx::contains(line, "no sound");
}

const char* GetSystemLocale()
{
    if (const char* all = Vyx::detail::envValue("LC_ALL"))
        return all;
    if (const char* lang = Vyx::detail::envValue("LANG"))
        return lang;
    return "";
}
