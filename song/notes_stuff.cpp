#include "song/notes_stuff.h"

#include "base/text_codec.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int STRINGS = 6;
constexpr int HIGHEST_FRET = 20;
constexpr int CLASS_OF_C = 3; ///< string pitch classes count from A
constexpr std::size_t CHORD_NAME_LENGTH = 10;

/// Pitch classes of the open strings in standard tuning: E B G D A E, counted from A.
constexpr std::array<int, STRINGS> standardClasses = {7, 2, 10, 5, 0, 7};
constexpr std::array<int, STRINGS> guitarReference = {64, 59, 55, 50, 45, 40};
constexpr std::array<int, 4> bassReference = {43, 38, 33, 28};
constexpr std::size_t FIRST_BASS_COLUMN = 2;

/// Semitones from a string's standard class to its tuning, by the shorter way: -6 to 5.
int Tuning_Offset(std::size_t column, int tuning) {
    return Wrap12(tuning - standardClasses[column] + 6) - 6;
}

/// The first count characters of UTF-8 text.
std::string First_Characters(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    while (end < text.size()) {
        const bool leads = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (leads && count-- == 0)
            break;
        ++end;
    }
    return std::string(text.substr(0, end));
}

} // namespace

int Wrap12(int n) noexcept {
    const int rest = n % 12;
    return rest < 0 ? rest + 12 : rest;
}

int IntervalValue(char ch) noexcept {
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    if (ch >= 'a' && ch <= 'z')
        ch = static_cast<char>(ch - 'a' + 'A');
    return ch - 55;
}

bool IsCymbalNote(int note) noexcept {
    constexpr std::array<int, 10> cymbalNotes = {42, 44, 46, 49, 51, 52, 53, 55, 57, 59};
    return std::find(cymbalNotes.begin(), cymbalNotes.end(), note) != cymbalNotes.end();
}

NotesStuff::NotesStuff() {
    for (std::size_t i = 0; i < STRINGS; ++i) {
        StringTuning[i + 1] = standardClasses[i];
        OpenNotes[i + 1] = guitarReference[i] + Tuning_Offset(i, StringTuning[i + 1]);
    }
    for (std::size_t i = 0; i < bassReference.size(); ++i) {
        const std::size_t column = FIRST_BASS_COLUMN + i;
        BassTuning[i + 1] = standardClasses[column];
        BassOpenNotes[i + 1] = bassReference[i] + Tuning_Offset(column, BassTuning[i + 1]);
    }
    ChordTypeTable = {{{"47", "major", ""},
                       {"37", "minor", "m"},
                       {"36", "diminished", "°"},
                       {"47A", "seventh", "7"},
                       {"37A", "minor seventh", "m7"},
                       {"47B", "major seventh", "maj7"},
                       {"27", "suspended 2", "sus2"},
                       {"57", "suspended 4", "sus4"},
                       {"7", "fifth", "5"},
                       {"479", "sixth", "6"},
                       {"247A", "ninth", "9"},
                       {"48", "augmented", "+"}}};
    NoteNames = {{{"C", "C", "B#", "C"},
                  {"C#", "Db", "C#", "Db"},
                  {"D", "D", "D", "D"},
                  {"D#", "Eb", "D#", "Eb"},
                  {"E", "E", "E", "Fb"},
                  {"F", "F", "E#", "F"},
                  {"F#", "Gb", "F#", "Gb"},
                  {"G", "G", "G", "G"},
                  {"G#", "Ab", "G#", "Ab"},
                  {"A", "A", "A", "A"},
                  {"A#", "Bb", "A#", "Bb"},
                  {"B", "B", "B", "Cb"}}};
}

int NotesStuff::ChordTypeByName(const std::string& text) const {
    const std::string wanted = Lower_Ascii(Trim(text));
    for (int type = 0; type < CHORD_TYPES; ++type)
        if (Lower_Ascii(ChordTypeTable[static_cast<std::size_t>(type)].TypeName) == wanted)
            return type;
    return -1;
}

