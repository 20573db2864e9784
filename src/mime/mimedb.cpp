// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimedb_p.h"

#include "core/firstanswer_p.h"

#include "core/uniquefd_p.h"
#include "mime/mimetext_p.h"
#include "vyxstrings.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace Vyx::detail {

namespace {

constexpr size_t kMaxParentsVisited = 256;  // types one question may walk through
constexpr size_t kShortName = 256;

VYX_FIRST_ANSWER long long modified(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_mtime) : -1;
}

// A mime.cache modified at cache is trusted only when no text file it was
// made from is newer.
VYX_FIRST_ANSWER bool cacheIsFresh(const std::string& dir, long long cache)
{
    // "globs" counts only where there is no "globs2": the text reader
    // would not look at it either.
    long long globs2 = modified(dir + "/globs2");
    if (globs2 > cache || (globs2 < 0 && modified(dir + "/globs") > cache))
        return false;
    for (const char* source : {"/magic", "/aliases", "/subclasses", "/icons", "/generic-icons"}) {
        if (modified(dir + source) > cache)
            return false;
    }
    return true;
}

}  // namespace

struct MimeDatabase::Source {
    MappedFile file;
    std::string compiled;  // the text files' rules, when there is no cache
    MimeCacheView view;
    // Types whose globs a directory of higher precedence turned off.
    std::vector<const char*> refused;
};

MimeDatabase::MimeDatabase() = default;
MimeDatabase::~MimeDatabase() = default;

