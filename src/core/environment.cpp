#include "core/environment_p.h"

#include <cstdlib>

namespace Vyx::detail {

const char* envValue(const char* name)
{
    const char* value = std::getenv(name);
    return (value && *value) ? value : nullptr;
}

std::string envString(const char* name)
{
    const char* value = envValue(name);
    return value ? std::string(value) : std::string();
}

std::string homeFromEnvironment()
{
    if (const char* home = envValue("HOME"))
        return home;
    const char* user = envValue("LOGNAME");
    if (!user)
        user = envValue("USER");
    return user ? std::string("/home/") + user : std::string();
}

std::string userConfigHome()
{
    if (const char* config = envValue("XDG_CONFIG_HOME"))
        return config;
    const std::string home = homeFromEnvironment();
    return home.empty() ? home : home + "/.config";
}

}  // namespace Vyx::detail
