#include "project/project_layout.h"
#include "project/project_reader.h"
#include "project/project_writer.h"
#include "song/tempo_change_class.h"
#include "support/song_corpus.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tonvex {
namespace {

using Bytes = std::vector<std::uint8_t>;

Song_Model Model_Of(Session& session) {
    return {*session.channels, session.tempoChanges, session.marks,        session.project,
            session.creator,   session.editorSetup,  session.channelsList, session.fonts->CurList};
}

/// A corpus song in a session of its own.
class Song_Bed {
public:
    Song_Bed() : session(bed.Load()) {
        session.files->Reset();
        session.fonts->CurList.clear();
    }
    Bytes Saved() const { return *Write_Project(session.files->Snapshot()); }

    Test_Session bed;
    Session& session;
};

std::int32_t Long_At(const Bytes& bytes, std::size_t offset) {
    Byte_Cursor cursor(bytes);
    cursor.Seek(offset);
    return cursor.Read_I32();
}

void Put_Long(Bytes& bytes, std::size_t offset, std::int32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> (8 * i));
}

/// Offset of the position word in the row of the table that has the name.
std::size_t Table_Row(const Bytes& bytes, const std::string& name) {
    const auto found =
        std::search(bytes.begin(), bytes.begin() + FIRST_SECTION_OFFSET, name.begin(), name.end());
    return static_cast<std::size_t>(found - bytes.begin()) + name.size();
}

std::size_t Section_Offset(const Bytes& bytes, const std::string& name) {
    return static_cast<std::size_t>(Long_At(bytes, Table_Row(bytes, name))) - 1;
}

TEST(Project_Codec, Save_Load_Save_Gives_The_Same_Bytes_For_Every_Song) {
    for (const Corpus_Song& row : Song_Corpus()) {
        Song_Bed bed;
        row.make(bed.session);
        const Bytes first = bed.Saved();
        Song_Snapshot read;
        ASSERT_EQ(Read_Project(first, read), Read_Outcome::Whole) << row.name;
        EXPECT_EQ(*Write_Project(read), first) << row.name << ", from the bytes alone";
        Song_Bed other;
        ASSERT_TRUE(Put_Snapshot(read, Model_Of(other.session))) << row.name;
        EXPECT_EQ(other.Saved(), first) << row.name << ", by way of a model";
    }
}

TEST(Project_Codec, A_Song_Comes_Back_Equal) {
    for (const Corpus_Song& row : Song_Corpus()) {
        Song_Bed bed;
        row.make(bed.session);
        const Song_Snapshot song = bed.session.files->Snapshot();
        Song_Snapshot read;
        ASSERT_EQ(Read_Project(*Write_Project(song), read), Read_Outcome::Whole) << row.name;
        Song_Bed other;
        ASSERT_TRUE(Put_Snapshot(read, Model_Of(other.session)));
        const Song_Snapshot back = other.session.files->Snapshot();
        for (std::size_t i = 0; i < song.Contents.size(); ++i) {
            ASSERT_EQ(song.Contents[i] == nullptr, back.Contents[i] == nullptr) << row.name << " row " << i;
            if (!song.Contents[i])
                continue;
            Channel_Content saved = *song.Contents[i];
            saved.Settle();
            saved.Renumber();
            if (saved.Events.empty())
                saved.NextID = back.Contents[i]->NextID;
            EXPECT_EQ(*back.Contents[i], saved) << row.name << " row " << i;
        }
        EXPECT_EQ(back.Marks, song.Marks) << row.name;
        EXPECT_EQ(back.MarkCount, song.MarkCount) << row.name;
        EXPECT_EQ(back.ChannelsList, song.ChannelsList) << row.name;
        EXPECT_EQ(back.Fonts, song.Fonts) << row.name;
        EXPECT_EQ(back.EditorSetup, song.EditorSetup) << row.name;
        for (int effectRow = 0; effectRow < Song_Effects::ROWS; ++effectRow)
            EXPECT_EQ(back.Effects.Row(effectRow), song.Effects.Row(effectRow)) << row.name;
        EXPECT_EQ(bed.session.tempoChanges.In_Time_Order().size(),
                  other.session.tempoChanges.In_Time_Order().size());
        for (int slot = 0; slot < Song_Maps::SLOTS; ++slot)
            for (const double beat : {0.0, 1.0, 3.0, 4.0, 9.0})
                for (const Map_Kind kind : {Map_Kind::Volume, Map_Kind::Pan})
                    EXPECT_EQ(
                        other.session.channels->Maps.Slot_Map(kind, slot).Play_GetValue_At_TimePos(beat),
                        bed.session.channels->Maps.Slot_Map(kind, slot).Play_GetValue_At_TimePos(beat))
                        << row.name << " slot " << slot << " beat " << beat;
    }
}

