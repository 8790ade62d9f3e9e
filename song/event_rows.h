#pragma once

#include "base/byte_cursor.h"
#include "song/event_data.h"

#include <cstddef>

namespace tonvex {

/// Rows of the event payloads as files carry them: little-endian, packed, texts in fixed fields.
inline constexpr std::size_t NOTE_ROW_BYTES = 10;
inline constexpr std::size_t QCHORD_ROW_BYTES = 49;
inline constexpr std::size_t NAMED_ROW_BYTES = 123;
inline constexpr std::size_t MC_ROW_BYTES = 222;
inline constexpr std::size_t AUDIO_ROW_BYTES = 20;
inline constexpr std::size_t CHORD_NAME_BYTES = 10; ///< at the second byte of a chord's row

/// The readers give zero values once the cursor has failed; ask it. Values are taken as they stand: who uses
/// a count or an index keeps it within its array.
NoteData Read_Note_Row(Byte_Cursor& cursor);
QChordData Read_QChord_Row(Byte_Cursor& cursor);
/// The rest of the block, which a file does not carry, is zero.
NamedEventData Read_Named_Row(Byte_Cursor& cursor);
MCEventData Read_MC_Row(Byte_Cursor& cursor);
AudioEventData Read_Audio_Row(Byte_Cursor& cursor);

/// Rows of older files, with lengths in ms: they become beats by msPerBeat, above 0. Chords then knew no
/// finger-picking.
inline constexpr std::size_t NOTE_ROW_BYTES_MS = 6;
inline constexpr std::size_t QCHORD_ROW_BYTES_MS = 41;
NoteData Read_Note_Row_Ms(Byte_Cursor& cursor, double msPerBeat);
QChordData Read_QChord_Row_Ms(Byte_Cursor& cursor, double msPerBeat);

void Write_Note_Row(Byte_Writer& writer, const NoteData& note);
void Write_QChord_Row(Byte_Writer& writer, const QChordData& chord);
void Write_Named_Row(Byte_Writer& writer, const NamedEventData& event);
void Write_MC_Row(Byte_Writer& writer, const MCEventData& event);
void Write_Audio_Row(Byte_Writer& writer, const AudioEventData& event);

} // namespace tonvex
