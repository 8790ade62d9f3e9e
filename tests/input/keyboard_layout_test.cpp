#include "input/keyboard_layout.h"
#include "support/temp_folder.h"
#include "tools/stock_layouts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonvex {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes As_Bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

std::string As_Text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

/// Tables in which every row differs from its neighbours; names padded with zero bytes.
Key_Tables Full_Tables() {
    Key_Tables tables;
    for (std::size_t i = 0; i < LAYOUT_ROWS; ++i) {
        const auto n = static_cast<std::uint8_t>(i);
        tables.map[i] = {.Enabled = -1, .Target = static_cast<std::int16_t>(i), .Kind = KEY_NOTE};
        tables.notes[i] = {.Note = n, .Vol = 100, .Length = 0.25 * n};
        tables.chords[i] =
            QChordData{3, "C", n, 0x1234, 1.5, 2, 255, {1, 2, 3, 4, 5, n}, 6, 7, 8, -9, 10, {11, 12}, -1003};
        tables.nameFields[i][0] = 'C';
        tables.styles[i].Root = n;
        tables.styles[i].StyleBlock[199] = 77;
        tables.styles[i].Reserved = 88;
    }
    return tables;
}

/// A file of version "01": every key plays one chord.
Bytes Old_File() {
    Bytes bytes = As_Bytes("Keyb01");
    for (int i = 0; i < 256; ++i)
        bytes.insert(bytes.end(), {255, 255, 9, 0, 1});
    for (int i = 0; i < 256; ++i)
        bytes.insert(bytes.end(), {60, 90, 0xEE, 0x02, 0, 0}); // 750 ms
    for (int i = 0; i < 256; ++i)
        bytes.insert(bytes.end(),
                     {3,    'A', 'm', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', 2,    255, 255,
                      0xDC, 5,   0,   0,   9,   1,   9,   12,  16,  0,   0,   0,    1,   99,
                      2,    6,   5,   0,   0,   0,   0,   0,   0,   0,   0,   0x64, 0}); // 1500 ms
    return bytes;
}

/// A layout window's data side with folders of its own.
struct Layout_Bed {
    Temp_Folder folder;
    Recorded_Dialogs dialogs;
    NotesStuff notes;
    KeyboardLayout layout{notes, dialogs};

    Layout_Bed() { layout.Set_Folders(folder.Path(), folder / "temp"); }
    std::string Put(const std::string& name, const Key_Tables& tables) {
        return folder.Write("keyboard/" + name + ".dat", As_Text(Write_Layout(tables))).string();
    }
    std::string Last_Box() {
        const std::string text = dialogs.shown.empty() ? "" : dialogs.shown.back().text;
        dialogs.shown.clear();
        return text;
    }
    std::vector<int> Sounds(const std::vector<std::size_t>& keys) const {
        std::vector<int> sounding;
        for (const std::size_t key : keys)
            sounding.push_back(layout.Sounding_Note(layout.KeyNoteTable[key].Note));
        return sounding;
    }
    /// Key key plays a note, a fixed chord on C, or a style in C.
    void Set(std::size_t key, std::uint8_t kind, std::uint8_t note = 60) {
        layout.Set_Key_Function(static_cast<int>(key), kind == KEY_MC ? 2 : kind);
        layout.KeyNoteTable[key].Note = note;
    }
};

TEST(LayoutFile, StandsByteForByte) {
    const Key_Tables tables = Full_Tables();
    const Bytes bytes = Write_Layout(tables);
    ASSERT_EQ(bytes.size(), 73222U);
    EXPECT_EQ(As_Text(bytes).substr(0, 6), "Keyb02");
    // Row 3 of each table, at 6 + 5 i, 1286 + 10 i, 3846 + 49 i and 16390 + 222 i.
    EXPECT_EQ(Bytes(bytes.begin() + 21, bytes.begin() + 26), (Bytes{255, 255, 3, 0, 0}));
    EXPECT_EQ(Bytes(bytes.begin() + 1316, bytes.begin() + 1326),
              (Bytes{3, 100, 0, 0, 0, 0, 0, 0, 0xE8, 0x3F}));
    EXPECT_EQ(Bytes(bytes.begin() + 3993, bytes.begin() + 4042),
              (Bytes{3,    'C',  0,  0,    0,    0, 0,   0, 0, 0, 0, 3, 0x34, 0x12, 0,   0, 0,
                     0,    0,    0,  0xF8, 0x3F, 2, 255, 1, 2, 3, 4, 5, 3,    6,    7,   8, 0,
                     0xF7, 0xFF, 10, 11,   12,   0, 0,   0, 0, 0, 0, 0, 0,    0x15, 0xFC}));
    EXPECT_EQ(bytes[16390 + 222 * 3], 3);
    EXPECT_EQ(bytes[16390 + 222 * 3 + 220], 77);
    EXPECT_EQ(bytes[16390 + 222 * 3 + 221], 88);
    Key_Tables read;
    ASSERT_EQ(Read_Layout(bytes, 80.0, read), Layout_Read::Replaced);
    EXPECT_EQ(read.chords, tables.chords);
    EXPECT_EQ(Write_Layout(read), bytes);
    read.chords[3].ChordName = "D";
    EXPECT_EQ(Write_Layout(read)[3995], ' ') << "a new name has its own padding";
}