// The head and the fixed sizes, worked out from the layout's own table.
TEST(Project_Codec, The_Container_Stands_As_Told) {
    Song_Bed bed;
    const Bytes bytes = bed.Saved();
    const std::string head(bytes.begin(), bytes.begin() + 6);
    EXPECT_EQ(head, "TVX201");
    EXPECT_EQ(Long_At(bytes, 6), 10);
    const std::pair<const char*, int> sections[] = {{"Global_Channels_Array", 3},
                                                    {"Channel_Class_Data", 2},
                                                    {"Channels_List_Data", 1},
                                                    {"Marks_Array", 3},
                                                    {"GlobalVariables", 3},
                                                    {"PanVol_Data", 2},
                                                    {"FX_Data", 2},
                                                    {"EventsEditor_Setup", 2},
                                                    {"MusicCreator_Data", 3},
                                                    {"TempoList_Data", 1},
                                                    {"SFList_Data", 1}};
    Byte_Cursor cursor(bytes);
    cursor.Seek(10);
    std::vector<std::int32_t> positions;
    for (const auto& [name, version] : sections) {
        const auto found = cursor.Read_Bytes(cursor.Read_U16());
        EXPECT_EQ(std::string(found.begin(), found.end()), name);
        positions.push_back(cursor.Read_I32());
        EXPECT_EQ(cursor.Read_I32(), version) << name;
    }
    EXPECT_EQ(cursor.Position(), 10U + 271U);
    EXPECT_EQ(positions[0], 311);
    // A new row's "Default" makes it 144 + 7 bytes; 110 rows and the count.
    EXPECT_EQ(positions[1] - positions[0], 110 * 151 + 4);
    EXPECT_EQ(positions[2], positions[1]) << "no channel has no block";
    EXPECT_EQ(positions[3] - positions[2], 100 * 65);
    EXPECT_EQ(positions[4] - positions[3], 100 * 24 + 5 + 4) << "one mark is called Start";
    EXPECT_EQ(positions[5] - positions[4], 46 + 2 + 8 + 2 + 2 + 16);
    EXPECT_EQ(positions[6] - positions[5], 64 * (4 + 2 * 24 + 4) + 100 * 2);
    EXPECT_EQ(positions[7] - positions[6], 131 * 5 * 41 + 131 * 10);
    EXPECT_EQ(positions[8] - positions[7], 56);
    EXPECT_EQ(positions[10] - positions[9], 4 + 11 * 16 + 4);
    EXPECT_EQ(static_cast<std::int32_t>(bytes.size()) - positions[10] + 1, 4);
}

TEST(Project_Codec, Fields_Stand_Where_They_Belong) {
    Song_Bed bed;
    for (const Corpus_Song& row : Song_Corpus())
        if (std::string(row.name) == "globals" || std::string(row.name) == "maps and effects")
            row.make(bed.session);
    const Bytes bytes = bed.Saved();
    const std::size_t globals = Section_Offset(bytes, "GlobalVariables");
    const Bytes expected = {0xFB, 0xFF, 0xFF, 0xFF, 5,    0,    0,    0,    0,  0, 0,  0, 4,  3, 2,    1,
                            133,  0,    0,    0,    55,   0,    0,    0,    37, 0, 0,  0, 12, 0, 0xF3, 0xFF,
                            14,   0,    0,    0,    0xF1, 0xFF, 0xFF, 0xFF, 0,  0, 16, 0, 0,  0, 8,    0,
                            'U',  'n',  't',  'i',  't',  'l',  'e',  'd',  0,  0, 0,  0, 17, 0, 0,    0};
    EXPECT_TRUE(
        std::equal(expected.begin(), expected.end(), bytes.begin() + static_cast<std::ptrdiff_t>(globals)));
    // The first slot's volume map: two fixed points and two of its own, the later deleted one's place taken.
    const std::size_t maps = Section_Offset(bytes, "PanVol_Data");
    EXPECT_EQ(Long_At(bytes, maps), 3);
    for (std::int32_t row = 0; row < 4; ++row)
        EXPECT_EQ(Long_At(bytes, maps + 4 + 24 * static_cast<std::size_t>(row) + 2), FIRST_ID + row);
    EXPECT_EQ(Long_At(bytes, maps + 4 + 4 * 24), FIRST_ID + 4);
    // An effect's record of 16 bytes, then 25 zeros; 131 * 205 bytes on, the flags.
    const std::size_t effects = Section_Offset(bytes, "FX_Data");
    EXPECT_EQ(Long_At(bytes, effects), static_cast<std::int32_t>(0xC0400000)); // -3.0
    EXPECT_TRUE(std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(effects + 16),
                            bytes.begin() + static_cast<std::ptrdiff_t>(effects + 41),
                            [](std::uint8_t byte) { return byte == 0; }));
    EXPECT_EQ(bytes[effects + 131 * 205 + 9], 255);
    EXPECT_EQ(bytes[effects + 131 * 205 + 10], 0);
}

