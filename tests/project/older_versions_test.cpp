// Expected beats: at tempo 80 a beat lasts 750 ms, at tempo 120 it lasts 500 ms.

#include "project/first_version_reader.h"
#include "project/project_reader.h"
#include "support/older_project.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

Song_Snapshot Read(const std::vector<Section_Bytes>& sections) {
    Song_Snapshot song;
    EXPECT_EQ(Read_Project(Project_Of(sections), song), Read_Outcome::Whole);
    return song;
}

GlobalChannel Old_Row(std::int32_t id, std::int16_t patch, std::uint8_t slot) {
    GlobalChannel row;
    row.ChannelID = id;
    row.ChannelName = "Old " + std::to_string(id);
    row.Volume = 99;
    row.PatchI = patch;
    row.Pan = 12;
    row.OutputChannel = slot;
    row.Mute = FLAG_ON;
    row.Solo = 3;
    row.IsAudio = FLAG_ON;
    row.AudioOutput = 258;
    row.InUse = FLAG_ON;
    return row;
}

TEST(Older_Versions, Global_Variables_End_Where_They_Ended) {
    for (const int version : {1, 2}) {
        const Project_State state = Read({older::Globals(version, 120)}).State;
        EXPECT_EQ(state.TransportOption, 7);
        EXPECT_EQ(state.ToolValueA, 5);
        EXPECT_EQ(state.ToolValueB, 5) << "9 is more than a tool bar has";
        EXPECT_EQ(state.ProjectTempo, 120);
        EXPECT_EQ(state.MetronomeNoteA, 65);
        EXPECT_EQ(state.HubValue1400, 15);
        EXPECT_EQ(state.ProjectComments, "A comment\r\nof two lines");
        EXPECT_EQ(state.KeyboardSetupN, version == 1 ? 0 : 16);
        EXPECT_EQ(state.ProjectID + state.InstallationID + state.NextAudioFileN, 0);
    }
}

TEST(Older_Versions, Channels_Become_Todays) {
    // patch as stored, slot, patch as read
    const int cases[][3] = {{33, 0, 33}, {127, 8, 127}, {128, 1, 0}, {200, 2, 0}, {34, 9, 0}, {-1, 3, 0}};
    std::vector<GlobalChannel> rows;
    for (const auto& [stored, slot, read] : cases)
        rows.push_back(Old_Row(stored, static_cast<std::int16_t>(stored), static_cast<std::uint8_t>(slot)));
    for (const int version : {1, 2}) {
        const Song_Snapshot song = Read({older::Channels(version, rows, 0)});
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const GlobalChannel& channel = song.Channels[i];
            EXPECT_EQ(channel.PatchI, cases[i][2]) << i;
            EXPECT_EQ(channel.PatchByte0, cases[i][2]) << i;
            EXPECT_EQ(channel.PatchByte1, 0);
            EXPECT_EQ(channel.ChannelID, cases[i][0]);
            EXPECT_EQ(channel.ChannelName, "Old " + std::to_string(cases[i][0]));
            EXPECT_EQ(channel.Volume, 99);
            EXPECT_EQ(channel.Pan, 12);
            EXPECT_EQ(channel.OutputChannel, cases[i][1]);
            EXPECT_EQ(channel.Mute, FLAG_ON);
            EXPECT_EQ(channel.Solo, 3);
            EXPECT_EQ(channel.IsAudio, version == 1 ? FLAG_OFF : FLAG_ON);
            EXPECT_EQ(channel.AudioOutput, version == 1 ? 0 : 258);
            EXPECT_EQ(channel.SoundfontSet, "Default");
            EXPECT_EQ(channel.Style, 4);
            EXPECT_EQ(channel.StyleStrings[0] + channel.StyleStrings[4], "");
        }
        EXPECT_TRUE(song.Is_Live_Row(5));
        EXPECT_FALSE(song.Is_Live_Row(6));
    }
}

