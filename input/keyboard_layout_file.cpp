#include "input/keyboard_layout_file.h"

#include "base/byte_cursor.h"
#include "base/text_codec.h"
#include "song/event_rows.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace tonvex {

namespace {

constexpr std::string_view MAGIC = "Keyb";
constexpr std::string_view VERSION_NOW = "02";
constexpr std::string_view VERSION_MS = "01";
constexpr std::size_t MAP_ROW_BYTES = 5;
constexpr std::size_t ROWS_BYTES_NOW =
    LAYOUT_ROWS * (MAP_ROW_BYTES + NOTE_ROW_BYTES + QCHORD_ROW_BYTES + MC_ROW_BYTES);
constexpr std::size_t ROWS_BYTES_MS = LAYOUT_ROWS * (MAP_ROW_BYTES + NOTE_ROW_BYTES_MS + QCHORD_ROW_BYTES_MS);
static_assert(MAGIC.size() + VERSION_NOW.size() + ROWS_BYTES_NOW == LAYOUT_FILE_BYTES);

std::string_view As_Text(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

KeyMapEntry Read_Map_Row(Byte_Cursor& cursor) {
    KeyMapEntry entry;
    entry.Enabled = cursor.Read_I16();
    entry.Target = cursor.Read_I16();
    entry.Kind = cursor.Read_U8();
    return entry;
}

/// The name of the chord row that begins at the cursor, as it stands.
void Keep_Name_Field(Byte_Cursor cursor, std::array<std::uint8_t, CHORD_NAME_BYTES>& field) {
    cursor.Skip(1);
    const auto name = cursor.Read_Bytes(CHORD_NAME_BYTES);
    std::copy(name.begin(), name.end(), field.begin());
}

void Read_Rows(Byte_Cursor& cursor, Key_Tables& tables) {
    for (NoteData& note : tables.notes)
        note = Read_Note_Row(cursor);
    for (std::size_t i = 0; i < LAYOUT_ROWS; ++i) {
        Keep_Name_Field(cursor, tables.nameFields[i]);
        tables.chords[i] = Read_QChord_Row(cursor);
    }
    for (MCEventData& style : tables.styles)
        style = Read_MC_Row(cursor);
}

/// Rows of version "01". msPerBeat widens their lengths.
void Read_Old_Rows(Byte_Cursor& cursor, double msPerBeat, Key_Tables& tables) {
    for (NoteData& note : tables.notes)
        note = Read_Note_Row_Ms(cursor, msPerBeat);
    for (std::size_t i = 0; i < LAYOUT_ROWS; ++i) {
        Keep_Name_Field(cursor, tables.nameFields[i]);
        QChordData chord = Read_QChord_Row_Ms(cursor, msPerBeat);
        // That version has no finger picking: what the key has stays.
        chord.ArpeggioOn = tables.chords[i].ArpeggioOn;
        chord.ArpeggioPattern = tables.chords[i].ArpeggioPattern;
        tables.chords[i] = chord;
    }
}

} // namespace

Layout_Read Read_Layout(std::span<const std::uint8_t> bytes, double currentTempo, Key_Tables& tables) {
    Byte_Cursor cursor(bytes);
    const auto magic = cursor.Read_Bytes(MAGIC.size());
    if (!cursor.Ok())
        return Layout_Read::Broken;
    if (As_Text(magic) != MAGIC)
        return Layout_Read::Not_Layout;
    const std::string version(As_Text(cursor.Read_Bytes(VERSION_NOW.size())));
    if (!cursor.Ok())
        return Layout_Read::Broken;
    if (version != VERSION_NOW && version != VERSION_MS)
        return Layout_Read::Kept;
    const bool old = version == VERSION_MS;
    if (cursor.Remaining() < (old ? ROWS_BYTES_MS : ROWS_BYTES_NOW))
        return Layout_Read::Broken;
    for (KeyMapEntry& entry : tables.map)
        entry = Read_Map_Row(cursor);
    if (old)
        Read_Old_Rows(cursor, 60000.0 / (currentTempo > 0.0 ? currentTempo : 1.0), tables);
    else
        Read_Rows(cursor, tables);
    return Layout_Read::Replaced;
}

std::vector<std::uint8_t> Write_Layout(const Key_Tables& tables) {
    Byte_Writer writer;
    writer.Write_Text(std::string(MAGIC));
    writer.Write_Text(std::string(VERSION_NOW));
    for (const KeyMapEntry& entry : tables.map) {
        writer.Write_I16(entry.Enabled);
        writer.Write_I16(entry.Target);
        writer.Write_U8(entry.Kind);
    }
    for (const NoteData& note : tables.notes)
        Write_Note_Row(writer, note);
    const std::size_t firstChord = writer.Bytes().size();
    for (const QChordData& chord : tables.chords)
        Write_QChord_Row(writer, chord);
    for (const MCEventData& style : tables.styles)
        Write_MC_Row(writer, style);
    std::vector<std::uint8_t> bytes = writer.Take();
    for (std::size_t i = 0; i < LAYOUT_ROWS; ++i) {
        const auto& field = tables.nameFields[i];
        if (Text_From_Fixed_Field(As_Text(field)) == tables.chords[i].ChordName)
            std::copy(field.begin(), field.end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(firstChord + i * QCHORD_ROW_BYTES + 1));
    }
    return bytes;
}

} // namespace tonvex
