// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_FUZZ_INI_DIFFERENCE_H
#define VYXCORE_FUZZ_INI_DIFFERENCE_H

// Reads the same bytes with the reader and with the writer's document and
// says where their answers differ: acceptance, the groups and their order,
// each group's keys with their spelling, order and values, and lookups by
// name with the case of every letter turned over. Empty when they agree.
// Shared by the differential fuzz target and the installed-files test.

#include "core/ini_p.h"
#include "core/inireader_p.h"

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

namespace Vyx::detail {

inline std::string flipCase(const char* text)
{
    std::string flipped(text);
    for (char& c : flipped) {
        if (c >= 'a' && c <= 'z')
            c = char(c - 'a' + 'A');
        else if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    }
    return flipped;
}

inline std::string iniDifference(const char* data, size_t size)
{
    IniDocument document;
    IniReader reader;
    const bool documentLoads = document.loadData(data, size);
    if (documentLoads != reader.loadData(data, size))
        return documentLoads ? "only the document loads" : "only the reader loads";
    const std::vector<const char*> groups = document.groups();
    if (groups.size() != reader.groupCount())
        return "group count " + std::to_string(groups.size()) + " != " + std::to_string(reader.groupCount());
    for (size_t g = 0; g < groups.size(); ++g) {
        const std::string where = "group " + std::to_string(g) + " [" + groups[g] + "]";
        if (std::strcmp(groups[g], reader.groupName(g)) != 0)
            return where + " is named [" + reader.groupName(g) + "] by the reader";
        if (reader.group(flipCase(groups[g]).c_str()) != int(g))
            return where + " not found by its name in other case";
        const auto expected = document.entries(groups[g]);
        std::vector<IniField> fields;
        reader.forEach(int(g), [&](const IniField& field) { fields.push_back(field); });
        if (expected.size() != fields.size())
            return where + ": key count " + std::to_string(expected.size()) + " != " + std::to_string(fields.size());
        for (size_t k = 0; k < fields.size(); ++k) {
            const auto& [key, value] = expected[k];
            const IniField& field = fields[k];
            if (std::string(key) != std::string(field.key, field.keyLength) ||
                std::strlen(field.key) != field.keyLength)
                return where + ": key " + std::to_string(k) + " '" + key + "' != '" + field.key + "'";
            if (std::string(value) != std::string(field.value, field.valueLength) ||
                std::strlen(field.value) != field.valueLength)
                return where + ": value of " + key + " '" + value + "' != '" + field.value + "'";
            const std::string other = flipCase(key);
            const char* found = reader.value(int(g), other.c_str());
            const char* expectedFound = document.value(groups[g], other.c_str());
            if (!found || !expectedFound || std::strcmp(found, expectedFound) != 0)
                return where + ": lookup of " + other + " differs";
        }
    }
    return std::string();
}

}  // namespace Vyx::detail

#endif
