#include "tools/stock_songs.h"

#include "base/file_io.h"
#include "project/project_writer.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

TEST(Stock_Songs_Test, Ship_As_They_Are_Made_And_The_Demo_Lasts_A_Minute) {
    const std::filesystem::path data = TONVEX_SOURCE_DATA;
    NotesStuff notes;
    std::string error;
    ASSERT_TRUE(notes.Load_Chords(data / "chords.txt", error)) << error;
    const auto songs = Stock_Songs(notes);
    EXPECT_GE(songs.size(), 5U);
    for (const Stock_Song& stock : songs) {
        SCOPED_TRACE(stock.file);
        const auto bytes = Write_Project(stock.song);
        ASSERT_TRUE(bytes);
        EXPECT_TRUE(Read_File(data / stock.file) == bytes) << "run make_songs";
    }
    const Song_Snapshot& demo = songs.front().song;
    double end = 0.0;
    int channels = 0;
    for (const auto& content : demo.Contents) {
        channels += content ? 1 : 0;
        for (std::size_t i = 0; content && i < content->Events.size(); ++i)
            end = std::max(end, content->Events[i].StartTime);
        for (std::size_t i = 0; content && i < content->Tables.QChords.size(); ++i)
            EXPECT_GT(content->Tables.QChords[i].Active, 0);
    }
    EXPECT_GE(channels, 6);
    EXPECT_GE(end * 60.0 / demo.State.ProjectTempo, 60.0);
}

} // namespace
} // namespace tonvex
