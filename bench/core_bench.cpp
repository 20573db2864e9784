// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Hot paths of the foundation: the warm directory table (a cached answer
// must cost no system call) and the string helpers every path goes through.

#include <vyxdirs.h>
#include <vyxstrings.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

void BM_GetVyxDirWarm(benchmark::State& state)
{
    GetVyxDir(DesktopDir);  // fill the cache once
    for (auto _ : state)
        benchmark::DoNotOptimize(GetVyxDir(DesktopDir).size());
}
BENCHMARK(BM_GetVyxDirWarm);

void BM_ConcatPath(benchmark::State& state)
{
    const std::string dir = "/usr/share/icons/hicolor";
    for (auto _ : state)
        benchmark::DoNotOptimize(Vyx::concat(dir, '/', 48, "x", 48, "/apps/", "firefox", ".png"));
}
BENCHMARK(BM_ConcatPath);

void BM_SplitList(benchmark::State& state)
{
    const char* list = "text/plain;text/html;image/png;image/jpeg;application/pdf;inode/directory;";
    for (auto _ : state)
        benchmark::DoNotOptimize(Vyx::split(list, ";,"));
}
BENCHMARK(BM_SplitList);

void BM_EncodeDecodeUrl(benchmark::State& state)
{
    const std::string path = "/home/user/Documents/Résumé draft (2).odt";
    for (auto _ : state)
        benchmark::DoNotOptimize(Vyx::decodedUrl(Vyx::encodedUrl(path)));
}
BENCHMARK(BM_EncodeDecodeUrl);

}  // namespace
