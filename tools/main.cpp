// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore: shows what libvyxcore knows about this desktop. Each subcommand
// calls only the public interface of the library.

#include "commands.h"

#include <cstdio>

namespace tool {

const std::vector<Command>& commands()
{
    // clang-format off: one row a command, laid out as the help text reads
    static const std::vector<Command> table = {
        {"dirs", "dirs [NAME|NUMBER] [--json]",
         "Every well-known directory with its number and path, or the path of one.",
         "NAME is a directory's name as listed (any case) or its number.\n"
         "Exit status 1 when the directory asked for has no path here.",
         0, 1, runDirs},
        {"session", "session [--json]",
         "The session kind, its configuration suffix, the desktop owning the X display, the display number.",
         "The desktop and nesting are asked of the X server named by DISPLAY.", 0, 0, runSession},
        {"which", "which PROGRAM [--json]", "The executable that PROGRAM names, found as the library finds programs.",
         "Searches PATH (a built-in list when it is unset), then the current directory.\n"
         "Exit status 1 when the program is not found.",
         1, 1, runWhich},
        {"split", "split 'COMMAND LINE' [--json]",
         "The argument vector, redirection and pipe command of a command line, or its error.",
         "Variables are expanded, quotes honoured, \"> file\", \">> file\" and \"| command\"\n"
         "recognised and \"#\" comments cut. Exit status 1 when the line has an error.",
         1, 1, runSplit},
        {"system", "system [--json]",
         "User, root, administrator group, memory, CPU, light platform, sound card, locale, edition.",
         "The edition is read from /etc/vyx/edition (\"edition=SE\", \"mode=N\").", 0, 0, runSystem},
        {"entry",
         "entry FILE|ID [--set KEY=VALUE]... [--save-as PATH] [--json]",
         "Every field of a desktop entry, its translations, actions and other keys; --set edits and saves it.",
         "Translations are those of LANGUAGE, else LC_ALL or LANG. With --set the entry is saved\n"
         "to FILE (or to PATH with --save-as) and shown as saved. Exit status 1 when FILE\n"
         "cannot be read or saved.",
         1,
         1,
         runEntry,
         {"--set", "--save-as"},
         {},
         [](const CommonOptions& o) { return !o.values.empty(); }},
        {"exec",
         "exec FILE|ID [--file F]... [--url U]... [--icon] [--caption] [--json]",
         "The command line an entry's Exec gives for files or URLs (not run).",
         "One --file (--url) fills %f (%u); several fill %F (%U). --icon and --caption\n"
         "pass the entry's icon and name for %i and %c. Exit status 1 when nothing results.",
         1,
         1,
         runExec,
         {"--file", "--url"},
         {"--icon", "--caption"}},
        {"apps",
         "apps [--all] [--json]",
         "The applications a menu would show: name, id, path.",
         "--all adds the hidden and unusable ones with their reason codes (see 'vyxcore why').",
         0,
         0,
         runApps,
         {},
         {"--all"}},
        {"default",
         "default TYPE [--all] [--set ID] [--json]",
         "The installed application for a MIME type (all of them with --all), and where that came from.",
         "--set ID makes the installed application ID (\"org.example.Viewer.desktop\") the user's\n"
         "default for TYPE in the user's mimeapps.list, other lines of the file kept.\n"
         "The last line names the user's cache file of installed applications: read, or rebuilt and written,\n"
         "and why a file that was there was ignored.\n"
         "Exit status 1 when no application opens TYPE, or the default could not be set.",
         1,
         1,
         runDefault,
         {"--set"},
         {"--all"},
         [](const CommonOptions& o) { return !o.valuesOf("--set").empty(); }},
        {"prefer", "prefer TYPE [--json]",
         "The applications for a MIME type in the user's order of preference, and what put each there.",
         "The mimeapps.list files (Default Applications, then Added Associations, less Removed\n"
         "Associations) come first, then the installed applications; applications not usable\n"
         "here are left out. A type with none falls back on its aliases and parent types.\n"
         "Exit status 1 when no application opens TYPE.",
         1, 1, runPrefer},
        {"open",
         "open FILE|URL... [--with ID] [--dry-run] [--json]",
         "Opens files or URLs with the preferred application (or ID), started without a shell.",
         "The type of each file comes from its name and content, a URL's from its scheme.\n"
         "--dry-run prints the argument vectors instead of starting them (JSON with --json).\n"
         "Exit status 1 when a target has no application or could not be started.",
         1,
         100000,
         runOpen,
         {"--with"},
         {"--dry-run"},
         [](const CommonOptions& o) { return !o.hasFlag("--dry-run"); }},
        {"assigned",
         "assigned TYPE [--all] [--json]",
         "The application assigned to a MIME type in the mimeapps.list files, and which file says so.",
         "Exit status 1 when none is assigned.",
         1,
         1,
         runAssigned,
         {},
         {"--all"}},
        {"mimeapps", "mimeapps [--json]",
         "The mimeapps.list files in priority order, the writable ones, and the cache file of installed applications.",
         nullptr, 0, 0, runMimeapps},
        {"mime", "mime FILE... [--json]", "The MIME type of each file, and what its name and its content say.",
         "Exit status 1 when a file cannot be examined.", 1, 100000, runMime},
        {"mimetype", "mimetype TYPE [--json]", "A MIME type's canonical name, aliases, parents, icon and generic icon.",
         nullptr, 1, 1, runMimetype},
        {"icon",
         "icon NAME [--size N] [--context C] [--theme T] [--json]",
         "The file of an icon, searched as the library searches icon themes.",
         "N is in pixels (default 48); C a context such as Applications or MimeTypes;\n"
         "T a theme's directory name (default: the current theme). Exit status 1 when\n"
         "no file is found.",
         1,
         1,
         runIcon,
         {"--size", "--context", "--theme"}},
        {"icon-for",
         "icon-for THING [--size N] [--theme T] [--json]",
         "The icon of a file, directory, desktop file, URL, \"vyx-fm:\" location or MIME type.",
         "Prints the icon's file, its name and the context it was found in. THING is a path\n"
         "(absolute, relative, ~ or $VARIABLE), a URL such as http://example.org, vyx-fm:Home\n"
         "or a MIME type such as text/plain. Exit status 1 when no file is found.",
         1,
         1,
         runIconFor,
         {"--size", "--theme"}},
        {"cursor",
         "cursor [--set NAME] [--json]",
         "The current X cursor theme and the installed cursor themes.",
         "The current theme comes from ~/.Xresources, the system's Xresources, the display,\n"
         "XCURSOR_THEME, the \"default\" icon themes and the system alternative, in that order.\n"
         "--set NAME writes \"Xcursor.theme: NAME\" into ~/.Xresources, other lines kept.",
         0,
         0,
         runCursor,
         {"--set"},
         {},
         [](const CommonOptions& o) { return !o.values.empty(); }},
        {"themes", "themes [--json]", "The installed icon themes, the search directories, the current and tray themes.",
         "A theme installed in several search directories is shown once, with the copy that\n"
         "lookups use (--json lists every copy).",
         0, 0, runThemes},
        {"theme", "theme NAME [--json]",
         "The model of one icon theme: names, parents, other paths, cache validity and directories.",
         "Exit status 1 when the theme cannot be found or read.", 1, 1, runTheme},
        {"dpi", "dpi [--json]",
         "The screen's DPI by screen size, Xft and the RandR primary output, and the sizes it gives.",
         "Asks the X server named by DISPLAY and changes nothing there. When no RandR output\n"
         "is primary, the one the library would make primary is measured and named.\n"
         "Exit status 1 without a display.",
         0, 0, runDpi},
        {"why", "why FILE|ID [--json]", "Whether a desktop entry is shown and may run here, with the reason when not.",
         "Shown: Hidden, OnlyShowIn/NotShowIn (and the kiosk whitelist), NoDisplay.\n"
         "Usable: Type, URL, TryExec, Exec, administrator marks, origin file, edition modes.",
         1, 1, runWhy},
        {"wm",
         "wm 'COMMAND' [--json]",
         "Sends one command line to the window manager of DISPLAY through its FIFO.",
         "A newline is added to COMMAND. Prints the FIFO and whether the command was delivered;\n"
         "an administrator also reaches a window manager that runs as another user.\n"
         "Exit status 1 when it was not delivered (no FIFO, or no window manager reads it).",
         1,
         1,
         runWm,
         {},
         {},
         always},
        {"dm",
         "dm 'COMMAND' [--json]",
         "Sends a command to the display manager of DISPLAY and prints its reply.",
         "Words separated by spaces go out separated by tabs, as the display manager expects.\n"
         "Exit status 1 when its socket cannot be reached or written.",
         1,
         1,
         runDm,
         {},
         {},
         always},
        {"trash",
         "trash put|list|restore|empty|size [PATH...] [--json]",
         "Puts files into the trash, lists, restores or empties it, or tells its size.",
         "put PATH...      moves each PATH into the trash (never copies across file systems)\n"
         "list             each trashed object: trash name, deletion date, original path\n"
         "restore PATH...  moves objects back, named by trash name or original path\n"
         "empty            removes every trashed object and record\n"
         "size             the bytes in the trash, and whether cached directory sizes were used\n"
         "Exit status 1 when a PATH failed; an empty trash lists nothing, with status 0.",
         1,
         100000,
         runTrash,
         {},
         {},
         [](const CommonOptions& o) { return o.positional[0] != "list" && o.positional[0] != "size"; }},
        {"autostart",
         "autostart NAME [--enable|--disable] [--command CMD] [--delete] [--json]",
         "Whether the application NAME starts with the session; --enable or --disable changes it.",
         "NAME is a desktop entry name such as \"app.desktop\" (or without \".desktop\").\n"
         "--command sets Exec when a user copy is created; --delete removes the user's copy\n"
         "instead of writing Hidden=true. Shows the file that decides.\n"
         "Exit status 1 when the change could not be made.",
         1,
         1,
         runAutostart,
         {"--command"},
         {"--enable", "--disable", "--delete"},
         [](const CommonOptions& o) { return o.hasFlag("--enable") || o.hasFlag("--disable"); }},
        {"recent",
         "recent PATH [--icon NAME] [--programs] [--json]",
         "Records PATH in the recent-items menu and tells the window manager of DISPLAY.",
         "Only the ten newest items are kept. With --programs only desktop entries are recorded.\n"
         "Exit status 1 when the recents folder is missing or the item could not be written.",
         1,
         1,
         runRecent,
         {"--icon"},
         {"--programs"},
         always},
        {"position",
         "position NAME X Y [MONITOR] | position --remove NAME",
         "Saves (or removes) the position of a desktop icon in the desktop's .directory.",
         "The desktop's .directory must exist; it is never created here.\n"
         "Exit status 1 when it cannot be updated.",
         0,
         4,
         runPosition,
         {"--remove"},
         {},
         always},
        {"sound",
         "sound NAME [--theme T] [--json]",
         "The file of an event sound, searched as the library searches sound themes.",
         "T a sound theme's directory name (default: the current theme). The theme, its\n"
         "inherited themes, \"freedesktop\" and the unthemed sounds are searched for NAME and\n"
         "its shorter forms (\"dialog-error\", \"dialog\"). Exit status 1 when no file is found.",
         1,
         1,
         runSound,
         {"--theme"}},
        {"menu",
         "menu [--empty] [--json]",
         "The start menu as an indented tree of folders and applications.",
         "Folders come from the start-menu directories and the categorized folders; applications\n"
         "are placed by their Categories (\"Other\" when no folder claims them). --empty keeps\n"
         "folders without applications. An empty menu prints nothing.",
         0,
         0,
         runMenu,
         {},
         {"--empty"}},
        {"wallpaper", "wallpaper NAME [--json]",
         "The file of a wallpaper, searched as the library searches wallpapers.",
         "NAME is a file name with or without its image extension, or an absolute path.\n"
         "The user's wallpapers come first, then the desktop's, then the system's.\n"
         "Exit status 1 when no file is found.",
         1, 1, runWallpaper},
        {"keysym", "keysym KEYSYM [--json]", "The Unicode character a key symbol types.",
         "KEYSYM is a name such as aogonek or Cyrillic_a, or a number such as 0x1a1.\n"
         "Exit status 1 when the keysym types no character.",
         1, 1, runKeysym},
        {"input", "input [--json]", "The touchscreens, touchpads and tablets of the display.",
         "Asks the X server named by DISPLAY through XInput 2.\n"
         "Exit status 1 without a display; none of them is an empty list.",
         0, 0, runInput},
        {"version", "version [--json]", "The version of vyxcore.", "Also printed by 'vyxcore --version'.", 0, 0,
         runVersion},
    };
    // clang-format on
    return table;
}

}  // namespace tool

