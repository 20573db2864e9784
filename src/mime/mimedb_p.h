#ifndef VYXCORE_MIMEDB_P_H
#define VYXCORE_MIMEDB_P_H

// The shared MIME database in memory: globs, magic, aliases, parents and
// icons merged from every "mime" directory, and the rules that decide a type.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vyx::detail {

class MappedFile;

struct GlobRule {
    std::string pattern;  // as written; matched lower-cased unless caseSensitive
    std::string type;
    int weight = 50;
    bool caseSensitive = false;
};

struct Matchlet {
    uint32_t offset = 0;
    uint32_t rangeLength = 1;
    uint32_t wordSize = 1;
    std::string value;
    std::string mask;  // empty: no mask
    std::vector<Matchlet> children;
};

struct MagicSection {
    int priority = 50;
    std::string type;
    std::vector<Matchlet> matchlets;
};

struct NameMatch {
    std::vector<std::string> types;  // the best matches (one type unless ambiguous)
    int weight = 0;
};

// The furthest byte a matchlet (with its children) looks at.
size_t extentOfMatchlet(const Matchlet& m);

class MimeDatabase {
public:
    // Reads the directories in precedence order (highest first).
    void load(const std::vector<std::string>& mimeDirs);

    // Readers of the text files, each merged into the database. A directory
    // of higher precedence is read first; "__NOGLOBS__" of a later one is
    // ignored for types already given globs by earlier ones, and drops the
    // type's globs from later ones.
    void readGlobs2(FILE* file, bool older);
    void readAliases(FILE* file);
    void readSubclasses(FILE* file);
    void readIcons(FILE* file, bool generic);
    // False when the file is not a magic file.
    bool readMagic(FILE* file);
    // Reads a directory's compiled mime.cache into the database; false (and
    // nothing taken) when it is not a cache of a known version. Every offset
    // and count is checked against the file, so a damaged cache gives what
    // can be read of it.
    bool readCache(const MappedFile& cache);

    NameMatch matchName(const char* fileName) const;
    // The magic type of data, or empty; *priority receives the rule's priority.
    std::string matchMagic(const unsigned char* data, size_t length, int* priority) const;
    size_t maxExtent() const { return m_maxExtent; }

    std::string unalias(const std::string& type) const;
    std::vector<std::string> parents(const std::string& type) const;  // explicit, after unalias
    bool isSubclass(const std::string& type, const std::string& base) const;
    const std::string* icon(const std::string& type, bool generic) const;
    // A library-owned copy of type, stable for the database's life.
    const char* intern(const std::string& type);

    const std::vector<GlobRule>& globs() const { return m_globs; }
    const std::vector<MagicSection>& magic() const { return m_magic; }

private:
    bool subclassOf(const std::string& type, const std::string& base, int depth) const;
    // Indexes of the globs by literal name and by suffix, as written and
    // lower-cased, so that a name costs a few hash lookups, not a walk
    // over every pattern. Built on the first match after a load.
    void buildIndex() const;
    struct GlobIndex {
        std::unordered_map<std::string, std::vector<size_t>> literal, suffix, literalLower, suffixLower;
        std::vector<size_t> other;  // patterns fnmatch must try
        std::vector<std::string> lowered;  // each rule's pattern, lower-cased
        bool built = false;
    };
    mutable GlobIndex m_index;

    std::vector<GlobRule> m_globs;
    std::unordered_map<std::string, bool> m_globTypesSeen;   // types given globs by a directory so far
    std::unordered_map<std::string, bool> m_noGlobs;         // types whose later globs are dropped
    std::vector<MagicSection> m_magic;
    size_t m_maxExtent = 0;
    std::unordered_map<std::string, std::string> m_aliases;  // alias -> canonical
    std::unordered_map<std::string, std::vector<std::string>> m_parents;
    std::unordered_map<std::string, std::string> m_icons, m_genericIcons;
    std::unordered_map<std::string, std::unique_ptr<std::string>> m_interned;
};

}  // namespace Vyx::detail

#endif
