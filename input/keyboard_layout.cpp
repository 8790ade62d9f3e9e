#include "input/keyboard_layout.h"

#include "base/file_io.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::int16_t ENABLED = -1;
constexpr const char* FALLBACK_LAYOUT = "default";
constexpr const char* STOCK_LAYOUT = "Tonvex default";
/// Far above the length of a layout, so that what is read is bounded.
constexpr std::size_t LARGEST_LAYOUT_FILE = std::size_t{1} << 20;

std::uint8_t Wrapped_Byte(int value) {
    return static_cast<std::uint8_t>(value);
}

void Transpose_Chord(QChordData& chord, int shift, const NotesStuff& notes) {
    const int root = Wrap12(chord.ChordFlagA + shift);
    chord.ChordFlagA = Wrapped_Byte(root);
    if (Is_On(chord.VariableOctave) && chord.ChordTypeIndex < NotesStuff::CHORD_TYPES) {
        notes.FillChordData(chord, root, chord.ChordTypeIndex, chord.Octave, false);
    } else {
        const std::size_t used = std::min<std::size_t>(chord.Active, chord.ChordNotes.size());
        for (std::size_t i = 0; i < used; ++i)
            chord.ChordNotes[i] = Wrapped_Byte(chord.ChordNotes[i] + shift);
    }
    chord.ChordName = notes.Caption_With_Root(chord.ChordName, root);
}

/// Several keys may play one row: each row that an enabled key plays moves once.
void Transpose_Tables(Key_Tables& tables, int shift, const NotesStuff& notes) {
    std::array<bool, LAYOUT_ROWS> noteMoved{};
    std::array<bool, LAYOUT_ROWS> chordMoved{};
    std::array<bool, LAYOUT_ROWS> styleMoved{};
    for (const KeyMapEntry& entry : tables.map) {
        if (entry.Enabled != ENABLED || entry.Target < 0 || entry.Target >= KeyboardLayout::FIRST_MIDI_KEY)
            continue;
        const auto row = static_cast<std::size_t>(entry.Target);
        if (entry.Kind == KEY_NOTE && !std::exchange(noteMoved[row], true))
            tables.notes[row].Note = Wrapped_Byte(tables.notes[row].Note + shift);
        else if (entry.Kind == KEY_QCHORD && !std::exchange(chordMoved[row], true))
            Transpose_Chord(tables.chords[row], shift, notes);
        else if (entry.Kind == KEY_MC && !std::exchange(styleMoved[row], true))
            tables.styles[row].Root = Wrapped_Byte(Wrap12(tables.styles[row].Root + shift));
    }
}

/// A name is one file of the folder, never a way out of it.
bool Is_File_Name(const std::string& name) {
    return !name.empty() && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

template <typename Row>
void Copy_Rows(const std::array<Row, KeyboardLayout::KEYS>& from, std::array<Row, LAYOUT_ROWS>& to) {
    std::copy_n(from.begin(), LAYOUT_ROWS, to.begin());
}

} // namespace

KeyboardLayout::KeyboardLayout(const NotesStuff& notesIn, User_Dialogs& dialogsIn)
    : notes(notesIn), dialogs(dialogsIn) {
    LoadSpecialKeys();
}

void KeyboardLayout::Set_Folders(const fs::path& config, const fs::path& temp) {
    configFolder = config;
    tempFolder = temp;
}

fs::path KeyboardLayout::Layout_File(const std::string& name) const {
    return configFolder / "keyboard" / (name + ".dat");
}

