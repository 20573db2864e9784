// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// A desktop entry from arbitrary bytes: parsed, modelled, written back and
// parsed again. The model must survive any input.
#include "core/ini_p.h"
#include "desktopentry/desktopentry_p.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        setenv("LANGUAGE", "de:ru:pt_BR", 1);
        return true;
    }();
    (void)prepared;
    Vyx::detail::IniDocument ini;
    if (!ini.loadData(reinterpret_cast<const char*>(data), size))
        return 0;
    Vyx::detail::IniReader reader;
    reader.loadData(reinterpret_cast<const char*>(data), size);
    VyxDesktopEntryPrivate entry;
    entry.loadFrom(reader);
    entry.unknownList();
    for (const VyxDesktopAction& action : entry.actions) {
        if (action.name().empty())
            abort();  // nameless actions are dropped
    }
    Vyx::detail::IniDocument again;
    std::string text = ini.toString();
    if (!again.loadData(text.data(), text.size()))
        abort();  // what the document writes it can read
    return 0;
}
