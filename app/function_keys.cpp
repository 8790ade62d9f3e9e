#include "app/function_keys.h"

#include "base/byte_cursor.h"
#include "base/file_io.h"
#include "base/text_codec.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr std::int16_t LOCKED = -1;
constexpr std::int16_t RUNS = -1;
/// A text is at most what its two bytes of length can tell.
constexpr std::size_t MOST_TEXT = 65535;
/// No file of the table can be longer: each record has two texts and seven bytes beside their lengths.
constexpr std::size_t MOST_FILE = Function_Key_Table::ROWS * (2 * (MOST_TEXT + 2) + 6);

struct Shipped_Row {
    const char* name;
    std::uint8_t keyCode = 0;
    std::uint8_t modifier = 0;
    std::int16_t whileRunning = 0;
    std::int16_t locked = 0;
};

/// R stands on two rows: the first has it, and the other works once one of both is moved.
constexpr Shipped_Row SHIPPED[] = {
    {"Move channel Pan 10% Right", 'R', 0, RUNS},
    {"Move channel Pan 10% Left", 'L', 0, RUNS},
    {"Center channel Pan", 'C', 0, RUNS},
    {"Enable/Disable Metronome", 'M', 0, RUNS},
    {"Setup Metronome", 'M', CONTROL_KEY},
    {"Use Midi Keyboard as input", 'I', CONTROL_KEY, RUNS},
    {"Increase channel volume 10%", 107, 0, RUNS},
    {"Decrease channel volume 10%", 109, 0, RUNS},
    {"Set channel Patch", 'P'},
    {"Select Channel", 'S'},
    {"Delete Channel", 46, CONTROL_KEY},
    {"Clear Channel Events"},
    {"Undo last action", 'Z', CONTROL_KEY},
    {"Redo last action"},
    {"Set output channel", 'O', CONTROL_KEY},
    {"Align channel events", 'A'},
    {"Set Channel FX: Reverb", '1', CONTROL_KEY},
    {"Set Channel FX: Chorus", '2', CONTROL_KEY},
    {"Set Channel FX: Flanger", '3', CONTROL_KEY},
    {"Set Channel FX: Echo", '4', CONTROL_KEY},
    {"Set Channel FX: Distortion", '5', CONTROL_KEY},
    {"Record", 'R', CONTROL_KEY},
    {"Play song", 13},
    {"Rewind 5 seconds", 100, 0, RUNS},
    {"Rewind to start of song", 36, 0, RUNS},
    {"Forward 5 seconds", 102, 0, RUNS},
    {"Start Practice mode", 'P', CONTROL_KEY},
    {"Mute Channel", 111, 0, RUNS},
    {"Solo Channel", 106, 0, RUNS},
    {"Set record mode: blend"},
    {"Set record mode: overwrite"},
    {"Clear all channels mute/solo status", 'R'},
    {"Decrease Rec speed 10 %"},
    {"Increase Rec speed 10 %"},
    {"Select Mark", 'T'},
    {"Set mark start at current play position", 0, 0, RUNS},
    {"Set mark end at current play position", 0, 0, RUNS},
    {"Unselect mark (select none)", 46},
    {"Select Notes octave: 1", 112, 0, RUNS, LOCKED},
    {"Select Notes octave: 2", 113, 0, RUNS, LOCKED},
    {"Select Notes octave: 3", 114, 0, RUNS, LOCKED},
    {"Select Notes octave: 4", 115, 0, RUNS, LOCKED},
    {"Select Notes octave: 5", 116, 0, RUNS, LOCKED},
    {"Select Notes octave: 6", 117, 0, RUNS, LOCKED},
    {"Select Qchords octave: 1", 118, 0, RUNS, LOCKED},
    {"Select Qchords octave: 2", 119, 0, RUNS, LOCKED},
    {"Select Qchords octave: 3", 120, 0, RUNS, LOCKED},
    {"Select Qchords octave: 4", 121, 0, RUNS, LOCKED},
    {"Select Qchords octave: 5", 122, 0, RUNS, LOCKED},
    {"Select Qchords octave: 6", 123, 0, RUNS, LOCKED},
    {"Add new channel", 45, CONTROL_KEY},
    {"Go to end of song", 35, 0, RUNS},
    {"Set Rec speed to 100%", 'N'},
    {"Stop recording/playing", KEYCODE_ESCAPE, 0, RUNS, LOCKED},
    {"Toggle channel Mute on/off", 0, 0, RUNS},
    {"Toggle channel Solo on/off", 0, 0, RUNS},
};
static_assert(std::size(SHIPPED) == Function_Key_Table::FILLED);

