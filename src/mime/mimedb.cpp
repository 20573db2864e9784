#include "mime/mimedb_p.h"

#include "core/mappedfile_p.h"
#include "vyxstrings.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unordered_set>

namespace Vyx::detail {

namespace {

constexpr int kMaxParentDepth = 32;  // guards against loops in the parents

std::string trimmed(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
        text.pop_back();
    return text;
}

std::string lowered(const std::string& text)
{
    std::string out = text;
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

// Reads a text file line by line, whatever the line length.
template <typename Visit>
void eachLine(FILE* file, Visit visit)
{
    std::string line;
    char chunk[4096];
    while (std::fgets(chunk, sizeof chunk, file)) {
        line += chunk;  // a NUL byte in the file ends the chunk early
        if (!line.empty() && line.back() != '\n' && !std::feof(file))
            continue;
        std::string current = trimmed(line);
        line.clear();
        if (!current.empty() && current[0] != '#')
            visit(current);
    }
}

bool isLiteral(const std::string& pattern)
{
    return pattern.find_first_of("*?[") == std::string::npos;
}

// "*.ext" with no other wildcard.
bool isSimpleSuffix(const std::string& pattern)
{
    return pattern.size() > 1 && pattern[0] == '*' && isLiteral(pattern.substr(1));
}

// The rank of a match kind: literal names first, then suffixes, then globs.
int kind(const std::string& pattern)
{
    return isLiteral(pattern) ? 0 : isSimpleSuffix(pattern) ? 1 : 2;
}

bool matchletMatches(const Matchlet& m, const unsigned char* data, size_t length)
{
    size_t size = m.value.size();
    for (uint64_t offset = m.offset; offset < uint64_t(m.offset) + m.rangeLength; ++offset) {
        if (offset + size > length)
            break;
        bool equal = true;
        for (size_t i = 0; i < size && equal; ++i) {
            // Integers of 2 or 4 bytes are stored big-endian in the file and
            // compared in host order on little-endian hosts.
            size_t j = i;
            if ((m.wordSize == 2 || m.wordSize == 4) && size % m.wordSize == 0)
                j = i - i % m.wordSize + (m.wordSize - 1 - i % m.wordSize);
            unsigned char byte = data[offset + i];
            unsigned char value = static_cast<unsigned char>(m.value[j]);
            if (!m.mask.empty()) {
                unsigned char mask = static_cast<unsigned char>(m.mask[j]);
                byte &= mask;
                value &= mask;
            }
            equal = byte == value;
        }
        if (!equal)
            continue;
        if (m.children.empty())
            return true;
        for (const Matchlet& child : m.children) {
            if (matchletMatches(child, data, length))
                return true;
        }
        return false;
    }
    return false;
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

size_t extentOfMatchlet(const Matchlet& m)
{
    size_t extent = size_t(m.offset) + m.rangeLength + m.value.size();
    for (const Matchlet& child : m.children)
        extent = std::max(extent, extentOfMatchlet(child));
    return extent;
}

void MimeDatabase::readGlobs2(FILE* file, bool oldFormat)
{
    std::unordered_set<std::string> noGlobsHere, typesHere;
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
            rule.weight = std::atoi(fields[0].c_str());
            rule.type = fields[1];
            rule.pattern = fields[2];
            if (fields.size() > 3)
                rule.caseSensitive = Vyx::contains(fields[3].c_str(), "cs");
        }
        if (rule.type.empty() || rule.pattern.empty() || m_noGlobs.count(rule.type))
            return;
        if (rule.pattern == "__NOGLOBS__") {
            noGlobsHere.insert(rule.type);
            return;
        }
        typesHere.insert(rule.type);
        m_globs.push_back(std::move(rule));
    });
    for (const std::string& type : noGlobsHere)
        m_noGlobs[type] = true;
    m_index.built = false;
}

void MimeDatabase::readAliases(FILE* file)
{
    eachLine(file, [&](const std::string& line) {
        std::string::size_type blank = line.find(' ');
        if (blank == std::string::npos)
            return;
        // The first definition, from the directory of highest precedence, wins.
        m_aliases.emplace(line.substr(0, blank), line.substr(blank + 1));
    });
}

void MimeDatabase::readSubclasses(FILE* file)
{
    eachLine(file, [&](const std::string& line) {
        std::string::size_type blank = line.find(' ');
        if (blank == std::string::npos)
            return;
        std::vector<std::string>& list = m_parents[line.substr(0, blank)];
        std::string parent = line.substr(blank + 1);
        if (std::find(list.begin(), list.end(), parent) == list.end())
            list.push_back(parent);
    });
}

void MimeDatabase::readIcons(FILE* file, bool generic)
{
    auto& map = generic ? m_genericIcons : m_icons;
    eachLine(file, [&](const std::string& line) {
        std::string::size_type colon = line.find(':');
        if (colon != std::string::npos)
            map.emplace(line.substr(0, colon), line.substr(colon + 1));
    });
}

bool MimeDatabase::readMagic(FILE* file)
{
    std::string data;
    char chunk[65536];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0)
        data.append(chunk, n);
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
        for (const Matchlet& m : section.matchlets)
            m_maxExtent = std::max(m_maxExtent, extentOfMatchlet(m));
        m_magic.push_back(std::move(section));
    }
    return true;
}

