#include "bench_song.h"

#include <chrono>
#include <cstdio>

/// Time of one recording round with all 100 channels playing, by events a channel. A round must not cost
/// more in a long song: the last line gives the ratio and the program fails at 2 or above.

namespace {

using namespace tonvex;

constexpr int ROUNDS = 2000; ///< of 1 ms

struct Recorded_Song {
    Recorded_Song(int eventsAChannel, bool threadEngine)
        : song(counter, loop, Cue_Drive::Stepped, eventsAChannel, threadEngine) {}

    /// Nanoseconds a round, from the start of the song, set-up left out.
    double Measure() {
        auto begun = std::chrono::steady_clock::now();
        std::chrono::steady_clock::duration took{};
        int rounds = 0;
        loop.betweenRounds = [&](std::int64_t) {
            if (++rounds == 2) // the first round reads each channel's first rows into the cache
                begun = std::chrono::steady_clock::now();
            if (rounds == ROUNDS) {
                took = std::chrono::steady_clock::now() - begun;
                song.state.StopTransportRequest = true;
            }
        };
        song.recorder.StartRecording(0.0, 1.0F, song.channels.Channels[0].ChannelID, false, false, false);
        return std::chrono::duration<double, std::nano>(took).count() / (ROUNDS - 2);
    }

    Simulated_Counter counter;
    Simulated_Run_Loop loop{counter};
    bench::Bench_Song song;
};

double Median_Of_Ten(Recorded_Song& song) {
    std::vector<double> times;
    for (int i = 0; i < 10; ++i)
        times.push_back(song.Measure());
    return bench::Median(times);
}

/// The ratio of a long song's round to a short one's, told.
double Ratio(const char* engine, bool threadEngine) {
    Recorded_Song shortSong(100, threadEngine);
    Recorded_Song longSong(100'000, threadEngine);
    const double shortRound = Median_Of_Ten(shortSong);
    const double longRound = Median_Of_Ten(longSong);
    std::printf("one recording round, %s engine, 100 channels, median of ten runs of %d rounds\n", engine,
                ROUNDS);
    std::printf("       100 events a channel: %8.0f ns\n", shortRound);
    std::printf("    100000 events a channel: %8.0f ns\n", longRound);
    std::printf("ratio %.2f (must stay under 2)\n", longRound / shortRound);
    return longRound / shortRound;
}

} // namespace

int main() {
    const bool polling = Ratio("polling", false) < 2.0;
    const bool thread = Ratio("thread", true) < 2.0;
    return polling && thread ? 0 : 1;
}
