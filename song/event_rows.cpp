#include "song/event_rows.h"

#include "base/text_codec.h"

#include <algorithm>
#include <span>

namespace tonvex {

namespace {

constexpr std::size_t EVENT_NAME_BYTES = 20;
constexpr std::size_t NAMED_BLOCK_BYTES = 101;

std::string Read_Fixed_Text(Byte_Cursor& cursor, std::size_t size) {
    const auto field = cursor.Read_Bytes(size);
    return Text_From_Fixed_Field({reinterpret_cast<const char*>(field.data()), field.size()});
}

template <std::size_t N>
void Read_Array(Byte_Cursor& cursor, std::array<std::uint8_t, N>& target) {
    const auto piece = cursor.Read_Bytes(N);
    std::copy(piece.begin(), piece.end(), target.begin());
}

/// length reads the length where it stands; picking: the row has the fields of finger-picking.
template <typename Length>
QChordData Read_Chord(Byte_Cursor& cursor, Length length, bool picking) {
    QChordData chord;
    chord.Active = cursor.Read_U8();
    const auto name = cursor.Read_Bytes(CHORD_NAME_BYTES);
    chord.ChordName =
        Text_From_Fixed_Field(std::string_view(reinterpret_cast<const char*>(name.data()), name.size()));
    chord.Octave = cursor.Read_U8();
    chord.VariableOctave = cursor.Read_U16();
    chord.Length = length();
    chord.ChordFlagA = cursor.Read_U8();
    chord.ChordTypeIndex = cursor.Read_U8();
    Read_Array(cursor, chord.ChordNotes);
    chord.ChordFlagB = cursor.Read_U8();
    chord.ChordVol = cursor.Read_U8();
    if (picking) {
        chord.ArpeggioOn = cursor.Read_U16();
        chord.ArpeggioPattern = cursor.Read_I16();
    }
    chord.PatternNoteCount = cursor.Read_U8();
    Read_Array(cursor, chord.PatternNotes);
    chord.StepMs = cursor.Read_I16();
    return chord;
}

} // namespace

NoteData Read_Note_Row(Byte_Cursor& cursor) {
    NoteData note;
    note.Note = cursor.Read_U8();
    note.Vol = cursor.Read_U8();
    note.Length = cursor.Read_Double();
    return note;
}

QChordData Read_QChord_Row(Byte_Cursor& cursor) {
    return Read_Chord(
        cursor, [&cursor] { return cursor.Read_Double(); }, true);
}

NamedEventData Read_Named_Row(Byte_Cursor& cursor) {
    NamedEventData event;
    event.InUse = cursor.Read_U16();
    event.EventName = Read_Fixed_Text(cursor, EVENT_NAME_BYTES);
    const auto block = cursor.Read_Bytes(NAMED_BLOCK_BYTES);
    std::copy(block.begin(), block.end(), event.Block.begin());
    return event;
}

MCEventData Read_MC_Row(Byte_Cursor& cursor) {
    MCEventData event;
    event.Root = cursor.Read_U8();
    event.Minor = cursor.Read_U8();
    event.Length = cursor.Read_Double();
    event.StartOffset = cursor.Read_Double();
    event.InUse = cursor.Read_U16();
    event.Style = cursor.Read_U8();
    Read_Array(cursor, event.StyleBlock);
    event.Reserved = cursor.Read_U8();
    return event;
}

AudioEventData Read_Audio_Row(Byte_Cursor& cursor) {
    AudioEventData event;
    event.InUse = cursor.Read_U16();
    event.SampleCount = cursor.Read_I32();
    event.FadeIn = cursor.Read_I32();
    event.FadeOut = cursor.Read_I32();
    event.Take = cursor.Read_I16();
    event.ClipID = cursor.Read_I32();
    return event;
}

NoteData Read_Note_Row_Ms(Byte_Cursor& cursor, double msPerBeat) {
    NoteData note;
    note.Note = cursor.Read_U8();
    note.Vol = cursor.Read_U8();
    note.Length = cursor.Read_I32() / msPerBeat;
    return note;
}

QChordData Read_QChord_Row_Ms(Byte_Cursor& cursor, double msPerBeat) {
    return Read_Chord(
        cursor, [&cursor, msPerBeat] { return cursor.Read_I32() / msPerBeat; }, false);
}

void Write_Note_Row(Byte_Writer& writer, const NoteData& note) {
    Byte_Row<NOTE_ROW_BYTES> row;
    row.Write_U8(note.Note);
    row.Write_U8(note.Vol);
    row.Write_Double(note.Length);
    writer.Write_Bytes(row.Bytes());
}

void Write_QChord_Row(Byte_Writer& writer, const QChordData& chord) {
    writer.Write_U8(chord.Active);
    writer.Write_Text(Fixed_Field(chord.ChordName, CHORD_NAME_BYTES));
    writer.Write_U8(chord.Octave);
    writer.Write_U16(chord.VariableOctave);
    writer.Write_Double(chord.Length);
    writer.Write_U8(chord.ChordFlagA);
    writer.Write_U8(chord.ChordTypeIndex);
    writer.Write_Bytes(chord.ChordNotes);
    writer.Write_U8(chord.ChordFlagB);
    writer.Write_U8(chord.ChordVol);
    writer.Write_U16(chord.ArpeggioOn);
    writer.Write_I16(chord.ArpeggioPattern);
    writer.Write_U8(chord.PatternNoteCount);
    writer.Write_Bytes(chord.PatternNotes);
    writer.Write_I16(chord.StepMs);
}

void Write_Named_Row(Byte_Writer& writer, const NamedEventData& event) {
    writer.Write_U16(event.InUse);
    writer.Write_Text(Fixed_Field(event.EventName, EVENT_NAME_BYTES));
    writer.Write_Bytes(std::span(event.Block).first(NAMED_BLOCK_BYTES));
}

void Write_MC_Row(Byte_Writer& writer, const MCEventData& event) {
    writer.Write_U8(event.Root);
    writer.Write_U8(event.Minor);
    writer.Write_Double(event.Length);
    writer.Write_Double(event.StartOffset);
    writer.Write_U16(event.InUse);
    writer.Write_U8(event.Style);
    writer.Write_Bytes(event.StyleBlock);
    writer.Write_U8(event.Reserved);
}

void Write_Audio_Row(Byte_Writer& writer, const AudioEventData& event) {
    writer.Write_U16(event.InUse);
    writer.Write_I32(event.SampleCount);
    writer.Write_I32(event.FadeIn);
    writer.Write_I32(event.FadeOut);
    writer.Write_I16(event.Take);
    writer.Write_I32(event.ClipID);
}

} // namespace tonvex
