// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Listing a tree by pattern: GetFileList against `find DIR -name PATTERN` as
// a whole command (process start included, as a caller would pay it).
//   build/bench/filelist_bench --benchmark_repetitions=5

#include "core/spawn_p.h"

#include <vyxfileutils.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

namespace {

// 10,000 files in 200 directories (20 top-level, 10 below each), every
// fifth one a ".desktop" file. Built once per process.
struct Tree {
    std::string root;
    ~Tree()
    {
        rmdirRecursive(root.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                       Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
    }
};

const std::string& tree()
{
    static const Tree made {[] {
        char templ[] = "/tmp/vyxcore-bench-XXXXXX";
        std::string dir = mkdtemp(templ);
        int file = 0;
        for (int top = 0; top < 20; ++top) {
            std::string topDir = dir + "/d" + std::to_string(top);
            mkdir(topDir.c_str(), 0755);
            for (int sub = 0; sub < 10; ++sub) {
                std::string subDir = topDir + "/s" + std::to_string(sub);
                mkdir(subDir.c_str(), 0755);
                for (int i = 0; i < 50; ++i, ++file) {
                    std::string name = subDir + "/f" + std::to_string(file) + (file % 5 ? ".txt" : ".desktop");
                    std::fclose(std::fopen(name.c_str(), "w"));
                }
            }
        }
        return dir;
    }()};
    return made.root;
}

void BM_GetFileList(benchmark::State& state)
{
    const std::string& root = tree();
    size_t found = 0;
    for (auto _ : state) {
        std::vector<std::string> paths;
        GetFileList(&paths, root.c_str(), 10, "*.desktop", Vyx::tagged_bool<FilesOnly_tag>(true));
        found = paths.size();
    }
    state.counters["files"] = static_cast<double>(found);
}
BENCHMARK(BM_GetFileList)->Unit(benchmark::kMillisecond);

void BM_FindCommand(benchmark::State& state)
{
    const std::string& root = tree();
    for (auto _ : state) {
        auto result = Vyx::detail::runProgram({"/usr/bin/find", root, "-name", "*.desktop"}, 1 << 20);
        benchmark::DoNotOptimize(result.output.size());
    }
}
BENCHMARK(BM_FindCommand)->Unit(benchmark::kMillisecond);

}  // namespace
