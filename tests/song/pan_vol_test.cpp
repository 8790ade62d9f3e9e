#include "song/song_maps.h"

#include "support/store_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {
namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NAN_TIME = std::numeric_limits<double>::quiet_NaN();

class Map_Test : public testing::Test {
protected:
    Store_Host song;
    PanVol_Class map{song};

    Map_Test() { song.songLength = 16.0; }
    std::int32_t Add(double time, int value) {
        std::int32_t id = 0;
        EXPECT_TRUE(map.Add_Point(time, value, id));
        return id;
    }
    /// "time:value " of every point; checks that the links hold both ways and the used rows are dense.
    std::string Points() const {
        std::ostringstream text;
        std::int32_t before = -1;
        int count = 0;
        for (std::int32_t i = map.Get_FirstPoint_I(); i != -1; i = map.Get_Point_NextI(i)) {
            const MapPoint point = map.Get_Point(i);
            text << point.TimePos << ':' << point.Value << ' ';
            EXPECT_EQ(point.PrevI, before);
            EXPECT_EQ(map.GetPoint_I(point.ID), i);
            EXPECT_TRUE(Is_On(point.InUse));
            before = i;
            ++count;
        }
        EXPECT_EQ(map.Get_Point(before).ID, map.Get_LastPoint_ID());
        EXPECT_TRUE(Is_On(map.Get_Point(count - 1).InUse));
        EXPECT_FALSE(Is_On(map.Get_Point(count).InUse));
        return text.str();
    }
};

TEST_F(Map_Test, A_New_Map_Is_64_Everywhere) {
    EXPECT_EQ(Points(), "0:64 -1:64 ");
    EXPECT_EQ(map.Get_FirstPoint_ID(), -2147483647 - 1);
    for (const double length : {0.0, 16.0}) {
        song.songLength = length;
        for (const double time : {-3.0, 0.0, 8.0, 16.0, 1e9, NAN_TIME})
            EXPECT_EQ(map.Play_GetValue_At_TimePos(time), 64) << time;
    }
    EXPECT_TRUE(map.Is_Undrawn());
}

TEST_F(Map_Test, Edits) {
    enum Op { Add_At, Set, Set_By, Move, Move_By, Delete };
    struct Case {
        const char* name;
        Op op;
        char target; ///< f first, l last, p the point at 8 of value 100, n none
        double time;
        std::int32_t value;
        const char* points; ///< null: refused, nothing changes
    };
    const Case cases[] = {
        {"at the same time", Add_At, 'n', 8, 3, "0:64 8:100 8:3 -1:64 "},
        {"at 0: behind the first", Add_At, 'n', 0, 3, "0:64 0:3 8:100 -1:64 "},
        {"before the start", Add_At, 'n', -1, 3, "0:64 0:3 8:100 -1:64 "},
        {"behind the song, too high", Add_At, 'n', 99, 300, "0:64 8:100 99:127 -1:64 "},
        {"too low", Add_At, 'n', 9, -1, "0:64 8:100 9:0 -1:64 "},
        {"at the end of all times", Add_At, 'n', INF, 1, nullptr},
        {"set too high", Set, 'p', 0, 128, "0:64 8:127 -1:64 "},
        {"set a fixed one", Set, 'l', 0, 7, "0:64 8:100 -1:7 "},
        {"set nobody", Set, 'n', 0, 7, nullptr},
        {"lower", Set_By, 'p', 0, -5, "0:64 8:95 -1:64 "},
        {"raise without end", Set_By, 'p', 0, std::numeric_limits<std::int32_t>::max(), "0:64 8:127 -1:64 "},
        {"move", Move, 'p', 2, 0, "0:64 2:100 -1:64 "},
        {"move nowhere", Move, 'p', NAN_TIME, 0, nullptr},
        {"move the first", Move, 'f', 2, 0, nullptr},
        {"move the last", Move, 'l', 2, 0, nullptr},
        {"move by", Move_By, 'p', 1.5, 0, "0:64 9.5:100 -1:64 "},
        {"delete", Delete, 'p', 0, 0, "0:64 -1:64 "},
        {"delete the first", Delete, 'f', 0, 0, nullptr},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        map.Clear();
        std::int32_t id = Add(8, 100);
        id = item.target == 'f' ? map.Get_FirstPoint_ID() : item.target == 'l' ? map.Get_LastPoint_ID() : id;
        id = item.target == 'n' ? 5 : id;
        std::int32_t newId = id;
        const bool done = item.op == Add_At    ? map.Add_Point(item.time, item.value, newId)
                          : item.op == Set     ? map.Set_Point_Val(id, item.value)
                          : item.op == Set_By  ? map.Set_Point_Val(id, 0, item.value)
                          : item.op == Move    ? map.Set_Point_TimePos(id, item.time, NOT_GIVEN_TIME, newId)
                          : item.op == Move_By ? map.Set_Point_TimePos(id, 0, item.time, newId)
                                               : map.Delete_Point(id);
        EXPECT_EQ(done, item.points != nullptr);
        EXPECT_EQ(Points(), done ? item.points : "0:64 8:100 -1:64 ");
        EXPECT_EQ(newId != id, done && (item.op == Add_At || item.op == Move || item.op == Move_By));
    }
}

