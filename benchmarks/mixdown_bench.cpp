// What a mixdown costs: user processor time and peak memory of "tonvex-cli render" of real MIDI files against
// "fluidsynth -F" of the same files with the same font, effects off in both. Prints one line a file; status 1
// when the time's ratio is 1.25 or more, or the memory's 2 or more. The best of several rounds counts.
// Further arguments are MIDI files to take in place of those of the package openttd-openmsx.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int ROUNDS = 3;
constexpr double TIME_LIMIT = 1.25;
constexpr double MEMORY_LIMIT = 2.0;
constexpr const char* FONT = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr const char* SONGS = "/usr/share/games/openttd/baseset/openmsx";

struct Cost {
    double userSeconds = 1e9;
    double megabytes = 1e9;
    bool failed = false;
};

Cost Run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int file : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, file, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int problem = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    Cost cost;
    int status = -1;
    rusage usage{};
    cost.failed = problem != 0 || wait4(child, &status, 0, &usage) != child || status != 0;
    cost.userSeconds =
        static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) * 1e-6;
    cost.megabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return cost;
}

void Keep_Best(Cost& best, const Cost& cost) {
    best.userSeconds = std::min(best.userSeconds, cost.userSeconds);
    best.megabytes = std::min(best.megabytes, cost.megabytes);
    best.failed = best.failed || cost.failed;
}

std::vector<std::string> Stock_Songs() {
    std::vector<std::string> songs;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(SONGS, error))
        if (entry.path().extension() == ".mid")
            songs.push_back(entry.path().string());
    std::sort(songs.begin(), songs.end());
    songs.resize(std::min<std::size_t>(songs.size(), 4));
    return songs;
}

/// True when the mixdown is within its bounds.
bool Compare(const std::string& song, const fs::path& folder) {
    Cost own;
    Cost other;
    for (int round = 0; round < ROUNDS; ++round) {
        Keep_Best(other, Run({"fluidsynth", "-q", "-ni", "-R", "0", "-C", "0", "-r", "44100", "-O", "s16",
                              "-T", "wav", "-F", (folder / "other.wav").string(), FONT, song}));
        Keep_Best(own, Run({TONVEX_CLI, "--data", TONVEX_SOURCE_DATA, "--soundfont", FONT, "render", song,
                            (folder / "own.wav").string()}));
    }
    const std::string name = fs::path(song).filename().string();
    if (own.failed || other.failed) {
        std::printf("%-32s %s failed\n", name.c_str(), own.failed ? "tonvex-cli" : "fluidsynth");
        return false;
    }
    const double time = own.userSeconds / other.userSeconds;
    const double memory = own.megabytes / other.megabytes;
    std::printf("%-32s user %.2f s / %.2f s = %.2f (< %.2f)   memory %.0f MB / %.0f MB = %.2f (< %.0f)\n",
                name.c_str(), own.userSeconds, other.userSeconds, time, TIME_LIMIT, own.megabytes,
                other.megabytes, memory, MEMORY_LIMIT);
    return time < TIME_LIMIT && memory < MEMORY_LIMIT;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> songs(argv + 1, argv + argc);
    if (songs.empty())
        songs = Stock_Songs();
    if (songs.empty() || !fs::exists(FONT)) {
        std::puts("There are no songs or no font to measure with: see packages.txt, group bench");
        return EXIT_FAILURE;
    }
    std::string name = (fs::temp_directory_path() / "tonvex-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        return EXIT_FAILURE;
    bool fine = true;
    for (const std::string& song : songs)
        fine = Compare(song, name) && fine;
    fs::remove_all(name);
    return fine ? EXIT_SUCCESS : EXIT_FAILURE;
}