constexpr std::pair<int, const char*> NAMED_KEYS[] = {
    {8, "BackSpace"},    {9, "Tab"},         {13, "Enter"},  {27, "Escape"},     {33, "Page Up"},
    {34, "Page Down"},   {35, "End"},        {36, "Home"},   {37, "Left arrow"}, {38, "Up arrow"},
    {39, "Right arrow"}, {40, "Down Arrow"}, {45, "Insert"}, {46, "Delete"},     {106, "*"},
    {107, "+"},          {109, "-"},         {110, "."},     {111, "/"},
};

struct Read_Record {
    std::uint8_t keyCode;
    std::uint8_t modifier;
    std::string name;
};

std::string Read_Text(Byte_Cursor& cursor) {
    const auto bytes = cursor.Read_Bytes(cursor.Read_U16());
    return {bytes.begin(), bytes.end()};
}

Read_Record Read_One(Byte_Cursor& cursor) {
    Read_Record record{};
    record.keyCode = cursor.Read_U8();
    record.name = Read_Text(cursor);
    (void)Read_Text(cursor); // the internal name is the program's
    cursor.Skip(2);          // Locked
    record.modifier = cursor.Read_U8();
    cursor.Skip(2); // WhileRunning
    return record;
}

void Write_Text(Byte_Writer& writer, const std::string& text) {
    const std::string bytes = Text_To_File_Cut(text, MOST_TEXT);
    writer.Write_U16(static_cast<std::uint16_t>(bytes.size()));
    writer.Write_Text(bytes);
}

} // namespace

void Function_Key_Table::FunctionKeys_Init() {
    FunctionKeys.fill({});
    for (std::size_t i = 0; i < FILLED; ++i) {
        const Shipped_Row& row = SHIPPED[i];
        FunctionKeys[i] = {row.keyCode, row.name, row.name, row.locked, row.modifier, row.whileRunning};
    }
    KeyNames.fill({});
    for (const auto& [code, name] : NAMED_KEYS)
        KeyNames[static_cast<std::size_t>(code)] = name;
    for (std::size_t digit = 0; digit <= 9; ++digit) {
        KeyNames['0' + digit] = std::to_string(digit);
        KeyNames[96 + digit] = "numpad " + std::to_string(digit);
    }
    for (std::size_t letter = 'A'; letter <= 'Z'; ++letter)
        KeyNames[letter] = std::string(1, static_cast<char>(letter));
    for (std::size_t n = 1; n <= 12; ++n)
        KeyNames[111 + n] = "F" + std::to_string(n);
}

void Function_Key_Table::FunctionKeys_Load(const std::filesystem::path& file) {
    if (const auto bytes = Read_File(file, MOST_FILE))
        FunctionKeys_Read(*bytes);
}

void Function_Key_Table::FunctionKeys_Read(std::span<const std::uint8_t> bytes) {
    Byte_Cursor cursor(bytes);
    for (FunctionKey& row : FunctionKeys) {
        const Read_Record record = Read_One(cursor);
        if (!cursor.Ok())
            return;
        if (record.name.empty())
            continue;
        row.KeyCode = record.keyCode;
        row.Modifier = record.modifier;
        row.Name = Text_From_File(record.name);
    }
}

std::vector<std::uint8_t> Function_Key_Table::FunctionKeys_Bytes() const {
    Byte_Writer writer;
    for (const FunctionKey& row : FunctionKeys) {
        writer.Write_U8(row.KeyCode);
        Write_Text(writer, row.Name);
        Write_Text(writer, row.InternalName);
        writer.Write_I16(row.Locked);
        writer.Write_U8(row.Modifier);
        writer.Write_I16(row.WhileRunning);
    }
    return writer.Take();
}