TEST_F(Map_Test, The_Whole_Map_Follows_The_Song) {
    struct Case {
        std::function<void()> edit;
        const char* points;
    };
    const Case cases[] = {
        {[&] { map.SongLength_Changed(8); }, "0:64 3:1 -1:64 "},
        {[&] { map.Project_ChangeSpeed(2.0F); }, "0:64 6:1 16:2 16:3 25:4 40:5 -1:64 "},
        {[&] { map.MC_MoveBarEvents(2, 2); }, "0:64 3:1 16:2 16:3 20.5:4 28:5 -1:64 "},
        {[&] { map.MC_MoveBarEvents(0, 1); }, "0:64 7:1 12:2 12:3 16.5:4 24:5 -1:64 "},
        {[&] { map.MC_MoveBarEvents(2, -1); }, "0:64 3:1 8.5:4 16:5 -1:64 "},
        {[&] { map.MC_MoveBarEvents(0, -2); }, "0:64 0:2 0:3 4.5:4 12:5 -1:64 "},
        {[&] { map.Clear(); }, "0:64 -1:64 "},
    };
    const std::pair<double, int> drawn[] = {{12.5, 4}, {3, 1}, {8, 2}, {20, 5}, {8, 3}};
    for (const Case& item : cases) {
        map.Clear();
        for (const auto& [time, value] : drawn)
            Add(time, value);
        EXPECT_EQ(map.Play_GetValue_At_TimePos(13.0), 4) << "a walk that must not go on from where it was";
        item.edit();
        EXPECT_EQ(Points(), item.points) << (&item - cases);
    }
}

TEST_F(Map_Test, Values_Between_Beside_And_Behind_Points) {
    Add(4, 0);
    Add(8, 127);
    Add(8, 10);
    map.Set_Point_Val(map.Get_LastPoint_ID(), 90);
    // 64 falls to 0 by 16 a beat; 0 rises to 127 by 31.75 a beat; 10 rises to 90 over 8 beats.
    const std::pair<double, int> expected[] = {
        {0, 64}, {1, 48},       {3.90625, 2}, {3.96875, 0}, {4, 0},   {6, 64},
        {5, 32}, {7.9999, 127}, {8, 10},      {12, 50},     {16, 90}, {500, 90},
    };
    for (const auto& [time, value] : expected)
        EXPECT_EQ(map.Play_GetValue_At_TimePos(time), value) << time;
    song.songLength = 6.0; // the drawn points now lie behind the song
    EXPECT_EQ(map.Play_GetValue_At_TimePos(7.9999), 127);
    EXPECT_EQ(map.Play_GetValue_At_TimePos(8), 90);
    const std::int32_t at4 = map.Get_Point(2).ID;
    EXPECT_EQ(map.Points_Around(5.0), std::make_pair(at4, at4 + 1)); // added one after the other
    EXPECT_EQ(map.Points_Around(8.0), std::make_pair(map.Get_LastPoint_ID(), map.Get_LastPoint_ID()));
}

/// What the curve is at a time, found by looking at every line: the last that begins at or before it.
double Straight_Lines(const std::vector<std::pair<double, double>>& points, double time) {
    double value = points.back().second;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const auto& [x0, y0] = points[i];
        const auto& [x1, y1] = points[i + 1];
        if (time >= x0 && time < x1)
            value = y0 * (x1 - time) / (x1 - x0) + y1 * (time - x0) / (x1 - x0);
    }
    return value;
}

TEST_F(Map_Test, Ten_Thousand_Times_Lie_On_The_Lines) {
    std::mt19937 random(20);
    song.songLength = 200.0;
    std::vector<std::int32_t> ids;
    for (int i = 0; i < 300; ++i)
        ids.push_back(
            Add(static_cast<double>(random() % 199'000) / 1000.0, static_cast<int>(random() % 128)));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(map.Delete_Point(ids[static_cast<std::size_t>(i)]));
    Points(); // 300 rows grew, 100 were filled by others
    EXPECT_EQ(map.GetPoint_I(ids[99]), -1);
    EXPECT_TRUE(map.PointIs_Moveable(ids[100]));
    EXPECT_FALSE(map.PointIs_Moveable(map.Get_FirstPoint_ID()));
    std::vector<std::pair<double, double>> points;
    for (const MapPoint& point : map.In_Time_Order())
        points.emplace_back(point.TimePos < 0.0 ? 200.0 : point.TimePos, point.Value);
    ASSERT_EQ(points.size(), 202U);
    for (int i = 0; i < 10'000; ++i) {
        const double time = static_cast<double>(random() % 2'100'000) / 10'000.0;
        ASSERT_NEAR(map.Play_GetValue_At_TimePos(time), Straight_Lines(points, time), 0.5001) << time;
    }
}

TEST_F(Map_Test, An_Empty_Song_Begins_With_The_First_Point) {
    song.songLength = 0.0;
    map.Set_Point_Val(map.Get_FirstPoint_ID(), 20);
    EXPECT_EQ(map.Play_GetValue_At_TimePos(0.0), 20);
    EXPECT_EQ(map.Play_GetValue_At_TimePos(0.001), 64);
    Add(0, 30);
    EXPECT_EQ(map.Play_GetValue_At_TimePos(0.0), 30) << "the later of two at one time";
}

TEST(Song_Maps_Test, Audio_Rows_Are_Claimed_And_Freed) {
    Store_Host song;
    Song_Maps maps(song);
    EXPECT_EQ(maps.Find_AudioMapRow(0), -1) << "a free row belongs to nobody";
    for (int channel = 0; channel < 100; ++channel)
        EXPECT_EQ(maps.Get_AudioMapRow(channel), channel);
    EXPECT_EQ(maps.Get_AudioMapRow(500), -1);
    EXPECT_EQ(maps.Get_AudioMapRow(7), 7) << "its own row again";
    maps.Audio_Row(7).Map(Map_Kind::Pan).Set_Fixed_Points(3);
    maps.Free_AudioMapRow(7);
    EXPECT_EQ(maps.Get_AudioMapRow(500), 7);
    EXPECT_EQ(maps.Audio_Row(7).PanMap.Play_GetValue_At_TimePos(0), 64) << "new maps";
}

} // namespace
} // namespace tonvex
