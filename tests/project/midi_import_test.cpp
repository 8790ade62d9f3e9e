#include "support/midi_files.h"
#include "support/riff_bytes.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

using test::Channels_Text;
using test::Hex;
using test::Map_Text;
using test::Midi_File;
using test::Track;

class Midi_Import : public testing::Test {
protected:
    Midi_Import() { session.dialogs.shown.clear(); }

    Work_Outcome Import(const std::string& bytes) {
        session.dialogs.shown.clear();
        return S().midiImport->ImportMidi(session.folder.Write("in.mid", bytes));
    }
    std::string Told() const {
        return session.dialogs.shown.empty() ? "" : session.dialogs.shown.back().text;
    }
    Session& S() { return *session.session; }

    Test_Session session;
    Session& loaded = session.Load();
};

// Ticks are quarters of a beat in these files: division 4, and 4 ticks ("04") a beat.
const char* const NOTE = "00 90 3C 64 04 80 3C 00"; // middle C of velocity 100 for one beat

TEST_F(Midi_Import, Makes_Channels_Of_What_The_Tracks_Play) {
    struct Case {
        const char* name;
        std::string bytes;
        std::string channels;
    };
    const std::string plain = "Channel 0: slot 0 patch 0 pan 64; 0 60 100 1\n";
    const Case cases[] = {
        {"format 0: a channel for each that is used",
         Midi_File(0, 4, {Track("00 93 3C 64 02 99 26 50 02 83 3C 00 00 89 26 00")}),
         "Channel 3: slot 3 patch 0 pan 64; 0 60 100 1\nChannel 9: slot 9 patch 0 pan 64; 0.5 38 80 0.5\n"},
        {"format 1: tracks of one channel together",
         Midi_File(1, 4, {Track(NOTE), Track("02 90 40 32 04 90 40 00")}),
         "Channel 0: slot 0 patch 0 pan 64; 0 60 100 1; 0.5 64 50 1\n"},
        {"format 2: every track from the start",
         Midi_File(2, 4, {Track(NOTE), Track("00 91 3C 64 04 91 3C 00")}),
         plain + "Channel 1: slot 1 patch 0 pan 64; 0 60 100 1\n"},
        {"running status, through a meta event and a sysex",
         Midi_File(0, 4, {Track("00 90 3C 64 04 3C 00 00 FF 06 00 00 F0 02 01 F7 00 40 64 04 40 00")}),
         "Channel 0: slot 0 patch 0 pan 64; 0 60 100 1; 1 64 100 1\n"},
        {"an off ends the oldest; what has none ends with its track",
         Midi_File(0, 4, {Track("00 90 3C 64 04 3C 50 04 3C 00 00 3E 64 08 3C 00 04 B0 01 00")}),
         "Channel 0: slot 0 patch 0 pan 64; 0 60 100 2; 1 60 80 3; 2 62 100 3\n"},
        {"an off without an on, a note of no length, pressure and bends",
         Midi_File(0, 4, {Track("00 80 3C 00 00 90 3C 64 00 3C 00 00 A0 3C 01 00 D0 05 00 E0 00 40")}),
         "Channel 0: slot 0 patch 0 pan 64; 0 60 100 0\n"},
        {"a further patch takes the lowest slot that no channel has",
         Midi_File(0, 4,
                   {Track("00 C0 05 00 90 3C 64 04 80 3C 00 00 C0 06 00 90 3E 64 04 80 3E 00 00 C0 05 "
                          "00 90 40 64 04 80 40 00 00 91 30 64 04 81 30 00")}),
         "Channel 0: slot 0 patch 5 pan 64; 0 60 100 1; 2 64 100 1\nChannel 0 2: slot 2 patch 6 pan 64; 1 62 "
         "100 "
         "1\nChannel 1: slot 1 patch 0 pan 64; 3 48 100 1\n"},
        {"on the drum channel it stays an event",
         Midi_File(0, 4, {Track("00 99 26 64 04 26 00 00 C9 08 04 99 26 64 04 26 00")}),
         "Channel 9: slot 9 patch 0 pan 64; 0 38 100 1; 1 patch 1; 2 38 100 1\n"},
        {"a track's name",
         Midi_File(1, 4,
                   {Track("00 FF 03 04 53 6F 6E 67"), Track(std::string("00 FF 03 04 4C 65 61 64 ") + NOTE)}),
         "Lead: slot 0 patch 0 pan 64; 0 60 100 1\n"},
        {"no notes: the channel of a new project", Midi_File(0, 4, {Track("00 C0 05")}),
         "Channel 1: slot 0 patch 0 pan 64\n"},
        {"in a RIFF",
         Riff_List("RIFF", "RMID",
                   Riff_Chunk("DISP", "odd") + Riff_Chunk("data", Midi_File(0, 4, {Track(NOTE)}))),
         plain},
        {"a foreign chunk, cut off at the end",
         Midi_File(0, 4, {Track("00 90 3C 64 04 80 3C 00 04 90 3E 64 08 80 3E 00")}) + "XFIH" +
             Hex("00 00 01 00") + "x",
         "Channel 0: slot 0 patch 0 pan 64; 0 60 100 1; 2 62 100 2\n"},
    };
    S().channels->Global_DrumPatches[1] = {"Room", 8, 0, 0};
    S().channels->DrumPatchCount = 2;
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        EXPECT_EQ(Import(item.bytes), Work_Outcome::Done);
        EXPECT_EQ(Channels_Text(S()), item.channels);
        EXPECT_EQ(Told(), "");
        EXPECT_TRUE(S().project.Modified);
    }
}

