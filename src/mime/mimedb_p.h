// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMEDB_P_H
#define VYXCORE_MIMEDB_P_H

// The shared MIME database: the rules of every "mime" directory, each read
// where it lies (its mime.cache when fresh, else its text files compiled to
// the same layout), and the rules that merge them into one answer.

#include "mime/mimecacheview_p.h"

#include <memory>
#include <string>
#include <vector>

namespace Vyx::detail {

struct MimeTextRules;

class MimeDatabase {
public:
    MimeDatabase();
    ~MimeDatabase();

    // Reads the directories in precedence order (highest first).
    void load(const std::vector<std::string>& mimeDirs);
    // Adds one directory of lower precedence than those added before: a
    // mime.cache file (false, and nothing added, when it is not one), or
    // rules read from text files.
    bool addCache(const std::string& path);
    // The directory's mime.cache, when it is a regular file no text file
    // of dir is newer than.
    bool addCacheIfFresh(const std::string& dir);
    void addRules(const MimeTextRules& rules);

    // The best matches of fileName's last component, aliases resolved, in
    // the order the databases list them.
    NameMatch matchName(const char* fileName) const;
    // The magic type of data (alias resolved), or null; *priority receives
    // the rule's priority (0 without one).
    const char* matchMagic(const unsigned char* data, size_t length, int* priority) const;
    // The bytes a content guess reads.
    size_t maxExtent() const;

    // The canonical name of type; type itself when it is no alias.
    const char* unalias(const char* type) const;
    // The explicit parents of type (after unalias), from every directory.
    std::vector<const char*> parents(const char* type) const;
    // Whether type is base or a kind of it, the implicit parents included.
    bool isSubclass(const char* type, const char* base) const;
    // Null when no directory names one.
    const char* icon(const char* type, bool generic) const;

private:
    struct Source;
    void add(std::unique_ptr<Source> source);

    std::vector<std::unique_ptr<Source>> m_sources;
};

}  // namespace Vyx::detail

#endif
