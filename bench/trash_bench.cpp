// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The trash on tmpfs, in the shape the desktop's file manager uses it: 1,000
// small files (100 bytes) and 100 directories (5 files of 1 KiB and a
// subdirectory with 2 more) are put into a trash under /dev/shm, then the
// trash is listed, measured with and without cached directory sizes, and
// emptied. "Baseline" is the least a trash can do per file: open, write and
// close a three-line record, then rename the file. Times are per item.
//   build/bench/trash_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
//   VYX_TRASH_BENCH_DIR=/some/tmpfs build/bench/trash_bench

#include <vyxdirs.h>
#include <vyxfileutils.h>
#include <vyxstrings.h>
#include <vyxtrash.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kFiles = 1000, kDirs = 100;

std::string g_root;  // the scratch tree, removed at exit
std::string g_sources;  // where the objects to trash are made

using Clock = std::chrono::steady_clock;

void writeFile(const std::string& path, size_t size)
{
    int fd = open(path.c_str(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        std::abort();
    std::string content(size, 'x');
    if (write(fd, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
        std::abort();
    close(fd);
}

std::string filePath(int i)
{
    return Vyx::concat(g_sources, "/f", i, ".txt");
}
std::string dirPath(int i)
{
    return Vyx::concat(g_sources, "/d", i);
}

void makeFiles()
{
    for (int i = 0; i < kFiles; ++i)
        writeFile(filePath(i), 100);
}

void makeDirs()
{
    for (int i = 0; i < kDirs; ++i) {
        std::string dir = dirPath(i);
        mkdir(dir.c_str(), 0755);
        mkdir((dir + "/sub").c_str(), 0755);
        for (int k = 0; k < 5; ++k)
            writeFile(Vyx::concat(dir, "/file", k, ".dat"), 1024);
        for (int k = 0; k < 2; ++k)
            writeFile(Vyx::concat(dir, "/sub/inner", k, ".dat"), 1024);
    }
}

void emptyTrash()
{
    if (!VyxTrash::cleanAll())
        std::abort();
    unlink((VyxTrash::getTopDirPath() + "/directorysizes").c_str());
}

// A full trash: every file and directory put in, optionally with every
// directory's size cached.
void fillTrash(bool cacheSizes)
{
    emptyTrash();
    makeFiles();
    makeDirs();
    for (int i = 0; i < kFiles; ++i)
        VyxTrash::moveToTrash(filePath(i).c_str());
    for (int i = 0; i < kDirs; ++i) {
        VyxTrash::moveToTrash(dirPath(i).c_str());
        if (cacheSizes)
            VyxTrash::registerDirSize(Vyx::concat("d", i).c_str(), -1);
    }
}

void BM_PutSmallFile(benchmark::State& state)
{
    for (auto _ : state) {
        emptyTrash();
        makeFiles();
        auto start = Clock::now();
        for (int i = 0; i < kFiles; ++i) {
            if (!VyxTrash::moveToTrash(filePath(i).c_str()))
                state.SkipWithError("moveToTrash failed");
        }
        std::chrono::duration<double> elapsed = Clock::now() - start;
        state.SetIterationTime(elapsed.count() / kFiles);
    }
}
BENCHMARK(BM_PutSmallFile)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

void BM_PutDirectory(benchmark::State& state)
{
    for (auto _ : state) {
        emptyTrash();
        makeDirs();
        auto start = Clock::now();
        for (int i = 0; i < kDirs; ++i) {
            if (!VyxTrash::moveToTrash(dirPath(i).c_str()))
                state.SkipWithError("moveToTrash failed");
        }
        std::chrono::duration<double> elapsed = Clock::now() - start;
        state.SetIterationTime(elapsed.count() / kDirs);
    }
}
BENCHMARK(BM_PutDirectory)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

// What a trash window shows: every record's original path and date.
void BM_List(benchmark::State& state)
{
    fillTrash(false);
    const std::string info = VyxTrash::getInfoDirPath();
    for (auto _ : state) {
        auto start = Clock::now();
        std::vector<std::string> records;
        GetFileNameList(&records, info.c_str(), 0, "*.trashinfo", Vyx::tagged_bool<FilesOnly_tag>(true));
        for (std::string& record : records) {
            record.erase(record.size() - 10);
            benchmark::DoNotOptimize(VyxTrash::getPath(record.c_str()));
            benchmark::DoNotOptimize(VyxTrash::getDate(record.c_str()));
        }
        std::chrono::duration<double> elapsed = Clock::now() - start;
        if (records.size() != size_t(kFiles + kDirs))
            state.SkipWithError("records missing");
        state.SetIterationTime(elapsed.count() / double(records.size()));
    }
}
BENCHMARK(BM_List)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

// size() over 1,100 objects; the time is per object.
void sizeOfTrash(benchmark::State& state, bool cached)
{
    fillTrash(cached);
    const int64_t expected = int64_t(kFiles) * 100 + int64_t(kDirs) * 7 * 1024;
    for (auto _ : state) {
        auto start = Clock::now();
        int64_t size = VyxTrash::size();
        std::chrono::duration<double> elapsed = Clock::now() - start;
        if (size != expected)
            state.SkipWithError("wrong size");
        state.SetIterationTime(elapsed.count() / (kFiles + kDirs));
    }
}
void BM_SizeMeasured(benchmark::State& state)
{
    sizeOfTrash(state, false);
}
void BM_SizeCached(benchmark::State& state)
{
    sizeOfTrash(state, true);
}
BENCHMARK(BM_SizeMeasured)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SizeCached)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

// cleanAll of 1,100 objects and their records; the time is per object.
void BM_Empty(benchmark::State& state)
{
    for (auto _ : state) {
        fillTrash(false);
        auto start = Clock::now();
        bool emptied = VyxTrash::cleanAll();
        std::chrono::duration<double> elapsed = Clock::now() - start;
        if (!emptied)
            state.SkipWithError("cleanAll failed");
        state.SetIterationTime(elapsed.count() / (kFiles + kDirs));
    }
}
BENCHMARK(BM_Empty)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

// The floor: a record written with open/write/close, then a rename.
void BM_Baseline(benchmark::State& state)
{
    const std::string files = g_root + "/baseline/files", info = g_root + "/baseline/info";
    mkdir((g_root + "/baseline").c_str(), 0700);
    mkdir(files.c_str(), 0700);
    mkdir(info.c_str(), 0700);
    for (auto _ : state) {
        makeFiles();
        auto start = Clock::now();
        for (int i = 0; i < kFiles; ++i) {
            std::string source = filePath(i);
            std::string name = Vyx::concat("f", i, ".txt");
            int fd = open((info + "/" + name + ".trashinfo").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            char line[4200], date[32];
            time_t now = time(nullptr);
            struct tm local;
            strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", localtime_r(&now, &local));
            int length = snprintf(line, sizeof line, "[Trash Info]\nPath=%s\nDeletionDate=%s\n", source.c_str(), date);
            if (fd < 0 || write(fd, line, length) != length || close(fd) != 0 ||
                rename(source.c_str(), (files + "/" + name).c_str()) != 0)
                state.SkipWithError("baseline failed");
        }
        std::chrono::duration<double> elapsed = Clock::now() - start;
        state.SetIterationTime(elapsed.count() / kFiles);
        rmdirRecursive(files.c_str(), Vyx::tagged_bool<InsideOnly_tag>(true),
                       Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
        rmdirRecursive(info.c_str(), Vyx::tagged_bool<InsideOnly_tag>(true),
                       Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
    }
}
BENCHMARK(BM_Baseline)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

void removeRoot()
{
    rmdirRecursive(g_root.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                   Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false));
}

}  // namespace

int main(int argc, char** argv)
{
    const char* base = std::getenv("VYX_TRASH_BENCH_DIR");
    std::string templ = std::string(base && *base ? base : "/dev/shm") + "/vyx-trash-bench-XXXXXX";
    if (!mkdtemp(&templ[0])) {
        std::perror("mkdtemp");
        return 1;
    }
    g_root = templ;
    g_sources = g_root + "/home/src";
    mkdir((g_root + "/home").c_str(), 0700);
    mkdir(g_sources.c_str(), 0755);
    setenv("HOME", (g_root + "/home").c_str(), 1);
    setenv("XDG_DATA_HOME", (g_root + "/home/.local/share").c_str(), 1);
    ResetVyxDirs();
    std::atexit(removeRoot);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
