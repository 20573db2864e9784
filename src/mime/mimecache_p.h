// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMECACHE_P_H
#define VYXCORE_MIMECACHE_P_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vyx::detail {

// MIME type -> desktop-file paths, each type's paths in the order they were
// registered, no pair twice. Paths are stored once and referred to by
// number: a path stands under several types, and a first lookup in a new
// process builds the whole map.
class AvailableMap {
public:
    void add(const std::string& type, const std::string& path);
    void add(const std::string& type, uint32_t pathIndex);
    // A type's number and a path's index, made on first sight.
    uint32_t internType(const std::string& type);
    uint32_t internPath(const std::string& path);
    void addNumbered(uint32_t typeNumber, uint32_t pathIndex);
    bool empty() const { return m_byType.empty(); }
    // The paths of type in registration order; empty when none.
    std::vector<std::string> pathsFor(const std::string& type, bool all) const;
    // The cache file's text: one line per path, ascending, "path=type;type\n".
    std::string toCacheText() const;

private:
    std::vector<std::string> m_paths;
    std::unordered_map<std::string, uint32_t> m_pathIndex;
    std::unordered_map<std::string, uint32_t> m_typeIndex;
    std::vector<std::vector<uint32_t>> m_byType;  // by type number
    std::unordered_set<uint64_t> m_pairs;  // type number << 32 | path number, for long lists
};

// Where a rebuild takes one application directory's applications from, and
// the modification time of that source when it was looked at.
struct AppDirSource {
    enum Kind { Nothing, MimeinfoCache, DesktopFiles };
    std::string dir;
    Kind kind = Nothing;
    long long seconds = 0;
    long nanoseconds = 0;
};

// The sources of dirs as they stand now: a directory's mimeinfo.cache when it
// is not older than the directory (whole seconds, as the tool that writes it
// leaves them), else its desktop files, else nothing when it is missing.
std::vector<AppDirSource> currentSources(const std::vector<std::string>& dirs);

// The cache file's first section: every application directory in order with
// its source and time. The file is believed only for exactly these, so a
// cache made for another directory list, or before any directory changed, is
// never taken for this one; the section starts with a "[" line, which no
// desktop-file line can be.
std::string sourcesSection(const std::vector<AppDirSource>& sources);

// The whole cache file: sourcesSection, "[Applications]", the map's lines
// and a last "[End]" line, whose absence shows a file cut short.
std::string cacheFileText(const std::string& sources, const AvailableMap& map);

enum class CacheVerdict { Believed, NotACacheFile, OtherDirectories, OutOfDate, Incomplete };

// Reads text, a whole cache file, into map when it was written for exactly
// the sources given; otherwise says why not (map then unspecified).
CacheVerdict readCacheText(const std::string& text, const std::string& sources, AvailableMap* map);

// The application lines of a believed cache file, kept as they were read.
// A fresh process mostly asks for one type or two: finding a type in the
// text costs a small part of turning every line into a map first.
class CacheFileLines {
public:
    CacheFileLines() = default;
    // Keeps text when it is a cache file written for exactly sources;
    // otherwise says why not and keeps nothing.
    CacheVerdict take(std::string text, const std::string& sources);
    bool empty() const { return m_begin == m_end; }
    // What AvailableMap::pathsFor answers once the lines are added to it.
    std::vector<std::string> pathsFor(const std::string& type, bool all) const;
    void addTo(AvailableMap* map) const;

private:
    std::string m_text;
    size_t m_begin = 0, m_end = 0;  // the application lines
};
const char* describe(CacheVerdict verdict);

}  // namespace Vyx::detail

#endif
