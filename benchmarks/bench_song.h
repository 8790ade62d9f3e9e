#pragma once

#include "cli/silent_sound_door.h"
#include "engine/midi_cue_output.h"
#include "engine/recorder_class.h"
#include "engine/render_module.h"
#include "platform/scripted_midi_ports.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace tonvex::bench {

/// A song of 100 channels with notes every half beat, all alike, with what plays it. The clock and the loop
/// are the caller's.
class Bench_Song final : public Channel_Host, public Change_Hub {
public:
    static constexpr double BEATS_APART = 0.5;

    /// firstBeat: where each channel's first note stands.
    Bench_Song(const Millisecond_Counter& clock, Run_Loop& runLoop, Cue_Drive drive, int eventsAChannel,
               bool threadEngine, double firstBeat = 0.0)
        : counter(clock), loop(runLoop), cue(clock, cueOutput, drive) {
        options.Global_UseThreadEngine = threadEngine;
        cue.InitDLL();
        output.Midi_OpenDevice(midiapi::SYNTH_DEVICE);
        keys.counter = &counter;
        input.Input_Open();
        for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
            channels.Add_Channel(channels.New_ChannelID(), false, row % 32, "");
            for (int i = 0; i < eventsAChannel; ++i)
                channels.Store(row).AddNewEvent(firstBeat + i * BEATS_APART,
                                                NoteData{static_cast<std::uint8_t>(40 + row % 60), 100, 0.25},
                                                true);
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

    const Millisecond_Counter& counter;
    Run_Loop& loop;
    Project_State project;
    TempoChangeClass tempoChanges;
    NotesStuff notes;
    Transport_State state;
    Transport_Options options;
    Silent_Sound_Door sound;
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
    CueEngine cue;
    RenderModule render{channels, gcm, cue, loop, {tempoChanges, project, fingerpicks}};
    Transport_Parts parts{channels, tempoChanges, project,     output,  gcm,   input,
                          layout,   *this,        state,       options, loop,  counter,
                          dialogs,  observers,    fingerpicks, cue,     render};
    RecorderClass recorder{parts};
    Player_Recorder player{parts};
};

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

/// Processor time so far, of the thread that asks or of the process.
inline double Cpu_Seconds(clockid_t clock = CLOCK_THREAD_CPUTIME_ID) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace tonvex::bench
