#include "song/marks.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tonvex {
namespace {

TEST(Marks_Test, Rows_Are_Used_Once) {
    Song_Marks marks;
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(marks.Add_Mark(100 - i, NOT_GIVEN_TIME, std::to_string(i))) << i;
    EXPECT_FALSE(marks.Add_Mark(1, NOT_GIVEN_TIME, "101st"));
    EXPECT_TRUE(marks.Delete_Mark(40));
    EXPECT_FALSE(marks.Delete_Mark(40));
    EXPECT_FALSE(marks.Add_Mark(1, NOT_GIVEN_TIME, "in the freed row"));
    EXPECT_EQ(marks.Row(40), (Mark{FLAG_OFF, 60.0, 60.0, "40", Mark::WHITE})) << "stale fields stay";
    EXPECT_EQ(marks.Mark_Count(), 100);
    EXPECT_EQ(marks.In_Time_Order().size(), 99U);
    EXPECT_EQ(marks.In_Time_Order().front(), 99);
    EXPECT_TRUE(marks.Change_Mark(99, ""));
    EXPECT_EQ(marks.Row(99).MarkName, "");
    marks.New_Project();
    EXPECT_EQ(marks.Row(0), (Mark{FLAG_ON, 0.0, 0.0, "Start", 16777215}));
    EXPECT_TRUE(marks.Add_Mark(1, NOT_GIVEN_TIME, "again"));
    EXPECT_EQ(marks.Row(40), Mark{});
}

TEST(Marks_Test, Marks_At_One_Place_Stand_In_Order_Of_Rows) {
    Song_Marks marks;
    for (const double start : {8.0, 4.0, 8.0, 0.0, 4.0})
        marks.Add_Mark(start, NOT_GIVEN_TIME, "");
    EXPECT_EQ(marks.In_Time_Order(), (std::vector<int>{3, 1, 4, 0, 2}));
    marks.Delete_Mark(1);
    EXPECT_EQ(marks.In_Time_Order(), (std::vector<int>{3, 4, 0, 2}));
}

TEST(Marks_Test, Spans_And_Moves) {
    constexpr double NOT = NOT_GIVEN_TIME;
    struct Case {
        const char* name;
        double start, end;         ///< as added
        double moveStart, moveEnd; ///< then moved
        bool moved;
        double startThen, endThen;
        double last;
    };
    const Case cases[] = {
        {"plain with no end", 4, -1, 10, NOT, true, 10, -1, 10},
        {"span", 4, 8, 1, NOT, true, 1, 5, 5},
        {"the end alone", 4, 8, NOT, 20, true, 4, 20, 20},
        {"an end for a mark without", 4, -1, NOT, 6, true, 4, 6, 6},
        {"an end before the start", 4, 8, NOT, 1, true, 4, 4, 4},
        {"added with its end before its start", 4, 2, NOT, NOT, false, 4, 4, 4},
        {"before the song", 4, 8, -1, NOT, false, 4, 8, 8},
        {"a good start with a bad end", 4, 8, 1, -2, false, 4, 8, 8},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Song_Marks marks;
        ASSERT_TRUE(marks.Add_Mark(item.start, item.end, "m"));
        EXPECT_EQ(marks.Move_Mark(0, item.moveStart, item.moveEnd), item.moved);
        EXPECT_EQ(marks.Row(0), (Mark{FLAG_ON, item.startThen, item.endThen, "m", Mark::WHITE}));
        EXPECT_EQ(marks.Last_Beat(), item.last);
        marks.Delete_Mark(0);
        EXPECT_EQ(marks.Last_Beat(), 0.0);
        EXPECT_FALSE(marks.Move_Mark(0, 1));
    }
    Song_Marks marks;
    for (const double start : {-0.5, NOT_GIVEN_TIME, std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(marks.Add_Mark(start, NOT, "nowhere")) << start;
    EXPECT_EQ(marks.Mark_Count(), 0);
    for (const int row : {-1, 0, 100})
        EXPECT_FALSE(marks.Change_Mark(row, "nobody")) << row;
}

} // namespace
} // namespace tonvex
