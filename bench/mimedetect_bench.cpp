// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// MIME detection over real files: by name, by name and the first bytes
// already in memory, by name and content read from the file, and the first
// answer in a fresh process (the database load included).
//   build/bench/mimedetect_bench                 2,000 files found under /usr/share
//   VYX_MIME_CORPUS=DIR build/bench/mimedetect_bench   the files below DIR

#include "mime/xdgmime_p.h"

#include <vyxfileutils.h>
#include <vyxmime.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const std::vector<std::string>& corpus()
{
    static const std::vector<std::string> files = [] {
        const char* dir = std::getenv("VYX_MIME_CORPUS");
        std::vector<std::string> all, picked;
        GetFileList(&all, dir ? dir : "/usr/share", 6, "*", Vyx::tagged_bool<FilesOnly_tag>(true));
        for (const std::string& file : all) {
            struct stat st;
            if (stat(file.c_str(), &st) == 0 && S_ISREG(st.st_mode) && st.st_size < (1 << 20) &&
                file.find("manifest.tsv") == std::string::npos)
                picked.push_back(file);
            if (picked.size() == 2000)
                break;
        }
        return picked;
    }();
    return files;
}

void BM_ByName(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    xdg_mime_get_mime_type_from_file_name("warm.txt");
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(xdg_mime_get_mime_type_from_file_name(files[i++ % files.size()].c_str()));
}
BENCHMARK(BM_ByName)->Unit(benchmark::kMicrosecond);

// Each file's name with its first 4 KiB, read before the timing.
void BM_ByNameAndData(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    std::vector<std::string> heads;
    for (const std::string& file : files) {
        std::string head(4096, '\0');
        FILE* f = std::fopen(file.c_str(), "rb");
        head.resize(f ? std::fread(&head[0], 1, head.size(), f) : 0);
        if (f)
            std::fclose(f);
        heads.push_back(std::move(head));
    }
    xdg_mime_get_mime_type_from_file_name("warm.txt");
    size_t i = 0;
    for (auto _ : state) {
        size_t k = i++ % files.size();
        benchmark::DoNotOptimize(Vyx::detail::guessMimeType(files[k].c_str(), heads[k].data(), heads[k].size()));
    }
}
BENCHMARK(BM_ByNameAndData)->Unit(benchmark::kMicrosecond);

void BM_ByNameAndContent(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    xdg_mime_get_mime_type_from_file_name("warm.txt");
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(xdg_mime_get_mime_type_for_file(files[i++ % files.size()].c_str(), nullptr));
}
BENCHMARK(BM_ByNameAndContent)->Unit(benchmark::kMicrosecond);

// The first answer in a new process: this program started again with
// "--first-call FILE" reads the file's first 4 KiB, then times the first
// guess, which loads the database. Every 97th file of the corpus in turn.
void BM_FirstCallInAProcess(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    size_t i = 0;
    for (auto _ : state) {
        const std::string& file = files[(i++ * 97) % files.size()];
        int fds[2];
        if (pipe(fds) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
        char* argv[] = {const_cast<char*>("/proc/self/exe"), const_cast<char*>("--first-call"),
                        const_cast<char*>(file.c_str()), nullptr};
        pid_t pid;
        int failed = posix_spawn(&pid, "/proc/self/exe", &actions, nullptr, argv, environ);
        posix_spawn_file_actions_destroy(&actions);
        close(fds[1]);
        double micros = 0;
        if (failed == 0) {
            FILE* out = fdopen(fds[0], "r");
            if (!out || std::fscanf(out, "%lf", &micros) != 1)
                micros = 0;
            if (out)
                std::fclose(out);
            waitpid(pid, nullptr, 0);
        } else {
            close(fds[0]);
        }
        state.SetIterationTime(micros / 1e6);
    }
}
BENCHMARK(BM_FirstCallInAProcess)->UseManualTime()->Unit(benchmark::kMicrosecond);

int firstCall(const char* file)
{
    unsigned char head[4096];
    int fd = open(file, O_RDONLY);
    ssize_t got = fd >= 0 ? read(fd, head, sizeof head) : -1;
    if (fd >= 0)
        close(fd);
    // Any program has used its heap before it asks for a type; the timing
    // should not include the heap's own start.
    std::string warm(std::string(file) + "/warm");
    benchmark::DoNotOptimize(warm);
    auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(Vyx::detail::guessMimeType(file, head, got > 0 ? size_t(got) : 0));
    std::printf("%.3f\n", std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--first-call") == 0)
        return firstCall(argv[2]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
