// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icon lookup over the installed Adwaita theme (and hicolor, its parent):
// 2,000 real icon names and 2,000 names found only by their generic part,
// at sizes 16, 48 and 256. "First" is the first lookup of each name in a
// freshly loaded theme; "Repeat" asks again in the same theme. Each
// benchmark's time is per lookup.
//   build/bench/iconlookup_bench [--benchmark_filter=...]
//   VYX_ICON_BENCH_THEME=hicolor build/bench/iconlookup_bench

#include <vyxfileutils.h>
#include <vyxicontheme.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

std::string themeName()
{
    const char* name = std::getenv("VYX_ICON_BENCH_THEME");
    return name && *name ? name : "Adwaita";
}

// Every icon name the theme directory holds, shuffled with a fixed seed.
const std::vector<std::string>& allNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> files;
        GetFileNameList(&files, VyxIconTheme::findThemePath(themeName()).c_str(), 3, "*.*",
                        Vyx::tagged_bool<FilesOnly_tag>(true));
        std::set<std::string> unique;
        for (std::string name : files) {
            if (!Vyx::endsWith(name, ".png") && !Vyx::endsWith(name, ".svg"))
                continue;
            name.erase(name.size() - 4);
            unique.insert(name);
        }
        std::vector<std::string> shuffled(unique.begin(), unique.end());
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(12345));
        return shuffled;
    }();
    return names;
}

std::vector<std::string> names(bool fallback)
{
    const std::vector<std::string>& all = allNames();
    std::vector<std::string> picked;
    // Themes with fewer than 4,000 names give their names to both sets.
    size_t first = all.size() >= 4000 && fallback ? 2000 : 0;
    for (size_t i = first; i < all.size() && picked.size() < 2000; ++i)
        picked.push_back(fallback ? all[i] + "-nonexistent-suffix" : all[i]);
    return picked;
}

void lookups(benchmark::State& state, bool fallback, bool repeat)
{
    const std::vector<std::string> list = names(fallback);
    const int size = static_cast<int>(state.range(0));
    if (list.empty()) {
        state.SkipWithError("no icon names found");
        return;
    }
    for (auto _ : state) {
        VyxIconTheme theme(themeName(), "", true);
        if (repeat) {
            for (const std::string& name : list)
                benchmark::DoNotOptimize(theme.getIconPath(name.c_str(), size, nullptr));
        }
        auto start = std::chrono::steady_clock::now();
        for (const std::string& name : list)
            benchmark::DoNotOptimize(theme.getIconPath(name.c_str(), size, nullptr));
        std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count() / double(list.size()));
    }
}

void BM_FirstFound(benchmark::State& state)
{
    lookups(state, false, false);
}
void BM_FirstFallback(benchmark::State& state)
{
    lookups(state, true, false);
}
void BM_RepeatFound(benchmark::State& state)
{
    lookups(state, false, true);
}
void BM_RepeatFallback(benchmark::State& state)
{
    lookups(state, true, true);
}

BENCHMARK(BM_FirstFound)->Arg(16)->Arg(48)->Arg(256)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FirstFallback)->Arg(16)->Arg(48)->Arg(256)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RepeatFound)->Arg(16)->Arg(48)->Arg(256)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RepeatFallback)->Arg(16)->Arg(48)->Arg(256)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);

// Reading the theme and its parents, caches opened.
void BM_ThemeLoad(benchmark::State& state)
{
    VyxIconTheme::findThemePath(themeName());  // the process-wide theme list, built once
    for (auto _ : state) {
        VyxIconTheme theme(themeName(), "", true);
        benchmark::DoNotOptimize(theme.isLoaded());
    }
}
BENCHMARK(BM_ThemeLoad)->Unit(benchmark::kMicrosecond);

}  // namespace
