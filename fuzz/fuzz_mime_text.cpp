// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The MIME database's text readers, their compilation and the matchers on
// arbitrary bytes: the input is read as each text file and as a magic file,
// then matched against names and against itself as content.
#include "mime/mimedb_p.h"
#include "mime/mimetext_p.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace {

FILE* open(std::string& text)
{
    return fmemopen(&text[0], text.size(), "r");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    std::string magic = std::string("MIME-Magic\0\n", 12) + text;
    Vyx::detail::MimeTextRules rules;
    if (FILE* f = open(text)) {
        rules.readGlobs(f, size % 2 == 0);
        std::rewind(f);
        rules.readAliases(f);
        std::rewind(f);
        rules.readSubclasses(f);
        std::rewind(f);
        rules.readIcons(f, true);
        std::fclose(f);
    }
    rules.readMagic(magic);
    Vyx::detail::MimeDatabase db;
    db.addRules(rules);
    db.matchName(text.c_str());
    for (const auto& rule : rules.globs)
        db.matchName(rule.pattern.c_str());
    int priority = 0;
    db.matchMagic(data, size, &priority);
    db.isSubclass(text.c_str(), "text/plain");
    return 0;
}
