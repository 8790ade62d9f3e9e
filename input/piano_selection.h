#pragma once

#include <array>
#include <string>
#include <vector>

namespace tonvex {

/// The notes that are marked on the drawn piano of a key, and the rules for them. 31 keys are drawn, from the
/// octave First_Place on; marks outside of them stay. A place is a MIDI note, or with Variable a number of
/// semitones above the active octave, 0 to 127 in both cases.
class Piano_Selection {
public:
    enum class Mode { Note, Chord };
    static constexpr int SLOTS = 31;
    static constexpr int PLACES = 128;
    static constexpr int LAST_FIRST_PLACE = 96;
    static constexpr int RELATIVE = 128; ///< stored note of place 0 with Variable
    static constexpr std::size_t MOST_NOTES = 6;

    void SetMode(Mode newMode);
    Mode Get_Mode() const noexcept { return mode; }
    bool Variable() const noexcept { return variable; }
    /// Marks what sounded before as long as it lies within reach; octaveStart is the MIDI note on which the
    /// active octave begins.
    void Set_Variable(bool on, int octaveStart);
    /// Marks stored notes: below 128 MIDI notes, else semitones above the active octave. One of the second
    /// kind makes all of them relative. Shows the octave of the lowest.
    void Set_Notes(const std::vector<int>& stored);
    /// In rising order, as they are stored.
    std::vector<int> Notes() const;
    int First_Place() const noexcept { return first; }
    /// Rounded down to an octave and kept within 0 to LAST_FIRST_PLACE.
    void Set_First_Place(int place);
    /// Slot 0 to 30 of the drawn keys. With one note to be chosen a second takes the place of the first.
    void Toggle(int slot);
    bool Is_Marked(int slot) const;
    /// Text to warn with, empty when OK may close the window.
    std::string Check() const;

private:
    void Show_Marks();
    std::vector<int> Places() const;

    Mode mode = Mode::Note;
    bool variable = false;
    int first = 60;
    std::array<bool, PLACES> marks{};
};

} // namespace tonvex