TEST(Project_Codec, Sections_May_Stand_Anywhere) {
    Song_Bed bed;
    Make_Full_Song(bed.session);
    const Bytes good = bed.Saved();
    Bytes moved = good;
    const std::size_t from = Section_Offset(good, "GlobalVariables");
    const std::size_t end = Section_Offset(good, "PanVol_Data");
    Put_Long(moved, Table_Row(moved, "GlobalVariables"), static_cast<std::int32_t>(moved.size()) + 1);
    moved.insert(moved.end(), good.begin() + static_cast<std::ptrdiff_t>(from),
                 good.begin() + static_cast<std::ptrdiff_t>(end));
    std::fill(moved.begin() + static_cast<std::ptrdiff_t>(from),
              moved.begin() + static_cast<std::ptrdiff_t>(end), 0xEE);
    Song_Snapshot song;
    ASSERT_EQ(Read_Project(moved, song), Read_Outcome::Whole);
    EXPECT_EQ(*Write_Project(song), good);
}

TEST(Project_Codec, Values_That_No_Song_Has_Are_Brought_Into_It) {
    Song_Bed bed;
    Make_Full_Song(bed.session);
    Song_Snapshot song = bed.session.files->Snapshot();
    song.Channels[1].Volume = 255;
    song.Channels[1].OutputChannel = 77;
    song.Channels[1].PatchI = -9;
    song.Channels[104].InUse = FLAG_ON;
    song.MarkCount = -4;
    song.State.ProjectTempo = -3;
    song.Tempo.Rows[0] = {FLAG_ON, std::numeric_limits<double>::quiet_NaN(), 90, 0};
    song.SlotPans[3].Points[0].NextI = 0; // a circle
    Song_Snapshot read;
    ASSERT_EQ(Read_Project(*Write_Project(song), read), Read_Outcome::Whole);
    Song_Bed other;
    Session& session = other.session;
    ASSERT_TRUE(Put_Snapshot(read, Model_Of(session)));
    session.channels->Find_Patches();
    EXPECT_EQ(session.channels->Channels[1].Volume, 127);
    EXPECT_EQ(session.channels->Channels[1].OutputChannel, 0);
    EXPECT_EQ(session.channels->Channels[1].PatchI, 0);
    EXPECT_EQ(session.channels->Channels[104].InUse, FLAG_OFF);
    EXPECT_EQ(session.marks.Mark_Count(), 3) << "behind the last live one";
    EXPECT_EQ(session.project.ProjectTempo, 1);
    EXPECT_EQ(session.tempoChanges.In_Time_Order().size(), 1U);
    EXPECT_EQ(session.channels->Maps.Slot_Map(Map_Kind::Pan, 3).In_Time_Order().size(), 2U);
    song.Channels[1].ChannelID = song.Channels[0].ChannelID;
    EXPECT_EQ(Read_Project(*Write_Project(song), read), Read_Outcome::Broken) << "two channels of one ID";
    EXPECT_FALSE(Put_Snapshot(song, Model_Of(session)));
    EXPECT_EQ(session.channels->Count_Channels(), 0);
}

} // namespace
} // namespace tonvex
