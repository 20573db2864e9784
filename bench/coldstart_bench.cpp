// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The first answers of a fresh process, ours beside the peers' in one run:
// each sample starts this program again ("--child CASE ARG") and the peer's
// program, in turn, and reads the time each reports for its first call
// (process start not counted, the way the peers' programs time it). The
// manual time of a benchmark is ours; "peer_us" and "ratio" (peer / ours,
// medians) stand beside it.
//
//   scripts/coldstart-peers.sh SCRATCH    builds the peers' programs, corpus and tree in SCRATCH
//   VYX_COLDSTART_DIR=SCRATCH build/bench/coldstart_bench
//   VYX_COLDSTART_CLOCK=wall ...          wall time instead of processor time
//
// Both sides read the processor time of the process (all its threads) around
// the call by default: on a machine shared with other work the wall time
// measures the neighbours more than the call. The peers' programs are built
// a second time with that clock for it (scripts/coldstart-peers.sh).
//
// Cases: the first MIME answer by name and content (15 files, every 97th of
// the content corpus); in the peers' XDG tree, the first installed
// application for text/plain (the peer's default) without and with the
// per-user cache file, and the preferred applications, which also read the
// mimeapps.list files and check each application can run here.

#include "mime/xdgmime_p.h"

#include <vyxmime.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kSamples = 15;

std::string scratch();

bool wallClock()
{
    const char* clock = std::getenv("VYX_COLDSTART_CLOCK");
    return clock && std::strcmp(clock, "wall") == 0;
}

std::string peerProgram(const char* name)
{
    return scratch() + (wallClock() ? "/peers/" : "/peers/cpu/") + name;
}

std::string scratch()
{
    const char* dir = std::getenv("VYX_COLDSTART_DIR");
    return dir ? dir : "";
}

