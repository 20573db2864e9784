// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Loading desktop entries: the per-file cost of constructing and loading a
// VyxDesktopEntry over a corpus of 2,000 files, next to its floors: reading
// the file, the INI reader alone, and the writer's document for comparison.
//   build/bench/desktopentry_bench                       a generated corpus
//   VYX_DESKTOP_CORPUS=DIR build/bench/desktopentry_bench   the *.desktop files below DIR
// Runs with LANGUAGE=de unless LANGUAGE is set.

#include "core/ini_p.h"
#include "core/inireader_p.h"
#include "core/readfile_p.h"

#include <vyxdesktopentry.h>
#include <vyxfileutils.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

const char* const kLanguages[] = {"de", "fr", "ru", "es", "it", "pt_BR", "ja", "zh_CN", "pl", "nl"};

// One synthetic application entry: 10 translations of each translatable
// key, 3 actions with translated names, lists and foreign keys.
std::string syntheticEntry(int n)
{
    std::string text = "[Desktop Entry]\nType=Application\nVersion=1.0\n";
    auto translated = [&](const char* key, const std::string& value) {
        text += std::string(key) + "=" + value + "\n";
        for (const char* language : kLanguages)
            text += std::string(key) + "[" + language + "]=" + value + " (" + language + ")\n";
    };
    translated("Name", "Application " + std::to_string(n));
    translated("GenericName", "Tool number " + std::to_string(n % 97));
    translated("Comment", "Does useful thing " + std::to_string(n) + " for the user");
    translated("Keywords", "alpha;beta;gamma" + std::to_string(n % 13) + ";");
    text += "Exec=app" + std::to_string(n) + " %U\nIcon=app-" + std::to_string(n % 50) +
            "\nTerminal=false\nStartupNotify=true\nCategories=Utility;Development;\n"
            "MimeType=text/plain;text/x-c;application/x-app" +
            std::to_string(n) + ";\nActions=new;open;settings;\nX-Vendor-Tag=" + std::to_string(n) + "\n";
    for (const char* action : {"new", "open", "settings"}) {
        text += std::string("\n[Desktop Action ") + action + "]\n";
        translated("Name", std::string("Action ") + action);
        text += std::string("Exec=app") + std::to_string(n) + " --" + action + "\n";
    }
    return text;
}

const std::vector<std::string>& corpus()
{
    static const std::vector<std::string> files = [] {
        setenv("LANGUAGE", std::getenv("LANGUAGE") ? std::getenv("LANGUAGE") : "de", 1);
        std::vector<std::string> found;
        const char* dir = std::getenv("VYX_DESKTOP_CORPUS");
        static std::string generated;
        if (!dir) {
            char templ[] = "/tmp/vyxcore-desktop-bench-XXXXXX";
            generated = mkdtemp(templ);
            for (int i = 0; i < 2000; ++i)
                std::ofstream(generated + "/app" + std::to_string(i) + ".desktop") << syntheticEntry(i);
            std::atexit([] {
                rmdirRecursive(generated.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                               Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
            });
            dir = generated.c_str();
        }
        GetFileList(&found, dir, 8, "*.desktop", Vyx::tagged_bool<FilesOnly_tag>(true));
        return found;
    }();
    return files;
}

// One file per iteration, cycling through the corpus: the reported time is
// the cost of one file.
void BM_DesktopEntryLoad(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    size_t next = 0, loaded = 0;
    for (auto _ : state) {
        VyxDesktopEntry entry(files[next]);
        loaded += entry.isLoaded();
        benchmark::DoNotOptimize(entry.localNameOrFallback().size());
        next = (next + 1) % files.size();
    }
    state.counters["files"] = static_cast<double>(files.size());
    state.counters["loaded_share"] = state.iterations() ? double(loaded) / double(state.iterations()) : 0;
}
BENCHMARK(BM_DesktopEntryLoad)->Unit(benchmark::kMicrosecond);

// Calls load(path) once per iteration, cycling through the corpus.
template <typename Load> void eachFile(benchmark::State& state, Load load)
{
    const std::vector<std::string>& files = corpus();
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(load(files[next]));
        next = (next + 1) % files.size();
    }
}

// Reading the file: the floor under everything else.
void BM_ReadFile(benchmark::State& state)
{
    std::string text;
    eachFile(state, [&](const std::string& file) { return Vyx::detail::readRegularFile(file.c_str(), text); });
}
BENCHMARK(BM_ReadFile)->Unit(benchmark::kMicrosecond);

// The reader alone: what every load of an entry pays before its fields.
void BM_IniReaderLoad(benchmark::State& state)
{
    eachFile(state, [](const std::string& file) { return Vyx::detail::IniReader().loadFile(file); });
}
BENCHMARK(BM_IniReaderLoad)->Unit(benchmark::kMicrosecond);

// The writer's document loading the same files: what reads cost before the
// reader.
void BM_IniDocumentLoad(benchmark::State& state)
{
    eachFile(state, [](const std::string& file) { return Vyx::detail::IniDocument().loadFile(file); });
}
BENCHMARK(BM_IniDocumentLoad)->Unit(benchmark::kMicrosecond);

// An Exec value with every kind of field code, for three files: the argument
// vectors against the older one-line expansion of the same request.
const char kExec[] = "viewer --name %c \"--title=a b\" %i --location=%k %F";

void BM_ExecArgVectors(benchmark::State& state)
{
    const std::vector<std::string> files = {"/home/user/a file.txt", "/tmp/$(x).txt", "/srv/data/report-2024.pdf"};
    for (auto _ : state)
        benchmark::DoNotOptimize(ExecToArgVectors(kExec, files, "viewer-icon", "Viewer", "/usr/share/v.desktop"));
}
BENCHMARK(BM_ExecArgVectors)->Unit(benchmark::kMicrosecond);

void BM_ExecToString(benchmark::State& state)
{
    for (auto _ : state) {
        ExecFormatString e;
        e.format = kExec;
        e.icon = "viewer-icon";
        e.caption = "Viewer";
        e.location = "/usr/share/v.desktop";
        e.files = {"/home/user/a file.txt", "/tmp/$(x).txt", "/srv/data/report-2024.pdf"};
        e.separator = ' ';
        benchmark::DoNotOptimize(e.toString());
    }
}
BENCHMARK(BM_ExecToString)->Unit(benchmark::kMicrosecond);

}  // namespace