int NotesStuff::RootByName(const std::string& text) const {
    const std::string wanted = Lower_Ascii(Trim(text));
    for (std::size_t spelling = 0; spelling < NoteNames[0].size(); ++spelling)
        for (std::size_t root = 0; root < NoteNames.size(); ++root)
            if (Lower_Ascii(NoteNames[root][spelling]) == wanted)
                return static_cast<int>(root);
    return -1;
}

const std::string& NotesStuff::RootName(int root) const {
    const auto spelling = static_cast<std::size_t>(std::clamp(Global_Notation, 0, 3));
    return NoteNames[static_cast<std::size_t>(Wrap12(root))][spelling];
}

std::string NotesStuff::NoteName(int note, bool usePlus) const {
    if (note < 24)
        return RootName(note);
    if (note >= 128 && usePlus)
        return RootName(note - 128) + "+" + std::to_string((note - 128) / 12);
    return RootName(note - 24) + std::to_string((note - 24) / 12 + 1);
}

const std::string& NotesStuff::Interval_String(int type) const {
    static const std::string none;
    return type >= 0 && type < CHORD_TYPES ? ChordTypeTable[static_cast<std::size_t>(type)].IntervalString
                                           : none;
}

int NotesStuff::Find_In_Library(int root, int type) const {
    if (type < 0 || type >= CHORD_TYPES)
        return -1;
    const std::string suffix = Lower_Ascii(ChordTypeTable[static_cast<std::size_t>(type)].Suffix);
    // The library names its chords with sharps, whatever the notation in force.
    const std::string rootName = Lower_Ascii(NoteNames[static_cast<std::size_t>(Wrap12(root))][0]);
    for (int i = 0; i <= BasicGroupsEnd && i <= LastGroup; ++i) {
        const ChordGroup& group = ChordGroups[static_cast<std::size_t>(i)];
        if (Lower_Ascii(group.Suffix) != suffix)
            continue;
        for (int row = group.First; row < group.First + group.Count; ++row) {
            const std::string& name = ChordLibrary[static_cast<std::size_t>(row)].Name;
            if (name.size() >= suffix.size() &&
                Lower_Ascii(std::string_view(name).substr(0, name.size() - suffix.size())) == rootName)
                return row;
        }
    }
    return -1;
}

void NotesStuff::Read_Row(int row, std::array<int, 7>& frets) const {
    if (row < 0 || row >= ChordCount) {
        frets.fill(-1);
        return;
    }
    const std::string& shape = ChordLibrary[static_cast<std::size_t>(row)].Frets;
    for (std::size_t i = 0; i < STRINGS; ++i) {
        const char sign = i < shape.size() ? shape[i] : '\0';
        const bool digit = sign >= '0' && sign <= '9';
        frets[STRINGS - i] = sign == 'x' || sign == 'X' ? -1 : (digit ? sign - '0' : 0);
    }
}

void NotesStuff::Generate_Shape(int root, int type, std::array<int, 7>& frets) const {
    std::vector<int> tones{Wrap12(Wrap12(root) + CLASS_OF_C)};
    for (const char interval : Interval_String(type))
        tones.push_back(Wrap12(tones[0] + IntervalValue(interval)));
    std::vector<bool> used(tones.size(), false);
    for (std::size_t string = 1; string <= STRINGS; ++string) {
        for (int fret = 0; fret <= HIGHEST_FRET; ++fret) {
            const auto tone = std::find(tones.begin(), tones.end(), Wrap12(StringTuning[string] + fret));
            if (tone == tones.end())
                continue;
            const auto n = static_cast<std::size_t>(tone - tones.begin());
            const bool allSound = std::find(used.begin(), used.end(), false) == used.end();
            if (used[n] && !allSound)
                continue;
            used[n] = true;
            frets[string] = fret;
            break;
        }
    }
}

