// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The per-user cache file of installed applications: what it records about
// the application directories it was made from, and reading it back.

#include "mime/mimecache_p.h"

#include <cstring>
#include <sys/stat.h>

namespace Vyx::detail {

namespace {

const char kSourcesLine[] = "[Application Directories]\n";
const char kApplicationsLine[] = "[Applications]\n";
const char kEndLine[] = "[End]\n";

bool startsWith(const std::string& text, size_t at, const char* prefix, size_t length)
{
    return text.size() - at >= length && text.compare(at, length, prefix) == 0;
}

// A directory as one line of text: only "\\", a newline and a tab are
// escaped, enough that two lists are equal exactly when their texts are.
void appendEscaped(std::string& out, const std::string& dir)
{
    for (char c : dir) {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else
            out += c;
    }
}

// The directory part of each line of a sources section: equal for two
// sections written for the same directory list.
std::string directoriesOf(const std::string& section)
{
    std::string dirs;
    size_t start = 0;
    while (start < section.size()) {
        size_t end = section.find('\n', start);
        if (end == std::string::npos)
            end = section.size();
        size_t tab = section.rfind('\t', end);
        dirs.append(section, start, (tab != std::string::npos && tab >= start ? tab : end) - start);
        dirs += '\n';
        start = end + 1;
    }
    return dirs;
}

}  // namespace

std::vector<AppDirSource> currentSources(const std::vector<std::string>& dirs)
{
    std::vector<AppDirSource> sources;
    sources.reserve(dirs.size());
    for (const std::string& dir : dirs) {
        AppDirSource source;
        source.dir = dir;
        struct stat dirStat, infoStat;
        // A FIFO or a directory where the cache file belongs is no cache:
        // the desktop files are scanned as when it is missing.
        bool dirExists = stat(dir.c_str(), &dirStat) == 0 && S_ISDIR(dirStat.st_mode);
        bool infoExists = stat((dir + "/mimeinfo.cache").c_str(), &infoStat) == 0 && S_ISREG(infoStat.st_mode);
        const struct stat* chosen = nullptr;
        if (infoExists && (!dirExists || dirStat.st_mtime <= infoStat.st_mtime)) {
            source.kind = AppDirSource::MimeinfoCache;
            chosen = &infoStat;
        } else if (dirExists) {
            source.kind = AppDirSource::DesktopFiles;
            chosen = &dirStat;
        }
        if (chosen) {
            // To the nanosecond: a directory changed within the second the
            // cache file was written is still noticed.
            source.seconds = static_cast<long long>(chosen->st_mtim.tv_sec);
            source.nanoseconds = static_cast<long>(chosen->st_mtim.tv_nsec);
        }
        sources.push_back(std::move(source));
    }
    return sources;
}

std::string sourcesSection(const std::vector<AppDirSource>& sources)
{
    std::string text = kSourcesLine;
    for (const AppDirSource& source : sources) {
        appendEscaped(text, source.dir);
        text += '\t';
        text += source.kind == AppDirSource::MimeinfoCache ? 'c' : source.kind == AppDirSource::DesktopFiles ? 'd' : '-';
        if (source.kind != AppDirSource::Nothing) {
            text += std::to_string(source.seconds);
            text += '.';
            text += std::to_string(source.nanoseconds);
        }
        text += '\n';
    }
    return text;
}

std::string cacheFileText(const std::string& sources, const AvailableMap& map)
{
    return sources + kApplicationsLine + map.toCacheText() + kEndLine;
}

CacheVerdict readCacheText(const std::string& text, const std::string& sources, AvailableMap* map)
{
    const size_t sourcesLength = sizeof kSourcesLine - 1, applicationsLength = sizeof kApplicationsLine - 1,
                 endLength = sizeof kEndLine - 1;
    if (!startsWith(text, 0, kSourcesLine, sourcesLength))
        return CacheVerdict::NotACacheFile;
    size_t body = text.find(std::string("\n") + kApplicationsLine, sourcesLength - 1);
    if (body == std::string::npos)
        return CacheVerdict::Incomplete;
    ++body;
    if (body != sources.size() || text.compare(0, body, sources) != 0)
        return directoriesOf(text.substr(0, body)) == directoriesOf(sources) ? CacheVerdict::OutOfDate
                                                                             : CacheVerdict::OtherDirectories;
    body += applicationsLength;
    if (text.size() < body + endLength || text.compare(text.size() - endLength, endLength, kEndLine) != 0)
        return CacheVerdict::Incomplete;
    const size_t bodyEnd = text.size() - endLength;

    // "path=type;type": lines without "=" are skipped, the types split at
    // "," and ";". Scanned byte by byte: this runs once per process start
    // over the whole file.
    const char* p = text.data() + body;
    const char* const stop = text.data() + bodyEnd;
    std::string type;
    while (p < stop) {
        const char* lineEnd = static_cast<const char*>(std::memchr(p, '\n', size_t(stop - p)));
        if (!lineEnd)
            lineEnd = stop;
        const char* eq = static_cast<const char*>(std::memchr(p, '=', size_t(lineEnd - p)));
        if (eq) {
            uint32_t path = map->internPath(std::string(p, eq));
            for (const char* item = eq + 1; item <= lineEnd;) {
                const char* q = item;
                while (q < lineEnd && *q != ',' && *q != ';')
                    ++q;
                if (q > item) {
                    type.assign(item, q);
                    map->add(type, path);
                }
                item = q + 1;
            }
        }
        p = lineEnd + 1;
    }
    return CacheVerdict::Believed;
}

const char* describe(CacheVerdict verdict)
{
    switch (verdict) {
    case CacheVerdict::Believed:
        return "believed";
    case CacheVerdict::NotACacheFile:
        return "not a cache file of this library";
    case CacheVerdict::OtherDirectories:
        return "made for other application directories";
    case CacheVerdict::OutOfDate:
        return "older than an application directory";
    case CacheVerdict::Incomplete:
        return "cut short";
    }
    return "not a cache file of this library";
}

}  // namespace Vyx::detail
