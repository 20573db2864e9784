// ExecToArgVectors with arbitrary Exec values and targets.
#include <vyxdesktopentry.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Fields separated by NUL bytes: the Exec value, icon, caption,
    // location, then the targets.
    std::vector<std::string> parts(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == '\0')
            parts.emplace_back();
        else
            parts.back() += static_cast<char>(data[i]);
    }
    parts.resize(std::max<size_t>(parts.size(), 4));
    std::vector<std::string> targets(parts.begin() + 4, parts.end());
    std::string error;
    std::vector<std::vector<std::string>> commands =
        ExecToArgVectors(parts[0].c_str(), targets, parts[1].c_str(), parts[2].c_str(), parts[3].c_str(), &error);
    // Either a refusal with its reason or at least one program to run, and
    // every target whole in some argument.
    if (commands.empty() == error.empty())
        std::abort();
    for (const std::vector<std::string>& argv : commands) {
        if (argv.empty() || argv[0].empty())
            std::abort();
    }
    return 0;
}
