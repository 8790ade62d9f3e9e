#pragma once

#include "engine/midi_cue_output.h"
#include "engine/recorder_class.h"
#include "platform/scripted_midi_ports.h"
#include "support/recorder_doors.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tonvex {

/// A note as the tests write one down: beats and MIDI numbers.
struct Rig_Note {
    double start;
    int note;
    int vol;
    double length;
};

/// A key edge of a script. Keys from 256 up are MIDI notes.
struct Rig_Edge {
    std::int64_t ms;
    int key;
    bool down;
    int velocity = 100;
};

/// Everything a transport stands on, on a simulated clock: one millisecond a round. 60 beats a minute, so
/// a beat is 1000 ms; one channel of volume 80 on slot 0. Keys: Z (44) and X (45) the first and third
/// note of the active octave (48 and 50 in octave 3), A (30) always note 48; all of volume 127.
class Transport_Rig : public Channel_Host, public Change_Hub, public Output_Observer {
public:
    Transport_Rig();

    static constexpr int Z = 44;
    static constexpr int X = 45;
    static constexpr int A = 30;
    static constexpr int ESCAPE = 1;

    /// A further channel; its ID.
    std::int32_t Add_Channel(int slot);
    std::int32_t Add_Note(const Rig_Note& note, int row = 0);
    void Add_Patch(double start, int patchRow, int row = 0);
    void Script(const std::vector<Rig_Edge>& edges);
    /// The same as text: "100+Z 350-Z", ms and key; Z X A ESC F2 F6 F12, a number below 128 with its
    /// velocity (60:90) is a MIDI note, one above a scan code.
    void Keys(const std::string& text);
    /// Notes as Events() writes them down, without the last line break.
    void Add_Notes(const std::string& text);
    /// Does something between two rounds, ms after the start of the program.
    void At(std::int64_t ms, std::function<void()> action) { actions.emplace(ms, std::move(action)); }
    /// Records on the first channel until the Stop button at stopMs.
    bool Record(std::int64_t stopMs, bool overwrite = false, double position = 0.0, float speed = 1.0F,
                bool metronome = false);
    /// Plays until the Stop button at stopMs; -1: to the end.
    bool Play(double position = 0.0, std::int64_t stopMs = -1, float speed = 1.0F);

    /// What went out: "<ms> <op> <slot> <a> <b>", a line each, ms from the last start. Patches and pans
    /// stay away unless withPatches, volumes, of which set-up and end send 32 each, unless withVolumes.
    std::string Trace() const;
    /// The events of a row in time order: "<start> <note> <vol> <length>" a line.
    std::string Events(int row = 0) const;
    /// When each note begins to sound, in ms, in the order sent.
    std::vector<std::int64_t> Due_Ms() const;

    // Channel_Host
    double Song_Length_Beats() const override { return project.SongLength; }
    bool Live_Changes_On() const override { return state.LiveChanges; }
    void Event_Fell_Out(std::int32_t, std::int32_t) override {}
    double Clip_Length_Beats(double, std::int32_t) const override { return 0.0; }
    void Retype_Chord(QChordData&, std::uint8_t) const override {}
    void Rename_Chord(QChordData&, int) const override {}
    // Change_Hub
    void Send(Msg_Sender sender, int msg, const Args& args) override;
    // Output_Observer
    void On_Output(Sound_Op op, int slot, int a, int b) override;

    Simulated_Counter counter;
    Simulated_Run_Loop loop{counter};
    Project_State project;
    TempoChangeClass tempoChanges;
    NotesStuff notes;
    Transport_State state;
    Transport_Options options;
    Recorder_Sound_Door sound;
    Recorded_Dialogs dialogs;
    Scripted_Key_State keys;
    Scripted_Midi_Ports midi{counter};
    GlobalChannelsManager channels{*this};
    midiapi output{sound, midi, dialogs, counter, channels};
    GCM_Midi gcm{output, channels, state};
    Fingerpick_Patterns fingerpicks{{}, notes};
    Midi_Cue_Output cueOutput{sound, midi};
    CueEngine cue{counter, cueOutput, Cue_Drive::Stepped};
    RenderModule render{channels, gcm, cue, loop, {tempoChanges, project, fingerpicks}};
    KeyboardClass keyboard{keys, dialogs};
    MidiIn_Module midiIn{midi};
    InputHandler input{keyboard, midiIn};
    KeyboardLayout layout{notes, dialogs};
    std::vector<Transport_Observer*> observers;
    Transport_Parts parts{channels, tempoChanges, project,     output,  gcm,   input,
                          layout,   *this,        state,       options, loop,  counter,
                          dialogs,  observers,    fingerpicks, cue,     render};
    RecorderClass recorder{parts};
    Player_Recorder player{parts};

    std::int32_t firstChannel = 0;
    bool withPatches = false;
    bool withVolumes = false;
    std::vector<int> hubMessages; ///< numbers, in order

private:
    struct Sent {
        std::int64_t ms;
        Sound_Op op;
        int slot;
        int a;
        int b;
    };
    std::multimap<std::int64_t, std::function<void()>> actions;
    std::vector<Sent> sent;
    std::int64_t startMs = 0;
};

} // namespace tonvex
