// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore icon, icon-for, themes, theme: icon lookup and the installed icon
// themes.

#include "commands.h"

#include <vyxfileutils.h>
#include <vyxicontheme.h>
#include <vyxstrings.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace tool {

namespace {

std::string valueOr(const CommonOptions& options, const char* option, const std::string& fallback)
{
    std::vector<std::string> values = options.valuesOf(option);
    return values.empty() ? fallback : values.back();
}

std::string joined(const std::vector<std::string>& items)
{
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text.empty() ? "-" : text;
}

// The --size option (48 when absent): whole pixels from smallest to 4096.
bool sizeOption(const CommonOptions& options, long smallest, long* size)
{
    const std::string text = valueOr(options, "--size", "48");
    char* end = nullptr;
    *size = std::strtol(text.c_str(), &end, 10);
    return !text.empty() && !*end && *size >= smallest && *size <= 4096;
}

// Why nothing was found, on stderr: most often the theme is not there.
void reportNothingFound(const char* command, const VyxIconTheme& theme, const std::string& what)
{
    if (!theme.isLoaded())
        std::fprintf(stderr,
                     "vyxcore %s: icon theme %s is not installed; 'vyxcore themes' lists those that are, "
                     "--theme picks one\n",
                     command, theme.themeName().c_str());
    else
        std::fprintf(stderr, "vyxcore %s: no icon for %s in theme %s\n", command, what.c_str(),
                     theme.themeName().c_str());
}

// Whether thing names a MIME type ("text/plain") rather than a path or URL.
bool isMimeType(const std::string& thing)
{
    const size_t slash = thing.find('/');
    return slash != std::string::npos && slash > 0 && thing.find('/', slash + 1) == std::string::npos &&
           thing.find(':') == std::string::npos && thing[0] != '~' && thing[0] != '$' && !fileExists(thing, false);
}

}  // namespace

int runIcon(const CommonOptions& options)
{
    const std::string& name = options.positional[0];
    long size = 0;
    if (!sizeOption(options, 0, &size))
        return usageError("icon", "--size wants a number of pixels, not '" + valueOr(options, "--size", "") + "'");
    std::string context = valueOr(options, "--context", "");
    VyxIconTheme theme(valueOr(options, "--theme", ""), "", true);
    std::string file = theme.getIconPath(name.c_str(), int(size), context.empty() ? nullptr : context.c_str());
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("name", name)
                                .addInt("size", size)
                                .addString("context", context)
                                .addString("theme", theme.themeName())
                                .addString("file", file)
                                .str()
                                .c_str());
    } else if (!file.empty()) {
        std::printf("%s\n", file.c_str());
    } else {
        reportNothingFound("icon", theme, "'" + name + "' at size " + std::to_string(size));
    }
    return file.empty() ? NothingFound : Done;
}

int runIconFor(const CommonOptions& options)
{
    std::string thing = options.positional[0];
    long size = 0;
    if (!sizeOption(options, 1, &size))
        return usageError("icon-for", "--size wants a number of pixels, not '" + valueOr(options, "--size", "") + "'");
    VyxIconTheme theme(valueOr(options, "--theme", ""), "", true);
    std::string file, name, context;
    if (isMimeType(thing)) {
        file = theme.getMimeIconPath(thing.c_str(), int(size));
        if (!file.empty()) {
            name = Vyx::completeBaseName(file);
            VyxIconTheme::CheckFullPath(file.c_str(), &context);
        }
    } else {
        // A relative path is the file in the current directory.
        char cwd[4096];
        if (thing[0] != '/' && thing.find(':') == std::string::npos && fileExists(thing, false) &&
            getcwd(cwd, sizeof cwd))
            thing = std::string(cwd) + "/" + thing;
        file = theme.getURLIcon(thing.c_str(), int(size), &context, &name);
    }
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("thing", options.positional[0])
                                .addInt("size", size)
                                .addString("theme", theme.themeName())
                                .addString("file", file)
                                .addString("name", name)
                                .addString("context", context)
                                .str()
                                .c_str());
    } else if (!file.empty()) {
        printRows({{"file", file}, {"name", name.empty() ? "-" : name}, {"context", context.empty() ? "-" : context}});
    } else {
        reportNothingFound("icon-for", theme, "'" + options.positional[0] + "'");
    }
    return file.empty() ? NothingFound : Done;
}