TEST(Older_Versions, Marks_Count_In_Beats) {
    const std::vector<older::Old_Mark> marks = {
        {true, 0, 0, "Start", 1}, {true, 3000, 4500, "Chorus", 255}, {false, 1, -1, "", 2}};
    for (const int version : {1, 2}) {
        const Song_Snapshot song = Read({older::Marks(version, marks), older::Globals(1, 80)});
        EXPECT_EQ(song.MarkCount, 3);
        const bool white = version == 1;
        EXPECT_EQ(song.Marks[0], (Mark{FLAG_ON, 0.0, 0.0, "Start", white ? 16777215 : 1}));
        EXPECT_EQ(song.Marks[1], (Mark{FLAG_ON, 4.0, 6.0, "Chorus", white ? 16777215 : 255}));
        EXPECT_EQ(song.Marks[2], (Mark{FLAG_OFF, 1.0 / 750.0, -1.0, "", white ? 16777215 : 2}));
    }
}

TEST(Older_Versions, Maps_Count_In_Beats) {
    const Song_Snapshot song =
        Read({older::Maps({10, 20, {{0, 5}, {250, 127}, {6000, 1}}}, {}), older::Globals(2, 120)});
    const std::vector<MapPoint>& points = song.SlotVolumes[0].Points;
    ASSERT_EQ(points.size(), 5U);
    const double times[] = {0.0, -1.0, 0.0, 0.5, 12.0};
    const int values[] = {10, 20, 5, 127, 1};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(points[i].TimePos, times[i]);
        EXPECT_EQ(points[i].Value, values[i]);
        EXPECT_EQ(points[i].ID, FIRST_ID + static_cast<std::int32_t>(i));
    }
    EXPECT_EQ(points[0].NextI, 2);
    EXPECT_EQ(points[4].NextI, 1);
    EXPECT_EQ(song.SlotPans[0], Song_Snapshot().SlotPans[0]);
    EXPECT_EQ(song.SlotVolumes[31], Song_Snapshot().SlotVolumes[31]);
    EXPECT_FALSE(song.AudioMaps[0].HasMaps);
}

