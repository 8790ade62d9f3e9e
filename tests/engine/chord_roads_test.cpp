#include "support/transport_rig.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

constexpr int ONE = 2; ///< keys of the digit row
constexpr int TWO = 3;

/// Chord keys: C major of the active octave on ONE, A minor seventh on TWO. Volume 100 leaves as 80.
struct Chord_Rig : Transport_Rig {
    Chord_Rig() {
        Put(ONE, 0, 0);
        Put(TWO, 9, 4);
    }
    QChordData& Put(int key, int root, int type) {
        layout.KeyMap[static_cast<std::size_t>(key)] = {-1, static_cast<std::int16_t>(key), KEY_QCHORD};
        QChordData& row = layout.KeyQChordTable[static_cast<std::size_t>(key)];
        notes.FillChordData(row, root, type, 0, true);
        row.ChordVol = 100;
        return row;
    }
    void Arpeggio(int key, std::vector<std::uint8_t> order, std::int16_t step, bool repeat) {
        QChordData& row = layout.KeyQChordTable[static_cast<std::size_t>(key)];
        row.PatternNoteCount = static_cast<std::uint8_t>(order.size());
        std::copy(order.begin(), order.end(), row.PatternNotes.begin());
        row.StepMs = step;
        row.ChordFlagB = repeat ? 1 : 0;
    }
    ChannelClass::Event_View Stored(int n) const {
        const ChannelClass& store = channels.Store(0);
        auto eventI = store.FirstEvent();
        while (n-- > 0)
            eventI = store.Get_NextEventI(eventI);
        return store.ReadEvent(eventI).value();
    }
};

