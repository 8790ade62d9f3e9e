// Any bytes as a keyboard layout: a refused file changes nothing, an accepted one is written as it was read,
// and the keys can be tuned and played whatever their rows hold.

#include "fuzz/require.h"
#include "input/keyboard_layout.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tonvex;
    const std::span<const std::uint8_t> bytes(data, size);
    Key_Tables tables;
    static const Key_Tables empty;
    if (Read_Layout(bytes, 80.0, tables) != Layout_Read::Replaced) {
        Require(tables.map == empty.map && tables.notes == empty.notes && tables.chords == empty.chords &&
                    tables.styles == empty.styles && tables.nameFields == empty.nameFields,
                "a refused file changed the tables");
        return 0;
    }
    const auto written = Write_Layout(tables);
    if (data[5] == '2')
        Require(std::equal(written.begin(), written.end(), bytes.begin()), "not the bytes that were read");
    Key_Tables again;
    Require(Read_Layout(written, 80.0, again) == Layout_Read::Replaced, "own file refused");
    Require(Write_Layout(again) == written, "second writing differs");

    static const NotesStuff notes;
    Recorded_Dialogs dialogs;
    KeyboardLayout layout(notes, dialogs);
    (void)layout.Read_Bytes_Into_Tables(bytes, 80.0);
    layout.KeyboardTuning = static_cast<int>(size % 12);
    layout.KeyboardTuning_Changed();
    for (const KeyMapEntry& entry : layout.KeyMap)
        if (entry.Enabled == -1)
            (void)layout.Sounding_Note(layout.KeyNoteTable.at(static_cast<std::size_t>(entry.Target)).Note);
    return 0;
}
