// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_TEMP_HOME_H
#define VYXCORE_TESTS_TEMP_HOME_H

// An isolated world for one test case: a temporary directory tree that
// stands for the user's home and the XDG directories, with the environment
// pointed at it. Everything is restored and removed when it goes out of
// scope. Tests never see the real user's files.

#include <list>
#include <string>
#include <sys/types.h>

namespace vyxtest {

// Sets (or, with a null value, unsets) one environment variable and puts the
// old value back on destruction.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string m_name;
    bool m_hadValue = false;
    std::string m_oldValue;
};

class TempHome {
public:
    // Layout under root():
    //   home/                 HOME (created)
    //   home/.config          XDG_CONFIG_HOME (not created)
    //   home/.local/share     XDG_DATA_HOME (not created)
    //   home/.cache           XDG_CACHE_HOME (not created)
    //   etc/xdg               XDG_CONFIG_DIRS (created)
    //   usr/share             XDG_DATA_DIRS (created)
    //   run                   XDG_RUNTIME_DIR (created, 0700)
    //   tmp                   TMPDIR (created)
    // DISPLAY, DESKTOP_SESSION, XDG_CURRENT_DESKTOP and every VYX_* variable
    // are unset.
    TempHome();
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    const std::string& root() const { return m_root; }
    const std::string& home() const { return m_home; }
    // root() + "/" + relative
    std::string path(const std::string& relative) const;

    // Creates a directory under root() with its missing parents.
    std::string makeDir(const std::string& relative, mode_t mode = 0755) const;
    // Writes a file under root() (parents created) and returns its path.
    std::string writeFile(const std::string& relative, const std::string& content) const;

private:
    std::string m_root;
    std::string m_home;
    std::list<ScopedEnv> m_env;  // put back in reverse order of setting
};

// Reads a whole file; empty when it cannot be read.
std::string readFile(const std::string& path);
// Removes a tree without following symbolic links.
void removeTree(const std::string& path);

}  // namespace vyxtest

#endif
