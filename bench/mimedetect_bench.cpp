// MIME detection over real files: by name, by name and content, and the
// first answer in a fresh process (the database load included).
//   build/bench/mimedetect_bench                 2,000 files found under /usr/share
//   VYX_MIME_CORPUS=DIR build/bench/mimedetect_bench   the files below DIR

#include <vyxfileutils.h>
#include <vyxmime.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
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

void BM_ByNameAndContent(benchmark::State& state)
{
    const std::vector<std::string>& files = corpus();
    xdg_mime_get_mime_type_from_file_name("warm.txt");
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(xdg_mime_get_mime_type_for_file(files[i++ % files.size()].c_str(), nullptr));
}
BENCHMARK(BM_ByNameAndContent)->Unit(benchmark::kMicrosecond);

// The first answer in a new process; the fork is not counted.
void BM_FirstCallInAProcess(benchmark::State& state)
{
    const std::string file = corpus().front();
    xdg_mime_shutdown();
    for (auto _ : state) {
        int fds[2];
        if (pipe(fds) != 0)
            return;
        pid_t pid = fork();
        if (pid == 0) {
            auto start = std::chrono::steady_clock::now();
            benchmark::DoNotOptimize(xdg_mime_get_mime_type_for_file(file.c_str(), nullptr));
            double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            ssize_t ignored = write(fds[1], &seconds, sizeof seconds);
            (void)ignored;
            _exit(0);
        }
        double seconds = 0;
        ssize_t got = read(fds[0], &seconds, sizeof seconds);
        close(fds[0]);
        close(fds[1]);
        waitpid(pid, nullptr, 0);
        state.SetIterationTime(got == sizeof seconds ? seconds : 0);
    }
}
BENCHMARK(BM_FirstCallInAProcess)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
