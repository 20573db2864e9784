// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The trash-record reader on arbitrary record contents: the "Path=" and
// "DeletionDate=" lines, their decoding and the date parsing, as the
// library reads them from NAME.trashinfo files. The input is also written
// as an original path and read back.
#include "shell/trashrecord_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// A fresh stream over text for each reader, as each opens the file anew.
FILE* streamOf(std::string& text)
{
    return fmemopen(text.empty() ? nullptr : &text[0], text.size(), "r");
}

const std::string kTop = "/home/user/.local/share/Trash";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string content(reinterpret_cast<const char*>(data), size);
    FILE* file = streamOf(content);
    if (!file)
        return 0;
    std::string original = Vyx::detail::recordOriginalPath(file, kTop);
    std::fclose(file);

    // Whatever the first "Path=" line decodes to, the lookup by path finds.
    if (!original.empty() && (file = streamOf(content))) {
        if (!Vyx::detail::recordNamesPath(file, original, kTop))
            abort();
        std::fclose(file);
    }
    if ((file = streamOf(content))) {
        std::string date = Vyx::detail::firstRecordLine(file, "DeletionDate=");
        std::fclose(file);
        if (!date.empty() && date.compare(0, 13, "DeletionDate=") != 0)
            abort();
        time_t when;
        Vyx::detail::parseDeletionDate(date, &when);
        Vyx::detail::parseDeletionDate(content, &when);
    }

    // A record written for any absolute path without NUL bytes that names
    // something reads back the same.
    std::string path(content.c_str());
    if (path.empty() || path[0] != '/' || path.find_first_not_of('/') == std::string::npos)
        path = "/x" + path;
    std::string record = Vyx::detail::trashRecordText(path, 1700000000);
    if ((file = streamOf(record))) {
        std::string back = Vyx::detail::recordOriginalPath(file, kTop);
        std::fclose(file);
        if (back != path)
            abort();
    }
    Vyx::detail::splitTrashName(content);
    return 0;
}
