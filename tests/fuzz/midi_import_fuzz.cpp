// Any bytes as a MIDI file: what is imported is a sound song, and the file that is exported from it brings as
// many notes back.

#include "fuzz/require.h"
#include "project/midi_export.h"
#include "support/test_session.h"

namespace {

using namespace tonvex;

/// The last position in beats at which an exported file's ticks can still be counted by who reads it.
constexpr double LAST_BEAT = 2147483647.0 / 192.0 - 1.0;

struct Found {
    std::size_t notes = 0;
    double end = 0.0;
};

Found Look_At(const Session& session) {
    Found found;
    Require(session.channels->Count_Channels() > 0, "a song without a channel");
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const ChannelClass& store = session.channels->Store(row);
        double before = 0.0;
        for (auto i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            Require(event.has_value() && event->StartTime >= before, "events out of order");
            before = event->StartTime;
            if (event->Note == nullptr)
                continue;
            Require(event->Note->Note < 128 && event->Note->Vol > 0 && event->Note->Vol < 128,
                    "no such note");
            Require(event->Note->Length >= 0.0, "a note that ends before it begins");
            ++found.notes;
            found.end = std::max(found.end, event->StartTime + event->Note->Length);
        }
    }
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Test_Session bed;
    static Session& session = bed.Load();
    bed.dialogs.shown.clear();
    bed.dialogs.statuses.clear();
    bed.sound.posted.clear();
    bed.sound.effectsSet.clear();
    if (session.midiImport->Import_Bytes({data, size}) != Work_Outcome::Done) {
        Require(bed.dialogs.shown.size() == 1, "a refusal without its box");
        return 0;
    }
    Require(bed.dialogs.shown.empty(), "a box about a good file");
    const Found found = Look_At(session);
    Export_Buffers buffers(*session.channels);
    Unseen_Progress unseen;
    Require(session.midiExport->Render_To_Buffers(buffers, unseen), "a render that stops");
    const midi_format::Bytes file = session.midiExport->File_Bytes(buffers, {});
    if (found.end > LAST_BEAT)
        return 0;
    Require(session.midiImport->Import_Bytes(file) == Work_Outcome::Done, "an export that cannot be read");
    Require(Look_At(session).notes == found.notes, "notes lost on the way");
    return 0;
}
