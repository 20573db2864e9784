// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The per-user cache file of installed applications: what it records about
// the application directories it was made from, and reading it back.

#include "mime/mimecache_p.h"

#include "core/atomicfile_p.h"
#include "core/firstanswer_p.h"
#include "core/textlines_p.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>

namespace Vyx::detail {

namespace {

const char kSourcesLine[] = "[Application Directories]\n";
const char kApplicationsLine[] = "[Applications]\n";
const char kEndLine[] = "[End]\n";

bool startsWith(std::string_view text, size_t at, const char* prefix, size_t length)
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
std::string directoriesOf(std::string_view section)
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

VYX_FIRST_ANSWER std::vector<AppDirSource> currentSources(const std::vector<std::string>& dirs)
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

VYX_FIRST_ANSWER std::string sourcesSection(const std::vector<AppDirSource>& sources)
{
    std::string text = kSourcesLine;
    for (const AppDirSource& source : sources) {
        appendEscaped(text, source.dir);
        text += '\t';
        text += source.kind == AppDirSource::MimeinfoCache  ? 'c'
                : source.kind == AppDirSource::DesktopFiles ? 'd'
                                                            : '-';
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
    std::string text = sources + kApplicationsLine;
    map.writeCacheText([&text](std::string_view piece) {
        text += piece;
        return true;
    });
    return text + kEndLine;
}

bool writeCacheFile(int fd, const std::string& sources, const AvailableMap& map)
{
    return writeAll(fd, sources) && writeAll(fd, kApplicationsLine) &&
           map.writeCacheText([fd](std::string_view piece) { return writeAll(fd, piece); }) && writeAll(fd, kEndLine);
}

namespace {

// Where the application lines of text lie, when it is a cache file written
// for exactly sources.
// tail: the text's last bytes, when the caller read them on their own (see
// CacheFileLines::take); empty to take them from text.
VYX_FIRST_ANSWER CacheVerdict findLines(std::string_view text, const std::string& sources, size_t* begin, size_t* end,
                                        std::string_view tail = {})
{
    const size_t sourcesLength = sizeof kSourcesLine - 1, applicationsLength = sizeof kApplicationsLine - 1,
                 endLength = sizeof kEndLine - 1;
    if (!startsWith(text, 0, kSourcesLine, sourcesLength))
        return CacheVerdict::NotACacheFile;
    size_t body = text.find(std::string_view("\n[Applications]\n"), sourcesLength - 1);
    if (body == std::string_view::npos)
        return CacheVerdict::Incomplete;
    ++body;
    if (body != sources.size() || text.compare(0, body, sources) != 0)
        return directoriesOf(text.substr(0, body)) == directoriesOf(sources) ? CacheVerdict::OutOfDate
                                                                             : CacheVerdict::OtherDirectories;
    body += applicationsLength;
    if (tail.empty())
        tail = text;
    if (tail.size() > endLength)
        tail.remove_prefix(tail.size() - endLength);
    if (text.size() < body + endLength || tail != std::string_view(kEndLine, endLength))
        return CacheVerdict::Incomplete;
    *begin = body;
    *end = text.size() - endLength;
    return CacheVerdict::Believed;
}

bool isItemSeparator(char c)
{
    return c == ',' || c == ';';
}

// "path=type;type": lines without "=" are skipped, the types split at ","
// and ";". Scanned byte by byte.
void addLines(std::string_view lines, AvailableMap* map)
{
    forEachLine(lines, [map](std::string_view line) {
        const size_t eq = line.find('=');
        if (eq == std::string_view::npos)
            return;
        const uint32_t path = map->internPath(line.substr(0, eq));
        for (std::string_view items = line.substr(eq + 1);;) {
            const size_t cut = items.find_first_of(",;");
            if (cut != 0 && !items.empty())
                map->addNumbered(map->internType(items.substr(0, cut)), path);
            if (cut == std::string_view::npos)
                break;
            items.remove_prefix(cut + 1);
        }
    });
}

}  // namespace

CacheVerdict readCacheText(const std::string& text, const std::string& sources, AvailableMap* map)
{
    size_t begin = 0, end = 0;
    CacheVerdict verdict = findLines(text, sources, &begin, &end);
    if (verdict == CacheVerdict::Believed)
        addLines(std::string_view(text).substr(begin, end - begin), map);
    return verdict;
}

VYX_FIRST_ANSWER CacheVerdict CacheFileLines::keep(std::string_view text, const std::string& sources,
                                                   std::string_view tail)
{
    size_t begin = 0, end = 0;
    CacheVerdict verdict = findLines(text, sources, &begin, &end, tail);
    m_begin = verdict == CacheVerdict::Believed ? begin : 0;
    m_end = verdict == CacheVerdict::Believed ? end : 0;
    return verdict;
}

CacheVerdict CacheFileLines::take(std::string text, const std::string& sources)
{
    m_file.reset();
    CacheVerdict verdict = keep(text, sources);
    m_text = verdict == CacheVerdict::Believed ? std::move(text) : std::string();
    return verdict;
}

VYX_FIRST_ANSWER CacheVerdict CacheFileLines::take(std::unique_ptr<MappedFile> file, std::string_view tail,
                                                   const std::string& sources)
{
    m_text.clear();
    CacheVerdict verdict =
        keep(std::string_view(reinterpret_cast<const char*>(file->data()), file->size()), sources, tail);
    m_file = verdict == CacheVerdict::Believed ? std::move(file) : nullptr;
    return verdict;
}

void CacheFileLines::addTo(AvailableMap* map) const
{
    addLines(std::string_view(base() + m_begin, m_end - m_begin), map);
}

VYX_FIRST_ANSWER std::vector<std::string> CacheFileLines::pathsFor(const std::string& type, bool all) const
{
    std::vector<std::string> paths;
    // No item holds a separator or a line break.
    if (type.empty() || type.find_first_of(",;\n") != std::string::npos)
        return paths;
    const char* const first = base() + m_begin;
    const char* const stop = base() + m_end;
    // The line of the last hit: every byte is looked at a bounded number of
    // times, however many hits one long line holds.
    const char *lineStart = first, *lineEnd = first, *eq = nullptr;
    for (const char* from = first; from < stop;) {
        const char* hit = static_cast<const char*>(memmem(from, size_t(stop - from), type.data(), type.size()));
        if (!hit)
            break;
        if (hit >= lineEnd) {
            const char* scanFrom = lineEnd > first ? lineEnd + 1 : first;
            const char* lastBreak =
                scanFrom < hit ? static_cast<const char*>(memrchr(scanFrom, '\n', size_t(hit - scanFrom))) : nullptr;
            lineStart = lastBreak ? lastBreak + 1 : std::max(scanFrom, lineStart);
            lineEnd = static_cast<const char*>(std::memchr(hit, '\n', size_t(stop - hit)));
            if (!lineEnd)
                lineEnd = stop;
            eq = static_cast<const char*>(std::memchr(lineStart, '=', size_t(lineEnd - lineStart)));
        }
        const char* after = hit + type.size();
        // A whole item: after the line's first "=" and bounded by separators.
        const bool item = eq && hit > eq && (hit == eq + 1 || isItemSeparator(hit[-1])) &&
                          (after == lineEnd || isItemSeparator(*after));
        if (!item) {
            from = hit + 1;
            continue;
        }
        std::string path(lineStart, eq);
        if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
            paths.push_back(std::move(path));
            if (!all)
                break;
        }
        from = lineEnd + 1;
    }
    return paths;
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
