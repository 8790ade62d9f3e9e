#pragma once

#include "engine/fingerpick_pattern.h"
#include "engine/render_midi_event_col_class.h"
#include "song/event_data.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace tonvex {

/// What a chord is played by. All outlive the chords.
struct QChord_Parts {
    const TempoChangeClass& tempoChanges;
    const Project_State& project;
    Fingerpick_Patterns& fingerpicks;
};

/// What has to change at one moment of a chord, in this order.
struct QChord_Messages {
    static constexpr std::uint8_t NOTE_ON = 1;
    static constexpr std::uint8_t NOTE_OFF = 2;
    static constexpr int MAX_ROWS = 21;

    double Time = 0.0; ///< beat at which it is due; with STOP the moment of the call
    std::array<std::uint8_t, MAX_ROWS> Notes{};
    std::array<std::uint8_t, MAX_ROWS> Actions{};
    int LastIndex = -1; ///< -1: nothing changes

    std::size_t Rows() const noexcept { return static_cast<std::size_t>(std::int64_t{LastIndex} + 1); }
    /// Dropped when all rows are taken; no step of a chord has more.
    void Add(int note, std::uint8_t action) noexcept {
        if (Rows() == Notes.size())
            return;
        ++LastIndex;
        Notes[static_cast<std::size_t>(LastIndex)] = static_cast<std::uint8_t>(note);
        Actions[static_cast<std::size_t>(LastIndex)] = action;
    }
};

/// The player of one sounding chord: a strike, an arpeggio or a finger-picking pattern. Live it is asked
/// round by round what changes; rendered it writes all its rows. Both walk the same steps, so they sound
/// the same notes at the same beats.
/// Steps count from StartTime. Their length in beats is fixed by the tempo at StartTime. A note above 127
/// is silent, and a note that sounds already is never begun again without its end.
/// Interface thread. Times in beats.
class QChordClass {
public:
    /// Time of GetMsg_On_Time that asks for the end of all that sounds.
    static constexpr double STOP = -1.0;
    /// Octave that a stored chord is raised by.
    static constexpr int STORED_OCTAVE = 3;
    static constexpr int NO_OCTAVE = -1;
    static constexpr double NEVER = std::numeric_limits<double>::infinity();
    /// Steps that one chord plays at most, so that no stored length is work without end.
    static constexpr std::int64_t MAX_STEPS = 65536;

    explicit QChordClass(const QChord_Parts& parts);

    /// A chord of a key. octave: the chord octave in force, 0 to 5, for a chord of a type that has no octave
    /// of its own.
    void SetQchordData(const QChordData& Data, int octave, double startTime);
    /// A chord of an event: it has its octave in its notes, unless the first of them lies below 12.
    void Set_Stored_Chord(const QChordData& Data, double startTime);
    /// The octave that Set_Stored_Chord raises a chord of intervals by, NO_OCTAVE for none.
    static int Stored_Octave(const QChordData& Data) noexcept;

    /// The earliest step that is due at Time and was not given yet; LastIndex -1 when there is none. Call
    /// until there is none. With STOP: the end of every note that is on; no step comes behind it.
    void GetMsg_On_Time(double Time, QChord_Messages& Messages);
    /// The tempo list was edited, and the song is at Time: steps given in milliseconds last other beats. The
    /// next is the first behind Time of those that the chord's stored form has now.
    void Tempo_Changed(double Time);
    /// Beat of the next step that changes anything, NEVER behind the last.
    double Next_Step_Time() const noexcept;
    /// Beat of the last step given; StartTime before the first.
    double Last_Step_Time() const noexcept { return lastStepTime; }
    /// The tempo at the start of the chord decides how many beats its steps last.
    static bool Steps_In_Ms(const QChordData& Data) noexcept {
        return !Is_On(Data.ArpeggioOn) && Data.StepMs > 0;
    }
    /// A step at stepTime belongs to a chord that ends at endTime; rounding errors of a sum aside.
    static bool Step_Sounds(double stepTime, double endTime) noexcept;

    /// Appends the rows of the chord as Length of its data has it, from the first step on: note on with
    /// velocity Volume, note off with 0. Time: where the chord begins; STOP: where it was set. CloseNotes:
    /// what is on at the end goes off there. Count: the rows added. The chord has to be set anew afterwards.
    void Render_GetEvents(Render_MidiEventColClass& List, std::int16_t Channel, std::int16_t Volume,
                          bool CloseNotes, double Time, std::int32_t& Count);

    /// The data with the notes as they sound and the octave in force, as an event of that length holds it.
    QChordData Stored_Copy(double length) const;
    /// The chord's notes for a piano view, each in 0 to 127.
    const std::vector<int>& Shown_Notes() const noexcept { return shownNotes; }
    std::uint8_t Volume() const noexcept { return data.ChordVol; }
    int Octave_In_Force() const noexcept { return Octave; }
    /// False when the chord's finger-picking pattern cannot be read or is for another type of chord.
    bool Pattern_Is_There() const noexcept { return !Is_On(data.ArpeggioOn) || PickLoaded(); }

private:
    enum class Form : std::uint8_t { Silent, Strike, Arpeggio, Picking };
    static constexpr std::size_t STRINGS = 6;
    static constexpr int NO_NOTE = -1;

    void Prepare(const QChordData& Data, int octave, double startTime);
    double Length_Of_Step() const;
    void Prepare_Arpeggio();
    void Prepare_Picking();
    bool PickLoaded() const noexcept { return pattern != nullptr; }
    int Used_Notes() const noexcept;
    int Note_At(int place) const noexcept;
    int String_Note(const PickRow& row, std::size_t string) const noexcept;
    double Step_Offset(std::int64_t step) const noexcept;
    bool Changes_Nothing(std::int64_t step) const noexcept;
    void Pass_Idle_Steps() noexcept;
    void Take_Step(QChord_Messages& messages);
    void Strike(QChord_Messages& messages);
    void Arpeggio_Step(QChord_Messages& messages);
    void Picking_Step(QChord_Messages& messages);
    void Note_On(int note, QChord_Messages& messages);
    void Note_Off(int note, QChord_Messages& messages);

    const TempoChangeClass* tempoChanges;
    const Project_State* project;
    Fingerpick_Patterns* fingerpicks;

    QChordData data;
    Form form = Form::Silent;
    int Octave = 0;
    int BaseNote = 0; ///< added to ChordNotes; 0 when the chord holds absolute notes
    double StartTime = 0.0;
    double StepBeats = 0.0;    ///< length of a step; 0: all notes of the pass together
    std::vector<int> ArpNotes; ///< the notes of the pass, in order
    std::bitset<128> NoteOn;
    std::shared_ptr<const Fingerpick_Pattern> pattern;
    int transposition = 0; ///< semitones that the pattern's frets move up
    std::array<int, STRINGS> stringNote{};
    std::vector<int> shownNotes;
    std::int64_t nextStep = 0;
    double lastStepTime = 0.0;
};

} // namespace tonvex
