// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icon lookups in a fresh process, ours beside GTK's GtkIconTheme: what a
// program that shows a few icons and exits pays. Each case runs in a new
// process (this program again, with --child) and is timed inside it from
// just before the theme is made; the process start and the choice of names
// are left out. Medians over the runs, and their ratio.
//   build/bench/coldstart_icons_bench [--runs N] [--theme NAME]
// Cases:
//   load+50     theme load and the first lookups of 50 names at 48 px
//   load+2000   theme load and the first lookups of 2,000 names at 48 px
//   first       the first lookup of a found name in a loaded theme

#include <vyxfileutils.h>
#include <vyxicontheme.h>

#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// The icon names the theme holds at 48 px or as scalable images, so that
// every lookup finds one, shuffled with a fixed seed.
std::vector<std::string> iconNames(const std::string& theme, size_t count)
{
    std::vector<std::string> files;
    GetFileList(&files, VyxIconTheme::findThemePath(theme).c_str(), 3, "*.*", Vyx::tagged_bool<FilesOnly_tag>(true));
    std::set<std::string> unique;
    for (const std::string& file : files) {
        if (!Vyx::endsWith(file, ".png") && !Vyx::endsWith(file, ".svg"))
            continue;
        if (file.find("/48x48/") == std::string::npos && file.find("/scalable/") == std::string::npos)
            continue;
        std::string name = Vyx::lastSection(file, '/');
        name.erase(name.size() - 4);
        unique.insert(name);
    }
    std::vector<std::string> names(unique.begin(), unique.end());
    std::shuffle(names.begin(), names.end(), std::mt19937(12345));
    // Fewer names than asked for: the list again, as new first lookups of
    // the same names cost what a second pass costs.
    std::vector<std::string> picked;
    for (size_t i = 0; !names.empty() && picked.size() < count; ++i)
        picked.push_back(names[i % names.size()]);
    return picked;
}

using Clock = std::chrono::steady_clock;

double microseconds(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// One case of ours; the time in µs, or -1 when a lookup found nothing.
double oursCase(const std::string& theme, const std::string& which, const std::vector<std::string>& names)
{
    size_t found = 0;
    if (which == "first") {
        VyxIconTheme loaded(theme, "", true);
        // The theme's process-wide lists and listings are made by a lookup
        // of a name it does not have.
        loaded.getIconPath("vyx-bench-name-that-exists-nowhere", 48, nullptr);
        const Clock::time_point start = Clock::now();
        found += !loaded.getIconPath(names[0].c_str(), 48, nullptr).empty();
        const double elapsed = microseconds(start);
        return found == 1 ? elapsed : -1;
    }
    const Clock::time_point start = Clock::now();
    VyxIconTheme loaded(theme, "", true);
    for (const std::string& name : names)
        found += !loaded.getIconPath(name.c_str(), 48, nullptr).empty();
    const double elapsed = microseconds(start);
    return found == names.size() ? elapsed : -1;
}

bool gtkLookup(GtkIconTheme* theme, const char* name)
{
    GtkIconInfo* info = gtk_icon_theme_lookup_icon(theme, name, 48, GtkIconLookupFlags(0));
    const bool found = info && gtk_icon_info_get_filename(info);
    if (info)
        g_object_unref(info);
    return found;
}

double gtkCase(const std::string& theme, const std::string& which, const std::vector<std::string>& names)
{
    size_t found = 0;
    if (which == "first") {
        GtkIconTheme* loaded = gtk_icon_theme_new();
        gtk_icon_theme_set_custom_theme(loaded, theme.c_str());
        gtk_icon_theme_has_icon(loaded, "vyx-bench-name-that-exists-nowhere");
        const Clock::time_point start = Clock::now();
        found += gtkLookup(loaded, names[0].c_str());
        const double elapsed = microseconds(start);
        g_object_unref(loaded);
        return found == 1 ? elapsed : -1;
    }
    const Clock::time_point start = Clock::now();
    GtkIconTheme* loaded = gtk_icon_theme_new();
    gtk_icon_theme_set_custom_theme(loaded, theme.c_str());
    for (const std::string& name : names)
        found += gtkLookup(loaded, name.c_str());
    const double elapsed = microseconds(start);
    g_object_unref(loaded);
    return found == names.size() ? elapsed : -1;
}

size_t nameCount(const std::string& which)
{
    return which == "load+2000" ? 2000 : which == "load+50" ? 50 : 1;
}

int child(const std::string& who, const std::string& which, const std::string& theme)
{
    const std::vector<std::string> names = iconNames(theme, nameCount(which));
    if (names.empty())
        return 1;
    const double elapsed = who == "gtk" ? gtkCase(theme, which, names) : oursCase(theme, which, names);
    std::printf("%.3f\n", elapsed);
    return elapsed < 0 ? 1 : 0;
}

// The time one fresh process reports; -1 when it failed.
double runChild(const char* self, const std::string& who, const std::string& which, const std::string& theme)
{
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0)
        return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(pipeFds[1], STDOUT_FILENO);
        execl(self, self, "--child", who.c_str(), which.c_str(), theme.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(pipeFds[1]);
    char text[64] = {};
    ssize_t length = pid > 0 ? read(pipeFds[0], text, sizeof text - 1) : -1;
    close(pipeFds[0]);
    int status = 0;
    if (pid > 0)
        waitpid(pid, &status, 0);
    if (length <= 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return -1;
    return std::atof(text);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 5 && std::strcmp(argv[1], "--child") == 0)
        return child(argv[2], argv[3], argv[4]);
    int runs = 15;
    std::string theme = "Adwaita";
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--runs") == 0)
            runs = std::max(1, std::atoi(argv[i + 1]));
        else if (std::strcmp(argv[i], "--theme") == 0)
            theme = argv[i + 1];
    }
    std::printf("theme %s, 48 px, %d fresh processes per figure, medians in µs\n", theme.c_str(), runs);
    std::printf("%-10s %12s %12s %8s\n", "case", "ours", "gtk", "gtk/ours");
    for (const char* which : {"load+50", "load+2000", "first"}) {
        std::vector<double> ours, gtk;
        // Alternated, so that neither side has the quieter moments.
        for (int run = 0; run < runs; ++run) {
            ours.push_back(runChild(argv[0], "ours", which, theme));
            gtk.push_back(runChild(argv[0], "gtk", which, theme));
        }
        if (std::count(ours.begin(), ours.end(), -1.0) || std::count(gtk.begin(), gtk.end(), -1.0)) {
            std::printf("%-10s a run failed or a name was not found\n", which);
            continue;
        }
        const double a = median(ours), b = median(gtk);
        std::printf("%-10s %12.1f %12.1f %8.2f\n", which, a, b, a > 0 ? b / a : 0);
    }
    return 0;
}
