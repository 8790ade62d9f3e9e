#include "creator/music_creator_module.h"
#include "creator/style_names.h"
#include "support/older_project.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tonvex {
namespace {

Bytes Saved(const MusicCreator_Module& creator) {
    Byte_Writer writer;
    creator.MC_SaveData(writer);
    return writer.Take();
}

/// Every field holds another value.
MusicCreator_Module Whole_Creator() {
    MusicCreator_Module creator;
    creator.SongKey = 9;
    creator.SongMode = 1;
    creator.LastBar = 2;
    creator.MC_Tracks.resize(2);
    creator.MC_Tracks[1] = {90, 3, FIRST_ID + 5, "Bass Guitar", 1, STYLE_BASS, FLAG_ON, 4, FLAG_ON, 31,
                            26, {}};
    creator.MC_Tracks[1].Reserved.back() = 0x77;
    creator.MC_Tracks[0].Reserved.fill(0x5A); // a dead row is kept whole
    creator.MC_Bars.resize(5);
    for (std::size_t bar = 0; bar < 5; ++bar)
        creator.MC_Bars[bar] = {static_cast<std::uint8_t>(bar), 1, FLAG_ON, 0x1234, FLAG_ON};
    creator.MC_Events.assign(4, MCBarEvent{});
    for (const std::size_t row : {1U, 3U}) {
        MCBarEvent& event = creator.MC_Events[row];
        event = {FLAG_ON, 4.5F, 8.0F, {1, -2, 3}, {-4, 5}, 1, 8, 3, 700, {}, 0xEE};
        std::iota(event.StyleBlock.begin(), event.StyleBlock.end(), static_cast<std::uint8_t>(row));
    }
    return creator;
}

TEST(Music_Creator_File, Holds_The_Sections_Layout) {
    const Bytes bytes = Saved(Whole_Creator());
    // key, mode, count; 2 events and the zero record; next ID; 2 tracks; highest bar, last bar, 5 bars
    ASSERT_EQ(bytes.size(), 12U + 3 * 236 + 4 + 4 + 2 * 55 + 8 + 5 * 8);
    struct Place {
        std::size_t at;
        Bytes held;
    };
    const std::size_t tracks = 12 + 3 * 236 + 4;
    const std::size_t bars = tracks + 4 + 2 * 55;
    for (const Place& place :
         {Place{0, {9, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0}},
          {12, {255, 255, 0, 0, 0x90, 0x40, 0, 0, 0, 0x41, 1, 0, 0xFE, 0xFF, 3, 0}},
          {28, {0xFC, 0xFF, 0xFF, 0xFF, 5, 0, 0, 0, 1, 8, 0, 0, 0, 3, 0, 0, 0, 0, 0x80, 1, 2}},
          {12 + 235, {0xEE, 255, 255}},
          {12 + 236 + 31, {1, 0, 0, 0x80, 3}},
          {12 + 2 * 236, Bytes(236, 0)},
          {tracks - 4, {2, 0, 0, 0x80, 1, 0, 0, 0}},
          {tracks + 4 + 55, {90, 3, 0, 5, 0, 0, 0x80, 'B', 'a'}},
          {tracks + 4 + 55 + 18,
           {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', 1, 3, 255, 255, 4, 255, 255, 31, 26}},
          {bars - 1, {0x77, 4, 0, 0, 0, 2, 0, 0, 0, 0, 1, 255, 255, 0x34, 0x12, 255, 255}},
          {bars + 8 + 2 * 8, {2, 1}},
          {bars + 8 + 3 * 8, Bytes(16, 0)}})
        EXPECT_TRUE(
            std::equal(place.held.begin(), place.held.end(), bytes.begin() + static_cast<int>(place.at)))
            << "at " << place.at;
}

TEST(Music_Creator_File, Older_Sections_Give_Channels_What_Their_Tracks_Held) {
    MusicCreator_Module creator;
    std::vector<GlobalChannel> rows(7);
    for (std::uint8_t i = 0; i < 7; ++i) {
        rows[i].ChannelID = i;
        rows[i].Style = 77;
        rows[i].InUse = To_Flag(i != 5);
        if (i < 6)
            creator.MC_Tracks[i] = {90, i, i, "T", 0, i, FLAG_ON, 0, To_Flag(i != 4), 31, 26, {}};
    }
    creator.MC_Tracks[5].Style = STYLE_GUITAR_DIST; // of a channel that is gone
    const Bytes bytes = older::Creator(2, creator).bytes;
    MusicCreator_Module loaded;
    Byte_Cursor cursor(bytes);
    ASSERT_TRUE(loaded.MC_LoadData_V2(cursor, rows));
    EXPECT_EQ(cursor.Remaining(), 0U);
    // drums, clean, distorted, bass; a dead track; a dead channel; no track
    const std::array<int, 7> styles = {4, 1, 2, 3, 77, 77, 77};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].Style, styles[i]) << i;
        // program 31, bank 31, 0; program 26, bank 26, 0
        EXPECT_EQ(rows[i].StyleCustomInts[0], i == 2 ? 0x001F1F00 : 0) << i;
        EXPECT_EQ(rows[i].StyleCustomInts[1], i == 2 ? 0x001A1A00 : 0) << i;
    }
    EXPECT_EQ(loaded.MC_Tracks.size(), 16U);
    EXPECT_EQ(loaded.MC_Tracks[2].OldPatchA + loaded.MC_Tracks[2].OldPatchB, 0);
    EXPECT_EQ(loaded.MC_Tracks[1].OldPatchA, 31); // only the distorted guitar had them there
    const Bytes shorter(bytes.begin(), bytes.end() - 1);
    Byte_Cursor cut(shorter);
    rows[1].Style = 77;
    EXPECT_FALSE(loaded.MC_LoadData_V2(cut, rows));
    EXPECT_EQ(rows[1].Style, 77);
}