TEST(ChordRoads, A_Chord_Is_Stored_As_It_Was_Played_And_Plays_Again) {
    struct Case {
        const char* name;
        void (*prepare)(Chord_Rig& rig);
        std::vector<Rig_Edge> edges;
        std::vector<Rig_Note> lengths; ///< start, first note, volume, length of each stored chord
        const char* trace;             ///< of the take and of the song, until 2000
    };
    const Case cases[] = {
        {"struck",
         [](Chord_Rig&) {},
         {{100, ONE, true}, {400, ONE, false}},
         {{0.1, 48, 100, 0.3}},
         "100 On 0 48 80\n100 On 0 52 80\n100 On 0 55 80\n"
         "400 Off 0 48 100\n400 Off 0 52 100\n400 Off 0 55 100\n2000 AllOff\n"},
        {"in the highest octave, of a channel turned down",
         [](Chord_Rig& rig) {
             rig.layout.QChordsOctave = 5;
             rig.channels.Channels[0].Volume = 33;
         },
         {{100, ONE, true}, {400, ONE, false}},
         {{0.1, 72, 100, 0.3}},
         "100 On 0 72 33\n100 On 0 76 33\n100 On 0 79 33\n"
         "400 Off 0 72 100\n400 Off 0 76 100\n400 Off 0 79 100\n2000 AllOff\n"},
        {"an arpeggio counts from the press and goes on into a cut pass",
         [](Chord_Rig& rig) {
             rig.Arpeggio(ONE, {1, 2, 3}, -1001, true);
         },
         {{100, ONE, true}, {1750, ONE, false}},
         {{0.1, 48, 100, 1.65}},
         "100 On 0 48 80\n600 Off 0 48 100\n600 On 0 52 80\n1100 Off 0 52 100\n1100 On 0 55 80\n"
         "1600 Off 0 55 100\n1600 On 0 48 80\n1750 Off 0 48 100\n2000 AllOff\n"},
        {"two chords share notes",
         [](Chord_Rig&) {},
         {{100, ONE, true}, {200, TWO, true}, {300, ONE, false}, {500, TWO, false}},
         {{0.1, 48, 100, 0.2}, {0.2, 57, 100, 0.3}},
         "100 On 0 48 80\n100 On 0 52 80\n100 On 0 55 80\n200 On 0 57 80\n200 On 0 60 80\n200 On 0 64 80\n"
         "200 On 0 67 80\n300 Off 0 48 100\n300 Off 0 52 100\n300 Off 0 55 100\n"
         "500 Off 0 57 100\n500 Off 0 60 100\n500 Off 0 64 100\n500 Off 0 67 100\n2000 AllOff\n"},
        {"two keys of one chord: the last release ends it",
         [](Chord_Rig& rig) {
             rig.Put(TWO, 0, 0);
             rig.Arpeggio(TWO, {1}, 100, false);
         },
         {{100, ONE, true}, {200, TWO, true}, {300, ONE, false}, {500, TWO, false}},
         {{0.1, 48, 100, 0.2}, {0.2, 48, 100, 0.3}},
         "100 On 0 48 80\n100 On 0 52 80\n100 On 0 55 80\n200 On 0 48 80\n300 Off 0 52 100\n"
         "300 Off 0 55 100\n500 Off 0 48 100\n2000 AllOff\n"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Chord_Rig rig;
        one.prepare(rig);
        rig.Script(one.edges);
        ASSERT_TRUE(rig.Record(2000));
        EXPECT_EQ(rig.Trace(), one.trace);
        for (std::size_t i = 0; i < one.lengths.size(); ++i) {
            const auto event = rig.Stored(static_cast<int>(i));
            ASSERT_EQ(event.Kind, EV_QCHORD);
            EXPECT_NEAR(event.StartTime, one.lengths[i].start, 1e-9);
            EXPECT_EQ(event.QChord->ChordNotes[0], one.lengths[i].note);
            EXPECT_EQ(event.QChord->Octave, rig.layout.QChordsOctave);
            EXPECT_EQ(event.QChord->ChordVol, one.lengths[i].vol);
            EXPECT_NEAR(event.QChord->Length, one.lengths[i].length, 1e-9);
        }
        rig.Play(0.0, 2000);
        std::string song = one.trace;
        // The song is over with its last chord.
        const std::size_t lastLine = song.rfind("2000 AllOff");
        const std::size_t before = song.rfind('\n', lastLine - 2) + 1;
        song.replace(lastLine, 4, song.substr(before, song.find(' ', before) - before));
        EXPECT_EQ(rig.Trace(), song) << "played again";
    }
}

TEST(ChordRoads, A_Late_Round_Gives_Every_Step_Its_Own_Moment) {
    Chord_Rig rig;
    rig.Arpeggio(ONE, {1, 2, 3}, 100, true);
    rig.Script({{100, ONE, true}, {650, ONE, false}});
    // Something holds the interface up from 150 to 630, and the next round finds four steps due.
    rig.At(150, [&rig] { rig.counter.Advance_Ms(480); });
    ASSERT_TRUE(rig.Record(800));
    EXPECT_EQ(rig.Due_Ms(), (std::vector<std::int64_t>{100, 200, 300, 400, 500, 600}));
}

TEST(ChordRoads, A_Tempo_Edit_Leaves_Milliseconds_What_They_Are) {
    Chord_Rig rig;
    rig.Arpeggio(ONE, {1, 2}, 200, true);
    rig.Script({{100, ONE, true}, {900, ONE, false}});
    rig.At(350, [&rig] {
        rig.project.ProjectTempo = 120;
        rig.state.TempoChangedRequest = true;
    });
    ASSERT_TRUE(rig.Record(1000));
    // At beat 0.35; from there on they are 0.4 beats from the press, as the stored chord counts them.
    EXPECT_EQ(rig.Due_Ms(), (std::vector<std::int64_t>{100, 300, 425, 625, 825}));
}

TEST(ChordRoads, A_Stored_Chord_Leaves_Out_What_The_Performer_Holds) {
    for (const bool engine : {false, true}) {
        SCOPED_TRACE(engine);
        Chord_Rig rig;
        rig.options.Global_UseThreadEngine = engine;
        rig.Add_Channel(1); // what sounds on another slot is another thing
        QChordData stored = rig.layout.KeyQChordTable[ONE];
        stored.ChordNotes = {48, 52, 55};
        stored.Length = 0.2;
        rig.channels.Store(0).AddNewEvent(0.2, stored);
        rig.channels.Store(0).AddNewEvent(0.65, stored);
        stored.Active = 1;
        rig.channels.Store(1).AddNewEvent(0.3, stored);
        // Pressed and let go while the strike is on its way to the synthesizer already.
        rig.Script({{195, Transport_Rig::Z, true}, {645, Transport_Rig::Z, false}});
        ASSERT_TRUE(rig.Record(900));
        EXPECT_EQ(rig.Trace(),
                  "195 On 0 48 102\n200 On 0 52 80\n200 On 0 55 80\n300 On 1 48 80\n400 Off 0 52 100\n"
                  "400 Off 0 55 100\n500 Off 1 48 100\n645 Off 0 48 100\n650 On 0 48 80\n650 On 0 52 80\n"
                  "650 On 0 55 80\n850 Off 0 48 100\n850 Off 0 52 100\n850 Off 0 55 100\n900 AllOff\n");
    }
}

TEST(ChordRoads, Steps_That_No_Round_Has_Come_To_Stay_Unheard_At_The_Stop) {
    Chord_Rig rig;
    rig.Arpeggio(ONE, {1, 2, 3}, 100, true);
    rig.Script({{100, ONE, true}});
    rig.At(150, [&rig] {
        rig.counter.Advance_Ms(480); // held up, and stopped by then
        rig.state.StopTransportRequest = true;
    });
    ASSERT_TRUE(rig.Record(5000));
    EXPECT_EQ(rig.Trace(), "100 On 0 48 80\n630 AllOff\n630 Off 0 48 100\n");
    EXPECT_NEAR(rig.Stored(0).QChord->Length, 0.53, 1e-9);
}

TEST(ChordRoads, Practice_Sounds_And_Shows_A_Chord_And_Keeps_Nothing) {
    struct Piano : Transport_Observer {
        std::string seen;
        void On_Note_Shown(int note) override { seen += "+" + std::to_string(note); }
        void On_Note_Hidden(int note) override { seen += "-" + std::to_string(note); }
    } piano;
    Chord_Rig rig;
    rig.observers.push_back(&piano);
    rig.recorder.PracticeMode = true;
    rig.Arpeggio(TWO, {1, 2}, 100, true);
    rig.Script({{10, ONE, true}, {30, ONE, false}, {1000, TWO, true}});
    ASSERT_TRUE(rig.recorder.StartRecording(0.0, 1.0F, rig.firstChannel, false, false, false));
    while (rig.counter.Now_Ms() < 1250) {
        rig.counter.Advance_Ms(1);
        rig.project.ProjectTempo = rig.counter.Now_Ms() < 500 ? 60 : 120;
        rig.recorder.StartRecording(0.0, 1.0F, rig.firstChannel, false, false, true);
    }
    EXPECT_EQ(piano.seen, "+48+52+55-48-52-55+57+60+64+67");
    EXPECT_EQ(rig.Due_Ms(), (std::vector<std::int64_t>{10, 10, 10, 1000, 1100, 1200})) << "at the new tempo";
    EXPECT_EQ(rig.channels.Store(0).FirstEvent(), -1);
}

TEST(ChordRoads, A_Style_With_Its_Own_Patch_Gets_It_Back) {
    for (const std::uint8_t style : {std::uint8_t{0}, std::uint8_t{2}}) {
        Chord_Rig rig;
        rig.channels.Channels[0].PatchI = 30;
        rig.channels.Channels[0].Style = style;
        rig.Add_Patch(0.05, 5);
        rig.Script({{100, ONE, true}, {200, ONE, false}, {300, ONE, true}, {400, ONE, false}});
        ASSERT_TRUE(rig.Record(500));
        std::string patches;
        for (const Sound_Message& message : rig.sound.posted)
            if (message.op == Sound_Op::Patch && message.slot == 0)
                patches += std::to_string(message.a) + " ";
        EXPECT_EQ(patches, style == 2 ? "30 5 30 30 " : "30 5 30 ") << int{style};
    }
}

} // namespace
} // namespace tonvex