TEST_F(Midi_Import, Keeps_A_Patch_As_An_Event_When_No_Slot_Is_Free) {
    // 33 patches: the first on slot 0, 30 on all others but the drums', two on none.
    std::string events;
    for (int program = 0; program < 33; ++program)
        events += (program == 0 ? "00 C0 " : " 00 C0 ") + std::to_string(program / 16) +
                  "0123456789ABCDEF"[program % 16] + " 00 90 3C 64 04 80 3C 00";
    ASSERT_EQ(Import(Midi_File(0, 4, {Track(events)})), Work_Outcome::Done);
    EXPECT_EQ(S().channels->Count_Channels(), 31);
    const std::string text = Channels_Text(S());
    EXPECT_EQ(text.substr(0, text.find('\n')),
              "Channel 0: slot 0 patch 0 pan 64; 0 60 100 1; 31 patch 31; 31 60 100 1; "
              "32 patch 32; 32 60 100 1");
    EXPECT_EQ(S().channels->Channels[30].OutputChannel, 31);
}

TEST_F(Midi_Import, Takes_Tempo_Texts_And_Controllers) {
    // Volume 90, pan 20; then, behind the first note, volume 45 with expression 64 (45 * 64 / 127 = 22.7).
    const std::string first =
        Track("00 FF 03 02 48 69 00 FF 01 03 6F 6E 65 00 FF 02 04 74 77 6F 00 00 FF 05 01 E9 "
              "00 FF 51 03 0B 71 B0 08 FF 51 03 03 D0 90 00 FF 51 03 07 A1 20");
    const std::string second =
        Track("00 B2 07 5A 00 0A 14 00 92 3C 64 04 B2 07 2D 00 0B 40 04 79 00 00 0A 40 04 82 3C 00");
    ASSERT_EQ(Import(Midi_File(1, 4, {first, second})), Work_Outcome::Done);
    EXPECT_EQ(S().project.ProjectTitle, "Hi");
    EXPECT_EQ(S().project.ProjectComments, "one\r\ntwo\r\n\xC3\xA9"); // the lyric is one byte of Windows-1252
    EXPECT_EQ(S().project.ProjectTempo, 80);                          // 750000 microseconds a beat
    ASSERT_EQ(S().tempoChanges.In_Time_Order().size(), 1U);
    EXPECT_EQ(S().tempoChanges.In_Time_Order()[0].BeatN, 2.0);
    EXPECT_EQ(S().tempoChanges.In_Time_Order()[0].Tempo, 120) << "the last of one moment";
    EXPECT_EQ(Channels_Text(S()), "Channel 2: slot 2 patch 0 pan 20; 0 60 100 3\n");
    EXPECT_EQ(S().channels->Channels[0].Volume, 100);
    EXPECT_EQ(Map_Text(S(), Map_Kind::Volume, 2), "0=64 1=64 1=32 1=32 1=16 2=16 2=32 end=32")
        << "90, 45 and 23 levelled by 64 / 90";
    EXPECT_EQ(Map_Text(S(), Map_Kind::Pan, 2), "0=20 2=20 2=64 end=64");
    ASSERT_EQ(Import(Midi_File(0, 4, {Track(NOTE)})), Work_Outcome::Done);
    EXPECT_EQ(S().project.ProjectTempo, 120) << "of a file that sets none";
    EXPECT_EQ(Map_Text(S(), Map_Kind::Volume, 0), "0=64 end=64");
    ASSERT_EQ(Import(Midi_File(0, 4, {Track(std::string("00 B0 07 28 00 B1 07 00 ") + NOTE)})),
              Work_Outcome::Done);
    EXPECT_EQ(Map_Text(S(), Map_Kind::Volume, 0), "0=40 end=40") << "quiet files stay as they are";
}

