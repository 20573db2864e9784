// vyxcore: shows what libvyxcore knows about this desktop. Each subcommand
// calls only the public interface of the library.

#include "commands.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tool {

const std::vector<Command>& commands()
{
    static const std::vector<Command> table = {
        {"dirs", "dirs [NAME|NUMBER] [--json]",
         "Every well-known directory with its number and path, or the path of one.", runDirs},
        {"session", "session [--json]",
         "The session kind, its configuration suffix, the desktop owning the X display, the display number.",
         runSession},
        {"which", "which PROGRAM [--json]", "The executable that PROGRAM names, found as the library finds programs.",
         runWhich},
        {"split", "split 'COMMAND LINE' [--json]",
         "The argument vector, redirection and pipe command of a command line, or its error.", runSplit},
        {"system", "system [--json]",
         "User, root, administrator group, memory, CPU, light platform, sound card, locale, edition.", runSystem},
    };
    return table;
}

const Command& command(const char* name)
{
    for (const Command& entry : commands()) {
        if (std::strcmp(entry.name, name) == 0)
            return entry;
    }
    std::abort();  // a subcommand asked for its own entry under a wrong name
}

}  // namespace tool

namespace {

void printHelp(FILE* to)
{
    std::fprintf(to, "usage: vyxcore [COMMAND] [--json] [--help]\n\n"
                     "Without a command, prints an overview of this desktop.\n\nCommands:\n");
    for (const tool::Command& command : tool::commands())
        std::fprintf(to, "  %-34s %s\n", command.synopsis, command.summary);
    std::fprintf(to, "\nExit status: 0 done, 1 nothing found or failed, 2 bad usage.\n");
}

}  // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0][0] == '-') {
        if (!args.empty() && (args[0] == "--help" || args[0] == "-h")) {
            printHelp(stdout);
            return tool::Done;
        }
        return tool::runOverview(args);
    }
    if (args[0] == "help") {
        printHelp(stdout);
        return tool::Done;
    }
    for (const tool::Command& command : tool::commands()) {
        if (args[0] == command.name)
            return command.run(std::vector<std::string>(args.begin() + 1, args.end()));
    }
    std::fprintf(stderr, "vyxcore: unknown command '%s'\n", args[0].c_str());
    printHelp(stderr);
    return tool::BadUsage;
}
