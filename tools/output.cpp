// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "output.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include <vyxdirs.h>

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

bool always(const CommonOptions&)
{
    return true;
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
    bool optionsEnded = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        std::string::size_type eq = arg.find('=');
        std::string name = arg.substr(0, eq);
        if (optionsEnded) {
            options.positional.push_back(arg);
        } else if (arg == "--") {
            // The usual convention, so that a file called "-x" can be named.
            optionsEnded = true;
        } else if (arg == "--json") {
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
        // From the table that parses them, so that this line (which the
        // manual page and the shell completion are checked against) is
        // always the truth.
        std::printf("options:");
        for (const char* option : command.valueOptions)
            std::printf(" %s VALUE", option);
        for (const char* option : command.flagOptions)
            std::printf(" %s", option);
        std::printf(" --json --help --\n");
        return Done;
    }
    size_t count = options.positional.size();
    if (count < command.minArgs || count > command.maxArgs)
        return usageError(command.name, "wrong number of arguments: " + std::string(command.synopsis));
    if (!command.changes || !command.changes(options))
        setXdgUserDirCreation(false);
    return command.run(options);
}

int usageError(const char* command, const std::string& message)
{
    std::string name = *command ? std::string(" ") + command : std::string();
    std::fprintf(stderr, "vyxcore%s: %s (see 'vyxcore%s --help')\n", name.c_str(), message.c_str(), name.c_str());
    return BadUsage;
}

namespace {

// The length of the well-formed UTF-8 sequence at text[at], or 0 when the
// byte there does not start one (stray continuation bytes, overlong forms,
// surrogates and code points past U+10FFFF are all refused). Stricter than
// Vyx::isValidUtf8, which accepts the overlong and five-byte forms that JSON
// readers reject, and stops at the first NUL.
size_t utf8SequenceAt(const std::string& text, size_t at)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80)
        return 1;
    size_t length;
    unsigned char low = 0x80, high = 0xBF;  // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (at + length > text.size() || byte(at + 1) < low || byte(at + 1) > high)
        return 0;
    for (size_t i = 2; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

void appendEscape(std::string& out, unsigned char c)
{
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
    out += escaped;
}

}  // namespace

bool isUtf8(const std::string& text)
{
    for (size_t at = 0; at < text.size();) {
        const size_t length = utf8SequenceAt(text, at);
        if (!length)
            return false;
        at += length;
    }
    return true;
}

int notFound(const char* command, const std::string& message)
{
    std::fprintf(stderr, "vyxcore %s: %s\n", command, message.c_str());
    return NothingFound;
}

std::string jsonString(const std::string& text)
{
    std::string out = "\"";
    for (size_t at = 0; at < text.size();) {
        const size_t length = utf8SequenceAt(text, at);
        const unsigned char c = static_cast<unsigned char>(text[at]);
        if (length > 1) {
            out.append(text, at, length);
            at += length;
            continue;
        }
        ++at;
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            // A byte outside UTF-8 is read as Latin-1, so the output stays
            // valid JSON; the member's "_raw" twin keeps the exact bytes.
            if (c < 0x20 || length == 0)
                appendEscape(out, c);
            else
                out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

std::string jsonBytes(const std::string& text)
{
    std::vector<std::string> numbers;
    numbers.reserve(text.size());
    for (unsigned char c : text)
        numbers.push_back(std::to_string(c));
    return jsonArray(numbers);
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
    add(key, jsonString(value));
    if (!isUtf8(value))
        add(key + "_raw", jsonBytes(value));
    return *this;
}

JsonObject& JsonObject::addString(const std::string& key, const char* value)
{
    return value ? addString(key, std::string(value)) : add(key, "null");
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
