#include "creator/old_clean_guitar.h"

#include "base/byte_cursor.h"
#include "creator/music_creator_module.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr std::size_t HEAD_BYTES = 4;
constexpr std::size_t TO_LENGTH_BYTES = 24;  ///< Active, ChordName, Octave, VariableOctave
constexpr std::size_t TO_PICKING_BYTES = 10; ///< ChordFlagA to ChordVol
constexpr std::size_t ORDER_BYTES = 12;      ///< PatternNoteCount, PatternNotes and one unused byte

} // namespace

void Renew_Old_Clean_Guitar(std::array<std::uint8_t, 200>& styleBlock, double msPerBeat) {
    Byte_Cursor old(styleBlock);
    Byte_Writer renewed;
    renewed.Write_Bytes(old.Read_Bytes(HEAD_BYTES));
    renewed.Write_Bytes(old.Read_Bytes(TO_LENGTH_BYTES));
    renewed.Write_Double(old.Read_I32() / msPerBeat);
    renewed.Write_Bytes(old.Read_Bytes(TO_PICKING_BYTES));
    renewed.Write_U16(FLAG_OFF); // ArpeggioOn
    renewed.Write_I16(0);        // ArpeggioPattern
    renewed.Write_Bytes(old.Read_Bytes(ORDER_BYTES));
    renewed.Write_I16(old.Read_I16()); // StepMs
    renewed.Write_Bytes(old.Read_Bytes(styleBlock.size() - renewed.Bytes().size()));
    std::copy(renewed.Bytes().begin(), renewed.Bytes().end(), styleBlock.begin());
    styleBlock[STYLE_NEEDS_REFRESH] = STYLE_REFRESH;
}

} // namespace tonvex
