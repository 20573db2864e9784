// The MIME database's text readers and magic matcher on arbitrary bytes:
// the input is read as each text file and as a magic file, then matched
// against names and against itself as content.
#include "mime/mimedb_p.h"

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
    Vyx::detail::MimeDatabase db;
    if (FILE* f = open(text)) {
        db.readGlobs2(f, size % 2 == 0);
        std::rewind(f);
        db.readAliases(f);
        std::rewind(f);
        db.readSubclasses(f);
        std::rewind(f);
        db.readIcons(f, true);
        std::fclose(f);
    }
    if (FILE* f = open(magic)) {
        db.readMagic(f);
        std::fclose(f);
    }
    db.matchName(text.c_str());
    int priority = 0;
    db.matchMagic(data, size, &priority);
    db.isSubclass(text, "text/plain");
    return 0;
}
