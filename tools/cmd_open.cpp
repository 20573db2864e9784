// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore open, prefer, and default --set: the user's preferred applications
// and starting them, as a file manager does.

#include "commands.h"

#include <vyxdesktopentry.h>
#include <vyxmime.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

namespace {

std::string schemeOf(const std::string& target)
{
    std::string::size_type colon = target.find(':');
    if (colon == std::string::npos || colon == 0 || target[0] == '/')
        return std::string();
    for (size_t i = 0; i < colon; ++i) {
        char c = target[i];
        bool ok = std::isalpha(static_cast<unsigned char>(c)) ||
                  (i && (std::isdigit(static_cast<unsigned char>(c)) || c == '+' || c == '-' || c == '.'));
        if (!ok)
            return std::string();
    }
    return target.substr(0, colon);
}

struct Target {
    std::string given;
    std::string passed;  // what the application gets: an absolute path or the URL
    std::string type;
};

// The type of a file or URL; false with a message when it cannot be told.
bool examine(const std::string& given, Target& target)
{
    target.given = given;
    struct stat st;
    // An existing file wins over a look-alike scheme ("notes:1.txt").
    if (stat(given.c_str(), &st) == 0) {
        target.passed = given;
        if (given[0] != '/') {
            char* cwd = getcwd(nullptr, 0);
            if (cwd)
                target.passed = std::string(cwd) + '/' + given;
            std::free(cwd);
        }
        target.type = xdg_mime_get_mime_type_for_file(target.passed.c_str(), &st);
        return true;
    }
    std::string scheme = schemeOf(given);
    if (scheme.empty()) {
        std::fprintf(stderr, "vyxcore open: cannot examine %s\n", given.c_str());
        return false;
    }
    target.passed = given;
    for (char& c : scheme)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    target.type =
        scheme == "file" ? xdg_mime_get_mime_type_from_file_name(given.c_str()) : "x-scheme-handler/" + scheme;
    return true;
}

// The application chosen for a target: --with, else the preferred one.
std::string applicationFor(const CommonOptions& options, const Target& target)
{
    std::vector<std::string> with = options.valuesOf("--with");
    if (!with.empty()) {
        const std::string& id = with.back();
        std::string path = applicationFile(id);
        if (path.empty())
            std::fprintf(stderr, "vyxcore open: no installed application '%s'\n", id.c_str());
        return path;
    }
    std::vector<VyxMimeApp> apps = GetPreferredApplications(target.type.c_str());
    if (apps.empty())
        std::fprintf(stderr, "vyxcore open: no application opens %s (%s)\n", target.given.c_str(), target.type.c_str());
    return apps.empty() ? std::string() : apps.front().path;
}

}  // namespace

int runOpen(const CommonOptions& options)
{
    // Targets that go to the same application in a row are opened together,
    // so that a program taking several files starts once.
    std::vector<std::pair<std::string, std::vector<Target>>> launches;
    bool ok = true;
    for (const std::string& given : options.positional) {
        Target target;
        std::string app;
        if (!examine(given, target) || (app = applicationFor(options, target)).empty()) {
            ok = false;
            continue;
        }
        if (launches.empty() || launches.back().first != app)
            launches.emplace_back(app, std::vector<Target>());
        launches.back().second.push_back(target);
    }
    bool dryRun = options.hasFlag("--dry-run");
    std::vector<std::string> json;
    for (const auto& [app, targets] : launches) {
        VyxDesktopEntry entry(app);
        std::vector<std::string> passed;
        std::vector<std::string> types;
        for (const Target& target : targets) {
            passed.push_back(target.passed);
            types.push_back(target.type);
        }
        std::string error;
        if (dryRun) {
            std::vector<std::vector<std::string>> commands = ExecArgVectors(entry, passed, &error);
            if (!entry.isLoaded() || commands.empty()) {
                std::fprintf(stderr, "vyxcore open: %s: %s\n", app.c_str(),
                             entry.isLoaded() ? error.c_str() : "cannot be read");
                ok = false;
                continue;
            }
            std::vector<std::string> argvs;
            for (std::vector<std::string>& argv : commands) {
                if (entry.terminal())
                    argv.insert(argv.begin(), {"x-terminal-emulator", "-e"});
                if (options.json) {
                    argvs.push_back(jsonStringArray(argv));
                } else {
                    std::string line;
                    for (const std::string& arg : argv)
                        line += (line.empty() ? "" : " ") + jsonString(arg);
                    std::printf("%s\n", line.c_str());
                }
            }
            if (options.json)
                json.push_back(JsonObject()
                                   .addString("application", app)
                                   .add("types", jsonStringArray(types))
                                   .add("targets", jsonStringArray(passed))
                                   .add("argv", jsonArray(argvs))
                                   .str());
            continue;
        }
        std::vector<int> pids;
        if (LaunchDesktopEntry(entry, passed, &error, &pids) < 0) {
            std::fprintf(stderr, "vyxcore open: %s\n", error.c_str());
            ok = false;
        }
        for (int pid : pids) {
            if (options.json)
                json.push_back(JsonObject().addString("application", app).addInt("pid", pid).str());
            else
                std::printf("%s  (pid %d)\n", app.c_str(), pid);
        }
    }
    if (options.json)
        std::printf("%s\n", JsonObject().add(dryRun ? "commands" : "started", jsonArray(json)).str().c_str());
    return ok ? Done : NothingFound;
}

int runPrefer(const CommonOptions& options)
{
    const std::string& type = options.positional[0];
    if (!xdg_mime_is_valid_mime_type(type.c_str()))
        return usageError("prefer", "'" + type + "' is not a MIME type");
    std::vector<VyxMimeApp> apps = GetPreferredApplications(type.c_str());
    std::vector<std::string> json;
    for (const VyxMimeApp& app : apps) {
        std::string from = app.source.empty() ? "installed applications" : app.source + " [" + app.group + "]";
        if (app.type != type)
            from += " for " + app.type;
        if (options.json)
            json.push_back(JsonObject()
                               .addString("id", app.id)
                               .addString("path", app.path)
                               .addString("type", app.type)
                               .addString("source", app.source)
                               .addString("group", app.group)
                               .str());
        else
            std::printf("%s  %s  (from %s)\n", app.id.c_str(), app.path.c_str(), from.c_str());
    }
    if (options.json)
        std::printf("%s\n", JsonObject().addString("type", type).add("applications", jsonArray(json)).str().c_str());
    return apps.empty() ? NothingFound : Done;
}

int setDefault(const CommonOptions& options)
{
    const std::string& type = options.positional[0];
    const std::string id = options.valuesOf("--set").back();
    if (!SetDefaultApplication(type.c_str(), id.c_str()))
        return NothingFound;
    std::string list = GetWritableMimeappsList();
    if (options.json)
        std::printf(
            "%s\n",
            JsonObject().addString("type", type).addString("default", id).addString("list", list).str().c_str());
    else
        std::printf("%s is now the default for %s (in %s)\n", id.c_str(), type.c_str(), list.c_str());
    return Done;
}

}  // namespace tool