namespace {

void printHelp(FILE* to)
{
    std::fprintf(to, "usage: vyxcore [COMMAND] [OPTION...] [--] [ARGUMENT...]\n"
                     "       vyxcore --version | --help\n\n"
                     "Without a command, prints an overview of this desktop. '--' ends the options.\n\n"
                     "Commands:\n");
    for (const tool::Command& command : tool::commands())
        std::fprintf(to, "  %-34s %s\n", command.synopsis, command.summary);
    std::fprintf(to, "  %-34s %s\n", "help [COMMAND]", "This list, or the help of one command.");
    std::fprintf(to, "\nExit status: 0 done, 1 nothing found or failed, 2 bad usage.\n");
}

const tool::Command kOverview = {"", "[--json]", "An overview of this desktop.", nullptr, 0, 0, tool::runOverview};

}  // namespace

namespace tool {

int runVersion(const CommonOptions& options)
{
    if (options.json)
        std::printf("%s\n", JsonObject().addString("version", VYXCORE_VERSION).str().c_str());
    else
        std::printf("vyxcore %s\n", VYXCORE_VERSION);
    return Done;
}

}  // namespace tool

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    if (!args.empty() && args[0] == "--")
        args.erase(args.begin());  // nothing after it is an option of vyxcore itself
    else if (!args.empty() && args[0] == "--version")
        args[0] = "version";
    if (!args.empty() && (args[0] == "help" || args[0] == "--help" || args[0] == "-h")) {
        if (args.size() > 1 && args[0] == "help")  // "help dirs" is "dirs --help"
            args = {args[1], "--help"};
        else
            return printHelp(stdout), tool::Done;
    }
    if (args.empty() || args[0][0] == '-')
        return tool::runCommand(kOverview, args);
    for (const tool::Command& command : tool::commands()) {
        if (args[0] == command.name)
            return tool::runCommand(command, std::vector<std::string>(args.begin() + 1, args.end()));
    }
    std::fprintf(stderr, "vyxcore: unknown command '%s'\n", args[0].c_str());
    printHelp(stderr);
    return tool::BadUsage;
}
