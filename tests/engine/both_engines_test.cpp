#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <tuple>

namespace tonvex {
namespace {

/// A message of a trace. Within a millisecond the order is free, and velocities may differ by 1.
struct Line {
    int ms;
    std::string op;
    int slot;
    int a;
    int b;
    auto What() const { return std::tuple(op, slot, a); }
    auto Key() const { return std::tuple(ms, op, slot, a); }
};

std::vector<Line> Lines(const Transport_Rig& rig) {
    std::vector<Line> lines;
    std::istringstream text(rig.Trace());
    for (std::string row; std::getline(text, row);) {
        std::istringstream words(row);
        Line line{};
        words >> line.ms >> line.op >> line.slot >> line.a >> line.b;
        lines.push_back(line);
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Line& left, const Line& right) { return left.Key() < right.Key(); });
    return lines;
}

/// Sounds the same song with either engine; one beat is 1000 ms.
void Expect_Same(const std::function<void(Transport_Rig&)>& song,
                 const std::function<void(Transport_Rig&)>& run, std::size_t leastLines, int toleranceMs) {
    Transport_Rig polling;
    song(polling);
    run(polling);
    Transport_Rig threaded;
    threaded.options.Global_UseThreadEngine = true;
    song(threaded);
    run(threaded);
    EXPECT_FALSE(threaded.state.EngineRunning);
    EXPECT_EQ(threaded.Events(), polling.Events());
    const auto expected = Lines(polling);
    const auto got = Lines(threaded);
    EXPECT_GE(expected.size(), leastLines) << polling.Trace();
    ASSERT_EQ(got.size(), expected.size()) << "polling:\n"
                                           << polling.Trace() << "thread:\n"
                                           << threaded.Trace();
    for (std::size_t i = 0; i < got.size(); ++i) {
        ASSERT_EQ(got[i].What(), expected[i].What()) << "polling:\n"
                                                     << polling.Trace() << "thread:\n"
                                                     << threaded.Trace();
        ASSERT_NEAR(got[i].ms, expected[i].ms, toleranceMs);
        EXPECT_NEAR(got[i].b, expected[i].b, 1);
    }
}

struct Case {
    const char* name;
    std::function<void(Transport_Rig&)> song;
    std::function<void(Transport_Rig&)> run;
    std::size_t leastLines;
    int toleranceMs = 0;
};

/// Notes 48, 52 and 55 in turn, one every 120 ms, as long as it lasts.
QChordData Arpeggio(double length) {
    QChordData chord;
    chord.ChordTypeIndex = 255;
    chord.ChordNotes = {48, 52, 55, 0, 0, 0};
    chord.Active = 3;
    chord.ChordVol = 90;
    chord.StepMs = 120;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {1, 2, 3};
    chord.ChordFlagB = 1;
    chord.Length = length;
    return chord;
}

void Play_To_The_End(Transport_Rig& rig) {
    EXPECT_TRUE(rig.Play());
}

std::int32_t Id(Transport_Rig& rig, int row) {
    return rig.channels.Channels[static_cast<std::size_t>(row)].ChannelID;
}

/// Two channels, notes at every tenth of a beat for two beats, each long enough to overlap the next.
void Dense_Song(Transport_Rig& rig) {
    rig.Add_Channel(1);
    for (int i = 0; i < 20; ++i) {
        rig.Add_Note({0.1 * i, 60 + i % 3, 50 + i, 0.25});
        rig.Add_Note({0.1 * i + 0.003, 40 + i % 2, 99 - i, 0.1}, 1);
    }
}

TEST(Both_Engines, Sound_The_Same_Song) {
    const Case cases[] = {
        {"an empty song", [](Transport_Rig&) {}, Play_To_The_End, 1},
        {"overlapping and touching notes, on one slot from two channels",
         [](Transport_Rig& rig) {
             rig.Add_Channel(0);
             rig.Add_Note({0.1, 60, 100, 0.4});
             rig.Add_Note({0.2, 60, 77, 0.1});
             rig.Add_Note({0.5, 60, 100, 0.1 + 0.2});
             rig.Add_Note({0.8, 60, 33, 0.1});
             rig.Add_Note({0.3, 60, 55, 0.3}, 1);
             rig.Add_Note({0.9, 60, 55, 0.1}, 1);
         },
         Play_To_The_End, 10},
        {"nothing to hear: no length, no volume",
         [](Transport_Rig& rig) {
             rig.Add_Note({0.1, 60, 100, 0.0});
             rig.Add_Note({0.1, 61, 0, 0.1});
             rig.Add_Note({0.3, 62, 100, 0.1});
         },
         Play_To_The_End, 3},
        {"patch changes, the one before the start included",
         [](Transport_Rig& rig) {
             rig.Add_Patch(0.5, 40);
             rig.Add_Patch(1.5, 41);
             rig.Add_Note({1.5, 60, 100, 0.2});
             rig.Add_Patch(1.8, 42);
         },
         [](Transport_Rig& rig) { rig.Play(1.0); }, 3},
        {"chords: a strike, an arpeggio that repeats, one cut short",
         [](Transport_Rig& rig) {
             QChordData chord;
             chord.ChordTypeIndex = 255;
             chord.ChordNotes = {48, 52, 55, 0, 0, 0};
             chord.Active = 3;
             chord.ChordVol = 90;
             chord.StepMs = -1;
             chord.Length = 0.4;
             rig.channels.Store(0).AddNewEvent(0.1, chord);
             chord.StepMs = 120;
             chord.PatternNoteCount = 3;
             chord.PatternNotes = {1, 2, 3};
             chord.ChordFlagB = 1;
             chord.Length = 0.77;
             rig.channels.Store(0).AddNewEvent(0.5, chord);
             chord.Length = 0.1;
             rig.channels.Store(0).AddNewEvent(1.5, chord);
         },
         Play_To_The_End, 15},
        {"a chord without notes lasts no time",
         [](Transport_Rig& rig) {
             QChordData chord = Arpeggio(3.0);
             chord.Active = 0;
             rig.channels.Store(0).AddNewEvent(0.0, chord);
             rig.Add_Note({0.0, 60, 100, 0.2});
         },
         Play_To_The_End, 3},
        {"begun inside an arpeggio, sought into it, edited beside it",
         [](Transport_Rig& rig) {
             rig.channels.Store(0).AddNewEvent(0.0, Arpeggio(2.0));
             rig.Add_Note({0.9, 52, 100, 0.4});
             rig.At(400, [&rig] { rig.Add_Note({1.9, 70, 100, 0.2}); });
             rig.At(500, [&rig] { rig.state.SeekRequest = 0.7; });
         },
         [](Transport_Rig& rig) { rig.Play(0.85); }, 30},
        {"begun behind the start of the last note",
         [](Transport_Rig& rig) {
             rig.Add_Note({0.0, 60, 100, 2.0});
         },
         [](Transport_Rig& rig) { EXPECT_TRUE(rig.Play(1.0)); }, 1},
        {"begun inside notes", Dense_Song, [](Transport_Rig& rig) { rig.Play(0.777); }, 40},
        {"a mute now and then, a solo, another volume",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.At(300, [&rig] { rig.channels.Set_Mute(Id(rig, 0), true); });
             rig.At(700, [&rig] { rig.channels.Set_Mute(Id(rig, 0), false); });
             rig.At(1000, [&rig] { rig.channels.Set_Solo(Id(rig, 1), true); });
             rig.At(1400, [&rig] { rig.channels.Set_Solo(Id(rig, 1), false); });
         },
         Play_To_The_End, 40},
        {"seeks there and back",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.At(333, [&rig] { rig.state.SeekRequest = 1.5; });
             rig.At(600, [&rig] { rig.state.SeekRequest = 0.05; });
         },
         Play_To_The_End, 90},
        {"tempo changes on the way",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.tempoChanges.AddTempoChange(0.5, 120);
             rig.tempoChanges.AddTempoChange(1.2, 40);
         },
         Play_To_The_End, 70},
        {"a tempo edit while it plays",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.At(410, [&rig] {
                 rig.project.ProjectTempo = 120;
                 rig.state.TempoChangedRequest = true;
             });
         },
         Play_To_The_End, 70},
        // The transport's clock reads whole song milliseconds, two of the machine's here.
        {"half the speed", Dense_Song, [](Transport_Rig& rig) { rig.Play(0.0, -1, 0.5F); }, 70, 2},
        {"stopped", Dense_Song, [](Transport_Rig& rig) { rig.Play(0.0, 555); }, 20},
        {"edits while it plays",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             ChannelClass& store = rig.channels.Store(0);
             const std::int32_t longOne = rig.Add_Note({0.0, 90, 100, 1.0});
             const std::int32_t later = rig.Add_Note({1.5, 91, 100, 0.1});
             rig.At(205, [&store, longOne] { store.Set_Event_Length(longOne, 1.3); });
             rig.At(405, [&store, later] { store.Set_Event_Note(later, 92); });
             rig.At(610, [&store, later] {
                 store.Set_Event_StartTime(later, 1.0);
                 store.ReSort_StartTime();
             });
             rig.At(805, [&store] { store.AddNewEvent(0.9, NoteData{70, 100, 0.5}); });
             rig.At(1005, [&store] { store.DeleteEvent(store.GetEvent_ID(store.LastTimeEvent())); });
         },
         Play_To_The_End, 60},
        {"a channel goes while it sounds",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.At(555, [&rig] { rig.channels.Delete_Channel(Id(rig, 1)); });
         },
         Play_To_The_End, 40},
        {"recorded over it in a blend, holding a stored note",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.Add_Note({0.2, 48, 100, 0.3});
             rig.Add_Note({1.0, 48, 100, 0.3});
             rig.Script({{250, Transport_Rig::Z, true}, // let go inside a stored note
                         {300, Transport_Rig::Z, false},
                         {400, Transport_Rig::Z, true},
                         {600, Transport_Rig::A, true},
                         {650, Transport_Rig::Z, false},
                         {900, Transport_Rig::A, false},
                         {1100, Transport_Rig::X, true}});
         },
         [](Transport_Rig& rig) { rig.Record(1700, false, 0.0, 1.0F); }, 60},
        {"recorded in its place",
         [](Transport_Rig& rig) {
             Dense_Song(rig);
             rig.Script({{400, Transport_Rig::Z, true}, {500, Transport_Rig::Z, false}});
         },
         [](Transport_Rig& rig) { rig.Record(1000, true, 0.5); }, 20},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Expect_Same(item.song, item.run, item.leastLines, item.toleranceMs);
    }
}

} // namespace
} // namespace tonvex
