// What the user changes while it sounds, under both engines.

#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace tonvex {
namespace {

using Id = std::int32_t;

/// Within a millisecond the order is free.
std::string Sorted(const std::string& trace) {
    std::vector<std::pair<int, std::string>> lines;
    std::istringstream text(trace);
    for (std::string line; std::getline(text, line);)
        lines.emplace_back(std::stoi(line), line);
    std::sort(lines.begin(), lines.end());
    std::string sorted;
    for (const auto& [ms, line] : lines)
        sorted += line + '\n';
    return sorted;
}

struct Change {
    const char* name;
    void (*edit)(Transport_Rig& rig, Id first, Id second);
    const char* trace; ///< behind what sounded before the change
};

/// song gives the IDs of two events; the edit comes atMs.
void Check(std::span<const Change> changes, std::pair<Id, Id> (*song)(Transport_Rig& rig), int atMs,
           const std::string& begun) {
    for (const bool engine : {false, true}) {
        for (const Change& change : changes) {
            SCOPED_TRACE(std::string(change.name) + (engine ? ", thread engine" : ", polling"));
            Transport_Rig rig;
            rig.options.Global_UseThreadEngine = engine;
            const auto [first, second] = song(rig);
            rig.At(atMs, [&, first = first, second = second] { change.edit(rig, first, second); });
            EXPECT_TRUE(rig.Play());
            EXPECT_EQ(Sorted(rig.Trace()), Sorted(begun + change.trace));
            EXPECT_FALSE(rig.channels.Store(0).Mods_Pending());
        }
    }
}

ChannelClass& Store(Transport_Rig& rig) {
    return rig.channels.Store(0);
}

TEST(Live_Changes, Act_On_A_Note_That_Sounds) {
    static constexpr NoteData other{64, 50, 0.1};
    // The first note sounds from 0 to 500, the second from 700 to 800; the edit comes at 200.
    const char* const untouched = "500 Off 0 60 100\n700 On 0 62 80\n800 Off 0 62 100\n800 AllOff\n";
    const char* const cut = "200 Off 0 60 100\n700 On 0 62 80\n800 Off 0 62 100\n800 AllOff\n";
    const char* const onlyFirst = "200 Off 0 60 100\n200 AllOff\n";
    const Change changes[] = {
        {"special: nothing", [](auto& rig, Id, Id) { Store(rig).Add_Special_Mod(7); }, untouched},
        {"deleted", [](auto& rig, Id first, Id) { Store(rig).DeleteEvent(first); }, cut},
        {"deleted before it begins", [](auto& rig, Id, Id second) { Store(rig).DeleteEvent(second); },
         onlyFirst},
        {"made longer", [](auto& rig, Id first, Id) { Store(rig).Set_Event_Length(first, 0.6); },
         "600 Off 0 60 100\n700 On 0 62 80\n800 Off 0 62 100\n800 AllOff\n"},
        {"made shorter than it has sounded",
         [](auto& rig, Id first, Id) { Store(rig).Set_Event_Length(first, 0.1); }, cut},
        {"moved ahead: it plays again there",
         [](auto& rig, Id first, Id) {
             Store(rig).Set_Event_StartTime(first, 0.9);
             Store(rig).ReSort_StartTime();
         },
         "200 Off 0 60 100\n700 On 0 62 80\n800 Off 0 62 100\n900 On 0 60 80\n1400 Off 0 60 100\n"
         "1400 AllOff\n"},
        {"moved behind the position",
         [](auto& rig, Id, Id second) {
             Store(rig).Set_Event_StartTime(second, 0.05);
             Store(rig).ReSort_StartTime();
         },
         onlyFirst},
        {"added", [](auto& rig, Id, Id) { Store(rig).AddNewEvent(0.3, other); },
         "200 Off 0 60 100\n300 On 0 64 40\n400 Off 0 64 100\n700 On 0 62 80\n800 Off 0 62 100\n"
         "800 AllOff\n"},
        {"another note", [](auto& rig, Id first, Id) { Store(rig).Set_Event_Note(first, 72); }, cut},
        {"other properties", [](auto& rig, Id first, Id) { Store(rig).Set_Event_Properties(first, other); },
         cut},
        {"properties as they were",
         [](auto& rig, Id first, Id) {
             Store(rig).Set_Event_Properties(first, NoteData{60, 100, 0.5});
         },
         cut},
        {"another volume", [](auto& rig, Id first, Id) { Store(rig).Set_Event_Volume(first, 10); },
         untouched},
        {"no volume", [](auto& rig, Id first, Id) { Store(rig).Set_Event_Volume(first, 0); }, cut},
        {"another volume before it begins",
         [](auto& rig, Id, Id second) { Store(rig).Set_Event_Volume(second, 50); },
         "500 Off 0 60 100\n700 On 0 62 40\n800 Off 0 62 100\n800 AllOff\n"},
        {"no volume before it begins",
         [](auto& rig, Id, Id second) { Store(rig).Set_Event_Volume(second, 0); },
         "500 Off 0 60 100\n500 AllOff\n"},
        {"an event that is gone",
         [](auto& rig, Id, Id) { Store(rig).DeleteEvent(Store(rig).AddNewEvent(0.9, other)); }, cut},
        {"sorted into other rows while it waits",
         [](auto& rig, Id first, Id) {
             Store(rig).DeleteEvent(first);
             Store(rig).ReSort_StartTime();
         },
         cut},
        {"the channel's volume", [](auto& rig, Id, Id) { rig.channels.Set_Volume(rig.firstChannel, 40); },
         "500 Off 0 60 100\n700 On 0 62 40\n800 Off 0 62 100\n800 AllOff\n"},
        {"the channel without volume: what is not begun is not ended",
         [](auto& rig, Id, Id) { rig.channels.Set_Volume(rig.firstChannel, 0); },
         "500 Off 0 60 100\n700 AllOff\n"},
        {"the channel deleted", [](auto& rig, Id, Id) { rig.channels.Delete_Channel(rig.firstChannel); },
         onlyFirst},
        {"the channel on another slot",
         [](auto& rig, Id, Id) { rig.channels.Set_OutputChannel(rig.firstChannel, 3); },
         "200 Off 0 60 100\n700 On 3 62 80\n800 Off 3 62 100\n800 AllOff\n"},
    };
    const auto song = [](Transport_Rig& rig) {
        const Id first = rig.Add_Note({0.0, 60, 100, 0.5});
        return std::pair(first, rig.Add_Note({0.7, 62, 100, 0.1}));
    };
    Check(changes, song, 200, "1 On 0 60 80\n");
}

QChordData Arpeggio(std::int16_t stepMs) {
    QChordData chord;
    chord.Active = 2;
    chord.ChordNotes = {60, 62};
    chord.ChordVol = 100;
    chord.PatternNoteCount = 2;
    chord.PatternNotes = {1, 2};
    chord.ChordFlagB = 1;
    chord.StepMs = stepMs;
    chord.Length = 1.0;
    return chord;
}

TEST(Live_Changes, Act_On_A_Chord_That_Sounds) {
    // Steps at 0, 300, 600 and 900 of a chord of 1000; the edit comes at 391, where the table of mutes, the
    // tempo and seeks are looked at.
    const Change changes[] = {
        {"made shorter", [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Length(chord, 0.7); },
         "600 Off 0 62 100\n600 On 0 60 80\n700 Off 0 60 100\n700 AllOff\n"},
        {"made longer", [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Length(chord, 1.3); },
         "600 Off 0 62 100\n600 On 0 60 80\n900 Off 0 60 100\n900 On 0 62 80\n1200 Off 0 62 100\n"
         "1200 On 0 60 80\n1300 Off 0 60 100\n1300 AllOff\n"},
        {"made longer when it had ended",
         [](auto& rig, Id chord, Id) {
             Store(rig).Set_Event_Length(chord, 0.35);
             rig.At(500, [&rig, chord] { Store(rig).Set_Event_Length(chord, 0.8); });
         },
         "391 Off 0 62 100\n391 AllOff\n"},
        {"deleted", [](auto& rig, Id chord, Id) { Store(rig).DeleteEvent(chord); },
         "391 Off 0 62 100\n391 AllOff\n"},
        {"raised: the old note ends, the rest is raised",
         [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Note(chord, 72); },
         "391 Off 0 62 100\n600 On 0 72 80\n900 Off 0 72 100\n900 On 0 74 80\n1000 Off 0 74 100\n"
         "1000 AllOff\n"},
        {"other steps: the third at 400",
         [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Properties(chord, Arpeggio(200)); },
         "391 Off 0 62 100\n400 On 0 60 80\n600 Off 0 60 100\n600 On 0 62 80\n800 Off 0 62 100\n"
         "800 On 0 60 80\n1000 Off 0 60 100\n1000 AllOff\n"},
        {"made a strike, which was at its start",
         [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Properties(chord, Arpeggio(-1)); },
         "391 Off 0 62 100\n391 AllOff\n"},
        {"another volume", [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Volume(chord, 50); },
         "600 Off 0 62 100\n600 On 0 60 40\n900 Off 0 60 100\n900 On 0 62 40\n1000 Off 0 62 100\n"
         "1000 AllOff\n"},
        {"no volume", [](auto& rig, Id chord, Id) { Store(rig).Set_Event_Volume(chord, 0); },
         "391 Off 0 62 100\n391 AllOff\n"},
        {"no volume and back",
         [](auto& rig, Id chord, Id) {
             rig.Add_Note({1.5, 50, 100, 0.1}, 1);
             Store(rig).Set_Event_Volume(chord, 0);
             rig.At(700, [&rig, chord] { Store(rig).Set_Event_Volume(chord, 100); });
         },
         "391 Off 0 62 100\n900 On 0 62 80\n1000 Off 0 62 100\n1500 On 1 50 80\n1600 Off 1 50 100\n"
         "1600 AllOff\n"},
        {"something added beside it",
         [](auto& rig, Id, Id) {
             rig.Add_Note({0.7, 70, 100, 0.1});
         },
         "391 Off 0 62 100\n600 On 0 60 80\n700 On 0 70 80\n800 Off 0 70 100\n900 Off 0 60 100\n"
         "900 On 0 62 80\n1000 Off 0 62 100\n1000 AllOff\n"},
        {"muted for good", [](auto& rig, Id, Id) { rig.channels.Set_Mute(rig.firstChannel, true); },
         "391 Off 0 62 100\n900 AllOff\n"},
        {"muted for a while",
         [](auto& rig, Id, Id) {
             rig.channels.Set_Mute(rig.firstChannel, true);
             rig.At(700, [&rig] { rig.channels.Set_Mute(rig.firstChannel, false); });
         },
         "391 Off 0 62 100\n900 On 0 62 80\n1000 Off 0 62 100\n1000 AllOff\n"},
        {"another channel solo for a while",
         [](auto& rig, Id, Id) {
             rig.channels.Set_Solo(rig.channels.Channels[1].ChannelID, true);
             rig.At(700, [&rig] { rig.channels.Set_Solo(rig.channels.Channels[1].ChannelID, false); });
         },
         "391 Off 0 62 100\n900 On 0 62 80\n1000 Off 0 62 100\n1000 AllOff\n"},
        {"the channel without volume for a while",
         [](auto& rig, Id, Id) {
             rig.channels.Set_Volume(rig.firstChannel, 0);
             rig.At(700, [&rig] { rig.channels.Set_Volume(rig.firstChannel, 80); });
         },
         "600 Off 0 62 100\n900 On 0 62 80\n1000 Off 0 62 100\n1000 AllOff\n"},
        {"the channel on another slot",
         [](auto& rig, Id, Id) { rig.channels.Set_OutputChannel(rig.firstChannel, 3); },
         "391 Off 0 62 100\n600 On 3 60 80\n900 Off 3 60 100\n900 On 3 62 80\n1000 Off 3 62 100\n"
         "1000 AllOff\n"},
        // A beat is 2000 ms from here on, a step of 300 ms 0.15 beats: from 0.391 to 0.45 it is 118 ms.
        {"half the tempo",
         [](auto& rig, Id, Id) {
             rig.project.ProjectTempo = 30;
             rig.state.TempoChangedRequest = true;
         },
         "391 Off 0 62 100\n509 On 0 62 80\n809 Off 0 62 100\n809 On 0 60 80\n1109 Off 0 60 100\n"
         "1109 On 0 62 80\n1409 Off 0 62 100\n1409 On 0 60 80\n1609 Off 0 60 100\n1609 AllOff\n"},
        {"sought behind", [](auto& rig, Id, Id) { rig.state.SeekRequest = 5.0; },
         "391 AllOff\n391 Off 0 62 100\n391 AllOff\n"},
    };
    const auto song = [](Transport_Rig& rig) {
        rig.Add_Channel(1);
        return std::pair(Store(rig).AddNewEvent(0.0, Arpeggio(300)), Id{0});
    };
    Check(changes, song, 391, "1 On 0 60 80\n300 Off 0 60 100\n300 On 0 62 80\n");
}

} // namespace
} // namespace tonvex
