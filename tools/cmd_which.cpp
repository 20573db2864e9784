// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore which: where an executable is found.

#include "commands.h"

#include <vyxfileutils.h>

#include <cstdio>

namespace tool {

int runWhich(const CommonOptions& options)
{
    std::string path = FindFileInPATH(options.positional[0].c_str());
    if (options.json)
        std::printf("%s\n",
                    JsonObject().addString("program", options.positional[0]).addString("path", path).str().c_str());
    else if (!path.empty())
        std::printf("%s\n", path.c_str());
    return path.empty() ? notFound("which", "no program '" + options.positional[0] + "' in PATH") : Done;
}

}  // namespace tool