TEST(LayoutFile, EveryShorterFileIsRefused) {
    const Bytes good = Write_Layout(Full_Tables());
    Key_Tables tables;
    const Bytes before = Write_Layout(tables);
    for (std::size_t length = 0; length < good.size(); ++length)
        ASSERT_EQ(Read_Layout(std::span(good).first(length), 80.0, tables), Layout_Read::Broken) << length;
    EXPECT_EQ(Write_Layout(tables), before);
    Bytes longer = good;
    longer.push_back(1);
    EXPECT_EQ(Read_Layout(longer, 80.0, tables), Layout_Read::Replaced);
    EXPECT_EQ(Read_Layout(As_Bytes("Keys02"), 80.0, tables), Layout_Read::Not_Layout);
}

TEST(LayoutFile, OldVersionIsWidened) {
    const Bytes bytes = Old_File();
    ASSERT_EQ(bytes.size(), 6U + 256 * (5 + 6 + 41));
    Key_Tables tables = Full_Tables();
    for (std::size_t length = 6; length < bytes.size(); ++length)
        ASSERT_EQ(Read_Layout(std::span(bytes).first(length), 80.0, tables), Layout_Read::Broken) << length;
    ASSERT_EQ(Read_Layout(bytes, 80.0, tables), Layout_Read::Replaced);
    EXPECT_EQ(tables.map[255], (KeyMapEntry{.Enabled = -1, .Target = 9, .Kind = KEY_QCHORD}));
    EXPECT_EQ(tables.notes[255], (NoteData{.Note = 60, .Vol = 90, .Length = 1.0}));
    const QChordData chord{3, "Am", 2, 65535, 2.0, 9, 1, {9, 12, 16}, 1, 99, 8, -9, 2, {6, 5}, 100};
    EXPECT_EQ(tables.chords[255], chord) << "the finger picking is left as it was";
    EXPECT_EQ(tables.styles[255].Reserved, 88) << "style rows are left as they were";
}

TEST(KeyboardLayout, BrokenFilesKeepTheTables) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    bed.Put("good", Full_Tables());
    layout.KeyboardTuning = 5;
    layout.LoadKeyboardSettings("good", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 45);
    EXPECT_EQ(layout.KeyMap[87].Kind, KEY_RESERVED);
    const std::pair<std::string, std::string> cases[] = {{"Keyb02short", "Error loading file"},
                                                         {"", "Error loading file"},
                                                         {"MThd....", "Invalid file format (keyboard)"},
                                                         {"Keyb00", ""},
                                                         {"Keyb99rest", ""}};
    for (const auto& [content, box] : cases) {
        bed.folder.Write("keyboard/bad.dat", content);
        layout.KeyMap[1] = {};
        layout.LoadKeyboardSettings("bad", 80.0);
        EXPECT_EQ(bed.Last_Box(), box) << content;
        EXPECT_EQ(layout.KeyNoteTable[40].Note, 45) << content << ": as it was, the tuning not doubled";
        EXPECT_EQ(layout.KeyMap[1].Kind, KEY_RESERVED) << content;
        EXPECT_EQ(layout.KeyboardFileName, box.empty() ? "bad" : "good") << content;
    }
    EXPECT_FALSE(layout.Read_File_Into_Tables(bed.folder / "none.dat", 80.0));
    EXPECT_EQ(bed.Last_Box(), "Error loading file");
    layout.LoadKeyboardSettings("good", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[41].Note, 46) << "a good file still loads";
    EXPECT_TRUE(layout.Read_File_Into_Tables(bed.folder / "keyboard/good.dat", 80.0));
    EXPECT_EQ(layout.AppliedTuning, 0);
    layout.KeyboardTuning_Changed();
    layout.Set_Key_Function(30, 2);
    EXPECT_EQ(layout.KeyMCTable[30].Root, 5);
    EXPECT_TRUE(layout.Read_Bytes_Into_Tables(Old_File(), 80.0));
    EXPECT_EQ(layout.KeyMCTable[30].Root, 0) << "what the old file does not hold stays, untransposed";
    Key_Tables astray = Full_Tables();
    astray.map[44].Target = 1001;
    astray.map[45].Target = -1;
    bed.Put("astray", astray);
    layout.LoadKeyboardSettings("astray", 80.0);
    EXPECT_EQ(layout.KeyMap[44].Enabled, 0);
    EXPECT_EQ(layout.KeyMap[45].Enabled, 0);
    EXPECT_EQ(layout.KeyMap[46].Enabled, -1);
}

