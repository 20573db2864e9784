// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimetext_p.h"

#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "desktopentry/mimealiases_p.h"

#include "vyxstrings.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <unordered_map>

namespace Vyx::detail {

namespace {

std::string trimmed(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
        text.pop_back();
    return text;
}

// The lines of a text file that hold something, trailing blanks cut,
// comments skipped.
template <typename Visit> void eachLine(FILE* file, Visit visit)
{
    forEachLine(file, [&](const std::string& line) {
        std::string current = trimmed(line);
        if (!current.empty() && current[0] != '#')
            visit(current);
    });
}

// Hands the regular file at path to read and closes it again; false when
// there is no such file.
template <typename Read> bool readTextFile(const std::string& path, Read read)
{
    FILE* file = fopenRegularFile(path.c_str());
    if (!file)
        return false;
    read(file);
    std::fclose(file);
    return true;
}

// Parses one matchlet line of a magic file from p (bounded by end).
bool parseMatchlet(const char*& p, const char* end, int* indent, Matchlet* m)
{
    auto number = [&](uint32_t* out) {
        if (p >= end || !std::isdigit(static_cast<unsigned char>(*p)))
            return false;
        uint64_t value = 0;
        while (p < end && std::isdigit(static_cast<unsigned char>(*p))) {
            value = value * 10 + uint64_t(*p++ - '0');
            if (value > 0xFFFFFFFFu)
                return false;
        }
        *out = static_cast<uint32_t>(value);
        return true;
    };
    uint32_t level = 0;
    if (p < end && *p != '>' && !number(&level))
        return false;
    *indent = static_cast<int>(level);
    if (p >= end || *p++ != '>')
        return false;
    if (!number(&m->offset) || p >= end || *p++ != '=')
        return false;
    if (end - p < 2)
        return false;
    size_t size = static_cast<size_t>(static_cast<unsigned char>(p[0]) << 8 | static_cast<unsigned char>(p[1]));
    p += 2;
    if (static_cast<size_t>(end - p) < size)
        return false;
    m->value.assign(p, size);
    p += size;
    if (p < end && *p == '&') {
        ++p;
        if (static_cast<size_t>(end - p) < size)
            return false;
        m->mask.assign(p, size);
        p += size;
    }
    if (p < end && *p == '~') {
        ++p;
        if (!number(&m->wordSize))
            return false;
    }
    if (p < end && *p == '+') {
        ++p;
        if (!number(&m->rangeLength))
            return false;
    }
    // Unknown extensions up to the end of the line are skipped.
    while (p < end && *p != '\n')
        ++p;
    if (p < end)
        ++p;
    return m->rangeLength > 0;
}

}  // namespace

uint64_t extentOfMatchlet(const Matchlet& m)
{
    uint64_t extent = uint64_t(m.offset) + m.rangeLength + m.value.size();
    for (const Matchlet& child : m.children)
        extent = std::max(extent, extentOfMatchlet(child));
    return extent;
}

void MimeTextRules::readGlobs(FILE* file, bool oldFormat)
{
    eachLine(file, [&](const std::string& line) {
        std::vector<std::string> fields;
        std::string::size_type start = 0;
        while (true) {
            std::string::size_type colon = line.find(':', start);
            fields.push_back(line.substr(start, colon == std::string::npos ? std::string::npos : colon - start));
            if (colon == std::string::npos)
                break;
            start = colon + 1;
        }
        GlobRule rule;
        if (oldFormat) {
            if (fields.size() < 2)
                return;
            rule.type = fields[0];
            // A pattern may itself hold ":": everything after the type.
            rule.pattern = line.substr(fields[0].size() + 1);
        } else {
            if (fields.size() < 3)
                return;
            rule.weight = std::clamp(std::atoi(fields[0].c_str()), 0, 100);
            rule.type = fields[1];
            rule.pattern = fields[2];
            if (fields.size() > 3)
                rule.caseSensitive = Vyx::contains(fields[3].c_str(), "cs");
        }
        if (rule.type.empty() || rule.pattern.empty())
            return;
        if (rule.pattern == "__NOGLOBS__") {
            if (std::find(noGlobs.begin(), noGlobs.end(), rule.type) == noGlobs.end())
                noGlobs.push_back(rule.type);
            return;
        }
        globs.push_back(std::move(rule));
    });
    // A case-sensitive pattern is also written without flags, for readers
    // that know no flags; that copy would make it match any case.
    std::unordered_map<std::string, bool> sensitive;
    for (const GlobRule& rule : globs) {
        if (rule.caseSensitive)
            sensitive[rule.type + '\n' + rule.pattern] = true;
    }
    if (!sensitive.empty())
        globs.erase(std::remove_if(globs.begin(), globs.end(),
                                   [&](const GlobRule& rule) {
                                       return !rule.caseSensitive && sensitive.count(rule.type + '\n' + rule.pattern);
                                   }),
                    globs.end());
}

void MimeTextRules::readAliases(FILE* file)
{
    forEachMimeAlias(file, [this](std::string alias, std::string canonical) {
        aliases.emplace_back(std::move(alias), std::move(canonical));
    });
}

void MimeTextRules::readSubclasses(FILE* file)
{
    std::unordered_map<std::string, size_t> index;
    for (size_t i = 0; i < parents.size(); ++i)
        index.emplace(parents[i].first, i);
    eachLine(file, [&](const std::string& line) {
        std::string::size_type blank = line.find(' ');
        if (blank == std::string::npos)
            return;
        std::string type = line.substr(0, blank);
        auto found = index.find(type);
        if (found == index.end()) {
            found = index.emplace(type, parents.size()).first;
            parents.emplace_back(type, std::vector<std::string>());
        }
        std::vector<std::string>& list = parents[found->second].second;
        std::string parent = line.substr(blank + 1);
        if (std::find(list.begin(), list.end(), parent) == list.end())
            list.push_back(parent);
    });
}

void MimeTextRules::readIcons(FILE* file, bool generic)
{
    auto& list = generic ? genericIcons : icons;
    eachLine(file, [&](const std::string& line) {
        std::string::size_type colon = line.find(':');
        if (colon != std::string::npos)
            list.emplace_back(line.substr(0, colon), line.substr(colon + 1));
    });
}

bool MimeTextRules::readMagic(const std::string& data)
{
    static const char kHeader[] = "MIME-Magic\0\n";
    if (data.size() < 12 || std::memcmp(data.data(), kHeader, 12) != 0)
        return false;
    const char* p = data.data() + 12;
    const char* end = data.data() + data.size();
    while (p < end) {
        if (*p != '[')
            return true;  // damaged from here on: keep what was read
        const char* close = static_cast<const char*>(std::memchr(p, ']', static_cast<size_t>(end - p)));
        const char* colon = static_cast<const char*>(std::memchr(p, ':', static_cast<size_t>(end - p)));
        if (!close || !colon || colon > close || close + 1 >= end || close[1] != '\n')
            return true;
        MagicSection section;
        section.priority = std::atoi(std::string(p + 1, colon).c_str());
        section.type.assign(colon + 1, close);
        p = close + 2;
        std::vector<Matchlet*> stack;  // the last matchlet of each indent level
        while (p < end && *p != '[') {
            Matchlet m;
            int indent = 0;
            if (!parseMatchlet(p, end, &indent, &m))
                return true;
            std::vector<Matchlet>* siblings = &section.matchlets;
            if (indent > 0) {
                if (static_cast<size_t>(indent) > stack.size())
                    continue;  // a child without a parent is dropped
                siblings = &stack[static_cast<size_t>(indent) - 1]->children;
            }
            siblings->push_back(std::move(m));
            stack.resize(static_cast<size_t>(indent));
            stack.push_back(&siblings->back());
        }
        magic.push_back(std::move(section));
    }
    return true;
}

void MimeTextRules::readDirectory(const std::string& dir)
{
    // "globs" is the older form of "globs2": read only where there is no
    // "globs2", as the same patterns would otherwise count twice.
    if (!readTextFile(dir + "/globs2", [this](FILE* f) { readGlobs(f, false); }))
        readTextFile(dir + "/globs", [this](FILE* f) { readGlobs(f, true); });
    readTextFile(dir + "/aliases", [this](FILE* f) { readAliases(f); });
    readTextFile(dir + "/subclasses", [this](FILE* f) { readSubclasses(f); });
    readTextFile(dir + "/icons", [this](FILE* f) { readIcons(f, false); });
    readTextFile(dir + "/generic-icons", [this](FILE* f) { readIcons(f, true); });
    std::string magicData;
    if (readRegularFile((dir + "/magic").c_str(), magicData))
        readMagic(magicData);
}

}  // namespace Vyx::detail