namespace {

long long modified(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_mtime) : -1;
}

// A mime.cache is trusted only when no text file it was made from is newer.
bool cacheIsFresh(const std::string& dir)
{
    long long cache = modified(dir + "/mime.cache");
    if (cache < 0)
        return false;
    for (const char* source : {"/globs2", "/globs", "/magic", "/aliases", "/subclasses", "/icons", "/generic-icons"}) {
        if (modified(dir + source) > cache)
            return false;
    }
    return true;
}

}  // namespace

void MimeDatabase::load(const std::vector<std::string>& mimeDirs)
{
    for (const std::string& dir : mimeDirs) {
        if (cacheIsFresh(dir)) {
            MappedFile cache;
            if (cache.open(dir + "/mime.cache") && readCache(cache))
                continue;
        }
        if (FILE* f = std::fopen((dir + "/globs2").c_str(), "r")) {
            readGlobs2(f, false);
            std::fclose(f);
        } else if (FILE* old = std::fopen((dir + "/globs").c_str(), "r")) {
            readGlobs2(old, true);
            std::fclose(old);
        }
        const std::pair<const char*, void (MimeDatabase::*)(FILE*)> plain[] = {
            {"/aliases", &MimeDatabase::readAliases}, {"/subclasses", &MimeDatabase::readSubclasses}};
        for (const auto& [name, reader] : plain) {
            if (FILE* f = std::fopen((dir + name).c_str(), "r")) {
                (this->*reader)(f);
                std::fclose(f);
            }
        }
        for (bool generic : {false, true}) {
            if (FILE* f = std::fopen((dir + (generic ? "/generic-icons" : "/icons")).c_str(), "r")) {
                readIcons(f, generic);
                std::fclose(f);
            }
        }
        if (FILE* f = std::fopen((dir + "/magic").c_str(), "rb")) {
            readMagic(f);
            std::fclose(f);
        }
    }
    // Higher priorities first; equal priorities keep the precedence order.
    std::stable_sort(m_magic.begin(), m_magic.end(),
                     [](const MagicSection& a, const MagicSection& b) { return a.priority > b.priority; });
}

void MimeDatabase::buildIndex() const
{
    GlobIndex& index = m_index;
    index = GlobIndex();
    index.lowered.reserve(m_globs.size());
    for (size_t i = 0; i < m_globs.size(); ++i) {
        const GlobRule& rule = m_globs[i];
        index.lowered.push_back(lowered(rule.pattern));
        if (isLiteral(rule.pattern)) {
            index.literal[rule.pattern].push_back(i);
            if (!rule.caseSensitive)
                index.literalLower[index.lowered.back()].push_back(i);
        } else if (isSimpleSuffix(rule.pattern)) {
            index.suffix[rule.pattern.substr(1)].push_back(i);
            if (!rule.caseSensitive)
                index.suffixLower[index.lowered.back().substr(1)].push_back(i);
        } else {
            index.other.push_back(i);
        }
    }
    index.built = true;
}

