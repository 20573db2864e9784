// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// A program of a library user: built against an installed libvyxcore only.
#include <vyxcore.h>

#include <cstdio>

int main()
{
    Vyx::tagged_bool<FilesOnly_tag> filesOnly(true);
    std::string line = Vyx::concat("consumer ok ", GetVyxDir(HomeDir), " kind=", int(whatVyxSession()),
                                   " quoted=", Vyx::quoteArg("a b"), " flag=", bool(filesOnly));
    std::puts(line.c_str());
    return 0;
}
