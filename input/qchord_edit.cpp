#include "input/qchord_edit.h"

#include "base/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace tonvex::QChord_Edit {

namespace {

constexpr std::int16_t NO_STEP = -1;
constexpr int FIRST_BEATS_STEP = -1000;
constexpr double MS_PER_MINUTE = 60000.0;
constexpr int HIGHEST_PLACE = 6;
constexpr std::size_t LEAST_NUMBERS = 2;
/// One more than the message says.
constexpr std::size_t MOST_NUMBERS = 9;

/// Intervals above the active octave; those below it have wrapped round.
bool Is_Relative(const QChordData& chord) {
    return chord.ChordTypeIndex != NO_CHORD_TYPE && chord.Octave == 0 && !Is_On(chord.VariableOctave);
}

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<double> Number(const std::string& text) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::vector<std::string> Split_At_Blanks(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t at = 0;
    while ((at = text.find_first_not_of(' ', at)) != std::string::npos) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end;
    }
    return parts;
}

void Clear_Picking(QChordData& chord) {
    chord.StepMs = NO_STEP;
    chord.PatternNoteCount = 0;
}

/// Leaves the record alone unless it returns an empty text.
std::string Try_Picking(const Picking_Choice& picking, QChordData& chord) {
    const auto delay = Number(Trimmed(picking.delay));
    if (!picking.useBeats && (!delay || *delay < 0.0 || std::trunc(*delay) > MAX_DELAY_MS))
        return "Invalid picking delay";
    const auto numbers = Split_At_Blanks(picking.pattern);
    if (numbers.size() < LEAST_NUMBERS || numbers.size() > MOST_NUMBERS)
        return "The number of the notes of the pattern must be between 2 and 8.";
    decltype(chord.PatternNotes) places{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto value = Number(numbers[i]);
        const std::int64_t place = value ? RoundHalfEven(*value) : -1;
        if (place < 0 || place > HIGHEST_PLACE)
            return "Invalid value: " + numbers[i];
        places[i] = static_cast<std::uint8_t>(place);
    }
    if (picking.useBeats && picking.beatsRow < 0)
        return "Please select the beats per note";
    chord.PatternNotes = places;
    chord.PatternNoteCount = static_cast<std::uint8_t>(numbers.size());
    chord.StepMs = static_cast<std::int16_t>(picking.useBeats ? FIRST_BEATS_STEP - picking.beatsRow
                                                              : static_cast<int>(*delay));
    return {};
}

} // namespace

std::string Beats_Text(int row) {
    return row == 0 ? "1" : "1/" + std::to_string(1 << row);
}

int Nearest_Beats_Row(int ms, double tempo) {
    int nearest = 0;
    double time = MS_PER_MINUTE / std::max(tempo, 1.0);
    double least = std::abs(time - ms);
    for (int row = 1; row < BEATS_ROWS; ++row) {
        time /= 2.0;
        if (std::abs(time - ms) < least) {
            least = std::abs(time - ms);
            nearest = row;
        }
    }
    return nearest;
}

QChord_Choice Choice_Of(const QChordData& chord, double tempo) {
    QChord_Choice choice;
    choice.source = chord.ChordTypeIndex == NO_CHORD_TYPE ? Chord_Source::Custom
                    : Is_On(chord.VariableOctave)         ? Chord_Source::Guitar
                                                          : Chord_Source::Piano;
    choice.root = chord.ChordFlagA;
    choice.type = chord.ChordTypeIndex < NotesStuff::CHORD_TYPES ? chord.ChordTypeIndex : -1;
    choice.octave = chord.Octave;
    choice.name = chord.ChordName;
    choice.repeat = chord.ChordFlagB != 0;
    choice.volume = std::min<int>(chord.ChordVol, 127);
    Picking_Choice& picking = choice.picking;
    picking.usePicking = chord.StepMs != NO_STEP;
    picking.useBeats = chord.StepMs <= FIRST_BEATS_STEP;
    if (picking.useBeats) {
        const int row = FIRST_BEATS_STEP - chord.StepMs;
        picking.beatsRow = row < BEATS_ROWS ? row : -1;
    } else if (picking.usePicking) {
        picking.delay = std::to_string(chord.StepMs);
        picking.beatsRow = Nearest_Beats_Row(chord.StepMs, tempo);
    }
    const std::size_t count = std::min<std::size_t>(chord.PatternNoteCount, chord.PatternNotes.size());
    for (std::size_t i = 0; i < count; ++i)
        picking.pattern += (i == 0 ? "" : " ") + std::to_string(chord.PatternNotes[i]);
    return choice;
}

std::string Read_Picking(const Picking_Choice& picking, QChordData& chord) {
    std::string warning;
    if (picking.usePicking)
        warning = Try_Picking(picking, chord);
    if (!picking.usePicking || !warning.empty())
        Clear_Picking(chord);
    return warning;
}

void Set_Chord(const NotesStuff& notes, Chord_Source source, int root, int type, int octave,
               QChordData& chord) {
    const bool guitar = source == Chord_Source::Guitar;
    chord.VariableOctave = To_Flag(guitar);
    notes.FillChordData(chord, root, type, guitar ? 0 : octave, true);
}

std::vector<int> Sounding_Notes(const QChordData& chord, int octave) {
    const int base = Is_Relative(chord) ? octave * 12 + 12 : 0;
    std::vector<int> sounding;
    for (std::size_t i = 0; i < std::min<std::size_t>(chord.Active, chord.ChordNotes.size()); ++i)
        sounding.push_back(static_cast<std::uint8_t>(chord.ChordNotes[i] + base));
    return sounding;
}

void Set_Custom(const std::vector<int>& sounding, QChordData& chord) {
    chord.VariableOctave = FLAG_OFF;
    chord.Octave = 0;
    chord.ChordTypeIndex = NO_CHORD_TYPE;
    chord.ChordNotes.fill(0);
    chord.Active = static_cast<std::uint8_t>(std::min(sounding.size(), chord.ChordNotes.size()));
    for (std::size_t i = 0; i < chord.Active; ++i)
        chord.ChordNotes[i] = static_cast<std::uint8_t>(std::clamp(sounding[i], 0, 127));
}

std::string Notes_Text(const NotesStuff& notes, const QChordData& chord) {
    std::string text = "Notes: ";
    for (std::size_t i = 0; i < std::min<std::size_t>(chord.Active, chord.ChordNotes.size()); ++i)
        text += (i == 0 ? "" : " ") + (Is_Relative(chord)
                                           ? notes.RootName(static_cast<std::int8_t>(chord.ChordNotes[i]))
                                           : notes.NoteName(chord.ChordNotes[i]));
    return text;
}

} // namespace tonvex::QChord_Edit
