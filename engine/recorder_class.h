#pragma once

#include "engine/channel_players.h"
#include "engine/engine_run.h"
#include "engine/transport_parts.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tonvex {

/// Records: plays the song, listens to the keys, sounds them at once, stores what was played; or, in
/// practice mode, sounds the keys alone. Interface thread; StartRecording returns when the run is over.
class RecorderClass {
public:
    static constexpr std::int32_t PRACTICE_PLAIN = -1000;
    /// What stands in the row of the practice channel: a sound that is tried before a channel has it.
    static constexpr std::int32_t PRACTICE_TEST = -2000;

    explicit RecorderClass(const Transport_Parts& parts);
    RecorderClass(const RecorderClass&) = delete;
    RecorderClass& operator=(const RecorderClass&) = delete;

    bool PracticeMode = false;
    bool StopRequested = false;
    double EndTime = -1.0; ///< stop behind this position; -1 never

    /// time: start position in beats. speed: record speed / 100. channel: a ChannelID, or PRACTICE_… in
    /// practice mode. overwrite: wipe what the channel holds over the span that is played.
    /// oneRound: exactly one round, no set-up; the way on of practice mode, whose first call returns after
    /// the set-up. False when the input cannot be opened (the user was told) or a run goes on already;
    /// true when the run took place, and for a channel that is not there or holds audio, without a run.
    bool StartRecording(double time, float speed, std::int32_t channel, bool overwrite, bool metronome,
                        bool oneRound);
    bool IsRunning() const noexcept { return isRunning; }
    VGetTickCount& Clock() noexcept { return clock; }
    /// The very last act of a run.
    std::function<void()> RecStopped;

private:
    static constexpr std::size_t KEYS = KeyboardLayout::KEYS;

    /// One key that is down, with what its press made of it.
    struct Played_Key {
        bool KeyDown = false;
        std::uint8_t kind = KEY_NOTE;
        bool sounds = false;
        std::int32_t KeyQChord = -1; ///< place in QChords, -1 for none
        NoteData KeyNotes;
        double KeyDownTime = 0.0; ///< beats
    };

    /// A chord in progress.
    struct Live_Chord {
        int key;
        QChordClass QChord;
    };

    // recorder_class.cpp: the run
    int Find_Row(std::int32_t channel);
    void Take_Volume();
    void Follow_Practice_Channel();
    bool Set_Up(double time, float speed, std::int32_t channel, bool overwrite, bool& opened);
    void Wait_For_Key();
    /// False when the library's clock cannot be set, or the run was stopped meanwhile.
    bool Start_Clock();
    bool Round(bool metronome);
    void Click(double time);
    void Follow_Song(double time, std::int64_t ms);
    void Follow_Slot();
    void End_Run(bool overwrite);
    void Wipe_Span(double endBeat);
    bool Stop_Asked() const noexcept { return StopRequested || parts.state.StopTransportRequest; }
    double Position_Now() const;

    // recorder_keys.cpp: the keys
    void Take_Key();
    void Key_Pressed(int key, std::int64_t atNs);
    void Key_Released(int key, std::int64_t atNs);
    void NoteKeyDown(int key, const KeyMapEntry& entry, std::int64_t atNs);
    void NoteKeyUp(int key, double releaseBeat, std::int64_t dueNs);
    void Function_Key(int key, std::int64_t atNs);
    void Release_All_Keys(double endBeat);
    /// Counts a key's hold of a note; two keys may hold one.
    void Live_Note_On(int note, std::uint8_t volume, std::int64_t dueNs);
    void Live_Note_Off(int note, std::int64_t dueNs);
    /// Position at which an edge is stored: its arrival, kept within the run.
    double Stamp(std::int64_t atNs) const;

    // recorder_chords.cpp: the chords
    void QChordKeyDown(int key, const KeyMapEntry& entry, std::int64_t atNs);
    void QChordKeyUp(int key, double releaseBeat, std::int64_t dueNs);
    /// Steps that were due before releaseBeat and no round has come to yet.
    void Sound_Overdue_Steps(int key, double releaseBeat);
    /// All chords in progress go on to time.
    void QChordsStep(double time);
    void Step_Chord(Live_Chord& chord, double time);
    void Sound_Messages(const Live_Chord& chord, const QChord_Messages& messages, std::int64_t dueNs);
    Live_Chord& Chord_Of(int key);
    void Remove_Chord(std::int32_t place);
    void Send_Own_Patch();

    Transport_Parts parts;
    VGetTickCount clock;
    Channel_Players players;
    Engine_Run engineRun;
    bool isRunning = false;

    std::array<Played_Key, KEYS> playedKeys{};
    std::vector<Live_Chord> QChords;             ///< in no order
    std::array<std::int32_t, 128> heldNotes{};   ///< keys and chords that hold it, by MIDI note
    std::array<std::int32_t, 128> silentNotes{}; ///< those that were struck at velocity 0: they hold nothing
    std::int32_t LastClickBeat = -1;
    std::int32_t ClickNote = 0;
    std::int32_t ClickVelocity = 0;
    int RecChannelRow = -1;
    std::int32_t practiceChannel = PRACTICE_PLAIN;
    float RecVolFactor = 1.0F;
    double SavedPosition = 0.0;
    double startBeat = 0.0;       ///< where the run began
    std::int64_t startNs = 0;     ///< when its clock began
    double endBeat = -1.0;        ///< where Escape or EndTime ended it; -1: where it is found to be over
    std::int64_t lastShownMs = 0; ///< song ms of the last display
};

/// Plays the song without keys.
class Player_Recorder {
public:
    explicit Player_Recorder(const Transport_Parts& parts);
    Player_Recorder(const Player_Recorder&) = delete;
    Player_Recorder& operator=(const Player_Recorder&) = delete;
    /// Blocks for the whole run. time: start position in beats. viewFollows: for the views' use.
    /// True when the song ended by itself: nothing was left to sound. False when it was stopped, or another
    /// run goes on.
    bool Transport_Play(double time, bool viewFollows, float speed);
    VGetTickCount& Clock() noexcept { return clock; }

private:
    bool Round();
    void Follow_Song(double& time, std::int64_t ms);
    /// A round of all channel players. True when none has anything left.
    bool Transport_Step(double time);
    void Seek(double beats);

    Transport_Parts parts;
    VGetTickCount clock;
    Channel_Players players;
    Engine_Run engineRun;
    bool endedByItself = false;
    std::int64_t lastShownMs = 0;
};

} // namespace tonvex