// Runs argv with the current environment and returns the first number it
// prints (microseconds); negative when it did not run or print one.
double runForMicros(const std::vector<std::string>& args)
{
    int fds[2];
    if (pipe(fds) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> argv;
    for (const std::string& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    pid_t pid;
    int failed = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    double micros = -1;
    FILE* out = fdopen(fds[0], "r");
    if (!failed && out && std::fscanf(out, "%lf", &micros) != 1)
        micros = -1;
    if (out)
        std::fclose(out);
    else
        close(fds[0]);
    if (!failed)
        waitpid(pid, nullptr, 0);
    return micros;
}

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// One fresh process of ours and one of the peer per iteration, in turn, so
// that a drift of the machine's speed falls on both.
template <typename Prepare>
void pairUp(benchmark::State& state, Prepare prepare, const std::vector<std::string>& ours,
            const std::vector<std::string>& peer)
{
    std::vector<double> oursTimes, peerTimes;
    int k = 0;
    for (auto _ : state) {
        prepare(k);
        double a = runForMicros(ours);
        prepare(k);
        double b = runForMicros(peer);
        ++k;
        if (a < 0) {
            state.SkipWithError(("did not answer: " + ours[1] + " " + ours[2]).c_str());
            return;
        }
        state.SetIterationTime(a / 1e6);
        oursTimes.push_back(a);
        if (b >= 0)
            peerTimes.push_back(b);
    }
    const double mine = median(oursTimes), theirs = median(peerTimes);
    state.counters["ours_us"] = mine;
    state.counters["peer_us"] = theirs;
    state.counters["ratio"] = mine > 0 && theirs > 0 ? theirs / mine : 0;
}

std::string self()
{
    char path[4096];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return n > 0 ? std::string(path, size_t(n)) : std::string();
}

// Every 97th file of the corpus, the first 15, as the peers pick them.
std::vector<std::string> corpusSample()
{
    std::vector<std::string> files;
    std::ifstream manifest(scratch() + "/content_corpus/manifest.tsv");
    std::string line;
    std::getline(manifest, line);  // the header
    for (int n = 1; std::getline(manifest, line) && files.size() < size_t(kSamples); ++n) {
        if (n % 97 == 1)
            files.push_back(scratch() + "/content_corpus/" + line.substr(0, line.find('\t')));
    }
    return files;
}

void BM_FirstMimeAnswer(benchmark::State& state)
{
    static const std::vector<std::string> files = corpusSample();
    if (files.empty()) {
        state.SkipWithError("no corpus: set VYX_COLDSTART_DIR (scripts/coldstart-peers.sh)");
        return;
    }
    std::vector<std::string> ours {self(), "--child", "mime", ""}, peer {peerProgram("content_type_gio"), "cold", ""};
    pairUp(
        state,
        [&](int k) {
            ours[3] = files[size_t(k) % files.size()];
            peer[2] = ours[3];
        },
        ours, peer);
}
BENCHMARK(BM_FirstMimeAnswer)->UseManualTime()->Iterations(kSamples)->Unit(benchmark::kMicrosecond);

// The runtime directory of the per-user cache file: on tmpfs, as a
// session's runtime directory is, made for this run and removed after it.
const std::string& runtimeDir()
{
    static const std::string dir = [] {
        char name[] = "/dev/shm/vyx-coldstart-XXXXXX";
        return mkdtemp(name) ? std::string(name) : std::string();
    }();
    return dir;
}

void removeRuntimeDir()
{
    std::remove((runtimeDir() + "/.vyx-mime-desktop.tbl").c_str());
    rmdir(runtimeDir().c_str());
}

// The peers' tree as its env.sh sets it, and a runtime directory of our own
// for the per-user cache file.
bool enterTree()
{
    const std::string root = scratch() + "/mime_tree";
    struct stat st;
    if (stat((root + "/sys1/applications").c_str(), &st) != 0)
        return false;
    setenv("HOME", (root + "/home").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (root + "/home/.config").c_str(), 1);
    setenv("XDG_DATA_HOME", (root + "/home/.local/share").c_str(), 1);
    setenv("XDG_DATA_DIRS", (root + "/sys1:" + root + "/sys2:" + root + "/mimedb").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (root + "/etcxdg").c_str(), 1);
    setenv("XDG_CURRENT_DESKTOP", "benchde", 1);
    for (const char* name : {"DESKTOP_SESSION", "XDG_SESSION_DESKTOP", "KDE_FULL_SESSION", "GNOME_DESKTOP_SESSION_ID"})
        unsetenv(name);
    if (runtimeDir().empty())
        return false;
    static const int registered = std::atexit(removeRuntimeDir);
    (void)registered;
    setenv("XDG_RUNTIME_DIR", runtimeDir().c_str(), 1);
    return true;
}

std::string cacheFile()
{
    return runtimeDir() + "/.vyx-mime-desktop.tbl";
}

void firstApplication(benchmark::State& state, const char* how, bool withCacheFile)
{
    if (!enterTree()) {
        state.SkipWithError("no tree: set VYX_COLDSTART_DIR (scripts/coldstart-peers.sh)");
        return;
    }
    std::vector<std::string> ours {self(), "--child", how, "text/plain"},
        peer {peerProgram("default_app_gio"), "cold", "default", "text/plain"};
    if (withCacheFile)
        runForMicros(ours);  // writes the file
    pairUp(
        state,
        [&](int) {
            if (!withCacheFile)
                std::remove(cacheFile().c_str());
        },
        ours, peer);
    struct stat st;
    if (withCacheFile && stat(cacheFile().c_str(), &st) != 0)
        state.SkipWithError("the per-user cache file was not written");
}

// The time of call in this process, by the chosen clock, in microseconds.
template <typename Call> double timeOf(Call call)
{
    const clockid_t clock = wallClock() ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID;
    timespec start, end;
    clock_gettime(clock, &start);
    call();
    clock_gettime(clock, &end);
    return double(end.tv_sec - start.tv_sec) * 1e6 + double(end.tv_nsec - start.tv_nsec) / 1e3;
}

// The children: one first call each, its time in microseconds and its
// answer on stdout.
int child(const char* what, const char* arg)
{
    // Any program has used its heap before it asks: its start is not ours.
    std::string warm(std::string(arg) + "/warm");
    benchmark::DoNotOptimize(warm);
    std::string answer = "-";
    double micros = -1;
    if (std::strcmp(what, "mime") == 0) {
        unsigned char head[4096];
        int fd = open(arg, O_RDONLY | O_CLOEXEC);
        ssize_t got = fd >= 0 ? read(fd, head, sizeof head) : -1;
        if (fd >= 0)
            close(fd);
        micros = timeOf([&] { answer = Vyx::detail::guessMimeType(arg, head, got > 0 ? size_t(got) : 0); });
    } else if (std::strcmp(what, "installed") == 0) {
        const Vyx::tagged_bool<AllDesktopEntries_tag> first(false);
        std::vector<std::string> paths;
        micros = timeOf([&] { paths = GetDesktopEntryPathForMime(arg, first); });
        if (!paths.empty())
            answer = paths.front();
    } else if (std::strcmp(what, "preferred") == 0) {
        std::vector<VyxMimeApp> apps;
        micros = timeOf([&] { apps = GetPreferredApplications(arg); });
        if (!apps.empty())
            answer = apps.front().id;
    } else {
        return 2;
    }
    std::printf("%.1f\t%s\n", micros, answer.c_str());
    return answer == "-" ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--child") == 0)
        return child(argv[2], argv[3]);
    // One runner for the application cases: which answer, and whether the
    // per-user cache file is there.
    const struct {
        const char* name;
        const char* how;
        bool withCacheFile;
    } applicationCases[] = {{"BM_FirstDefaultApplicationWithoutCacheFile", "installed", false},
                            {"BM_FirstDefaultApplicationWithCacheFile", "installed", true},
                            {"BM_FirstPreferredApplicationsWithCacheFile", "preferred", true}};
    for (const auto& one : applicationCases)
        benchmark::RegisterBenchmark(one.name, firstApplication, one.how, one.withCacheFile)
            ->UseManualTime()
            ->Iterations(kSamples)
            ->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