NameMatch MimeDatabase::matchName(const char* fileName) const
{
    NameMatch best;
    if (!fileName)
        return best;
    if (!m_index.built)
        buildIndex();
    // Only the last path component is a file name.
    const char* slash = std::strrchr(fileName, '/');
    const std::string name = slash ? slash + 1 : fileName;
    int bestKind = 3;
    size_t bestLength = 0;
    auto consider = [&](size_t i) {
        const GlobRule& rule = m_globs[i];
        int k = kind(rule.pattern);
        // Literal names, then suffixes, then globs; then weight; then length.
        bool better = k < bestKind || (k == bestKind && (rule.weight > best.weight ||
                                                         (rule.weight == best.weight && rule.pattern.size() > bestLength)));
        bool same = k == bestKind && rule.weight == best.weight && rule.pattern.size() == bestLength;
        std::string type = unalias(rule.type);
        if (better) {
            best.types = {type};
            best.weight = rule.weight;
            bestKind = k;
            bestLength = rule.pattern.size();
        } else if (same && std::find(best.types.begin(), best.types.end(), type) == best.types.end()) {
            best.types.push_back(type);
        }
    };
    // The name as it is first; only when nothing matches, lower-cased against
    // the patterns that ignore case.
    auto pass = [&](const std::string& subject, bool lowerCasePass) {
        const auto& literals = lowerCasePass ? m_index.literalLower : m_index.literal;
        const auto& suffixes = lowerCasePass ? m_index.suffixLower : m_index.suffix;
        if (auto it = literals.find(subject); it != literals.end())
            for (size_t i : it->second)
                consider(i);
        for (size_t start = 0; start < subject.size(); ++start) {
            auto it = suffixes.find(subject.substr(start));
            if (it != suffixes.end())
                for (size_t i : it->second)
                    consider(i);
        }
        for (size_t i : m_index.other) {
            const GlobRule& rule = m_globs[i];
            if (lowerCasePass && rule.caseSensitive)
                continue;
            const std::string& pattern = lowerCasePass ? m_index.lowered[i] : rule.pattern;
            if (fnmatch(pattern.c_str(), subject.c_str(), 0) == 0)
                consider(i);
        }
    };
    pass(name, false);
    if (best.types.empty())
        pass(lowered(name), true);
    // Ties in a stable order, whichever source the globs came from.
    std::sort(best.types.begin(), best.types.end());
    return best;
}

std::string MimeDatabase::matchMagic(const unsigned char* data, size_t length, int* priority) const
{
    for (const MagicSection& section : m_magic) {
        for (const Matchlet& m : section.matchlets) {
            if (matchletMatches(m, data, length)) {
                if (priority)
                    *priority = section.priority;
                return unalias(section.type);
            }
        }
    }
    if (priority)
        *priority = 0;
    return std::string();
}

std::string MimeDatabase::unalias(const std::string& type) const
{
    auto it = m_aliases.find(type);
    return it == m_aliases.end() ? type : it->second;
}

std::vector<std::string> MimeDatabase::parents(const std::string& type) const
{
    auto it = m_parents.find(unalias(type));
    return it == m_parents.end() ? std::vector<std::string>() : it->second;
}

bool MimeDatabase::subclassOf(const std::string& type, const std::string& base, int depth) const
{
    if (type == base)
        return true;
    if (depth > kMaxParentDepth)
        return false;
    // "media/*" stands for every subtype of media.
    if (base.size() > 2 && base.compare(base.size() - 2, 2, "/*") == 0 &&
        type.compare(0, base.size() - 1, base, 0, base.size() - 1) == 0)
        return true;
    if (base == "text/plain" && type.compare(0, 5, "text/") == 0)
        return true;
    if (base == "application/octet-stream" && type.compare(0, 6, "inode/") != 0)
        return true;
    for (const std::string& parent : parents(type)) {
        if (subclassOf(unalias(parent), base, depth + 1))
            return true;
    }
    return false;
}

bool MimeDatabase::isSubclass(const std::string& type, const std::string& base) const
{
    return subclassOf(unalias(type), unalias(base), 0);
}

const std::string* MimeDatabase::icon(const std::string& type, bool generic) const
{
    const auto& map = generic ? m_genericIcons : m_icons;
    auto it = map.find(unalias(type));
    return it == map.end() ? nullptr : &it->second;
}

const char* MimeDatabase::intern(const std::string& type)
{
    auto& slot = m_interned[type];
    if (!slot)
        slot.reset(new std::string(type));
    return slot->c_str();
}

}  // namespace Vyx::detail
