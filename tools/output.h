// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TOOL_OUTPUT_H
#define VYXCORE_TOOL_OUTPUT_H

// Shared plumbing of the vyxcore subcommands: option parsing, exit codes and
// the two output forms (aligned text for people, JSON for scripts).

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace tool {

enum ExitCode { Done = 0, NothingFound = 1, BadUsage = 2 };

// Options every subcommand understands.
struct CommonOptions {
    bool json = false;
    bool help = false;
    std::vector<std::string> positional;
    // Options of the command itself, in the order given: ("--set", "K=V").
    std::vector<std::pair<std::string, std::string>> values;
    std::vector<std::string> flags;  // ("--icon")

    std::vector<std::string> valuesOf(const char* option) const;
    bool hasFlag(const char* option) const;
};

struct Command {
    const char* name;
    const char* synopsis;  // "dirs [NAME|NUMBER] [--json]"
    const char* summary;  // one line
    const char* details;  // more lines for --help, or null
    size_t minArgs;  // bounds on the positional arguments
    size_t maxArgs;
    int (*run)(const CommonOptions& options);
    std::vector<const char*> valueOptions = {};  // options followed by a value
    std::vector<const char*> flagOptions = {};
    // Whether this run changes something (a file, the trash, a channel's
    // reader); null for commands that only show. Showing runs keep the
    // library from creating the user's missing XDG directories.
    bool (*changes)(const CommonOptions& options) = nullptr;
};

bool always(const CommonOptions& options);

// Parses the common options of command, answers --help and checks the
// number of arguments, then runs it. Usage errors are reported on standard
// error with status BadUsage.
int runCommand(const Command& command, const std::vector<std::string>& args);
int usageError(const char* command, const std::string& message);
// Says on standard error what was looked for and not found ("vyxcore
// COMMAND: MESSAGE"), and gives NothingFound.
int notFound(const char* command, const std::string& message);

// JSON strings are always valid JSON: a byte that is not part of well-formed
// UTF-8 is written as \u00XX, the Latin-1 character of the same number.
std::string jsonString(const std::string& text);
std::string jsonString(const char* text);  // null gives null
// The bytes of text as a JSON array of numbers (0 to 255).
std::string jsonBytes(const std::string& text);
bool isUtf8(const std::string& text);

// A flat JSON object written one member at a time. A string member whose
// value is not UTF-8 gets a twin, KEY_raw, with its exact bytes (jsonBytes),
// so that scripts can still name the file it stands for.
class JsonObject {
public:
    JsonObject& add(const std::string& key, const std::string& rawJson);
    JsonObject& addString(const std::string& key, const std::string& value);
    JsonObject& addString(const std::string& key, const char* value);
    JsonObject& addInt(const std::string& key, long long value);
    JsonObject& addBool(const std::string& key, bool value);
    std::string str() const;

private:
    std::vector<std::pair<std::string, std::string>> m_members;
};

std::string jsonArray(const std::vector<std::string>& rawItems);
// An array of JSON strings.
std::string jsonStringArray(const std::vector<std::string>& texts);

// Prints "label  value" rows with the labels padded to one width.
void printRows(const std::vector<std::pair<std::string, std::string>>& rows);

}  // namespace tool

#endif
