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

struct Command {
    const char* name;
    const char* synopsis;  // "dirs [NAME] [--json]"
    const char* summary;   // one line
    int (*run)(const std::vector<std::string>& args);
};

// Options every query subcommand understands.
struct CommonOptions {
    bool json = false;
    bool help = false;
    std::vector<std::string> positional;
};

// Parses --json and --help; any other option is a usage error, reported on
// standard error, and the result is false.
bool parseCommon(const char* command, const std::vector<std::string>& args, CommonOptions* out);
// Prints "usage: vyxcore SYNOPSIS" and the summary.
void printUsage(const Command& command, FILE* to);
int usageError(const char* command, const std::string& message);

std::string jsonString(const std::string& text);
std::string jsonString(const char* text);  // null gives null

// A flat JSON object written one member at a time.
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

// Prints "label  value" rows with the labels padded to one width.
void printRows(const std::vector<std::pair<std::string, std::string>>& rows);

}  // namespace tool

#endif
