#include "bench_song.h"

#include "platform/qt/qt_run_loop.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>

/// What playing by the player library costs, each against a baseline of the same run:
/// - a song of 100 channels of 10 000 notes rendered into lists and handed over, against a bare copy of the
/// same
///   rows (under 6);
/// - the library's processor time for a row when 100 lists play, against one list with as many rows in the
/// same
///   time (under 1.5);
/// - processor time of a play in which nothing sounds, against a loop of the window system's timer of 1 ms
/// that does
///   nothing (under 1.5).
/// Status 1 when a ratio is out of its bounds.

namespace {

using namespace tonvex;
using bench::Cpu_Seconds;
using bench::Median;

constexpr int NOTES_A_CHANNEL = 10'000;
constexpr int ROUNDS = 7;
constexpr std::int64_t NS_PER_MS = 1'000'000;

bool Tell(const char* what, double own, double baseline, double ratio, double limit) {
    const bool fine = ratio < limit;
    std::printf("%-34s %10.3f ms against %10.3f ms: %.2f times (under %.1f) %s\n", what, own * 1e3,
                baseline * 1e3, ratio, limit, fine ? "" : "TOO MUCH");
    return fine;
}

/// Row by row into lists of the kind that rendering fills, all of them kept.
std::vector<Render_MidiEventColClass> Copy_Lists(const std::vector<std::vector<CueRow>>& lists) {
    std::vector<Render_MidiEventColClass> copies(lists.size());
    for (std::size_t i = 0; i < lists.size(); ++i)
        for (const CueRow& row : lists[i])
            copies[i].AddEvent(row.Channel, row.Time, row.Data1, row.Data2, row.Extra);
    return copies;
}

std::vector<Render_MidiEventColClass> Render_Lists(RenderModule& render) {
    std::vector<Render_MidiEventColClass> lists;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        lists.push_back(render.Render_Channel(row));
    return lists;
}

template <typename Work>
double Thread_Seconds(Work work) {
    const double before = Cpu_Seconds();
    [[maybe_unused]] const auto kept = work();
    return Cpu_Seconds() - before;
}

bool Rendering() {
    Simulated_Counter counter;
    Simulated_Run_Loop loop(counter);
    bench::Bench_Song song(counter, loop, Cue_Drive::Stepped, NOTES_A_CHANNEL, true);
    std::vector<std::vector<CueRow>> rows;
    for (const Render_MidiEventColClass& rendered : Render_Lists(song.render)) {
        std::vector<CueRow>& list = rows.emplace_back(static_cast<std::size_t>(rendered.TotalEvents()));
        for (std::int32_t i = 0; i < rendered.TotalEvents(); ++i) {
            CueRow& to = list[static_cast<std::size_t>(i)];
            rendered.GetEvent(i, to.Channel, to.Time, to.Data1, to.Data2);
        }
    }
    std::vector<double> own;
    std::vector<double> baseline;
    std::vector<double> ratios;
    std::vector<double> started;
    for (int round = 0; round < ROUNDS; ++round) {
        baseline.push_back(Thread_Seconds([&] { return Copy_Lists(rows); }));
        own.push_back(Thread_Seconds([&] { return Render_Lists(song.render); }));
        started.push_back(Thread_Seconds([&] { return song.render.Render_Start(RenderModule::NO_CHANNEL); }));
        ratios.push_back(own.back() / baseline.back());
    }
    std::printf("%-34s %10.3f ms\n", "  the same, and handed over sorted", Median(started) * 1e3);
    return Tell("rendering 100 channels", Median(own), Median(baseline), Median(ratios), 6.0);
}

/// Processor seconds of the library while it plays lists lists of notes, all rows together the same.
double Play_Lists(int lists) {
    constexpr int ROWS = 200'000;
    constexpr double BEATS = 100.0; // at 80 a minute 75 s
    Simulated_Counter counter;
    Silent_Sound_Door sound;
    Scripted_Midi_Ports midi(counter);
    Midi_Cue_Output output(sound, midi);
    CueEngine cue(counter, output, Cue_Drive::Stepped);
    cue.InitDLL();
    cue.Init_SetOutput(true, 0);
    cue.Init_Buffers(lists - 1, ROWS / lists);
    for (int list = 0; list < lists; ++list) {
        std::vector<CueRow> rows;
        rows.push_back({0.0, 0, CueRow::LIST_MARKER, static_cast<std::uint16_t>(list), 0});
        for (int i = list; i < ROWS; i += lists)
            rows.push_back({BEATS * i / ROWS, static_cast<std::int16_t>(i / 2 % 32),
                            static_cast<std::uint16_t>(36 + i / 2 % 48),
                            static_cast<std::uint16_t>(i / lists % 2 == 0 ? 100 : 0), 0});
        cue.AddEvents(list, rows.data(), static_cast<std::int32_t>(rows.size()));
    }
    cue.clock_SetPars(1.0F, 80, counter.Now_Ns(), 0, 0.0, {});
    cue.Player_SetPos(0.0);
    cue.Player_Start();
    const double before = Cpu_Seconds();
    while (!cue.At_End()) {
        counter.Advance_Ms(1);
        cue.Step();
    }
    return Cpu_Seconds() - before;
}

bool Lists() {
    std::vector<double> one;
    std::vector<double> hundred;
    std::vector<double> ratios;
    for (int round = 0; round < ROUNDS; ++round) {
        one.push_back(Play_Lists(1));
        hundred.push_back(Play_Lists(100));
        ratios.push_back(hundred.back() / one.back());
    }
    return Tell("playing 100 lists, one", Median(hundred), Median(one), Median(ratios), 1.5);
}

/// Processor seconds of the process while work goes on for as long as a timer says.
template <typename Work>
double Process_Seconds(Work work) {
    const double before = Cpu_Seconds(CLOCK_PROCESS_CPUTIME_ID);
    work();
    return Cpu_Seconds(CLOCK_PROCESS_CPUTIME_ID) - before;
}

bool Idle_Play() {
    constexpr auto LENGTH = std::chrono::seconds(3);
    Monotonic_Counter counter;
    Qt_Run_Loop loop;
    // One channel's note far behind the end, so that the play does not end by itself.
    bench::Bench_Song song(counter, loop, Cue_Drive::Threaded, 1, true, 10'000.0);
    std::vector<double> own;
    std::vector<double> baseline;
    std::vector<double> ratios;
    for (int round = 0; round < ROUNDS; ++round) {
        baseline.push_back(Process_Seconds([&] {
            const auto end = std::chrono::steady_clock::now() + LENGTH;
            loop.Run([&] { return std::chrono::steady_clock::now() < end; });
        }));
        own.push_back(Process_Seconds([&] {
            QTimer::singleShot(LENGTH, [&] { song.state.PlayRequested = false; });
            song.player.Transport_Play(0.0, false, 1.0F);
        }));
        ratios.push_back(own.back() / baseline.back());
    }
    return Tell("a play in which nothing sounds", Median(own), Median(baseline), Median(ratios), 1.5);
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QApplication application(argc, argv);
    const bool rendering = Rendering();
    const bool lists = Lists();
    const bool idle = Idle_Play();
    return rendering && lists && idle ? EXIT_SUCCESS : EXIT_FAILURE;
}