std::vector<std::string> KeyboardLayout::Layout_Names() const {
    std::vector<std::string> names;
    std::error_code failed;
    for (fs::directory_iterator entry(configFolder / "keyboard", failed), end; !failed && entry != end;
         entry.increment(failed))
        if (entry->path().extension() == ".dat" && entry->is_regular_file(failed))
            names.push_back(entry->path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

Key_Tables KeyboardLayout::Copy_Tables() const {
    Key_Tables tables;
    Copy_Rows(KeyMap, tables.map);
    Copy_Rows(KeyNoteTable, tables.notes);
    Copy_Rows(KeyQChordTable, tables.chords);
    Copy_Rows(KeyMCTable, tables.styles);
    tables.nameFields = chordNameFields;
    return tables;
}

Key_Tables KeyboardLayout::Untuned_Tables() const {
    Key_Tables tables = Copy_Tables();
    if (AppliedTuning != 0)
        Transpose_Tables(tables, -AppliedTuning, notes);
    return tables;
}

void KeyboardLayout::Put_Tables(const Key_Tables& tables) {
    std::copy(tables.map.begin(), tables.map.end(), KeyMap.begin());
    std::copy(tables.notes.begin(), tables.notes.end(), KeyNoteTable.begin());
    std::copy(tables.chords.begin(), tables.chords.end(), KeyQChordTable.begin());
    std::copy(tables.styles.begin(), tables.styles.end(), KeyMCTable.begin());
    chordNameFields = tables.nameFields;
    for (std::size_t key = 0; key < LAYOUT_ROWS; ++key)
        if (KeyMap[key].Target < 0 || KeyMap[key].Target >= KEYS)
            KeyMap[key].Enabled = 0;
}

KeyboardLayout::Read_Result KeyboardLayout::Read_Tables(std::span<const std::uint8_t> bytes,
                                                        double currentTempo) {
    Read_Result result = Read_Result::Failed;
    // What the file's version does not hold stays, untransposed as the rest then is.
    const auto tables = std::make_unique<Key_Tables>(Untuned_Tables());
    switch (Read_Layout(bytes, currentTempo, *tables)) {
    case Layout_Read::Replaced:
        Put_Tables(*tables);
        AppliedTuning = 0;
        result = Read_Result::Replaced;
        break;
    case Layout_Read::Kept:
        result = Read_Result::Kept;
        break;
    case Layout_Read::Not_Layout:
        dialogs.Show_Message(Box_Kind::Warning, "Invalid file format (keyboard)");
        break;
    case Layout_Read::Broken:
        dialogs.Show_Message(Box_Kind::Critical, "Error loading file");
        break;
    }
    LoadSpecialKeys();
    return result;
}

KeyboardLayout::Read_Result KeyboardLayout::Read_Tables_Of(const fs::path& file, double currentTempo) {
    // A file that cannot be read tells as much as an empty one.
    const auto bytes = Read_File(file, LARGEST_LAYOUT_FILE);
    return Read_Tables(bytes ? std::span<const std::uint8_t>(*bytes) : std::span<const std::uint8_t>(),
                       currentTempo);
}

bool KeyboardLayout::Read_File_Into_Tables(const fs::path& file, double currentTempo) {
    return Read_Tables_Of(file, currentTempo) != Read_Result::Failed;
}

bool KeyboardLayout::Read_Bytes_Into_Tables(std::span<const std::uint8_t> bytes, double currentTempo) {
    return Read_Tables(bytes, currentTempo) != Read_Result::Failed;
}

void KeyboardLayout::Tune_After(Read_Result result) {
    if (result == Read_Result::Replaced)
        Transpose(KeyboardTuning);
    else if (AppliedTuning != KeyboardTuning)
        KeyboardTuning_Changed();
}

bool KeyboardLayout::Write_File(const fs::path& file, const Key_Tables& tables, bool quiet) {
    std::error_code unknown;
    if (!quiet && fs::exists(file, unknown) && !dialogs.Ask_YesNo(file.string() + "\nOverwrite ?"))
        return false;
    std::string error;
    fs::create_directories(file.parent_path(), unknown);
    if (Replace_File(file, Write_Layout(tables), error))
        return true;
    dialogs.Show_Message(Box_Kind::Critical, "Error saving file");
    return false;
}

bool KeyboardLayout::Write_Tables(const fs::path& file, bool quiet) {
    return Write_File(file, Copy_Tables(), quiet);
}

bool KeyboardLayout::Save_Untuned(const fs::path& file, bool quiet) {
    return Write_File(file, Untuned_Tables(), quiet);
}

void KeyboardLayout::LoadKeyboardSettings(const std::string& name, double currentTempo) {
    if (!Is_File_Name(name))
        return;
    // Changes that could not be kept are not thrown away.
    if (!KeyboardFileName.empty() && KeyboardModified &&
        dialogs.Ask_YesNo("Keyboard setup was modified.\nSave changes ?") &&
        !Save_Untuned(Layout_File(KeyboardFileName), true))
        return;
    fs::path file = Layout_File(name);
    std::error_code unknown;
    for (const char* other : {FALLBACK_LAYOUT, STOCK_LAYOUT})
        if (!fs::exists(file, unknown))
            file = Layout_File(other);
    const Read_Result result = Read_Tables_Of(file, currentTempo);
    Tune_After(result);
    // The layout before stays in force; one without a name could never be asked about.
    if (result == Read_Result::Failed && !KeyboardFileName.empty())
        return;
    KeyboardFileName = name;
    KeyboardModified = false;
}

bool KeyboardLayout::SaveKeyboardSettings(const std::string& name) {
    if (!Is_File_Name(name)) {
        dialogs.Show_Message(Box_Kind::Critical, "Error saving file");
        return false;
    }
    if (!Save_Untuned(Layout_File(name), false))
        return false;
    KeyboardFileName = name;
    KeyboardModified = false;
    return true;
}

bool KeyboardLayout::Delete_Layout(const std::string& name) {
    if (!Is_File_Name(name) || !dialogs.Ask_YesNo(name + "\nDelete  ?"))
        return false;
    std::error_code failed;
    if (fs::remove(Layout_File(name), failed))
        return true;
    dialogs.Show_Message(Box_Kind::Critical, "Error deleting file");
    return false;
}

bool KeyboardLayout::Is_Special_Key(int key) noexcept {
    return key == 1 || (key >= 59 && key <= 68) || key == 87 || key == 88;
}

void KeyboardLayout::LoadSpecialKeys() {
    for (int key = 0; key < FIRST_MIDI_KEY; ++key) {
        if (!Is_Special_Key(key))
            continue;
        KeyMapEntry& entry = KeyMap[static_cast<std::size_t>(key)];
        entry.Enabled = ENABLED;
        entry.Kind = KEY_RESERVED;
        if (entry.Target < 0 || entry.Target >= KEYS)
            entry.Target = static_cast<std::int16_t>(key);
    }
    for (int key = FIRST_MIDI_KEY; key <= LAST_MIDI_KEY; ++key) {
        const auto row = static_cast<std::size_t>(key);
        KeyMap[row] = {.Enabled = ENABLED, .Target = static_cast<std::int16_t>(key), .Kind = KEY_NOTE};
        KeyNoteTable[row].Note = Wrapped_Byte(key - FIRST_MIDI_KEY);
    }
}

void KeyboardLayout::Transpose(int shift) {
    AppliedTuning = shift;
    const auto tables = std::make_unique<Key_Tables>(Copy_Tables());
    Transpose_Tables(*tables, shift, notes);
    Put_Tables(*tables);
}

void KeyboardLayout::KeyboardTuning_Changed() {
    Transpose(-AppliedTuning);
    Transpose(KeyboardTuning);
}

bool KeyboardLayout::StoreKeyboardStatus(int slot) {
    return slot >= 0 && slot < STATUS_SLOTS &&
           Save_Untuned(tempFolder / ("keybstatus." + std::to_string(slot)), true);
}

bool KeyboardLayout::LoadKeyboardStatus(int slot, double currentTempo) {
    if (slot < 0 || slot >= STATUS_SLOTS)
        return false;
    const auto result = Read_Tables_Of(tempFolder / ("keybstatus." + std::to_string(slot)), currentTempo);
    Tune_After(result);
    return result != Read_Result::Failed;
}

void KeyboardLayout::LoadChordsInKey(int songKey, int songMode) {
    const auto chords = NotesStuff::Diatonic_Chords(songKey, songMode);
    std::transform(chords.begin(), chords.end(), ChordsInKey.begin(), [](const auto& chord) {
        return std::array<std::uint8_t, 2>{Wrapped_Byte(chord.first), Wrapped_Byte(chord.second)};
    });
}

void KeyboardLayout::Set_Key_Function(int key, int menuCode) {
    if (!Is_Free_Key(key))
        return;
    const auto row = static_cast<std::size_t>(key);
    const auto target = static_cast<std::int16_t>(key);
    switch (menuCode) {
    case 0:
        KeyMap[row] = {.Enabled = ENABLED, .Target = target, .Kind = KEY_NOTE};
        KeyNoteTable[row].Note = 60;
        KeyNoteTable[row].Vol = 127;
        break;
    case 1:
        KeyMap[row] = {.Enabled = ENABLED, .Target = target, .Kind = KEY_QCHORD};
        KeyQChordTable[row] = {};
        KeyQChordTable[row].ChordVol = 127;
        notes.FillChordData(KeyQChordTable[row], 0, 0, 0, false);
        KeyQChordTable[row].ChordName = "C";
        break;
    case 2:
        KeyMap[row] = {.Enabled = ENABLED, .Target = target, .Kind = KEY_MC};
        KeyMCTable[row].Minor = 0;
        KeyMCTable[row].Root = Wrapped_Byte(KeyboardTuning);
        break;
    case 4:
        KeyMap[row].Enabled = 0;
        break;
    default:
        return;
    }
    KeyboardModified = true;
}

void KeyboardLayout::Set_Key_Note(int key, const NoteData& note) {
    if (!Is_Free_Key(key))
        return;
    const auto row = static_cast<std::size_t>(key);
    KeyMap[row] = {.Enabled = ENABLED, .Target = static_cast<std::int16_t>(key), .Kind = KEY_NOTE};
    KeyNoteTable[row] = note;
    KeyboardModified = true;
}

void KeyboardLayout::Set_Key_QChord(int key, const QChordData& chord) {
    if (!Is_Free_Key(key))
        return;
    const auto row = static_cast<std::size_t>(key);
    KeyMap[row] = {.Enabled = ENABLED, .Target = static_cast<std::int16_t>(key), .Kind = KEY_QCHORD};
    KeyQChordTable[row] = chord;
    KeyboardModified = true;
}

int KeyboardLayout::Sounding_Note(int storedNote) const noexcept {
    return storedNote < 128 ? storedNote : NotesOctave * 12 + 12 + (storedNote - 128);
}

} // namespace tonvex
