// vyxcore which: where an executable is found.

#include "commands.h"

#include <vyxfileutils.h>

#include <cstdio>

namespace tool {

int runWhich(const std::vector<std::string>& args)
{
    CommonOptions options;
    if (!parseCommon("which", args, &options))
        return BadUsage;
    if (options.help) {
        printUsage(command("which"), stdout);
        std::printf("Searches PATH (a built-in list when it is unset), then the current directory.\n"
                    "Exit status 1 when the program is not found.\n");
        return Done;
    }
    if (options.positional.size() != 1)
        return usageError("which", "expects one PROGRAM");
    std::string path = FindFileInPATH(options.positional[0].c_str());
    if (options.json)
        std::printf("%s\n", JsonObject().addString("program", options.positional[0]).addString("path", path).str().c_str());
    else if (!path.empty())
        std::printf("%s\n", path.c_str());
    return path.empty() ? NothingFound : Done;
}

}  // namespace tool
