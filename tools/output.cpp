// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "output.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace tool {

std::vector<std::string> CommonOptions::valuesOf(const char* option) const
{
    std::vector<std::string> found;
    for (const auto& value : values) {
        if (value.first == option)
            found.push_back(value.second);
    }
    return found;
}

bool CommonOptions::hasFlag(const char* option) const
{
    return std::find(flags.begin(), flags.end(), option) != flags.end();
}

namespace {

bool listed(const std::vector<const char*>& options, const std::string& arg)
{
    return std::find_if(options.begin(), options.end(), [&](const char* o) { return arg == o; }) != options.end();
}

}  // namespace

int runCommand(const Command& command, const std::vector<std::string>& args)
{
    CommonOptions options;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        std::string::size_type eq = arg.find('=');
        std::string name = arg.substr(0, eq);
        if (arg == "--json") {
            options.json = true;
        } else if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (listed(command.valueOptions, name)) {
            if (eq != std::string::npos)
                options.values.emplace_back(name, arg.substr(eq + 1));
            else if (i + 1 < args.size())
                options.values.emplace_back(name, args[++i]);
            else
                return usageError(command.name, arg + " needs a value");
        } else if (listed(command.flagOptions, arg)) {
            options.flags.push_back(arg);
        } else if (arg.size() > 1 && arg[0] == '-' && !std::isdigit(static_cast<unsigned char>(arg[1]))) {
            // "-5" is a negative number (a desktop position), not an option.
            return usageError(command.name, "unknown option " + arg);
        } else {
            options.positional.push_back(arg);
        }
    }
    if (options.help) {
        std::printf("usage: vyxcore %s\n%s\n", command.synopsis, command.summary);
        if (command.details)
            std::printf("%s\n", command.details);
        return Done;
    }
    size_t count = options.positional.size();
    if (count < command.minArgs || count > command.maxArgs)
        return usageError(command.name, "wrong number of arguments: " + std::string(command.synopsis));
    return command.run(options);
}

int usageError(const char* command, const std::string& message)
{
    std::string name = *command ? std::string(" ") + command : std::string();
    std::fprintf(stderr, "vyxcore%s: %s (see 'vyxcore%s --help')\n", name.c_str(), message.c_str(), name.c_str());
    return BadUsage;
}

std::string jsonString(const std::string& text)
{
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                out += escaped;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    return out + "\"";
}

std::string jsonString(const char* text)
{
    return text ? jsonString(std::string(text)) : std::string("null");
}

JsonObject& JsonObject::add(const std::string& key, const std::string& rawJson)
{
    m_members.emplace_back(key, rawJson);
    return *this;
}

JsonObject& JsonObject::addString(const std::string& key, const std::string& value)
{
    return add(key, jsonString(value));
}

JsonObject& JsonObject::addString(const std::string& key, const char* value)
{
    return add(key, jsonString(value));
}

JsonObject& JsonObject::addInt(const std::string& key, long long value)
{
    return add(key, std::to_string(value));
}

JsonObject& JsonObject::addBool(const std::string& key, bool value)
{
    return add(key, value ? "true" : "false");
}

std::string JsonObject::str() const
{
    std::string out = "{";
    for (size_t i = 0; i < m_members.size(); ++i) {
        if (i)
            out += ", ";
        out += jsonString(m_members[i].first) + ": " + m_members[i].second;
    }
    return out + "}";
}

std::string jsonArray(const std::vector<std::string>& rawItems)
{
    std::string out = "[";
    for (size_t i = 0; i < rawItems.size(); ++i) {
        if (i)
            out += ", ";
        out += rawItems[i];
    }
    return out + "]";
}

std::string jsonStringArray(const std::vector<std::string>& texts)
{
    std::vector<std::string> quoted;
    quoted.reserve(texts.size());
    for (const std::string& text : texts)
        quoted.push_back(jsonString(text));
    return jsonArray(quoted);
}

void printRows(const std::vector<std::pair<std::string, std::string>>& rows)
{
    size_t width = 0;
    for (const auto& row : rows)
        width = std::max(width, row.first.size());
    for (const auto& row : rows)
        std::printf("%-*s  %s\n", static_cast<int>(width), row.first.c_str(), row.second.c_str());
}

}  // namespace tool