TEST_F(Midi_Import, Refuses_What_It_Cannot_Read) {
    struct Case {
        const char* name;
        std::string bytes;
        const char* told;
        bool songStays;
    };
    const std::string good = Midi_File(0, 4, {Track(NOTE)});
    const auto with = [&good](std::size_t at, char byte) {
        std::string bytes = good;
        bytes[at] = byte;
        return bytes;
    };
    const char* const error = "Error loading Midi file";
    const Case cases[] = {
        {"empty", "", error, true},
        {"another name", with(3, 'x'), error, true},
        {"another header length", with(7, 7), error, true},
        {"no ticks in a beat", with(13, 0), error, true},
        {"SMPTE time", with(12, static_cast<char>(0xE7)), "Time format not supported", true},
        {"a RIFF without a song", Riff_List("RIFF", "RMID", Riff_Chunk("DISP", "none")), error, true},
        {"fewer tracks than told", with(11, 2), error, false},
        {"data where a status must be", Midi_File(0, 4, {Track("00 3C 64")}), error, false},
        {"a data byte above 127", Midi_File(0, 4, {Track("00 90 3C 80")}), error, false},
        {"a status that no file has", Midi_File(0, 4, {Track("00 F8")}), error, false},
        {"a text longer than the file", Midi_File(0, 4, {Track("00 FF 01 FF FF FF 7F 41")}), error, false},
        {"a number of five bytes", Midi_File(0, 4, {Track("81 81 81 81 00 90 3C 64")}), error, false},
        {"ticks beyond counting",
         Midi_File(0, 4,
                   {Track("FF FF FF 7F 90 3C 64" +
                          [] {
                              std::string more;
                              for (int i = 0; i < 8; ++i)
                                  more += " FF FF FF 7F 3C 64";
                              return more;
                          }())}),
         error, false},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        S().New_Project();
        S().project.ProjectTitle = "Mine";
        EXPECT_EQ(Import(item.bytes), Work_Outcome::Failed);
        EXPECT_EQ(Told(), item.told);
        EXPECT_EQ(S().project.ProjectTitle, item.songStays ? "Mine" : "Untitled");
        EXPECT_EQ(Channels_Text(S()), "Channel 1: slot 0 patch 0 pan 64\n");
        ASSERT_EQ(Import(good), Work_Outcome::Done);
    }
    for (std::size_t length = 0; length < good.size(); ++length)
        ASSERT_EQ(Import(good.substr(0, length)), Work_Outcome::Failed) << length << " bytes";
    session.dialogs.shown.clear();
    EXPECT_EQ(S().midiImport->ImportMidi(session.folder / "none.mid"), Work_Outcome::Failed);
    EXPECT_EQ(Told(), "Can't open file: " + (session.folder / "none.mid").string());
}

TEST_F(Midi_Import, Tells_How_Far_It_Is_And_Can_Be_Stopped) {
    const std::string file = Midi_File(0, 4, {Track(NOTE)});
    ASSERT_EQ(Import(file), Work_Outcome::Done);
    ASSERT_GE(session.dialogs.statuses.size(), 4U);
    EXPECT_EQ(session.dialogs.statuses.front(), "Loading 10 %");
    EXPECT_EQ(session.dialogs.statuses.back(), "Loading 100 %");
    for (const int percent : {10, 30, 50}) {
        S().New_Project();
        session.dialogs.stopWorkAt = percent;
        EXPECT_EQ(Import(file), Work_Outcome::Cancelled);
        EXPECT_EQ(Channels_Text(S()), "Channel 1: slot 0 patch 0 pan 64\n");
        EXPECT_FALSE(S().project.Modified);
    }
}

} // namespace
} // namespace tonvex
