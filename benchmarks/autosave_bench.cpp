#include "creator/music_creator_module.h"
#include "project/song_snapshot.h"
#include "song/global_channels_manager.h"
#include "song/tempo_change_class.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <vector>

/// How long the interface thread stands still while an autosave copies a song of 100 channels with 10 000
/// notes each: all of it for the first time, and after an edit in one channel, which is what each later copy
/// meets. The program fails when the whole costs more than WHOLE_BOUND times a plain copy of the same rows,
/// or the later copy more than a tenth of the whole.

namespace {

using namespace tonvex;

constexpr int EVENTS = 10'000;
constexpr int ROUNDS = 11;
constexpr double WHOLE_BOUND = 8.0;
constexpr double LATER_BOUND = 0.1;

class Host final : public Channel_Host {
public:
    double Song_Length_Beats() const override { return 0.0; }
    bool Live_Changes_On() const override { return false; }
    void Event_Fell_Out(std::int32_t, std::int32_t) override {}
    double Clip_Length_Beats(double, std::int32_t) const override { return 0.0; }
    void Retype_Chord(QChordData&, std::uint8_t) const override {}
    void Rename_Chord(QChordData&, int) const override {}
};

template <typename Work>
double Best_Ms(Work work) {
    double best = 1e9;
    for (int round = 0; round < ROUNDS; ++round) {
        const auto begun = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begun;
        best = std::min(best, took.count());
    }
    return best;
}

} // namespace

int main() {
    Host host;
    GlobalChannelsManager channels(host);
    TempoChangeClass tempoChanges;
    Song_Marks marks;
    Project_State state;
    MusicCreator_Module creator;
    EventsEditor_Setup editorSetup;
    Channels_List_Rows channelsList;
    std::vector<std::string> fonts;
    const Song_Model model{channels, tempoChanges, marks, state, creator, editorSetup, channelsList, fonts};
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        channels.Add_Channel(channels.New_ChannelID(), false, row % 32, "");
        for (int i = 0; i < EVENTS; ++i)
            channels.Store(row).AddNewEvent(i * 0.5, NoteData{60, 100, 0.25});
    }
    const std::vector<ChannelEvent> rows(EVENTS);
    const std::vector<NoteData> notes(EVENTS);
    const double plain = Best_Ms([&] {
        // All of it at once, as the copied song is.
        std::vector<std::vector<ChannelEvent>> rowCopies(GlobalChannelsManager::CHANNEL_ROWS, rows);
        std::vector<std::vector<NoteData>> noteCopies(GlobalChannelsManager::CHANNEL_ROWS, notes);
        benchmark::DoNotOptimize(rowCopies.data());
        benchmark::DoNotOptimize(noteCopies.data());
        benchmark::ClobberMemory();
    });
    const auto edit = [&](int row) { channels.Store(row).Set_Event_Volume(FIRST_ID, 1, NOT_GIVEN); };
    const double whole = Best_Ms([&] {
        for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
            edit(row); // so that nothing is shared
        const Song_Snapshot song = Take_Snapshot(model);
        benchmark::DoNotOptimize(&song);
    });
    Song_Snapshot last = Take_Snapshot(model);
    const double later = Best_Ms([&] {
        edit(7);
        last = Take_Snapshot(model);
    });
    const double wholeRatio = whole / plain;
    const double laterRatio = later / whole;
    std::printf("pause for the whole song      %8.2f ms, %.2f times a plain copy of its rows (bound %.1f)\n",
                whole, wholeRatio, WHOLE_BOUND);
    std::printf("pause after one edit          %8.2f ms, %.3f of the whole (bound %.2f)\n", later, laterRatio,
                LATER_BOUND);
    return wholeRatio <= WHOLE_BOUND && laterRatio <= LATER_BOUND ? 0 : 1;
}
