// Any bytes as a chord record and the text of its finger-picking pattern: both are read, played in late
// rounds and rendered, and the two forms sound the same notes at the same beats.

#include "engine/qchord_class.h"
#include "fuzz/require.h"
#include "song/event_rows.h"
#include "support/temp_folder.h"

#include <array>

namespace {

using namespace tonvex;

constexpr double START = 3.0;
constexpr double LONGEST = 300.0; ///< beats

/// Walks the rendered rows beside the live messages.
class Row_Check {
public:
    explicit Row_Check(const Render_MidiEventColClass& rows) : list(rows) {}
    void Compare(const QChord_Messages& messages, double time) {
        for (std::size_t i = 0; i < messages.Rows(); ++i) {
            std::int16_t channel = 0;
            double rowTime = 0.0;
            std::uint16_t note = 0;
            std::uint16_t velocity = 0;
            Require(list.GetEvent(next++, channel, rowTime, note, velocity), "more live notes than rows");
            Require(note == messages.Notes[i] && note < 128, "another note");
            Require((velocity > 0) == (messages.Actions[i] == QChord_Messages::NOTE_ON), "another action");
            Require(rowTime == time, "another beat");
            held[note] += velocity > 0 ? 1 : -1;
            Require(held[note] == 0 || held[note] == 1, "a note begun twice or ended twice");
        }
    }
    void End() const {
        Require(next == list.TotalEvents(), "more rows than live notes");
        for (const int count : held)
            Require(count == 0, "a note rings on");
    }

private:
    const Render_MidiEventColClass& list;
    std::int32_t next = 0;
    std::array<int, 128> held{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const NotesStuff notes;
    static const TempoChangeClass tempoChanges;
    static const Project_State project;
    Byte_Cursor cursor({data, size});
    QChordData chord = Read_QChord_Row(cursor);
    const double lag = (1 + cursor.Read_U8()) / 64.0;
    const int octave = cursor.Read_U8();
    if (!cursor.Ok())
        return 0;
    const std::size_t textAt = QCHORD_ROW_BYTES + 2;
    chord.Length = chord.Length > 0.0 ? std::min(chord.Length, LONGEST) : 1.0;
    chord.ArpeggioPattern = 1;
    static const Temp_Folder folder;
    folder.Write("1.txt", std::string(reinterpret_cast<const char*>(data + textAt), size - textAt));
    Fingerpick_Patterns patterns({folder.Path()}, notes);
    const QChord_Parts parts{tempoChanges, project, patterns};

    QChordClass live(parts);
    live.SetQchordData(chord, octave, START);
    QChordClass stored(parts);
    stored.Set_Stored_Chord(live.Stored_Copy(chord.Length), START);
    Render_MidiEventColClass rows;
    std::int32_t count = 0;
    stored.Render_GetEvents(rows, 0, 100, true, QChordClass::STOP, count);
    Require(count == rows.TotalEvents(), "a wrong count");

    Row_Check check(rows);
    QChord_Messages messages;
    const double end = START + chord.Length;
    for (double time = START; QChordClass::Step_Sounds(time, end); time += lag) {
        do {
            live.GetMsg_On_Time(time, messages);
            check.Compare(messages, messages.Time);
        } while (messages.LastIndex >= 0);
    }
    while (QChordClass::Step_Sounds(live.Next_Step_Time(), end)) {
        live.GetMsg_On_Time(live.Next_Step_Time(), messages);
        check.Compare(messages, messages.Time);
    }
    live.GetMsg_On_Time(QChordClass::STOP, messages);
    check.Compare(messages, end);
    check.End();
    return 0;
}
