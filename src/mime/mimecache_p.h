// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMECACHE_P_H
#define VYXCORE_MIMECACHE_P_H

#include "core/mappedfile_p.h"
#include "core/stringpool_p.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Vyx::detail {

// MIME type -> desktop-file paths, each type's paths in the order they were
// registered, no pair twice. Paths are stored once and referred to by
// number: a path stands under several types, and a first lookup in a new
// process builds the whole map, so every byte it holds is a byte that
// process pays for.
class AvailableMap {
public:
    // A type's number and a path's index, made on first sight.
    uint32_t internType(std::string_view type);
    uint32_t internPath(std::string_view path);
    void addNumbered(uint32_t typeNumber, uint32_t pathIndex);
    bool empty() const { return m_byType.empty(); }
    // The paths of type in registration order; empty when none.
    std::vector<std::string> pathsFor(const std::string& type, bool all) const;
    // The cache file's lines, one per path, ascending, "path=type;type\n",
    // handed to sink a few kilobytes at a time (whole lines); false as soon
    // as sink returns false.
    bool writeCacheText(const std::function<bool(std::string_view)>& sink) const;

private:
    StringPool m_paths;
    StringPool m_types;
    std::vector<std::vector<uint32_t>> m_byType;  // by type number
    // For a type with many paths, one bit per path number saying it is
    // listed, so that a type with thousands of applications is not checked
    // in square time; empty for the short lists, checked by their own list.
    std::vector<std::vector<bool>> m_listed;  // by type number
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
// The same written to fd a piece at a time; false when a write failed.
bool writeCacheFile(int fd, const std::string& sources, const AvailableMap& map);

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
    // The same for a mapped file, tail being its last bytes read on their
    // own (at least the length of the last line): a fresh process reads
    // only the pages its question reaches, and copies none of them to its
    // heap.
    CacheVerdict take(std::unique_ptr<MappedFile> file, std::string_view tail, const std::string& sources);
    bool empty() const { return m_begin == m_end; }
    // What AvailableMap::pathsFor answers once the lines are added to it.
    std::vector<std::string> pathsFor(const std::string& type, bool all) const;
    void addTo(AvailableMap* map) const;

private:
    CacheVerdict keep(std::string_view text, const std::string& sources, std::string_view tail = {});
    const char* base() const { return m_file ? reinterpret_cast<const char*>(m_file->data()) : m_text.data(); }

    std::string m_text;  // the file's text, when it was not mapped
    std::unique_ptr<MappedFile> m_file;
    size_t m_begin = 0, m_end = 0;  // the application lines
};
const char* describe(CacheVerdict verdict);

}  // namespace Vyx::detail

#endif
