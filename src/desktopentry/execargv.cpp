// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// An entry's Exec turned into argument vectors, one per process to start.
// Nothing here is ever read by a shell: each file or URL becomes one whole
// argument, whatever bytes it holds.

#include "vyxdesktopentry.h"

#include "core/diag_p.h"
#include "desktopentry/entryvalue_p.h"

#include <cctype>
#include <cstring>
#include <unistd.h>

namespace {

// One piece of an argument: literal text, or a field code.
struct Piece {
    char code = 0;  // 0 for text
    std::string text;
};
using Token = std::vector<Piece>;

bool refuse(std::string* error, const std::string& reason)
{
    if (error)
        *error = reason;
    else
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "invalid Exec: %s\n", reason.c_str());
    return false;
}

bool isFieldCode(char c)
{
    return c && std::strchr("fFuUickdDnNvm", c);
}

// Splits the command line into arguments: blanks separate them, double
// quotes hold blanks, and inside quotes a backslash escapes only " ` $ \.
bool tokenize(const std::string& line, std::vector<Token>& tokens, std::string* error)
{
    Token current;
    bool inToken = false;
    auto text = [&](char c) {
        if (current.empty() || current.back().code)
            current.emplace_back();
        current.back().text += c;
        inToken = true;
    };
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (c == ' ' || c == '\t' || c == '\n') {
            if (inToken)
                tokens.push_back(std::move(current));
            current.clear();
            inToken = false;
        } else if (c == '"') {
            if (current.empty() || current.back().code)
                current.emplace_back();  // "" is an argument of its own, empty
            inToken = true;
            for (++i;; ++i) {
                if (i >= line.size())
                    return refuse(error, "unbalanced quotes");
                char q = line[i];
                if (q == '"')
                    break;
                if (q == '\\' && i + 1 < line.size() && std::strchr("\"`$\\", line[i + 1])) {
                    text(line[++i]);
                } else if (q == '%') {
                    if (i + 1 < line.size() && line[i + 1] == '%') {
                        text('%');
                        ++i;
                    } else {
                        return refuse(error, "a field code inside a quoted argument");
                    }
                } else {
                    text(q);
                }
            }
        } else if (c == '\\' && i + 1 < line.size()) {
            text(line[++i]);
        } else if (c == '%') {
            if (i + 1 >= line.size())
                return refuse(error, "a lone % at the end");
            char code = line[++i];
            if (code == '%') {
                text('%');
            } else if (isFieldCode(code)) {
                current.push_back({code, std::string()});
                inToken = true;
            } else {
                return refuse(error, std::string("unknown field code %") + code);
            }
        } else {
            text(c);
        }
    }
    if (inToken)
        tokens.push_back(std::move(current));
    return true;
}

bool isUrl(const std::string& target)
{
    std::string::size_type colon = target.find(':');
    if (colon == std::string::npos || colon == 0 || !std::isalpha(static_cast<unsigned char>(target[0])))
        return false;
    for (size_t i = 1; i < colon; ++i) {
        unsigned char c = static_cast<unsigned char>(target[i]);
        if (!std::isalnum(c) && c != '+' && c != '-' && c != '.')
            return false;
    }
    return true;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The local path of a "file:" URL; empty for another scheme or host, or
// for an escape that is not one (a "%00" included: no path holds NUL).
std::string localPath(const std::string& url)
{
    std::string rest;
    if (url.compare(0, 7, "file://") == 0) {
        rest = url.substr(7);
        if (rest.compare(0, 9, "localhost") == 0)
            rest.erase(0, 9);
    } else if (url.compare(0, 5, "file:") == 0) {
        rest = url.substr(5);
    }
    if (rest.empty() || rest[0] != '/')
        return std::string();
    std::string path;
    for (size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] == '#' || rest[i] == '?')
            break;
        if (rest[i] != '%') {
            path += rest[i];
            continue;
        }
        int high = i + 2 < rest.size() ? hexDigit(rest[i + 1]) : -1;
        int low = high >= 0 ? hexDigit(rest[i + 2]) : -1;
        if (low < 0 || (high == 0 && low == 0))
            return std::string();
        path += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return path;
}

// A target as a program taking files sees it: empty when it cannot.
std::string asFile(const std::string& target)
{
    return isUrl(target) ? localPath(target) : target;
}

std::string asUrl(const std::string& target)
{
    return isUrl(target) ? target : "file://" + Vyx::encodedUrl(target);
}

