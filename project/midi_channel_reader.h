#pragma once

#include "project/midi_file_data.h"
#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tonvex {

/// A patch as MIDI names it.
struct Midi_Patch {
    int program = 0;
    int bank = 0; ///< controller 0
    bool operator==(const Midi_Patch&) const = default;
};

/// The notes that a MIDI channel plays with one patch.
struct Midi_Voice {
    struct Note {
        double startBeat;
        NoteData data;
    };
    Midi_Patch patch;
    std::vector<Note> notes; ///< in the order in which they begin
};

/// A controller over the song: value holds from beat on.
struct Midi_Step {
    double beat;
    int value;
};

/// What a MIDI channel of a file plays.
struct Midi_Channel {
    struct Patch_Change {
        double beat;
        std::size_t voice;
    };
    std::vector<Midi_Voice> voices;         ///< in order of their first note
    std::vector<Patch_Change> patchChanges; ///< of those that a note followed; the first leads to voice 0
    int volume = 100;                       ///< 0 to 127, while the first note begins
    int pan = 64;
    std::vector<Midi_Step> volumeSteps; ///< what volume and pan become later
    std::vector<Midi_Step> panSteps;
    std::uint32_t firstNoteOrder = 0;
};

/// Pairs the notes of one MIDI channel and follows its patches and controllers; takes its column from data.
/// A note on of velocity 0 is a note off; an off ends the oldest open note of its number; what is never ended
/// ends with its track. Volume is that of controller 7 scaled by expression, controller 11.
class Midi_Channel_Reader {
public:
    Midi_Channel_Reader(Midi_File_Data& data, int channel);
    Midi_Channel Read();

private:
    struct Open_Note {
        std::size_t voice;
        std::size_t note;
        ImportEvent begin;
    };
    /// Notes of one number that have begun; those before first have ended.
    struct Open_Notes {
        std::vector<Open_Note> notes;
        std::size_t first = 0;
    };

    void Take(const ImportEvent& event);
    void Begin_Note(const ImportEvent& event);
    void End_Note(int number, std::int32_t tick);
    void Close(const Open_Note& open, std::int32_t tick);
    void Take_Controller(const ImportEvent& event);
    std::size_t Voice_Of(const Midi_Patch& patch);
    double Beat_Of(std::int32_t tick) const { return tick * data.BeatsPerTick; }

    static constexpr std::size_t NO_VOICE = SIZE_MAX;

    Midi_File_Data& data;
    int channel;
    Midi_Channel read;
    std::array<Open_Notes, 128> open;
    Midi_Patch patch;
    double patchBeat = 0.0;
    std::size_t sounding = NO_VOICE; ///< of the last note
    int bank = 0;                    ///< for the next program change
    int mainVolume = 100;
    int expression = 127;
    std::int32_t firstNoteTick = INT32_MAX;
};

} // namespace tonvex
