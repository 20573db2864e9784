// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore entry: one desktop entry as the library reads it; --set edits it.

#include "commands.h"

#include <vyxdesktopentry.h>

#include <cstdio>
#include <functional>
#include <map>

namespace tool {

namespace {

using Setter = std::function<void(VyxDesktopEntry&, const std::string&)>;

bool boolValue(const std::string& value)
{
    return value.find("rue") != std::string::npos;  // the library's own rule
}

// The keys --set knows by name; any other key is kept as an unknown key.
const std::map<std::string, Setter>& setters()
{
    static const std::map<std::string, Setter> table = {
        {"Name", [](VyxDesktopEntry& e, const std::string& v) { e.setName(v); }},
        {"GenericName", [](VyxDesktopEntry& e, const std::string& v) { e.setGenericName(v); }},
        {"Type", [](VyxDesktopEntry& e, const std::string& v) { e.setType(v); }},
        {"TryExec", [](VyxDesktopEntry& e, const std::string& v) { e.setTryExec(v); }},
        {"Comment", [](VyxDesktopEntry& e, const std::string& v) { e.setComment(v); }},
        {"Exec", [](VyxDesktopEntry& e, const std::string& v) { e.setExec(v); }},
        {"Icon", [](VyxDesktopEntry& e, const std::string& v) { e.setIcon(v); }},
        {"Path", [](VyxDesktopEntry& e, const std::string& v) { e.setPath(v); }},
        {"StartupWMClass", [](VyxDesktopEntry& e, const std::string& v) { e.setStartupWMClass(v); }},
        {"URL", [](VyxDesktopEntry& e, const std::string& v) { e.setUrl(v); }},
        {"Version", [](VyxDesktopEntry& e, const std::string& v) { e.setVersion(v); }},
        {"NoDisplay", [](VyxDesktopEntry& e, const std::string& v) { e.setNoDisplay(boolValue(v)); }},
        {"Hidden", [](VyxDesktopEntry& e, const std::string& v) { e.setHidden(boolValue(v)); }},
        {"Terminal", [](VyxDesktopEntry& e, const std::string& v) { e.setTerminal(boolValue(v)); }},
        {"StartupNotify", [](VyxDesktopEntry& e, const std::string& v) { e.setStartupNotify(boolValue(v)); }},
        {"PrefersNonDefaultGPU",
         [](VyxDesktopEntry& e, const std::string& v) { e.setPrefersNonDefaultGPU(boolValue(v)); }},
        {"SingleMainWindow", [](VyxDesktopEntry& e, const std::string& v) { e.setSingleMainWindow(boolValue(v)); }},
        {"MimeType", [](VyxDesktopEntry& e, const std::string& v) { e.setMimeType(Vyx::split(v.c_str(), ",;")); }},
        {"SortOrder", [](VyxDesktopEntry& e, const std::string& v) { e.setSortOrder(Vyx::split(v.c_str(), ",;")); }},
        {"Categories", [](VyxDesktopEntry& e, const std::string& v) { e.setCategories(Vyx::split(v.c_str(), ",;")); }},
        {"OnlyShowIn", [](VyxDesktopEntry& e, const std::string& v) { e.setOnlyShowIn(Vyx::split(v.c_str(), ",;")); }},
        {"NotShowIn", [](VyxDesktopEntry& e, const std::string& v) { e.setNotShowIn(Vyx::split(v.c_str(), ",;")); }},
        {"Keywords", [](VyxDesktopEntry& e, const std::string& v) { e.setKeywords(Vyx::split(v.c_str(), ",;")); }},
    };
    return table;
}

void setUnknown(VyxDesktopEntry& entry, const std::string& key, const std::string& value)
{
    auto unknowns = entry.unknowns();
    for (auto& unknown : unknowns) {
        if (unknown.first == key) {
            unknown.second = value;
            entry.setUnknowns(unknowns);
            return;
        }
    }
    unknowns.emplace_back(key, value);
    entry.setUnknowns(unknowns);
}

std::string optionalBoolJson(bool present, bool value)
{
    return present ? (value ? "true" : "false") : "null";
}

void printJson(const VyxDesktopEntry& e)
{
    std::vector<std::string> actions, unknowns;
    for (const VyxDesktopAction& a : e.actions()) {
        actions.push_back(JsonObject()
                              .addString("id", a.id())
                              .addString("name", a.name())
                              .addString("local_name", a.localName())
                              .addString("comment", a.comment())
                              .addString("icon", a.icon())
                              .addString("exec", a.exec())
                              .add("only_show_in", jsonStringArray(a.onlyShowIn()))
                              .add("not_show_in", jsonStringArray(a.notShowIn()))
                              .str());
    }
    for (const auto& unknown : e.unknowns())
        unknowns.push_back(JsonObject().addString("key", unknown.first).addString("value", unknown.second).str());
    JsonObject out;
    out.addString("file", e.filePath())
        .add("languages", jsonStringArray(GetLangPref()))
        .addString("type", e.type())
        .addString("name", e.name())
        .addString("local_name", e.localName())
        .addString("generic_name", e.genericName())
        .addString("local_generic_name", e.localGenericName())
        .addString("comment", e.comment())
        .addString("local_comment", e.localComment())
        .addString("icon", e.icon())
        .addString("local_icon", e.localIcon())
        .addString("exec", e.exec())
        .addString("try_exec", e.tryExec())
        .addString("path", e.path())
        .addString("startup_wm_class", e.startupWMClass())
        .addString("url", e.url())
        .addString("version", e.version())
        .add("mime_type", jsonStringArray(e.mimeType()))
        .add("categories", jsonStringArray(e.categories()))
        .add("keywords", jsonStringArray(e.keywords()))
        .add("local_keywords", jsonStringArray(e.localKeywords()))
        .add("sort_order", jsonStringArray(e.sortOrder()))
        .add("only_show_in", jsonStringArray(e.onlyShowIn()))
        .add("not_show_in", jsonStringArray(e.notShowIn()))
        .add("no_display", optionalBoolJson(e.hasNoDisplay(), e.noDisplay()))
        .add("hidden", optionalBoolJson(e.hasHidden(), e.hidden()))
        .add("terminal", optionalBoolJson(e.hasTerminal(), e.terminal()))
        .add("startup_notify", optionalBoolJson(e.hasStartupNotify(), e.startupNotify()))
        .add("prefers_non_default_gpu", optionalBoolJson(e.hasPrefersNonDefaultGPU(), e.prefersNonDefaultGPU()))
        .add("single_main_window", optionalBoolJson(e.hasSingleMainWindow(), e.singleMainWindow()))
        .add("actions", jsonArray(actions))
        .add("unknowns", jsonArray(unknowns));
    std::printf("%s\n", out.str().c_str());
}

void printText(const VyxDesktopEntry& e)
{
    std::vector<std::pair<std::string, std::string>> rows;
    auto text = [&](const char* label, const std::string& value) {
        if (!value.empty())
            rows.emplace_back(label, value);
    };
    auto list = [&](const char* label, const std::vector<std::string>& value) {
        if (!value.empty())
            rows.emplace_back(label, Vyx::join(value, "; "));
    };
    auto flag = [&](const char* label, bool present, bool value) {
        if (present)
            rows.emplace_back(label, value ? "true" : "false");
    };
    std::string languages = Vyx::join(GetLangPref(), ":");
    rows.emplace_back("File", e.filePath());
    rows.emplace_back("Languages", languages.empty() ? "(none)" : languages);
    text("Type", e.type());
    text("Name", e.name());
    text("Name (translated)", e.localName());
    text("GenericName", e.genericName());
    text("GenericName (translated)", e.localGenericName());
    text("Comment", e.comment());
    text("Comment (translated)", e.localComment());
    text("Icon", e.icon());
    text("Icon (translated)", e.localIcon());
    text("Exec", e.exec());
    text("TryExec", e.tryExec());
    text("Path", e.path());
    text("StartupWMClass", e.startupWMClass());
    text("URL", e.url());
    text("Version", e.version());
    list("MimeType", e.mimeType());
    list("Categories", e.categories());
    list("Keywords", e.keywords());
    list("Keywords (translated)", e.localKeywords());
    list("SortOrder", e.sortOrder());
    list("OnlyShowIn", e.onlyShowIn());
    list("NotShowIn", e.notShowIn());
    flag("NoDisplay", e.hasNoDisplay(), e.noDisplay());
    flag("Hidden", e.hasHidden(), e.hidden());
    flag("Terminal", e.hasTerminal(), e.terminal());
    flag("StartupNotify", e.hasStartupNotify(), e.startupNotify());
    flag("PrefersNonDefaultGPU", e.hasPrefersNonDefaultGPU(), e.prefersNonDefaultGPU());
    flag("SingleMainWindow", e.hasSingleMainWindow(), e.singleMainWindow());
    for (const VyxDesktopAction& a : e.actions())
        rows.emplace_back("Action " + a.id(), a.localNameOrFallback() + "  [" + a.exec() + "]");
    for (const auto& unknown : e.unknowns())
        rows.emplace_back("Other " + unknown.first, unknown.second);
    printRows(rows);
}

}  // namespace

int runEntry(const CommonOptions& options)
{
    const std::string path = applicationFile(options.positional[0]);
    VyxDesktopEntry entry(path);
    if (path.empty() || !entry.isLoaded())
        return noApplication("entry", options.positional[0]);
    std::vector<std::string> edits = options.valuesOf("--set");
    std::vector<std::string> saveAs = options.valuesOf("--save-as");
    if (!saveAs.empty() && edits.empty())
        return usageError("entry", "--save-as needs at least one --set");
    if (!edits.empty()) {
        for (const std::string& edit : edits) {
            std::string::size_type eq = edit.find('=');
            if (eq == std::string::npos || eq == 0)
                return usageError("entry", "--set takes KEY=VALUE, not '" + edit + "'");
            std::string key = edit.substr(0, eq), value = edit.substr(eq + 1);
            auto setter = setters().find(key);
            if (setter != setters().end())
                setter->second(entry, value);
            else
                setUnknown(entry, key, value);
        }
        Vyx::tagged_bool<SaveEmptyFields_tag> skipEmpty(false);
        bool saved = saveAs.empty() ? entry.save(skipEmpty) : entry.saveAs(saveAs.back(), skipEmpty);
        if (!saved)
            return NothingFound;
        if (!saveAs.empty())
            entry = VyxDesktopEntry(saveAs.back());
    }
    if (options.json)
        printJson(entry);
    else
        printText(entry);
    return Done;
}

int runExec(const CommonOptions& options)
{
    const std::string path = applicationFile(options.positional[0]);
    VyxDesktopEntry entry(path);
    if (path.empty() || !entry.isLoaded())
        return noApplication("exec", options.positional[0]);
    std::vector<std::string> files = options.valuesOf("--file"), urls = options.valuesOf("--url");
    ExecFormatString format;
    format.format = entry.exec().c_str();
    format.separator = ' ';
    format.location = entry.filePath().c_str();
    // One value is a single file (or URL); several make a list.
    if (files.size() == 1)
        format.file = files[0].c_str();
    else
        for (const std::string& file : files)
            format.files.push_back(file.c_str());
    if (urls.size() == 1)
        format.url = urls[0].c_str();
    else
        for (const std::string& url : urls)
            format.urls.push_back(url.c_str());
    if (options.hasFlag("--icon"))
        format.icon = entry.localIconOrFallback().c_str();
    if (options.hasFlag("--caption"))
        format.caption = entry.localNameOrFallback().c_str();
    std::string command = format.toString();
    if (options.json)
        std::printf("%s\n", JsonObject()
                                .addString("file", entry.filePath())
                                .addString("exec", entry.exec())
                                .addString("command", command)
                                .str()
                                .c_str());
    else if (!command.empty())
        std::printf("%s\n", command.c_str());
    return command.empty() ? notFound("exec", "no command line from the Exec of " + entry.filePath()) : Done;
}

}  // namespace tool