TEST(KeyboardLayout, MovesWhatKeysPlay) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    ASSERT_TRUE(bed.notes.Parse_Chords("- M\n-- NULL\nG 320003 1\nA x02220 1\n"));
    bed.Set(20, KEY_NOTE, 120);
    bed.Set(21, KEY_NOTE, 250);
    bed.Set(22, KEY_QCHORD);
    bed.Set(23, KEY_MC);
    bed.Set(24, KEY_NOTE);
    layout.KeyMap[24].Enabled = 0;
    bed.Set(25, KEY_NOTE);
    layout.KeyMap[25].Target = 20; // the same row as key 20
    bed.Set(26, KEY_QCHORD);
    QChordData& guitar = layout.KeyQChordTable[26];
    guitar.VariableOctave = FLAG_ON;
    bed.notes.FillChordData(guitar, 7, 0, 0, true);
    bed.Set(27, KEY_QCHORD);
    QChordData& custom = layout.KeyQChordTable[27];
    custom = {9, "C#maj7sus4", 0, FLAG_ON, 0.0, 11, 255, {250, 1, 2, 3, 4, 5}};
    layout.KeyboardTuning = 11;
    layout.KeyboardTuning_Changed();
    EXPECT_EQ(bed.Sounds({20, 21, 24, 300}), (std::vector<int>{51, 5, 60, 44})) << "131 is 48 + 3";
    EXPECT_EQ(layout.KeyQChordTable[22].ChordName, "B");
    EXPECT_EQ(layout.KeyQChordTable[22].ChordNotes, (std::array<std::uint8_t, 6>{11, 15, 18}));
    EXPECT_EQ(layout.KeyMCTable[23].Root, 11);
    EXPECT_EQ(custom.ChordNotes, (std::array<std::uint8_t, 6>{5, 12, 13, 14, 15, 16}));
    EXPECT_EQ(custom.ChordName, "A#maj7sus4");
    layout.KeyboardTuning = 2;
    layout.KeyboardTuning_Changed();
    EXPECT_EQ(layout.AppliedTuning, 2);
    EXPECT_EQ(layout.KeyNoteTable[21].Note, 252);
    EXPECT_EQ(guitar.ChordName, "A");
    EXPECT_EQ(guitar.Active, 5);
    EXPECT_EQ(guitar.ChordNotes, (std::array<std::uint8_t, 6>{45, 52, 57, 61, 64}));
}

