// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Theme index files: hicolor's index.theme (the largest usual one, over
// 600 groups) read by the INI reader and by the writer's document, and the
// whole icon theme load that reads it.
//   build/bench/inireader_bench
//   VYX_INDEX_THEME=/path/index.theme build/bench/inireader_bench

#include "core/ini_p.h"
#include "core/inireader_p.h"
#include "core/readfile_p.h"

#include <vyxicontheme.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

namespace {

std::string indexFile()
{
    const char* file = std::getenv("VYX_INDEX_THEME");
    return file && *file ? file : "/usr/share/icons/hicolor/index.theme";
}

void BM_IndexReadFile(benchmark::State& state)
{
    const std::string file = indexFile();
    std::string text;
    for (auto _ : state)
        benchmark::DoNotOptimize(Vyx::detail::readRegularFile(file.c_str(), text));
}
BENCHMARK(BM_IndexReadFile)->Unit(benchmark::kMicrosecond);

// The load alone.
template <typename Ini> void loadIndex(benchmark::State& state)
{
    const std::string file = indexFile();
    for (auto _ : state) {
        Ini ini;
        benchmark::DoNotOptimize(ini.loadFile(file));
    }
}

void BM_IndexLoadIniReader(benchmark::State& state)
{
    loadIndex<Vyx::detail::IniReader>(state);
}
void BM_IndexLoadIniDocument(benchmark::State& state)
{
    loadIndex<Vyx::detail::IniDocument>(state);
}
BENCHMARK(BM_IndexLoadIniReader)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IndexLoadIniDocument)->Unit(benchmark::kMicrosecond);

// Loading the file and reading every subdirectory's keys, as a theme does:
// the reader finds each group once, the document looks it up per key.
const char* const kSubdirKeys[] = {"Size", "Context", "Type", "MaxSize", "MinSize", "Threshold"};

void BM_IndexReadIniReader(benchmark::State& state)
{
    const std::string file = indexFile();
    for (auto _ : state) {
        Vyx::detail::IniReader ini;
        ini.loadFile(file);
        const char* dirs = ini.value("Icon Theme", "Directories");
        size_t found = 0;
        for (const std::string& dir : Vyx::split(dirs ? dirs : "", ",")) {
            const int group = ini.group(dir.c_str());
            for (const char* key : kSubdirKeys)
                found += ini.value(group, key) != nullptr;
        }
        benchmark::DoNotOptimize(found);
    }
}

void BM_IndexReadIniDocument(benchmark::State& state)
{
    const std::string file = indexFile();
    for (auto _ : state) {
        Vyx::detail::IniDocument ini;
        ini.loadFile(file);
        const char* dirs = ini.value("Icon Theme", "Directories");
        size_t found = 0;
        for (const std::string& dir : Vyx::split(dirs ? dirs : "", ",")) {
            for (const char* key : kSubdirKeys)
                found += ini.value(dir.c_str(), key) != nullptr;
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_IndexReadIniReader)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IndexReadIniDocument)->Unit(benchmark::kMicrosecond);

// The theme object of hicolor alone and of Adwaita (which loads hicolor).
void BM_IconThemeLoad(benchmark::State& state, const char* name)
{
    VyxIconTheme::findThemePath(name);  // the process-wide theme list, built once
    for (auto _ : state) {
        VyxIconTheme theme(name, "", true);
        benchmark::DoNotOptimize(theme.isLoaded());
    }
}
BENCHMARK_CAPTURE(BM_IconThemeLoad, hicolor, "hicolor")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_IconThemeLoad, Adwaita, "Adwaita")->Unit(benchmark::kMicrosecond);

}  // namespace
