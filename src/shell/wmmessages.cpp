// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The window manager's message catalogue: numbered, translated texts read
// once per process from a ".msg" file of its data directory.

#include "shell/wmmessages_p.h"

#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsession.h"
#include "vyxstrings.h"
#include "vyxsystem.h"

#include <cstdio>
#include <deque>
#include <mutex>
#include <vector>

namespace {

// Message numbers are line numbers of a hand-written file; an index far
// beyond any catalogue is a caller's mistake and must not make the table
// grow by gigabytes.
constexpr int kLargestIndex = (1 << 20) - 1;

const char kEmptyText[] = "";

// One mutex guards the table, the locale and the load flag together.
// Entries are handed out as plain pointers that stay valid for the life of
// the process, so texts are only ever added: an empty entry that receives a
// fallback points elsewhere, the old empty text is shared and stays.
struct Catalogue {
    std::mutex mutex;
    bool loadAttempted = false;
    std::vector<const char*> entries;
    std::deque<std::string> texts;  // owns every non-empty entry; a deque never moves them
    std::string locale;

    const char* keep(const std::string& text)
    {
        if (text.empty())
            return kEmptyText;
        texts.push_back(text);
        return texts.back().c_str();
    }
};

// Never destroyed, so that pointers stay valid even while other static
// objects are torn down at exit.
Catalogue& catalogue()
{
    static Catalogue* instance = new Catalogue;
    return *instance;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

void load(Catalogue& catalogue)
{
    catalogue.loadAttempted = true;
    const char* locale = GetSystemLocale();
    if (!locale || !*locale)
        return;
    const std::string dir = GetVyxDir(WmDataDir);
    std::string file = dir + "/" + locale + ".msg";
    if (fileExists(file, false)) {
        catalogue.locale = Vyx::baseName(file);
    } else {
        // No catalogue for the exact locale: any territory of a preferred
        // language will do ("de_AT" for a German user).
        for (const std::string& language : GetLangPref()) {
            std::vector<std::string> files;
            const std::string pattern = language + "_*.msg";
            if (GetFileList(&files, dir.c_str(), 0, pattern.c_str(), Vyx::tagged_bool<FilesOnly_tag>(true))) {
                file = files.front();
                catalogue.locale = Vyx::baseName(file);
                break;
            }
        }
    }
    FILE* in = Vyx::detail::fopenRegularFile(file.c_str());
    if (!in)
        return;
    Vyx::detail::forEachLine(in, [&](const std::string& line) {
        catalogue.entries.push_back(catalogue.keep(Vyx::detail::catalogueText(line)));
    });
    std::fclose(in);
}

}  // namespace

namespace Vyx::detail {

std::string catalogueText(const std::string& line)
{
    std::string::size_type begin = 0, end = line.size();
    while (begin < end && isBlank(line[begin]))
        ++begin;
    while (end > begin && (isBlank(line[end - 1]) || line[end - 1] == '\n'))
        --end;
    if (begin == end)
        return std::string();
    if (line[begin] == '"' && line[end - 1] == '"') {
        // A lone quote is its own opening and closing quote: nothing is left.
        ++begin;
        if (end > begin)
            --end;
    }
    std::string text;
    text.reserve(end - begin);
    for (std::string::size_type i = begin; i < end; ++i) {
        if (line[i] == '\\' && i + 1 < end && line[i + 1] == '\n')
            continue;  // the line feed itself is copied next
        text += line[i];
    }
    return text;
}

}  // namespace Vyx::detail

const char* GetVyxWMMessage(int index, const char* fallback)
{
    Catalogue& c = catalogue();
    std::lock_guard<std::mutex> lock(c.mutex);
    if (!c.loadAttempted && (index < 0 || c.entries.empty()))
        load(c);
    if (index < 0 || index > kLargestIndex)
        return nullptr;
    const size_t at = static_cast<size_t>(index);
    if (at >= c.entries.size()) {
        c.entries.resize(at, kEmptyText);
        c.entries.push_back(c.keep(fallback ? fallback : ""));
    } else if (!*c.entries[at] && fallback && *fallback) {
        // The first caller to supply a text for an untranslated message
        // fixes it for the rest of the process.
        c.entries[at] = c.keep(fallback);
    }
    return c.entries[at];
}

std::string GetVyxWMMessageLocale()
{
    Catalogue& c = catalogue();
    std::lock_guard<std::mutex> lock(c.mutex);
    if (!c.loadAttempted && c.entries.empty())
        load(c);
    return c.locale;
}
