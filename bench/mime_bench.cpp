// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Which application opens a MIME type: the first lookup in a fresh process
// (with and without the per-user cache file), warm lookups, assignments and
// the list of all applications.
//   build/bench/mime_bench          a generated tree: 2,000 applications, 500 types
//   . ROOT/env.sh && VYX_QUERY_TYPES=ROOT/query_types.txt build/bench/mime_bench
//                                   an existing XDG tree, its environment already set

#include "core/spawn_p.h"
#include "desktopentry/catalogue_p.h"

#include <vyxfileutils.h>
#include <vyxmime.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const Vyx::tagged_bool<AllDesktopEntries_tag> kFirst(false), kAll(true);

std::string g_root;

void removeRoot()
{
    rmdirRecursive(g_root.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                   Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
}

// 2,000 applications over 500 types (1 to 8 each, deterministic), with
// mimeinfo.cache files, and a mimeapps.list assigning 100 types.
std::vector<std::string> generateTree()
{
    char templ[] = "/tmp/vyxcore-mime-bench-XXXXXX";
    g_root = mkdtemp(templ);
    std::atexit(removeRoot);
    unsigned seed = 12345;
    auto next = [&seed] { return seed = seed * 1103515245u + 12345u, (seed >> 8) % 100000; };
    for (int part = 0; part < 2; ++part) {
        std::string dir = g_root + "/sys" + std::to_string(part) + "/applications";
        Vyx::detail::runProgram({"/bin/mkdir", "-p", dir}, 0);
        for (int i = 0; i < 1000; ++i) {
            std::string types;
            for (unsigned n = next() % 8 + 1; n > 0; --n)
                types += "application/x-bench-" + std::to_string(next() % 500) + ";";
            std::ofstream(dir + "/app" + std::to_string(part * 1000 + i) + ".desktop")
                << "[Desktop Entry]\nType=Application\nName=App " << i << "\nExec=true %f\nIcon=app-" << i
                << "\nMimeType=" << types << "\n";
        }
        Vyx::detail::runProgram({"/usr/bin/update-desktop-database", dir}, 0);
    }
    Vyx::detail::runProgram({"/bin/mkdir", "-p", g_root + "/home/.config", g_root + "/run"}, 0);
    std::ofstream list(g_root + "/home/.config/mimeapps.list");
    list << "[Added Associations]\n";
    for (int t = 0; t < 100; ++t)
        list << "application/x-bench-" << t << "=app" << t << ".desktop;app" << t + 1000 << ".desktop;\n";
    list.close();
    setenv("HOME", (g_root + "/home").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (g_root + "/home/.config").c_str(), 1);
    setenv("XDG_DATA_HOME", (g_root + "/home/.local/share").c_str(), 1);
    setenv("XDG_DATA_DIRS", (g_root + "/sys0:" + g_root + "/sys1").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (g_root + "/etc").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (g_root + "/run").c_str(), 1);
    std::vector<std::string> types;
    for (int t = 0; t < 500; t += 9)
        types.push_back("application/x-bench-" + std::to_string(t));
    return types;
}

const std::vector<std::string>& queryTypes()
{
    static const std::vector<std::string> types = [] {
        if (const char* file = std::getenv("VYX_QUERY_TYPES")) {
            std::vector<std::string> read;
            std::ifstream in(file);
            for (std::string line; std::getline(in, line);)
                if (!line.empty())
                    read.push_back(line);
            return read;
        }
        return generateTree();
    }();
    return types;
}

// Times one call in a fresh child process; the fork is not counted. The
// time is the child's processor time (user and system): on a machine shared
// with other work, its wall time measures the neighbours more than the call.
// The wall time is kept beside it as a counter.
template <typename Call> void timeInChild(benchmark::State& state, Call call)
{
    double wallTotal = 0;
    for (auto _ : state) {
        int fds[2];
        if (pipe(fds) != 0)
            return;
        pid_t pid = fork();
        if (pid == 0) {
            timespec cpuStart, cpuEnd;
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuStart);
            auto start = std::chrono::steady_clock::now();
            call();
            double times[2];
            times[1] = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuEnd);
            times[0] = double(cpuEnd.tv_sec - cpuStart.tv_sec) + double(cpuEnd.tv_nsec - cpuStart.tv_nsec) * 1e-9;
            ssize_t ignored = write(fds[1], times, sizeof times);
            (void)ignored;
            _exit(0);
        }
        double times[2] = {0, 0};
        ssize_t got = read(fds[0], times, sizeof times);
        close(fds[0]);
        close(fds[1]);
        waitpid(pid, nullptr, 0);
        state.SetIterationTime(got == sizeof times ? times[0] : 0);
        wallTotal += got == sizeof times ? times[1] : 0;
    }
    state.counters["wall_us"] = benchmark::Counter(wallTotal * 1e6, benchmark::Counter::kAvgIterations);
}