void NotesStuff::GetChordFrets(int code, int rootOrRow, std::array<int, 7>& frets) const {
    if (code < 40)
        return Read_Row(rootOrRow, frets);
    if (code < 60)
        return Generate_Shape(rootOrRow, code - 40, frets);
    const int row = Find_In_Library(rootOrRow, code - 60);
    if (row >= 0)
        Read_Row(row, frets);
    else
        Generate_Shape(rootOrRow, code - 60, frets);
}

void NotesStuff::FillChordData(QChordData& chordData, int root, int type, int octave, bool setName) const {
    chordData.ChordFlagA = static_cast<std::uint8_t>(Wrap12(root));
    chordData.ChordTypeIndex = static_cast<std::uint8_t>(type);
    chordData.Octave = static_cast<std::uint8_t>(octave);
    if (setName) {
        const bool known = type >= 0 && type < CHORD_TYPES;
        const std::string suffix = known ? ChordTypeTable[static_cast<std::size_t>(type)].Suffix : "";
        chordData.ChordName = First_Characters(RootName(root) + suffix, CHORD_NAME_LENGTH);
    }
    std::vector<int> chordNotes;
    if (Is_On(chordData.VariableOctave)) {
        std::array<int, 7> frets{};
        frets.fill(-1);
        GetChordFrets(type + 60, root, frets);
        for (std::size_t string = STRINGS; string >= 1; --string) {
            const int note = OpenNotes[string] + frets[string];
            if (frets[string] >= 0 &&
                std::find(chordNotes.begin(), chordNotes.end(), note) == chordNotes.end())
                chordNotes.push_back(note);
        }
    } else {
        const int base = Wrap12(root) + (octave > 0 ? octave * 12 + 12 : 0);
        chordNotes.push_back(base);
        for (const char interval : Interval_String(type))
            chordNotes.push_back(base + IntervalValue(interval));
    }
    chordData.ChordNotes.fill(0);
    std::transform(chordNotes.begin(), chordNotes.end(), chordData.ChordNotes.begin(),
                   [](int note) { return static_cast<std::uint8_t>(note); });
    chordData.Active = static_cast<std::uint8_t>(chordNotes.size());
}

std::string NotesStuff::Caption_With_Root(const std::string& caption, int root) const {
    const std::string text = Trim(caption);
    for (const std::size_t length : {std::size_t{2}, std::size_t{1}}) {
        const std::string front = Lower_Ascii(std::string_view(text).substr(0, length));
        if (front.size() != length)
            continue;
        for (const auto& spellings : NoteNames)
            for (const std::string& name : spellings)
                if (Lower_Ascii(name) == front)
                    return First_Characters(RootName(root) + text.substr(length), CHORD_NAME_LENGTH);
    }
    return First_Characters(text, CHORD_NAME_LENGTH);
}

std::array<std::pair<int, int>, 7> NotesStuff::Diatonic_Chords(int key, int mode) {
    // Degree 7 of major and degree 2 of minor are minor chords, not diminished ones, on purpose.
    constexpr std::array<std::pair<int, int>, 7> major = {
        {{0, 0}, {2, 1}, {4, 1}, {5, 0}, {7, 0}, {9, 1}, {11, 1}}};
    constexpr std::array<std::pair<int, int>, 7> minor = {
        {{0, 1}, {2, 1}, {3, 0}, {5, 1}, {7, 1}, {8, 0}, {10, 0}}};
    auto chords = mode == 1 ? minor : major;
    for (auto& [root, type] : chords)
        root = Wrap12(Wrap12(key) + root);
    return chords;
}

int NotesStuff::Key_Distance(int fromKey, int fromMode, int toKey, int toMode) {
    const auto relativeMajor = [](int key, int mode) { return Wrap12(Wrap12(key) + (mode == 1 ? 3 : 0)); };
    return Wrap12(relativeMajor(toKey, toMode) - relativeMajor(fromKey, fromMode));
}

} // namespace tonvex
