// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/temp_home.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

extern char** environ;

namespace vyxtest {

namespace {

// Names of variables that would let the real session leak into a test.
std::vector<std::string> leakingVariables()
{
    std::vector<std::string> names = {"DISPLAY",        "DESKTOP_SESSION",          "XDG_CURRENT_DESKTOP",
                                      "XDG_STATE_HOME", "GNOME_DESKTOP_SESSION_ID", "DM_CONTROL"};
    for (char** entry = environ; entry && *entry; ++entry) {
        if (std::strncmp(*entry, "VYX", 3) == 0) {
            const char* eq = std::strchr(*entry, '=');
            names.emplace_back(*entry, eq ? static_cast<size_t>(eq - *entry) : std::strlen(*entry));
        }
    }
    return names;
}

}  // namespace

ScopedEnv::ScopedEnv(const char* name, const char* value) : m_name(name)
{
    if (const char* old = std::getenv(name)) {
        m_hadValue = true;
        m_oldValue = old;
    }
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

ScopedEnv::~ScopedEnv()
{
    if (m_hadValue)
        setenv(m_name.c_str(), m_oldValue.c_str(), 1);
    else
        unsetenv(m_name.c_str());
}

TempHome::TempHome()
{
    const char* base = std::getenv("TMPDIR");
    std::string templ = std::string(base && *base ? base : "/tmp") + "/vyxcore-test-XXXXXX";
    if (!mkdtemp(&templ[0]))
        throw std::runtime_error(std::string("mkdtemp: ") + std::strerror(errno));
    // World-searchable, so that a test that drops privileges can reach it.
    chmod(templ.c_str(), 0755);
    m_root = templ;
    m_home = makeDir("home");
    makeDir("etc/xdg");
    makeDir("usr/share");
    makeDir("run", 0700);
    makeDir("tmp");

    for (const auto& [name, value] : {std::pair<std::string, std::string> {"HOME", m_home},
                                      {"XDG_CONFIG_HOME", m_home + "/.config"},
                                      {"XDG_DATA_HOME", m_home + "/.local/share"},
                                      {"XDG_CACHE_HOME", m_home + "/.cache"},
                                      {"XDG_CONFIG_DIRS", path("etc/xdg")},
                                      {"XDG_DATA_DIRS", path("usr/share")},
                                      {"XDG_RUNTIME_DIR", path("run")},
                                      {"TMPDIR", path("tmp")}})
        m_env.emplace_front(name.c_str(), value.c_str());
    for (const std::string& name : leakingVariables())
        m_env.emplace_front(name.c_str(), nullptr);
}

TempHome::~TempHome()
{
    m_env.clear();
    removeTree(m_root);
}

std::string TempHome::path(const std::string& relative) const
{
    return m_root + "/" + relative;
}

std::string TempHome::makeDir(const std::string& relative, mode_t mode) const
{
    std::string full = path(relative);
    std::filesystem::create_directories(full);
    chmod(full.c_str(), mode);
    return full;
}

std::string TempHome::writeFile(const std::string& relative, const std::string& content) const
{
    std::string full = path(relative);
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    std::ofstream out(full, std::ios::binary | std::ios::trunc);
    out << content;
    if (!out)
        throw std::runtime_error("cannot write " + full);
    return full;
}

std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    return content.str();
}

void removeTree(const std::string& path)
{
    std::error_code ignored;  // what cannot be removed is left, as rm -rf would
    std::filesystem::remove_all(path, ignored);
}

}  // namespace vyxtest
