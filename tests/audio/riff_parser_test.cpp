#include "audio/riff_parser_class.h"

#include "support/riff_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace tonvex {
namespace {

/// Rows as "ID/type level parent size@pos", for a look at all of a file at once.
std::vector<std::string> Rows_Of(const std::string& file) {
    const auto bytes = Bytes_Of(file);
    RiffParserClass parser;
    parser.Open_Bytes(bytes);
    parser.ParseFile();
    std::vector<std::string> rows;
    for (const RiffChunk& chunk : parser.Chunks())
        rows.push_back(chunk.ChunkID + "/" + chunk.ListType + " " + std::to_string(chunk.Level) + " " +
                       std::to_string(chunk.Parent) + " " + std::to_string(chunk.DataSize) + "@" +
                       std::to_string(chunk.DataPos));
    return rows;
}

// 12 bytes RIFF header, "LIST" at 12 (data 20 to 37: type, an odd chunk of 3 with its pad), "last" behind.
const std::string SAMPLE = Riff_List(
    "RIFF", "demo", Riff_List("LIST", "info", Riff_Chunk("name", "abc")) + Riff_Chunk("last", "12345678"));

TEST(RiffParser, Files_Become_Rows) {
    struct Row {
        const char* name;
        std::string file;
        std::vector<std::string> rows;
    };
    std::string deep;
    for (int i = 0; i < 40; ++i)
        deep = Riff_List("LIST", "deep", deep);
    const std::vector<Row> rows = {
        {"empty", "", {}},
        {"not RIFF", Riff_Chunk("FORM", "1234") + Riff_Chunk("next", ""), {"FORM/ 0 -1 4@8"}},
        {"too short for a header", "RIFF123", {}},
        {"no form type", std::string("RIFF\4\0\0\0ab", 10), {}},
        {"odd data is padded, a list ends where its size says",
         SAMPLE,
         {"RIFF/demo 0 -1 44@8", "LIST/info 1 0 16@20", "name/ 2 1 3@32", "last/ 1 0 8@44"}},
        {"RIFF in RIFF",
         Riff_List("RIFF", "out ", Riff_List("RIFF", "in  ", Riff_Chunk("data", "xy"))),
         {"RIFF/out  0 -1 26@8", "RIFF/in   1 0 14@20", "data/ 2 1 2@32"}},
        {"size behind the end",
         std::string("RIFF\xff\xff\xff\xff"
                     "demodata\xfe\xff\xff\xff"
                     "xy",
                     22),
         {"RIFF/demo 0 -1 4294967295@8", "data/ 1 0 4294967294@20"}}};
    for (const Row& row : rows)
        EXPECT_EQ(Rows_Of(row.file), row.rows) << row.name;
    // Lists below the deepest level are not entered; the file goes on behind them.
    const auto nested = Rows_Of(Riff_List("RIFF", "demo", deep + Riff_Chunk("last", "")));
    ASSERT_EQ(nested.size(), static_cast<std::size_t>(RiffParserClass::MAX_LEVEL) + 2);
    EXPECT_EQ(nested.back().substr(0, 10), "last/ 1 0 ");
}

TEST(RiffParser, Chunks_Are_Found_By_Name_Form_And_Depth) {
    const auto bytes = Bytes_Of(SAMPLE);
    RiffParserClass parser;
    parser.Open_Bytes(bytes);
    parser.ParseFile();
    EXPECT_EQ(parser.FindChunk(0, "LIST", "info"), 1);
    EXPECT_EQ(parser.FindChunk(0, "LIST", "sdta"), -1);
    EXPECT_EQ(parser.FindChunk(0, "name and more"), 2);
    EXPECT_EQ(parser.FindChunk(0, "name", {}, 1), -1);
    EXPECT_EQ(parser.FindChunk(3, "name"), -1);
    EXPECT_EQ(parser.FindChunk(-5, "last"), 3);
    EXPECT_EQ(parser.GetChunkDataPos(3), 44);
    EXPECT_EQ(parser.GetChunkDataPos(4), -1);
    std::string text = "before";
    EXPECT_TRUE(parser.ReadData(3, text));
    EXPECT_EQ(text, "12345678");
    EXPECT_TRUE(parser.ReadData(3, text, 2));
    EXPECT_EQ(text, "12");
    EXPECT_FALSE(parser.ReadData(-1, text));
    EXPECT_TRUE(text.empty());
}

TEST(RiffParser, Every_Prefix_Of_A_File_Is_Survived) {
    const Temp_Folder folder;
    const auto whole = Rows_Of(SAMPLE);
    for (std::size_t length = 0; length <= SAMPLE.size(); ++length) {
        const auto path = folder.Path() / "cut.riff";
        std::ofstream(path, std::ios::binary) << SAMPLE.substr(0, length);
        RiffParserClass parser;
        ASSERT_TRUE(parser.OpenFile(path));
        parser.ParseFile();
        // A row is there as soon as its header (12 bytes with a form type) is.
        const std::size_t expected = (length >= 12 ? 1U : 0U) + (length >= 24 ? 1U : 0U) +
                                     (length >= 32 ? 1U : 0U) + (length >= 44 ? 1U : 0U);
        EXPECT_EQ(parser.Chunks().size(), expected) << length;
        std::vector<std::uint8_t> data;
        EXPECT_EQ(parser.ReadData_BytesArray(3, data), length == SAMPLE.size()) << length;
        EXPECT_EQ(data.size(), length == SAMPLE.size() ? 8U : 0U) << length;
    }
    RiffParserClass parser;
    EXPECT_FALSE(parser.OpenFile(folder.Path() / "missing.riff"));
    EXPECT_FALSE(parser.OpenFile(folder.Path()));
    parser.ParseFile();
    EXPECT_TRUE(parser.Chunks().empty());
}

} // namespace
} // namespace tonvex