// The argument vectors for a command line whose value escapes are already
// undone, as an entry holds its Exec once loaded: undoing them a second time
// would make two backslashes in a file name one, and the program would be
// handed another file.
std::vector<std::vector<std::string>> argVectorsOf(const std::string& commandLine,
                                                   const std::vector<std::string>& targets, const char* icon,
                                                   const char* caption, const char* location, std::string* error)
{
    std::vector<std::vector<std::string>> result;
    if (error)
        error->clear();
    std::vector<Token> tokens;
    if (!tokenize(commandLine, tokens, error))
        return result;
    if (tokens.empty() || tokens[0].size() != 1 || tokens[0][0].code || tokens[0][0].text.empty()) {
        refuse(error, "no program, or a program named by a field code");
        return result;
    }
    if (tokens[0][0].text.find('=') != std::string::npos) {
        refuse(error, "the program's name holds '='");
        return result;
    }
    char fileCode = 0;
    for (const Token& token : tokens) {
        for (const Piece& piece : token) {
            if (!piece.code)
                continue;
            if (std::strchr("FUi", piece.code) && token.size() != 1) {
                refuse(error, std::string("%") + piece.code + " inside an argument");
                return result;
            }
            if (std::strchr("fFuU", piece.code)) {
                if (fileCode) {
                    refuse(error, "more than one of %f %F %u %U");
                    return result;
                }
                fileCode = piece.code;
            }
        }
    }
    // A program that names no field code still gets the files, one process
    // each, as if it ended in %f.
    if (!fileCode && !targets.empty()) {
        tokens.push_back({{'f', std::string()}});
        fileCode = 'f';
    }

    // Relative paths are made absolute here: the program may start in
    // another directory (the entry's Path).
    std::vector<std::string> items;
    char cwd[4096];
    bool takesUrls = fileCode == 'u' || fileCode == 'U';
    for (const std::string& target : targets) {
        std::string absolute = target;
        if (!isUrl(target) && !target.empty() && target[0] != '/' && getcwd(cwd, sizeof cwd))
            absolute = std::string(cwd) + '/' + target;
        std::string item = takesUrls ? asUrl(absolute) : asFile(absolute);
        if (item.empty() || absolute.empty()) {
            refuse(error, "the program opens only local files, not " + target);
            return result;
        }
        items.push_back(std::move(item));
    }

    bool perItem = fileCode == 'f' || fileCode == 'u';
    size_t runs = perItem && items.size() > 1 ? items.size() : 1;
    for (size_t run = 0; run < runs; ++run) {
        std::vector<std::string> argv;
        for (const Token& token : tokens) {
            if (token.size() == 1 && (token[0].code == 'F' || token[0].code == 'U')) {
                argv.insert(argv.end(), items.begin(), items.end());
                continue;
            }
            if (token.size() == 1 && token[0].code == 'i') {
                if (icon && *icon) {
                    argv.emplace_back("--icon");
                    argv.emplace_back(icon);
                }
                continue;
            }
            std::string arg;
            bool onlyCodes = true;
            for (const Piece& piece : token) {
                switch (piece.code) {
                case 0:
                    arg += piece.text;
                    onlyCodes = false;
                    break;
                case 'f':
                case 'u':
                    if (!items.empty())
                        arg += items[run];
                    break;
                case 'c':
                    arg += caption ? caption : "";
                    break;
                case 'k':
                    arg += location ? location : "";
                    break;
                default:
                    break;  // deprecated codes expand to nothing
                }
            }
            // A code that had nothing to give leaves no empty argument, but
            // an explicit "" stays one.
            if (!arg.empty() || !onlyCodes)
                argv.push_back(std::move(arg));
        }
        result.push_back(std::move(argv));
    }
    return result;
}

}  // namespace

std::vector<std::vector<std::string>> ExecToArgVectors(const char* exec, const std::vector<std::string>& targets,
                                                       const char* icon, const char* caption, const char* location,
                                                       std::string* error)
{
    if (!exec) {
        if (error)
            error->clear();
        return {};
    }
    return argVectorsOf(Vyx::detail::decodeEntryValue(exec), targets, icon, caption, location, error);
}

std::vector<std::vector<std::string>> ExecArgVectors(const VyxDesktopEntry& entry,
                                                     const std::vector<std::string>& targets, std::string* error)
{
    return argVectorsOf(entry.exec(), targets, entry.localIconOrFallback().c_str(), entry.localNameOrFallback().c_str(),
                        entry.filePath().c_str(), error);
}
