// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Editing one resource of an X resources file (~/.Xresources and the like)
// and merging the file into the server's resources.

#include "core/diag_p.h"
#include "vyxdisplay.h"
#include "vyxfileutils.h"

#include "core/atomicfile_p.h"
#include "core/readfile_p.h"
#include "core/spawn_p.h"
#include "core/textlines_p.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string directoryOf(const std::string& file)
{
    const std::string::size_type slash = file.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

bool editFile(const std::string& file, const std::string& name, const std::string& setting)
{
    FILE* in = Vyx::detail::fopenRegularFile(file.c_str());
    struct stat st;
    if (!in && lstat(file.c_str(), &st) == 0 && !S_ISLNK(st.st_mode)) {
        // Something that is not a file (a FIFO, a directory) holds the
        // name: replacing it would destroy what the user put there.
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "%s is not a regular file, not changed\n", file.c_str());
        return false;
    }
    if (!in) {
        // Nothing to keep. Kept on purpose: a file that cannot be created
        // is not reported, and the result is still true.
        Vyx::detail::writeFileAtomically(file, setting);
        return true;
    }
    // The new text is written beside the file; without room for it there
    // the file stays as it is.
    if (access(directoryOf(file).c_str(), W_OK) != 0) {
        std::fclose(in);
        return false;
    }

    std::string content;
    bool seen = false;
    Vyx::detail::forEachLine(in, [&](const std::string& line) {
        if (line.find(name) == std::string::npos) {
            content += line + '\n';
        } else {
            seen = true;
            content += setting;
        }
    });
    const bool failed = std::ferror(in);
    std::fclose(in);
    if (failed)  // half read: writing now would lose the rest
        return false;
    if (!seen)
        content += setting;
    if (!Vyx::detail::writeFileAtomically(file, content)) {
        // The writer picks the temporary file's exact name; its stem is named.
        const int error = errno;
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "rename(%s,%s) failed due to %s\n", (file + ".tmp").c_str(),
                          file.c_str(), std::strerror(error));
    }
    return true;
}

// xrdb itself hands the file name, unquoted, to a shell that runs the C
// preprocessor over the file; a name the shell would split or interpret is
// therefore never given to it.
bool safeForXrdb(const std::string& file)
{
    for (unsigned char c : file) {
        if (!std::isalnum(c) && c < 0x80 && !std::strchr("/._-+,:@%=", c))
            return false;
    }
    return true;
}

void mergeWithXrdb(const std::string& file)
{
    if (!safeForXrdb(file)) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "%s not merged by xrdb: its name would reach a shell\n",
                          file.c_str());
        return;
    }
    std::string xrdb = access("/usr/bin/xrdb", X_OK) == 0 ? "/usr/bin/xrdb" : FindFileInPATH("xrdb");
    if (xrdb.empty() || xrdb[0] != '/')  // never one from the current directory
        return;
    // No shell of ours: a leading '-' is all that could change the meaning.
    Vyx::detail::runProgram({xrdb, "-override", file[0] == '-' ? "./" + file : file}, 4096);
}

}  // namespace

bool setXrdbParameterInFile(const char* file, const char* name, const char* separator, const char* value,
                            Vyx::tagged_bool<ApllyByXrdb_tag> applyByXrdb)
{
    if (!file || !*file || !name || !*name)
        return false;
    std::string setting;
    if (value && *value)
        setting = Vyx::concat(name, separator, value, '\n');
    const bool edited = editFile(file, name, setting);
    if (applyByXrdb)
        mergeWithXrdb(file);
    return edited;
}