VYX_FIRST_ANSWER void MimeDatabase::load(const std::vector<std::string>& mimeDirs)
{
    for (const std::string& dir : mimeDirs) {
        if (addCacheIfFresh(dir))
            continue;
        struct stat st;
        if (stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            continue;
        MimeTextRules rules;
        rules.readDirectory(dir);
        addRules(rules);
    }
}

VYX_FIRST_ANSWER bool MimeDatabase::addCache(const std::string& path)
{
    std::unique_ptr<Source> source(new Source);
    if (!source->file.open(path) || !source->view.open(source->file.view()))
        return false;
    add(std::move(source));
    return true;
}

VYX_FIRST_ANSWER bool MimeDatabase::addCacheIfFresh(const std::string& dir)
{
    // One descriptor gives the cache's time and its bytes: a first answer
    // in a new process costs little more than these few calls. Not blocking
    // on a FIFO planted under the name; anything but a regular file is no
    // cache.
    UniqueFd fd(::open((dir + "/mime.cache").c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat st;
    if (!fd || fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode) ||
        !cacheIsFresh(dir, static_cast<long long>(st.st_mtime)))
        return false;
    std::unique_ptr<Source> source(new Source);
    if (!source->file.map(fd.get(), st) || !source->view.open(source->file.view()))
        return false;
    add(std::move(source));
    return true;
}

void MimeDatabase::addRules(const MimeTextRules& rules)
{
    std::unique_ptr<Source> source(new Source);
    source->compiled = compileMimeCache(rules);
    ByteView bytes(reinterpret_cast<const unsigned char*>(source->compiled.data()), source->compiled.size());
    if (source->view.open(bytes))
        add(std::move(source));
}

VYX_FIRST_ANSWER void MimeDatabase::add(std::unique_ptr<Source> source)
{
    if (!m_sources.empty()) {
        const Source& previous = *m_sources.back();
        source->refused = previous.refused;
        for (const char* type : previous.view.noGlobTypes())
            source->refused.push_back(type);
    }
    m_sources.push_back(std::move(source));
}

VYX_FIRST_ANSWER NameMatch MimeDatabase::matchName(const char* fileName) const
{
    NameMatch best;
    if (!fileName)
        return best;
    // Only the last path component is a file name.
    const char* slash = std::strrchr(fileName, '/');
    const char* name = slash ? slash + 1 : fileName;
    const size_t length = std::strlen(name);

    // Literal names first, then suffixes, then other patterns: a kind that
    // matched in any directory ends the search. The name as it is first;
    // only when nothing matches, lower-cased against the patterns that
    // ignore case.
    auto pass = [&](const char* subject, bool folded) {
        for (const auto& source : m_sources) {
            best.refused = &source->refused;
            source->view.matchLiteral(subject, folded, &best);
        }
        if (best.count)
            return;
        for (const auto& source : m_sources) {
            best.refused = &source->refused;
            source->view.matchSuffix(subject, length, folded, &best);
        }
        if (best.count)
            return;
        for (const auto& source : m_sources) {
            best.refused = &source->refused;
            source->view.matchOther(subject, folded, &best);
        }
    };
    pass(name, false);
    if (!best.count) {
        char shortBuffer[kShortName];
        std::string longBuffer;
        char* folded = shortBuffer;
        if (length >= kShortName) {
            longBuffer.assign(name, length);
            folded = &longBuffer[0];
        }
        for (size_t i = 0; i < length; ++i)
            folded[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
        folded[length] = '\0';
        pass(folded, true);
    }
    best.refused = nullptr;

    // Aliases name the same type: resolved, the first place kept. Ties stay
    // in the database's own order (directories by precedence, then the order
    // of the rules in each): when the content cannot settle a tie the first
    // type is the answer, and the database lists the likelier one first
    // ("*.pm" is a Perl module before it is a PageMaker document), as every
    // other reader of the database takes it.
    int kept = 0;
    for (int i = 0; i < best.count; ++i) {
        const char* type = unalias(best.types[i]);
        if (std::none_of(best.types, best.types + kept, [&](const char* t) { return Vyx::equal(t, type); }))
            best.types[kept++] = type;
    }
    best.count = kept;
    return best;
}

VYX_FIRST_ANSWER const char* MimeDatabase::matchMagic(const unsigned char* data, size_t length, int* priority) const
{
    // The highest priority wins; among equal ones, the directory of higher
    // precedence.
    const char* best = nullptr;
    int bestPriority = 0;
    for (const auto& source : m_sources) {
        int p = 0;
        const char* type = source->view.matchMagic(data, length, &p);
        if (type && (!best || p > bestPriority)) {
            best = type;
            bestPriority = p;
        }
    }
    if (priority)
        *priority = bestPriority;
    return best ? unalias(best) : nullptr;
}

VYX_FIRST_ANSWER size_t MimeDatabase::maxExtent() const
{
    size_t extent = 0;
    for (const auto& source : m_sources)
        extent = std::max<size_t>(extent, source->view.maxExtent());
    return extent;
}

VYX_FIRST_ANSWER const char* MimeDatabase::unalias(const char* type) const
{
    for (const auto& source : m_sources) {
        if (const char* canonical = source->view.alias(type))
            return canonical;
    }
    return type;
}

VYX_FIRST_ANSWER std::vector<const char*> MimeDatabase::parents(const char* type) const
{
    std::vector<const char*> list;
    const char* canonical = unalias(type);
    for (const auto& source : m_sources)
        source->view.parents(canonical, &list);
    return list;
}

VYX_FIRST_ANSWER bool MimeDatabase::isSubclass(const char* type, const char* base) const
{
    type = unalias(type);
    base = unalias(base);
    const size_t baseLength = std::strlen(base);
    const bool anySubtype = baseLength > 2 && Vyx::equal(base + baseLength - 2, "/*");
    // Each type is visited once: parents may form loops, and a walk that
    // followed every path could take for ever on a hostile file.
    std::vector<const char*> seen {type}, pending {type};
    while (!pending.empty()) {
        const char* current = pending.back();
        pending.pop_back();
        if (Vyx::equal(current, base))
            return true;
        // "media/*" stands for every subtype of media.
        if (anySubtype && std::strncmp(current, base, baseLength - 1) == 0)
            return true;
        if (Vyx::equal(base, "text/plain") && Vyx::startsWith(current, "text/"))
            return true;
        if (Vyx::equal(base, "application/octet-stream") && !Vyx::startsWith(current, "inode/"))
            return true;
        for (const char* parent : parents(current)) {
            parent = unalias(parent);
            if (seen.size() < kMaxParentsVisited &&
                std::none_of(seen.begin(), seen.end(), [&](const char* t) { return Vyx::equal(t, parent); })) {
                seen.push_back(parent);
                pending.push_back(parent);
            }
        }
    }
    return false;
}

const char* MimeDatabase::icon(const char* type, bool generic) const
{
    const char* canonical = unalias(type);
    for (const auto& source : m_sources) {
        if (const char* name = source->view.icon(canonical, generic))
            return name;
    }
    return nullptr;
}

}  // namespace Vyx::detail
