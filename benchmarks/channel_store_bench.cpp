#include "song/channel_class.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <memory>
#include <random>
#include <vector>

// Costs of one channel's event store by the number of its events. After the figures a check says whether
// they grow no faster than n log n; the program fails when one does.

namespace tonvex {
namespace {

class Quiet_Host final : public Channel_Host {
public:
    double Song_Length_Beats() const override { return 0.0; }
    bool Live_Changes_On() const override { return false; }
    void Event_Fell_Out(std::int32_t /*channelNumber*/, std::int32_t /*eventId*/) override {}
    double Clip_Length_Beats(double /*startBeat*/, std::int32_t sampleCount) const override {
        return sampleCount / 22050.0;
    }
    void Retype_Chord(QChordData& /*chord*/, std::uint8_t /*chordType*/) const override {}
    void Rename_Chord(QChordData& /*chord*/, int /*semitones*/) const override {}
};

struct Song {
    Quiet_Host host;
    ChannelClass store{host};
    std::vector<double> times;     ///< one each event, in no order
    std::vector<std::int32_t> ids; ///< of the events, in no order
};

constexpr NoteData NOTE{60, 100, 0.5};

std::unique_ptr<Song> Empty_Song(std::int64_t count) {
    auto song = std::make_unique<Song>();
    std::mt19937 random(7);
    std::uniform_real_distribution<double> anywhere(0.0, static_cast<double>(count));
    for (std::int64_t i = 0; i < count; ++i)
        song->times.push_back(anywhere(random));
    return song;
}

/// Events in order of arrival at times in no order, linked.
std::unique_ptr<Song> Full_Song(std::int64_t count) {
    auto song = Empty_Song(count);
    for (const double time : song->times)
        song->ids.push_back(song->store.AddNewEvent(time, NOTE, true));
    song->store.ReSort_StartTime();
    std::shuffle(song->ids.begin(), song->ids.end(), std::mt19937(8));
    return song;
}

/// As Full_Song, with every other payload row free.
std::unique_ptr<Song> Full_Of_Holes(std::int64_t count) {
    auto song = Full_Song(2 * count);
    for (std::size_t i = 0; i < song->ids.size(); i += 2)
        song->store.DeleteEvent(song->ids[i]);
    return song;
}

void Add_In_Order(Song& song) {
    double time = 0.0;
    for (std::size_t i = 0; i < song.times.size(); ++i)
        song.store.AddNewEvent(time += 0.25, NOTE);
}

void Add_Anywhere(Song& song) {
    for (const double time : song.times)
        song.store.AddNewEvent(time, NOTE);
}

void Add_Appended_Then_Sort(Song& song) {
    for (const double time : song.times)
        song.store.AddNewEvent(time, NOTE, true);
    song.store.ReSort_StartTime();
}

/// All events dragged somewhere else, as an editor does with a selection.
void Move_All_Then_Sort(Song& song) {
    for (std::size_t i = 0; i < song.ids.size(); ++i)
        song.store.Set_Event_StartTime(song.ids[i], song.times[i]);
    song.store.ReSort_StartTime();
}

void Sort_Again(Song& song) {
    song.store.ReSort_StartTime();
}

void Find_By_ID(Song& song) {
    for (const std::int32_t id : song.ids)
        benchmark::DoNotOptimize(song.store.GetEvent_I(id));
}

void Find_By_Time(Song& song) {
    for (const double time : song.times)
        benchmark::DoNotOptimize(song.store.First_Event_At(time));
}

void Delete_All(Song& song) {
    for (const std::int32_t id : song.ids)
        song.store.DeleteEvent(id);
}

void Add_And_Delete_Anywhere(Song& song) {
    for (std::size_t i = 0; i < song.ids.size(); ++i) {
        song.store.AddNewEvent(song.times[i], NOTE);
        song.store.DeleteEvent(song.ids[i]);
    }
}

/// From the back, where each event deleted is the one that ends last.
void Delete_And_Ask_Length(Song& song) {
    while (song.store.DeleteEvent(0, song.store.LastTimeEvent() == -1 ? 0 : song.store.LastTimeEvent()))
        benchmark::DoNotOptimize(song.store.Get_ChannelLength_Beats());
}

void Compact_Payloads(Song& song) {
    song.store.Defrag_Data();
}

/// One cost: what is measured starts from a fresh song each time.
struct Cost {
    const char* name;
    std::unique_ptr<Song> (*song)(std::int64_t count);
    void (*run)(Song& song);
};

constexpr std::array<Cost, 11> COSTS = {{
    {"add_in_order", Empty_Song, Add_In_Order},
    {"add_anywhere", Empty_Song, Add_Anywhere},
    {"append_then_sort", Empty_Song, Add_Appended_Then_Sort},
    {"move_all_then_sort", Full_Song, Move_All_Then_Sort},
    {"sort_again", Full_Song, Sort_Again},
    {"find_all_by_id", Full_Song, Find_By_ID},
    {"find_all_by_time", Full_Song, Find_By_Time},
    {"delete_all", Full_Song, Delete_All},
    {"add_and_delete_anywhere", Full_Song, Add_And_Delete_Anywhere},
    {"delete_and_ask_length", Full_Song, Delete_And_Ask_Length},
    {"compact", Full_Of_Holes, Compact_Payloads},
}};

/// Of the processor, not of the wall: on a busy machine long runs are interrupted and short ones are not.
double Seconds_Now() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double Seconds_Of(const Cost& cost, Song& song) {
    const double begin = Seconds_Now();
    cost.run(song);
    return Seconds_Now() - begin;
}

void Measure(benchmark::State& state, const Cost& cost) {
    for (auto _ : state) {
        const auto song = cost.song(state.range(0));
        state.SetIterationTime(Seconds_Of(cost, *song));
    }
    state.SetComplexityN(state.range(0));
    state.counters["ns_per_event"] =
        benchmark::Counter(static_cast<double>(state.range(0)) * 1e-9,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Median of several runs, so that a busy machine does not decide.
double Median_Seconds(const Cost& cost, std::int64_t count) {
    std::array<double, 7> seconds{};
    for (double& one : seconds) {
        const auto song = cost.song(count);
        one = Seconds_Of(cost, *song);
    }
    std::sort(seconds.begin(), seconds.end());
    return seconds[seconds.size() / 2];
}

/// A hundred times the events may take 167 times as long by n log n. On the way the data outgrow the
/// processor's caches, which makes each access dearer by up to about ten; growth with the square would be
/// 10000 times.
bool Growth_Is_Fine(const Cost& cost) {
    constexpr std::int64_t FEW = 1000;
    constexpr std::int64_t MANY = 100000;
    constexpr double CACHE_SLACK = 10.0;
    const auto nLogN = [](double n) { return n * std::log2(n); };
    const double allowed = nLogN(MANY) / nLogN(FEW) * CACHE_SLACK;
    const double ratio = Median_Seconds(cost, MANY) / Median_Seconds(cost, FEW);
    const bool fine = ratio <= allowed;
    std::printf("growth %-26s 1000 to 100000 events: %6.0f times (at most %.0f) %s\n", cost.name, ratio,
                allowed, fine ? "ok" : "TOO FAST");
    return fine;
}

} // namespace
} // namespace tonvex

int main(int argc, char** argv) {
    using namespace tonvex;
    // Memory once used is kept: else the kernel's zeroing of big blocks outweighs what is measured.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    for (const Cost& cost : COSTS)
        benchmark::RegisterBenchmark(cost.name, Measure, cost)
            ->Arg(1000)
            ->Arg(10000)
            ->Arg(100000)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Complexity(benchmark::oNLogN);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    bool fine = true;
    for (const Cost& cost : COSTS)
        fine = Growth_Is_Fine(cost) && fine;
    return fine ? 0 : 1;
}
