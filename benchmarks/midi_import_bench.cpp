#include "project/midi_format.h"
#include "support/test_session.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What importing a MIDI file costs, against what midicsv needs to list the same file. A check behind the
// figures says whether the import is the cheaper one; the program fails when it is not.

namespace tonvex {
namespace {

namespace fs = std::filesystem;

constexpr int ROUNDS = 7;
const fs::path REAL_SONGS = "/usr/share/games/openttd/baseset/openmsx";

double Seconds(const rusage& usage) {
    constexpr double MICRO = 1e-6;
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * MICRO;
}

/// 16 channels, a note on and off every tick on each.
std::string Large_File() {
    constexpr int NOTES_A_CHANNEL = 20000;
    midi_format::Bytes file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, midi_format::CHANNELS, 0, 96};
    for (int channel = 0; channel < midi_format::CHANNELS; ++channel) {
        midi_format::Bytes track;
        for (int note = 0; note < NOTES_A_CHANNEL; ++note) {
            const auto number = static_cast<std::uint8_t>(36 + note % 48);
            for (const int status : {0x90, 0x80})
                track.insert(track.end(), {std::uint8_t{1}, static_cast<std::uint8_t>(status + channel),
                                           number, std::uint8_t{100}});
        }
        midi_format::Append_Track(file, track);
    }
    return {file.begin(), file.end()};
}

fs::path Largest_Real_File() {
    fs::path largest;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(REAL_SONGS, error))
        if (entry.path().extension() == ".mid" &&
            (largest.empty() || entry.file_size() > fs::file_size(largest)))
            largest = entry.path();
    return largest;
}

/// CPU seconds of one call of midicsv; below 0 when there is none.
double List_With_Midicsv(const fs::path& file) {
    std::string program = "midicsv";
    std::string name = file.string();
    char* const words[] = {program.data(), name.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int failed = posix_spawnp(&child, words[0], &actions, nullptr, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    rusage usage{};
    if (failed != 0 || wait4(child, &status, 0, &usage) != child || status != 0)
        return -1.0;
    return Seconds(usage);
}

double Import(Session& session, const fs::path& file) {
    rusage before{};
    rusage behind{};
    getrusage(RUSAGE_SELF, &before);
    const bool done = session.midiImport->ImportMidi(file) == Work_Outcome::Done;
    getrusage(RUSAGE_SELF, &behind);
    return done ? Seconds(behind) - Seconds(before) : -1.0;
}

template <typename Work>
double Median(const Work& work) {
    std::vector<double> seconds;
    for (int round = 0; round < ROUNDS; ++round)
        seconds.push_back(work());
    std::sort(seconds.begin(), seconds.end());
    return seconds.front() < 0.0 ? -1.0 : seconds[ROUNDS / 2];
}

bool Is_Cheaper(const char* name, Session& session, const fs::path& file) {
    constexpr double MS = 1000.0;
    const double listed = Median([&file] { return List_With_Midicsv(file); });
    const double imported = Median([&] { return Import(session, file); });
    if (listed < 0.0 || imported < 0.0) {
        std::printf("%-12s not measured: midicsv or the file is missing\n", name);
        return false;
    }
    const bool fine = imported < listed;
    std::printf("%-12s import %8.2f ms CPU, midicsv %8.2f ms CPU, ratio %.2f (below 1) %s\n", name,
                imported * MS, listed * MS, imported / listed, fine ? "ok" : "TOO SLOW");
    return fine;
}

void Measure(benchmark::State& state, Session& session, const fs::path& file) {
    for (auto _ : state)
        benchmark::DoNotOptimize(session.midiImport->ImportMidi(file));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(file)));
}

} // namespace
} // namespace tonvex

int main(int argc, char** argv) {
    using namespace tonvex;
    Test_Session bed;
    Session& session = bed.Load();
    const fs::path large = bed.folder.Write("large.mid", Large_File());
    const fs::path real = Largest_Real_File();
    benchmark::RegisterBenchmark("import_large", [&](benchmark::State& state) {
        Measure(state, session, large);
    })->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    const bool realIsFine = Is_Cheaper("real song", session, real);
    return Is_Cheaper("large file", session, large) && realIsFine ? 0 : 1;
}
