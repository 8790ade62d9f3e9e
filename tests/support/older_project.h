#pragma once

#include "creator/music_creator_module.h"
#include "song/effect_records.h"
#include "song/global_channels_manager.h"
#include "support/project_bytes.h"

#include <string>
#include <utility>
#include <vector>

/// Writers of the section versions that are only read today, as the programs of their time would have
/// written them. Times in ms.
namespace tonvex::older {

struct Old_Mark {
    bool live = false;
    std::int32_t startMs = 0;
    std::int32_t endMs = 0;
    std::string name;
    std::int32_t color = 0;
};

struct Old_Event {
    std::int32_t startMs = 0;
    int kind = 0;
    std::int32_t dataRef = 0;
};

struct Old_Note {
    int note = 0;
    int vol = 0;
    std::int32_t lengthMs = 0;
};

struct Old_Channel {
    std::int32_t channelNumber = 0;
    std::vector<Old_Event> events = {};
    std::vector<Old_Note> notes = {};
    std::vector<Bytes> chords = {}; ///< rows of 41 bytes
    std::vector<MCEventData> fragments = {};
};

/// Points between the two fixed ones, in order of time, and the values of those.
struct Old_Map {
    int first = 64;
    int last = 64;
    std::vector<std::pair<std::int32_t, int>> points;
};

/// A chord's row of 41 bytes: C major, three notes, a step of 120 ms.
Bytes Old_Chord(std::int32_t lengthMs);

Section_Bytes Globals(std::int32_t version, std::int32_t tempo);
/// The rest of the 110 rows is free. count: the live ones.
Section_Bytes Channels(std::int32_t version, const std::vector<GlobalChannel>& rows, std::int32_t count);
Section_Bytes Events(const std::vector<Old_Channel>& channels);
Section_Bytes Marks(std::int32_t version, const std::vector<Old_Mark>& marks);
/// Slot 0 has these, the others new ones.
Section_Bytes Maps(const Old_Map& volume, const Old_Map& pan);
/// Slot 31 has these, the others neutral ones.
Section_Bytes Effects(const Effect_Settings& settings);
Section_Bytes Editor(std::int32_t alignDiv, double alignStep);
/// creator's first 16 tracks.
Section_Bytes Creator(std::int32_t version, MusicCreator_Module creator);
/// One of each, all with something in them, in the order of the readers. The channels' tables tell of two
/// channels, of which the events hold one.
std::vector<Section_Bytes> Every_Section();
/// A file of the first major version: its head, then what stands behind it.
Bytes First_Version(const std::string& digits, const std::vector<std::string>& texts, std::int32_t metronomeA,
                    std::int32_t tempo, std::int32_t metronomeB, const Bytes& behind = {});

} // namespace tonvex::older