TEST(Music_Creator_File, Version_1_Widens_The_Chords_Of_Clean_Guitar_Events) {
    Byte_Writer block; // root 9, minor, configured; chord of 52 bytes; speed; two texts; 8 bytes never used
    for (const int byte : {9, 1, 1, 0, 6})
        block.Write_U8(static_cast<std::uint8_t>(byte));
    block.Write_Text(std::string("A\0m\0", 4) + std::string(16, '\1'));
    block.Write_U8(3);
    block.Write_U16(FLAG_ON);
    block.Write_I32(1500); // two beats at 80
    for (const int byte : {9, 1, 45, 52, 57, 60, 64, 0, 1, 100, 4, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0xAA})
        block.Write_U8(static_cast<std::uint8_t>(byte));
    block.Write_I16(-1001);
    block.Write_U8(1);
    block.Write_Text(std::string(40, 'S') + std::string(40, 'C') + std::string(55, 'u') +
                     std::string(8, 'x'));
    ASSERT_EQ(block.Bytes().size(), 200U);
    MusicCreator_Module creator;
    creator.MC_Tracks[0] = {90, 7, 0, "", 0, STYLE_GUITAR_CLEAN, FLAG_ON, 0, FLAG_ON, 0, 0, {}};
    creator.MC_Tracks[1] = {90, 8, 0, "", 0, STYLE_BASS, FLAG_ON, 0, FLAG_ON, 0, 0, {}};
    for (std::size_t i = 0; i < 2; ++i) {
        creator.MC_Events[i].InUse = FLAG_ON;
        creator.MC_Events[i].TrackID = static_cast<std::int16_t>(7 + i);
        std::copy(block.Bytes().begin(), block.Bytes().end(), creator.MC_Events[i].StyleBlock.begin());
    }
    const Bytes bytes = older::Creator(2, creator).bytes;
    MusicCreator_Module loaded;
    Byte_Cursor cursor(bytes);
    ASSERT_TRUE(loaded.MC_LoadData_V1(cursor, {}, 750.0));
    EXPECT_EQ(loaded.MC_Events[1].StyleBlock, creator.MC_Events[1].StyleBlock) << "a bass event";

    const std::span<const std::uint8_t> now(loaded.MC_Events[0].StyleBlock);
    EXPECT_EQ(Bytes(now.begin(), now.begin() + 4), (Bytes{9, 1, 1, 255}));
    Byte_Cursor chord(now.subspan(4, 60));
    EXPECT_EQ(chord.Read_U8(), 6);
    EXPECT_EQ(chord.Read_U8(), 'A');
    chord.Skip(19);
    EXPECT_EQ(chord.Read_U8(), 3);
    EXPECT_EQ(chord.Read_U16(), FLAG_ON);
    EXPECT_EQ(chord.Read_Double(), 2.0);
    for (const int byte :
         {9, 1, 45, 52, 57, 60, 64, 0, 1, 100, 0, 0, 0, 0, 4, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0xAA})
        EXPECT_EQ(chord.Read_U8(), byte);
    EXPECT_EQ(chord.Read_I16(), -1001);
    const std::string tail(now.begin() + 64, now.end());
    EXPECT_EQ(tail, "\1" + std::string(40, 'S') + std::string(40, 'C') + std::string(55, 'u'));
}

} // namespace
} // namespace tonvex
