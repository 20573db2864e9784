// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore mime, mimetype: MIME types of files, and what the database knows
// of a type.

#include "commands.h"

#include <vyxmime.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace tool {

namespace {

std::string orNone(const char* text)
{
    return text ? std::string(text) : std::string("(none)");
}

// The type of a file's content alone.
std::string contentType(const std::string& file)
{
    int size = xdg_mime_get_max_buffer_extents();
    std::string data(size > 0 ? static_cast<size_t>(size) : 4096, '\0');
    int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::string();
    ssize_t got = read(fd, &data[0], data.size());
    close(fd);
    return xdg_mime_get_mime_type_for_data(data.data(), got > 0 ? static_cast<size_t>(got) : 0, nullptr);
}

}  // namespace

int runMime(const CommonOptions& options)
{
    std::vector<std::string> json;
    bool allFound = true;
    for (const std::string& file : options.positional) {
        struct stat st;
        bool exists = stat(file.c_str(), &st) == 0;
        allFound = allFound && exists;
        std::string type = exists ? xdg_mime_get_mime_type_for_file(file.c_str(), &st) : "";
        std::string byName = xdg_mime_get_mime_type_from_file_name(file.c_str());
        std::string byContent = exists && S_ISREG(st.st_mode) ? contentType(file) : "";
        if (!exists)
            std::fprintf(stderr, "vyxcore mime: cannot examine %s\n", file.c_str());
        if (options.json) {
            json.push_back(JsonObject()
                               .addString("file", file)
                               .addString("type", type)
                               .addString("by_name", byName)
                               .addString("by_content", byContent)
                               .str());
        } else if (exists) {
            std::printf("%s: %s  (by name %s, by content %s)\n", file.c_str(), type.c_str(), byName.c_str(),
                        byContent.empty() ? "-" : byContent.c_str());
        }
    }
    if (options.json)
        std::printf("%s\n", JsonObject().add("files", jsonArray(json)).str().c_str());
    return allFound ? Done : NothingFound;
}

int runMimetype(const CommonOptions& options)
{
    const char* type = options.positional[0].c_str();
    if (!xdg_mime_is_valid_mime_type(type))
        return usageError("mimetype", "'" + options.positional[0] + "' is not a MIME type");
    std::string canonical = xdg_mime_unalias_mime_type(type);
    std::vector<std::string> parents;
    if (char** list = xdg_mime_list_mime_parents(type)) {
        for (char** p = list; *p; ++p)
            parents.push_back(*p);
        std::free(list);
    }
    std::vector<std::string> aliases = GetMimeAliases(canonical.c_str());
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("type", options.positional[0])
                                .addString("canonical", canonical)
                                .add("aliases", jsonStringArray(aliases))
                                .add("parents", jsonStringArray(parents))
                                .addString("icon", xdg_mime_get_icon(type))
                                .addString("generic_icon", xdg_mime_get_generic_icon(type))
                                .str()
                                .c_str());
        return Done;
    }
    printRows({{"Type", canonical},
               {"Aliases", aliases.empty() ? "(none)" : Vyx::join(aliases, " ")},
               {"Parents", parents.empty() ? "(none)" : Vyx::join(parents, " ")},
               {"Icon", orNone(xdg_mime_get_icon(type))},
               {"Generic icon", orNone(xdg_mime_get_generic_icon(type))}});
    return Done;
}

}  // namespace tool