bool Function_Key_Table::FunctionKeys_Save(const std::filesystem::path& file, std::string& error) const {
    return Replace_File(file, FunctionKeys_Bytes(), error);
}

bool Function_Key_Table::Is_Function(int row) const noexcept {
    return row >= 0 && row < static_cast<int>(ROWS) &&
           !FunctionKeys[static_cast<std::size_t>(row)].InternalName.empty();
}

int Function_Key_Table::Row_Of_Key(int keyCode, int shiftMask) const noexcept {
    if (keyCode == 0)
        return -1;
    const auto found =
        std::find_if(FunctionKeys.begin(), FunctionKeys.end(), [keyCode, shiftMask](const FunctionKey& row) {
            return row.Modifier == shiftMask && row.KeyCode == keyCode;
        });
    return found == FunctionKeys.end() ? -1 : static_cast<int>(found - FunctionKeys.begin());
}

int Function_Key_Table::Row_Of_Function(std::string_view internalName) const noexcept {
    const auto found =
        std::find_if(FunctionKeys.begin(), FunctionKeys.end(),
                     [internalName](const FunctionKey& row) { return row.InternalName == internalName; });
    return found == FunctionKeys.end() || internalName.empty()
               ? -1
               : static_cast<int>(found - FunctionKeys.begin());
}

std::string Function_Key_Table::Key_Text(int row) const {
    if (!Is_Function(row))
        return {};
    const FunctionKey& function = FunctionKeys[static_cast<std::size_t>(row)];
    if (function.KeyCode == 0)
        return {};
    std::string text;
    if ((function.Modifier & SHIFT_KEY) != 0)
        text += "Shift+ ";
    if ((function.Modifier & CONTROL_KEY) != 0)
        text += "Ctrl + ";
    if ((function.Modifier & ALT_KEY) != 0)
        text += "Alt + ";
    return text + KeyNames[function.KeyCode];
}

Function_Key_Table::Key_Use Function_Key_Table::Use_Of_Key(int row, int keyCode, int shiftMask) const {
    if (!Is_Function(row) || FunctionKeys[static_cast<std::size_t>(row)].Locked != 0)
        return Key_Use::Row_Locked;
    bool used = false;
    for (int i = 0; keyCode != 0 && i < static_cast<int>(ROWS); ++i) {
        const FunctionKey& other = FunctionKeys[static_cast<std::size_t>(i)];
        if (i == row || other.KeyCode != keyCode || other.Modifier != shiftMask)
            continue;
        if (other.Locked != 0)
            return Key_Use::Reserved;
        used = true;
    }
    // What another function has was given to it, whatever it is called.
    if (used)
        return Key_Use::Used;
    const bool named = keyCode > 0 && keyCode < static_cast<int>(KEY_CODES) &&
                       !KeyNames[static_cast<std::size_t>(keyCode)].empty();
    return named ? Key_Use::Free : Key_Use::Unsupported;
}

bool Function_Key_Table::Assign_Key(int row, int keyCode, int shiftMask) {
    const Key_Use use = Use_Of_Key(row, keyCode, shiftMask);
    if (use != Key_Use::Free && use != Key_Use::Used)
        return false;
    for (FunctionKey& other : FunctionKeys) {
        if (other.KeyCode != keyCode || other.Modifier != shiftMask)
            continue;
        other.KeyCode = 0;
        other.Modifier = 0;
    }
    FunctionKey& function = FunctionKeys[static_cast<std::size_t>(row)];
    function.KeyCode = static_cast<std::uint8_t>(keyCode);
    function.Modifier = static_cast<std::uint8_t>(shiftMask);
    return true;
}

bool Function_Key_Table::Rename(int row, const std::string& name) {
    if (!Is_Function(row) || Trim(name).empty())
        return false;
    FunctionKeys[static_cast<std::size_t>(row)].Name = Trim(name);
    return true;
}

} // namespace tonvex
