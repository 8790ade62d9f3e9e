#include "engine/midi_cue_output.h"
#include "engine/recorder_class.h"
#include "engine/render_module.h"
#include "platform/scripted_midi_ports.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <vector>

/// Time of one recording round with all 100 channels playing, by events a channel. A round must not cost
/// more in a long song: the last line gives the ratio and the program fails at 2 or above.

namespace {

using namespace tonvex;

constexpr int ROUNDS = 2000; ///< of 1 ms
constexpr double BEATS_APART = 0.5;

class Quiet_Sound final : public Sound_Door {
public:
    bool Open(const Sound_Request&, std::string&) override { return true; }
    void Close() override {}
    Sound_Status Status() override { return {}; }
    int Minimum_Buffer_Ms() const override { return 0; }
    bool Post(const Sound_Message& message) noexcept override {
        benchmark::DoNotOptimize(message.dueNs);
        return true;
    }
    bool Post_From_Player(const Sound_Message&) noexcept override { return true; }
    bool Take_Back_From_Player(std::int64_t) noexcept override { return true; }
    std::vector<std::int32_t> Set_Fonts(const std::vector<std::filesystem::path>&) override { return {}; }
    void Set_Effects(int, const Effect_Settings&) noexcept override {}
    void Set_Master_Volume(int) noexcept override {}
    int Master_Volume() const noexcept override { return 127; }
    void Set_Amplification(float) noexcept override {}
    float Slot_Peak(int) noexcept override { return 0.0F; }
};

/// A song of 100 channels with notes every half beat, all alike, under a recorder.
class Song final : public Channel_Host, public Change_Hub {
public:
    Song(int eventsAChannel, bool threadEngine) {
        options.Global_UseThreadEngine = threadEngine;
        cue.InitDLL();
        output.Midi_OpenDevice(midiapi::SYNTH_DEVICE);
        keys.counter = &counter;
        input.Input_Open();
        for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
            channels.Add_Channel(channels.New_ChannelID(), false, row % 32, "");
            for (int i = 0; i < eventsAChannel; ++i)
                channels.Store(row).AddNewEvent(
                    i * BEATS_APART, NoteData{static_cast<std::uint8_t>(40 + row % 60), 100, 0.25}, true);
            channels.Store(row).ReSort_StartTime();
        }
    }
    double Song_Length_Beats() const override { return 0.0; }
    bool Live_Changes_On() const override { return state.LiveChanges; }
    void Event_Fell_Out(std::int32_t, std::int32_t) override {}
    double Clip_Length_Beats(double, std::int32_t) const override { return 0.0; }
    void Retype_Chord(QChordData&, std::uint8_t) const override {}
    void Rename_Chord(QChordData&, int) const override {}
    void Send(Msg_Sender, int, const Args&) override {}

    /// Nanoseconds a round, from the start of the song, set-up left out.
    double Measure() {
        auto begun = std::chrono::steady_clock::now();
        int rounds = 0;
        loop.betweenRounds = [&](std::int64_t) {
            if (++rounds == 2) // the first round reads each channel's first rows into the cache
                begun = std::chrono::steady_clock::now();
            if (rounds == ROUNDS) {
                took = std::chrono::steady_clock::now() - begun;
                state.StopTransportRequest = true;
            }
        };
        recorder.StartRecording(0.0, 1.0F, channels.Channels[0].ChannelID, false, false, false);
        return std::chrono::duration<double, std::nano>(took).count() / (ROUNDS - 2);
    }

private:
    Simulated_Counter counter;
    Simulated_Run_Loop loop{counter};
    Project_State project;
    TempoChangeClass tempoChanges;
    NotesStuff notes;
    Transport_State state;
    Transport_Options options;
    Quiet_Sound sound;
    Recorded_Dialogs dialogs;
    Scripted_Key_State keys;
    Scripted_Midi_Ports midi{counter};
    GlobalChannelsManager channels{*this};
    midiapi output{sound, midi, dialogs, counter, channels};
    GCM_Midi gcm{output, channels, state};
    KeyboardClass keyboard{keys, dialogs};
    MidiIn_Module midiIn{midi};
    InputHandler input{keyboard, midiIn};
    KeyboardLayout layout{notes, dialogs};
    std::vector<Transport_Observer*> observers;
    Fingerpick_Patterns fingerpicks{{}, notes};
    Midi_Cue_Output cueOutput{sound, midi};
    CueEngine cue{counter, cueOutput, Cue_Drive::Stepped};
    RenderModule render{channels, gcm, cue, loop, {tempoChanges, project, fingerpicks}};
    Transport_Parts parts{channels, tempoChanges, project,     output,  gcm,   input,
                          layout,   *this,        state,       options, loop,  counter,
                          dialogs,  observers,    fingerpicks, cue,     render};
    RecorderClass recorder{parts};
    std::chrono::steady_clock::duration took{};
};

double Median_Of_Ten(Song& song) {
    std::vector<double> times;
    for (int i = 0; i < 10; ++i)
        times.push_back(song.Measure());
    std::sort(times.begin(), times.end());
    return (times[4] + times[5]) / 2.0;
}

/// The ratio of a long song's round to a short one's, told.
double Ratio(const char* engine, bool threadEngine) {
    Song shortSong(100, threadEngine);
    Song longSong(100'000, threadEngine);
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