TEST(KeyboardLayout, SavesUntransposed) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    bed.Put("mine", Full_Tables());
    layout.KeyboardTuning = 3;
    layout.LoadKeyboardSettings("mine", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[60].Note, 60) << "F2 is no note";
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 43);
    ASSERT_TRUE(layout.SaveKeyboardSettings("copy"));
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 43) << "put back";
    EXPECT_TRUE(layout.StoreKeyboardStatus(10));
    EXPECT_FALSE(layout.StoreKeyboardStatus(11));
    layout.KeyboardTuning = 0;
    layout.LoadKeyboardSettings("copy", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 40);
    layout.KeyboardTuning = 7;
    EXPECT_TRUE(layout.LoadKeyboardStatus(10, 80.0));
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 47);
    EXPECT_FALSE(layout.LoadKeyboardStatus(9, 80.0));
    EXPECT_EQ(bed.Last_Box(), "Error loading file");
    bed.folder.Write("wall", "");
    layout.Set_Folders(bed.folder / "wall", bed.folder / "wall");
    EXPECT_FALSE(layout.SaveKeyboardSettings("copy"));
    EXPECT_EQ(bed.Last_Box(), "Error saving file");
    EXPECT_FALSE(layout.SaveKeyboardSettings("../copy"));
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 47);
    layout.Set_Key_Function(40, 1);
    bed.dialogs.answers["Keyboard setup was modified.\nSave changes ?"] = true;
    bed.dialogs.shown.clear();
    layout.LoadKeyboardSettings("mine", 80.0);
    EXPECT_EQ(bed.Last_Box(), "Error saving file");
    EXPECT_TRUE(layout.KeyMap[40].Kind == KEY_QCHORD && layout.KeyboardModified) << "nothing is lost";
}

TEST(KeyboardLayout, AsksInItsWords) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    Key_Tables tables = Full_Tables();
    tables.notes[40].Note = 1;
    bed.Put("Tonvex default", tables);
    const std::string own = bed.Put("own", Full_Tables());
    layout.LoadKeyboardSettings("missing", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 1) << "the stock layout";
    tables.notes[40].Note = 2;
    bed.Put("default", tables);
    layout.LoadKeyboardSettings("missing", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 2);
    layout.LoadKeyboardSettings("", 80.0);
    EXPECT_EQ(layout.KeyboardFileName, "missing");
    EXPECT_EQ(layout.Layout_Names(), (std::vector<std::string>{"Tonvex default", "default", "own"}));

    layout.LoadKeyboardSettings("own", 80.0);
    layout.Set_Key_Function(40, 0);
    EXPECT_TRUE(layout.KeyboardModified);
    layout.LoadKeyboardSettings("own", 80.0); // no: as the file has it
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 40);
    layout.Set_Key_Function(40, 0);
    bed.dialogs.answers["Keyboard setup was modified.\nSave changes ?"] = true;
    layout.LoadKeyboardSettings("default", 80.0);
    layout.LoadKeyboardSettings("own", 80.0);
    EXPECT_EQ(layout.KeyNoteTable[40].Note, 60);

    EXPECT_FALSE(layout.SaveKeyboardSettings("own"));
    EXPECT_EQ(bed.dialogs.asked.back(), own + "\nOverwrite ?");
    bed.dialogs.answers[own + "\nOverwrite ?"] = true;
    EXPECT_TRUE(layout.SaveKeyboardSettings("own"));
    EXPECT_FALSE(layout.Delete_Layout("own"));
    bed.dialogs.answers["own\nDelete  ?"] = true;
    EXPECT_TRUE(layout.Delete_Layout("own"));
    EXPECT_FALSE(std::filesystem::exists(own));
    EXPECT_FALSE(layout.Delete_Layout("own"));
    EXPECT_EQ(bed.Last_Box(), "Error deleting file");
}

TEST(KeyboardLayout, KeysGetFunctions) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    layout.KeyboardTuning = 3;
    for (const int code : {0, 1, 2, 4})
        layout.Set_Key_Function(50 + code, code);
    EXPECT_EQ(layout.KeyMap[50], (KeyMapEntry{.Enabled = -1, .Target = 50, .Kind = KEY_NOTE}));
    EXPECT_EQ(layout.KeyNoteTable[50], (NoteData{.Note = 60, .Vol = 127}));
    EXPECT_EQ(layout.KeyMap[51], (KeyMapEntry{.Enabled = -1, .Target = 51, .Kind = KEY_QCHORD}));
    EXPECT_EQ(layout.KeyQChordTable[51], (QChordData{3, "C", 0, 0, 0.0, 0, 0, {0, 4, 7}, 0, 127}));
    EXPECT_EQ(layout.KeyQChordTable[51].StepMs, -1);
    EXPECT_EQ(layout.KeyMCTable[52].Root, 3);
    EXPECT_EQ(layout.KeyMap[54].Enabled, 0);
    int reserved = 0;
    for (int key = 0; key < 256; ++key) {
        layout.Set_Key_Function(key, 0);
        reserved += layout.KeyMap[static_cast<std::size_t>(key)].Kind == KEY_RESERVED ? 1 : 0;
    }
    EXPECT_EQ(reserved, 13);
    layout.Set_Key_Function(316, 4);
    EXPECT_EQ(layout.KeyMap[316], (KeyMapEntry{.Enabled = -1, .Target = 316, .Kind = KEY_NOTE}));
    layout.LoadChordsInKey(9, 1);
    EXPECT_EQ(layout.ChordsInKey[6], (std::array<std::uint8_t, 2>{7, 0}));
    EXPECT_EQ(layout.ChordsInKey[1], (std::array<std::uint8_t, 2>{11, 1}));
    layout.NotesOctave = 5;
    EXPECT_EQ(layout.Sounding_Note(127), 127);
    EXPECT_EQ(layout.Sounding_Note(255), 199) << "72 + 127";
}