TEST(Older_Versions, Events_Count_In_Beats) {
    MCEventData fragment;
    fragment.Length = 16.0; // always beats
    fragment.Style = 3;
    const older::Old_Channel channel{
        .channelNumber = 70,
        .events = {{750, EV_NOTE, 0}, {1500, EV_QCHORD, 0}, {2250, EV_PATCH, 40}, {3000, EV_MC, 0}},
        .notes = {{60, 100, 375}},
        .chords = {older::Old_Chord(6000)},
        .fragments = {fragment}};
    const Song_Snapshot song = Read({older::Globals(1, 80), older::Events({{.channelNumber = 71}, channel}),
                                     older::Channels(1, {Old_Row(70, 0, 0), Old_Row(71, 0, 1)}, 2)});
    ASSERT_NE(song.Contents[0], nullptr);
    const Channel_Content& content = *song.Contents[0];
    ASSERT_EQ(content.Events.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(content.Events[i].StartTime, 1.0 + static_cast<double>(i));
    EXPECT_EQ(content.Events[2].DataRef, 40);
    EXPECT_EQ(content.Tables.Notes[0], (NoteData{60, 100, 0.5}));
    QChordData chord{
        .Active = 3, .ChordName = "C", .Octave = 4, .Length = 8.0, .ChordFlagA = 0, .ChordTypeIndex = 0};
    chord.ChordNotes = {48, 52, 55, 0, 0, 0};
    chord.ChordFlagB = 1;
    chord.ChordVol = 100;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {1, 2, 3};
    chord.StepMs = 120;
    EXPECT_EQ(content.Tables.QChords[0], chord);
    EXPECT_EQ(content.Tables.MCEvents[0], fragment);
}

TEST(Older_Versions, Effects_Of_The_Slots_Alone) {
    Effect_Settings settings;
    settings.values[static_cast<std::size_t>(Effect_Kind::Echo)] = {25.0F, 10.0F, 250.0F, 500.0F, 1.0F};
    settings.on[static_cast<std::size_t>(Effect_Kind::Echo)] = true;
    const Song_Snapshot song = Read({older::Effects(settings)});
    EXPECT_EQ(song.Effects.Row(31).Of(Effect_Kind::Echo), settings.Of(Effect_Kind::Echo));
    for (int row = 0; row < Song_Effects::ROWS; ++row)
        for (const Effect_Kind kind : ALL_EFFECTS)
            EXPECT_EQ(song.Effects.Is_On(row, kind), row == 31 && kind == Effect_Kind::Echo) << row;
}

TEST(Older_Versions, The_Creators_Tracks_Reach_The_Channels_Whatever_The_Order_In_The_File) {
    MusicCreator_Module creator;
    creator.MC_Tracks[0] = {90, 4, 70, "Distorted Guitar", 0, 2, FLAG_ON, 0, FLAG_ON, 31, 28, {}};
    for (const int version : {1, 2}) {
        const Song_Snapshot song = Read({older::Creator(version, creator), older::Editor(3, 0.25),
                                         older::Channels(2, {Old_Row(69, 0, 0), Old_Row(70, 0, 1)}, 0)});
        EXPECT_EQ(song.Channels[0].Style, 4);
        EXPECT_EQ(song.Channels[1].Style, 2);
        EXPECT_EQ(song.Channels[1].StyleCustomInts[0], 31 * 0x10100);
        EXPECT_EQ(song.Channels[1].StyleCustomInts[1], 28 * 0x10100);
        EXPECT_EQ(song.MusicCreator.MC_Tracks.size(), 16U);
        EXPECT_EQ(song.EditorSetup.AlignDiv, 3);
        EXPECT_EQ(song.EditorSetup.AlignStep, 0.25);
    }
}

TEST(First_Version, Is_Read_As_Far_As_It_Is_Known) {
    const Bytes file = older::First_Version("02", {"Old", "Me", ""}, 60, 95, 40);
    const Project_State before;
    struct Case {
        const char* name;
        Bytes bytes;
        First_Version_Outcome outcome;
    };
    using enum First_Version_Outcome;
    const std::vector<std::string> texts = {"Old", "Me", ""};
    std::vector<Case> cases = {
        {"a head alone", file, Whole},
        {"with messages behind it", older::First_Version("1 ", texts, 60, 95, 40, {0x90, 60, 100, 0}),
         Notes_Left_Out},
        {"version 3", older::First_Version("03", texts, 60, 95, 40), Version_Not_Supported},
        {"version 99 of no bytes", Bytes(file.begin(), file.begin() + 14), Broken},
        {"no number", older::First_Version("x2", texts, 60, 95, 40), Broken},
        {"today's", Project_Of({}), Not_This_Version},
        {"nothing", {}, Not_This_Version}};
    for (const int length : {-1, 2147483647, -2147483647, 42}) {
        Byte_Writer writer;
        writer.Write_I32(length);
        Bytes bytes = file;
        std::copy(writer.Bytes().begin(), writer.Bytes().end(), bytes.begin() + 16);
        cases.push_back({"a text's length", bytes, Broken});
    }
    for (std::size_t size = 14; size < file.size(); ++size)
        cases.push_back({"cut", Bytes(file.begin(), file.begin() + static_cast<int>(size)), Broken});
    for (const Case& one : cases) {
        Project_State state = before;
        EXPECT_EQ(Read_First_Version(one.bytes, state), one.outcome) << one.name << one.bytes.size();
        const bool read = one.outcome == Whole || one.outcome == Notes_Left_Out;
        EXPECT_EQ(state.ProjectTitle, read ? "Old" : "Untitled") << one.name;
        EXPECT_EQ(state.ProjectAuthor, read ? "Me" : "") << one.name;
        EXPECT_EQ(state.ProjectTempo, read ? 95 : 80) << one.name;
        EXPECT_EQ(state.MetronomeNoteA, read ? 60 : 70) << one.name;
        EXPECT_EQ(state.MetronomeNoteB, read ? 40 : 44) << one.name;
    }
}

} // namespace
} // namespace tonvex