void BM_DefaultFirstCallWithoutCacheFile(benchmark::State& state)
{
    const std::string type = queryTypes().front();
    timeInChild(state, [&] {
        std::remove(Vyx::detail::mimeCachePath().c_str());
        benchmark::DoNotOptimize(GetDesktopEntryPathForMime(type.c_str(), kFirst));
    });
}
BENCHMARK(BM_DefaultFirstCallWithoutCacheFile)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_DefaultFirstCallWithCacheFile(benchmark::State& state)
{
    const std::string type = queryTypes().front();
    timeInChild(state, [&] { benchmark::DoNotOptimize(GetDesktopEntryPathForMime(type.c_str(), kFirst)); });
}
BENCHMARK(BM_DefaultFirstCallWithCacheFile)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_DefaultWarm(benchmark::State& state)
{
    const std::vector<std::string>& types = queryTypes();
    GetDesktopEntryPathForMime(types.front().c_str(), kFirst);
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(GetDesktopEntryPathForMime(types[i++ % types.size()].c_str(), kFirst));
}
BENCHMARK(BM_DefaultWarm)->Unit(benchmark::kMicrosecond);

void BM_AllForTypeWarm(benchmark::State& state)
{
    const std::vector<std::string>& types = queryTypes();
    GetDesktopEntryPathForMime(types.front().c_str(), kFirst);
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(GetDesktopEntryForMime(types[i++ % types.size()].c_str(), kAll));
}
BENCHMARK(BM_AllForTypeWarm)->Unit(benchmark::kMicrosecond);

void BM_AssignedWarm(benchmark::State& state)
{
    const std::vector<std::string>& types = queryTypes();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(GetAssignedDesktopEntryForMime(types[i++ % types.size()].c_str(), kFirst));
}
BENCHMARK(BM_AssignedWarm)->Unit(benchmark::kMicrosecond);

// The user's whole preference list for a type, in a fresh process with the
// per-user cache file present: what "vyxcore prefer" costs beyond start-up.
void BM_PreferredFirstCall(benchmark::State& state)
{
    const std::string type = queryTypes().front();
    GetDesktopEntryPathForMime(type.c_str(), kFirst);  // the cache file exists
    timeInChild(state, [&] { benchmark::DoNotOptimize(GetPreferredApplications(type.c_str())); });
}
BENCHMARK(BM_PreferredFirstCall)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_PreferredWarm(benchmark::State& state)
{
    const std::vector<std::string>& types = queryTypes();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(GetPreferredApplications(types[i++ % types.size()].c_str()));
}
BENCHMARK(BM_PreferredWarm)->Unit(benchmark::kMicrosecond);

void BM_AllApplications(benchmark::State& state)
{
    queryTypes();
    size_t count = 0;
    for (auto _ : state)
        count = GetAllAppDesktopEntries().size();
    state.counters["entries"] = static_cast<double>(count);
}
BENCHMARK(BM_AllApplications)->Unit(benchmark::kMillisecond);

}  // namespace