TEST(StockLayouts, ShipAsTheyAreMade) {
    Layout_Bed bed;
    auto& layout = bed.layout;
    ASSERT_EQ(Stock_Layouts().size(), 2U);
    for (const Stock_Layout& stock : Stock_Layouts()) {
        const std::string shipped =
            Temp_Folder::Text_Of(TONVEX_SOURCE_DATA "/keyboard/" + stock.name + ".dat");
        EXPECT_EQ(As_Bytes(shipped), Write_Layout(stock.tables)) << stock.name << ": run make_layouts";
        bed.folder.Write("keyboard/" + stock.name + ".dat", shipped);
    }
    layout.LoadKeyboardSettings("Tonvex default", 80.0);
    EXPECT_EQ(bed.Sounds({44, 31, 50, 53}), (std::vector<int>{48, 49, 59, 64})) << "Z S M /";
    std::string digits;
    std::string letters;
    for (std::size_t key = 2; key <= 11; ++key) {
        digits += layout.KeyQChordTable[key].ChordName + " ";
        letters += layout.KeyQChordTable[key + 14].ChordName + " ";
        EXPECT_EQ(layout.KeyMap[key].Kind, KEY_QCHORD);
    }
    EXPECT_EQ(digits, "C Dm Em F G Am Bm C7 G7 Am7 ");
    EXPECT_EQ(letters, "Cmaj7 Dm7 Em7 Fmaj7 Gsus4 Asus4 B° D7 E7 Csus2 ");
    EXPECT_EQ(layout.KeyQChordTable[6].ChordNotes, (std::array<std::uint8_t, 6>{7, 11, 14}));
    EXPECT_EQ(std::count_if(layout.KeyMap.begin(), layout.KeyMap.begin() + 256,
                            [](const auto& entry) { return entry.Enabled == -1; }),
              17 + 20 + 13);
    layout.LoadKeyboardSettings("Two-row piano", 80.0);
    EXPECT_EQ(bed.Sounds({44, 16, 11, 25}), (std::vector<int>{48, 60, 75, 76})) << "Z Q 0 P";
    EXPECT_TRUE(bed.dialogs.shown.empty());
}

TEST(KeyboardLayoutKeys, TakesNotesAndChordsForFreeKeysAlone) {
    Recorded_Dialogs dialogs;
    const NotesStuff notes;
    KeyboardLayout layout(notes, dialogs);
    layout.KeyMap[30] = {.Enabled = 0, .Target = 7, .Kind = KEY_MC};
    for (const int key : {-1, 1, 59, 88, 256, 1000})
        layout.Set_Key_Note(key, {.Note = 5, .Vol = 6, .Length = 0.0});
    EXPECT_FALSE(layout.KeyboardModified);
    layout.Set_Key_Note(30, {.Note = 130, .Vol = 99, .Length = 0.0});
    EXPECT_EQ(layout.KeyMap[30], (KeyMapEntry{.Enabled = -1, .Target = 30, .Kind = KEY_NOTE}));
    EXPECT_EQ(layout.KeyNoteTable[30].Note, 130);
    EXPECT_TRUE(layout.KeyboardModified);
    QChordData chord;
    chord.Active = 2;
    layout.Set_Key_QChord(30, chord);
    layout.Set_Key_QChord(1, chord);
    EXPECT_EQ(layout.KeyMap[30].Kind, KEY_QCHORD);
    EXPECT_EQ(layout.KeyQChordTable[30], chord);
    EXPECT_EQ(layout.KeyMap[1].Kind, KEY_RESERVED);
}

} // namespace
} // namespace tonvex
