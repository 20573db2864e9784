// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The mime.cache reader on hostile bytes, mapped as a real cache is. Inputs
// whose first byte is even are the file itself; the others are patches
// (two bytes of offset, four of value) over a well-formed cache, so that
// damage deep inside a valid layout is reached as well.
#include "core/mappedfile_p.h"
#include "mime/mimedb_p.h"
#include "mime/mimetext_p.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

std::string wellFormed()
{
    Vyx::detail::MimeTextRules rules;
    rules.globs = {{"*.tar.gz", "application/x-tgz", 50, false},
                   {"*.C", "text/x-cpp", 60, true},
                   {"Makefile", "text/x-make", 50, false},
                   {"img-*.dat", "image/x-dat", 40, false},
                   {"*.é", "text/x-accent", 50, false}};
    rules.noGlobs = {"text/x-gone"};
    Vyx::detail::Matchlet child;
    child.offset = 4;
    child.value = "ED";
    Vyx::detail::Matchlet top;
    top.value = "NEST";
    top.rangeLength = 8;
    top.mask = "\xff\xff\xff\xdf";
    top.children = {child};
    Vyx::detail::Matchlet word;
    word.value = std::string("\x12\x34", 2);
    word.wordSize = 2;
    rules.magic = {{80, "image/x-nested", {top}}, {40, "application/x-word", {word}}};
    rules.aliases = {{"text/x-old", "text/x-cpp"}};
    rules.parents = {{"text/x-cpp", {"text/x-c", "text/plain"}}};
    rules.icons = {{"text/x-cpp", "cpp-icon"}};
    rules.genericIcons = {{"text/x-cpp", "text-x-generic"}};
    return Vyx::detail::compileMimeCache(rules);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    std::string bytes;
    if (data[0] % 2 == 0) {
        bytes.assign(reinterpret_cast<const char*>(data), size);
    } else {
        static const std::string base = wellFormed();
        bytes = base;
        for (size_t i = 1; i + 6 <= size; i += 6) {
            size_t at = (size_t(data[i]) << 8 | data[i + 1]) % (bytes.size() - 3);
            for (int k = 0; k < 4; ++k)
                bytes[at + k] = static_cast<char>(data[i + 2 + k]);
        }
    }
    int fd = memfd_create("mime.cache", 0);
    if (fd < 0)
        return 0;
    if (write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) {
        Vyx::detail::MimeDatabase db;
        if (db.addCache("/proc/self/fd/" + std::to_string(fd))) {
            for (const char* name : {"archive.tar.gz", "X.C", "x.c", "MAKEFILE", "img-1.dat", "a.é", "__NOGLOBS__"})
                db.matchName(name);
            db.matchName(std::string(reinterpret_cast<const char*>(data), size).c_str());
            db.matchMagic(data, size, nullptr);
            const unsigned char* nested = reinterpret_cast<const unsigned char*>("NESTED..");
            const char* afterOther = db.matchMagic(nested, 8, nullptr);
            // The rules are checked as far as a search reaches: what an
            // earlier search checked must not change a later answer.
            Vyx::detail::MimeDatabase fresh;
            if (fresh.addCache("/proc/self/fd/" + std::to_string(fd))) {
                const char* alone = fresh.matchMagic(nested, 8, nullptr);
                if ((alone == nullptr) != (afterOther == nullptr) || (alone && std::strcmp(alone, afterOther) != 0))
                    abort();
            }
            db.isSubclass("text/x-old", "text/plain");
            db.icon("text/x-old", true);
            db.icon("text/x-cpp", false);
        }
    }
    close(fd);
    return 0;
}