int runThemes(const CommonOptions& options)
{
    std::vector<std::string> names = VyxIconTheme::getThemesNames();
    std::vector<std::string> dirs = VyxIconTheme::GetThemesSearchDirs();
    std::string current = VyxIconTheme::getCurrentThemeName();
    std::string tray = VyxIconTheme::getCurrentTrayThemeName("");
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .add("themes", jsonStringArray(names))
                                .add("search_dirs", jsonStringArray(dirs))
                                .addString("current", current)
                                .addString("current_tray", tray)
                                .str()
                                .c_str());
        return Done;
    }
    printRows(
        {{"current theme", current}, {"tray theme", tray.empty() ? "(none)" : tray}, {"search dirs", joined(dirs)}});
    // A theme installed under several search directories is listed once,
    // with the directory that lookups use.
    std::printf("installed themes:\n");
    std::vector<std::pair<std::string, std::string>> rows;
    for (size_t i = 0; i < names.size(); ++i) {
        if (std::find(names.begin(), names.begin() + i, names[i]) != names.begin() + i)
            continue;
        const auto copies = std::count(names.begin(), names.end(), names[i]);
        std::string where = VyxIconTheme::findThemePath(names[i]);
        if (copies > 1)
            where += " (first of " + std::to_string(copies) + " copies)";
        rows.emplace_back("  " + names[i], where);
    }
    printRows(rows);
    return Done;
}

int runTheme(const CommonOptions& options)
{
    VyxIconTheme theme(options.positional[0], "", false);
    bool complete = theme.load();
    if (!theme.isLoaded()) {
        std::fprintf(stderr, "vyxcore theme: cannot load icon theme '%s'\n", options.positional[0].c_str());
        return NothingFound;
    }
    std::vector<std::string> parents;
    for (const VyxIconTheme& parent : theme.parents())
        parents.push_back(parent.themeName() + " (" + parent.path() + ")");
    if (options.json) {
        std::vector<std::string> subdirs;
        for (const VyxIconThemeSubdir& subdir : theme.subdirs())
            subdirs.push_back(JsonObject()
                                  .addString("path", subdir.path())
                                  .addInt("size", subdir.size())
                                  .addInt("min_size", subdir.minSize())
                                  .addInt("max_size", subdir.maxSize())
                                  .addInt("threshold", subdir.threshold())
                                  .addString("type", subdir.type())
                                  .addString("context", subdir.context())
                                  .str());
        std::printf("%s\n", JsonObject()
                                .addString("theme", theme.themeName())
                                .addString("path", theme.path())
                                .addString("name", theme.name())
                                .addString("comment", theme.comment())
                                .addBool("hidden", theme.hidden())
                                .addString("example", theme.exampleIcon())
                                .add("inherits", jsonStringArray(theme.inheritedNames()))
                                .add("parents", jsonStringArray(parents))
                                .add("other_paths", jsonStringArray(theme.otherPaths()))
                                .addBool("cache_valid", theme.hasValidCache())
                                .addBool("index_complete", complete)
                                .add("directories", jsonArray(subdirs))
                                .str()
                                .c_str());
        return Done;
    }
    printRows({{"theme", theme.themeName()},
               {"path", theme.path()},
               {"name", theme.name()},
               {"comment", theme.comment()},
               {"hidden", theme.hidden() ? "yes" : "no"},
               {"example icon", theme.exampleIcon()},
               {"inherits", joined(theme.inheritedNames())},
               {"parents loaded", joined(parents)},
               {"other paths", joined(theme.otherPaths())},
               {"icon-theme.cache", theme.hasValidCache() ? "valid" : "not used"},
               {"index complete", complete ? "yes" : "no (a Name or a directory size is missing)"}});
    std::printf("directories:\n");
    for (const VyxIconThemeSubdir& subdir : theme.subdirs())
        std::printf("  %-28s size %-4d min %-4d max %-4d threshold %-2d %-9s %s\n", subdir.path().c_str(),
                    subdir.size(), subdir.minSize(), subdir.maxSize(), subdir.threshold(), subdir.type().c_str(),
                    subdir.context().c_str());
    return Done;
}

}  // namespace tool
