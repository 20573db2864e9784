// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// A program for launch tests: records how it was started in
// "$VYX_ARGV_RECORD.<pid>": its working directory, whether standard input
// is /dev/null ("null" or "other"), then each argument, every field ended by
// a NUL byte so that any argument comes back byte for byte.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    const char* base = std::getenv("VYX_ARGV_RECORD");
    if (!base)
        return 2;
    std::string record;
    char cwd[4096];
    record += getcwd(cwd, sizeof cwd) ? cwd : "?";
    record += '\0';
    struct stat in, null;
    bool isNull = fstat(STDIN_FILENO, &in) == 0 && stat("/dev/null", &null) == 0 && in.st_rdev == null.st_rdev &&
                  S_ISCHR(in.st_mode);
    record += isNull ? "null" : "other";
    record += '\0';
    for (int i = 0; i < argc; ++i) {
        record += argv[i];
        record += '\0';
    }
    std::string path = std::string(base) + "." + std::to_string(getpid());
    std::string temp = path + ".part";
    FILE* file = std::fopen(temp.c_str(), "wb");
    if (!file)
        return 3;
    bool ok = std::fwrite(record.data(), 1, record.size(), file) == record.size();
    ok = std::fclose(file) == 0 && ok;
    return ok && std::rename(temp.c_str(), path.c_str()) == 0 ? 0 : 4;
}
