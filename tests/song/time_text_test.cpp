#include "song/time_text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tonvex {
namespace {

TEST(TimeText, ShowsMilliseconds) {
    const std::pair<std::int64_t, const char*> rows[] = {{0, " 0: 0: 0"},        {61500, " 1: 1: 5"},
                                                         {59999, " 0: 59: 9"},   {99, " 0: 0: 0"},
                                                         {3600000, " 60: 0: 0"}, {-61500, "-1:-1:-5"}};
    for (const auto& [ms, text] : rows)
        EXPECT_EQ(Format_MS(ms), text);
}

TEST(TimeText, ShowsBarAndBeat) {
    const std::pair<double, const char*> rows[] = {
        {0.0, "1:1.0"},  {3.96, "1:4.9"}, {3.9999999, "1:4.9"},   {4.0, "2:1.0"},  {0.04, "1:1.0"},
        {0.25, "1:1.3"}, {0.15, "1:1.2"}, {1.95, "1:3.0"},        {3.85, "1:4.9"}, {400.0, "101:1.0"},
        {-1.0, "0:4.0"}, {-4.0, "0:1.0"}, {std::nan(""), "1:1.0"}};
    for (const auto& [beats, text] : rows) {
        EXPECT_EQ(Format_Beats(beats), text) << beats;
        EXPECT_EQ(Format_Beats(beats, 3), text) << beats;
    }
}

TEST(TimeText, ReadsPositions) {
    const std::pair<const char*, double> good[] = {
        {"2:1", 4.0},    {"7.5", 7.5}, {" 3:2.5 ", 9.5}, {"1:4.999", 3.999}, {"-2:1", -4.0}, {"-2:3", -6.0},
        {"0:4.0", -1.0}, {"-3", -3.0}, {"+2", 2.0},      {"1 : 2", 1.0},     {"-1:1", 0.0}};
    for (const auto& [text, beats] : good) {
        const auto read = Parse_Beats(text);
        ASSERT_TRUE(read.has_value()) << text;
        EXPECT_DOUBLE_EQ(*read, beats) << text;
    }
    for (const char* bad : {"", " ", ":", "1:", ":1", "1:5", "1:0.9", "1:2:3", "abc", "1:x", "1,5", "nan",
                            "inf", "1e999", "2 3", "+-2", "0x10"})
        EXPECT_FALSE(Parse_Beats(bad).has_value()) << bad;
}

} // namespace
} // namespace tonvex
