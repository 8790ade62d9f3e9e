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
    std::int32_t Id_At(double time) const {
        for (const MapPoint& point : map.In_Time_Order())
            if (point.TimePos == time)
                return point.ID;
        return 0;
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
    struct Case {
        const char* name;
        std::function<bool(std::int32_t& id)> edit; ///< id: of the point at 8, value 100
        bool done;
        const char* points;
    };
    std::int32_t out = 0;
    const Case cases[] = {
        {"add before", [&](auto&) { return map.Add_Point(4, 1, out); }, true, "0:64 4:1 8:100 -1:64 "},
        {"add behind", [&](auto&) { return map.Add_Point(12, 2, out); }, true, "0:64 8:100 12:2 -1:64 "},
        {"add at the same time: behind",
         [&](auto&) { return map.Add_Point(8, 3, out) && map.Add_Point(8, 4, out); }, true,
         "0:64 8:100 8:3 8:4 -1:64 "},
        {"add at 0: behind the first", [&](auto&) { return map.Add_Point(0, 3, out); }, true,
         "0:64 0:3 8:100 -1:64 "},
        {"add before the start", [&](auto&) { return map.Add_Point(-1, 3, out); }, true,
         "0:64 0:3 8:100 -1:64 "},
        {"add behind the song", [&](auto&) { return map.Add_Point(99, 3, out); }, true,
         "0:64 8:100 99:3 -1:64 "},
        {"value 300", [&](auto&) { return map.Add_Point(9, 300, out); }, true, "0:64 8:100 9:127 -1:64 "},
        {"value -1", [&](auto&) { return map.Add_Point(9, -1, out); }, true, "0:64 8:100 9:0 -1:64 "},
        {"no time", [&](auto&) { return map.Add_Point(NAN_TIME, 1, out); }, false, "0:64 8:100 -1:64 "},
        {"endless", [&](auto&) { return map.Add_Point(INF, 1, out); }, false, "0:64 8:100 -1:64 "},
        {"set", [&](auto& id) { return map.Set_Point_Val(id, 20); }, true, "0:64 8:20 -1:64 "},
        {"set 128", [&](auto& id) { return map.Set_Point_Val(id, 128); }, true, "0:64 8:127 -1:64 "},
        {"lower by 5", [&](auto& id) { return map.Set_Point_Val(id, 20, -5); }, true, "0:64 8:95 -1:64 "},
        {"raise without end",
         [&](auto& id) { return map.Set_Point_Val(id, 0, std::numeric_limits<std::int32_t>::max()); }, true,
         "0:64 8:127 -1:64 "},
        {"set a fixed one", [&](auto&) { return map.Set_Point_Val(map.Get_LastPoint_ID(), 7); }, true,
         "0:64 8:100 -1:7 "},
        {"set nobody", [&](auto&) { return map.Set_Point_Val(5, 7); }, false, "0:64 8:100 -1:64 "},
        {"move", [&](auto& id) { return map.Set_Point_TimePos(id, 2, NOT_GIVEN_TIME, out) && out != id; },
         true, "0:64 2:100 -1:64 "},
        {"move by", [&](auto& id) { return map.Set_Point_TimePos(id, 0, 1.5, out); }, true,
         "0:64 9.5:100 -1:64 "},
        {"move before the start", [&](auto& id) { return map.Set_Point_TimePos(id, 0, -20, out); }, true,
         "0:64 0:100 -1:64 "},
        {"move nowhere", [&](auto& id) { return map.Set_Point_TimePos(id, NAN_TIME, NOT_GIVEN_TIME, out); },
         false, "0:64 8:100 -1:64 "},
        {"move the first",
         [&](auto&) { return map.Set_Point_TimePos(map.Get_FirstPoint_ID(), 2, NOT_GIVEN_TIME, out); }, false,
         "0:64 8:100 -1:64 "},
        {"move the last",
         [&](auto&) { return map.Set_Point_TimePos(map.Get_LastPoint_ID(), 2, NOT_GIVEN_TIME, out); }, false,
         "0:64 8:100 -1:64 "},
        {"delete", [&](auto& id) { return map.Delete_Point(id); }, true, "0:64 -1:64 "},
        {"delete the first", [&](auto&) { return map.Delete_Point(map.Get_FirstPoint_ID()); }, false,
         "0:64 8:100 -1:64 "},
        {"delete the last", [&](auto&) { return map.Delete_Point(map.Get_LastPoint_ID()); }, false,
         "0:64 8:100 -1:64 "},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        map.Clear();
        std::int32_t id = Add(8, 100);
        EXPECT_EQ(item.edit(id), item.done);
        EXPECT_EQ(Points(), item.points);
    }
}

TEST_F(Map_Test, The_Whole_Map_Follows_The_Song) {
    struct Case {
        const char* name;
        std::function<void()> edit;
        const char* points;
    };
    const Case cases[] = {
        {"a song of 8 beats", [&] { map.SongLength_Changed(8); }, "0:64 3:1 -1:64 "},
        {"a song of 0 beats", [&] { map.SongLength_Changed(0); }, "0:64 -1:64 "},
        {"half the speed", [&] { map.Project_ChangeSpeed(2.0F); }, "0:64 6:1 16:2 16:3 25:4 40:5 -1:64 "},
        {"speed 0", [&] { map.Project_ChangeSpeed(0.0F); }, "0:64 3:1 8:2 8:3 12.5:4 20:5 -1:64 "},
        {"two bars more at bar 2", [&] { map.MC_MoveBarEvents(2, 2); },
         "0:64 3:1 16:2 16:3 20.5:4 28:5 -1:64 "},
        {"a bar more at the start", [&] { map.MC_MoveBarEvents(0, 1); },
         "0:64 7:1 12:2 12:3 16.5:4 24:5 -1:64 "},
        {"bar 2 gone", [&] { map.MC_MoveBarEvents(2, -1); }, "0:64 3:1 8.5:4 16:5 -1:64 "},
        {"bars 0 and 1 gone", [&] { map.MC_MoveBarEvents(0, -2); }, "0:64 0:2 0:3 4.5:4 12:5 -1:64 "},
        {"as new", [&] { map.Clear(); }, "0:64 -1:64 "},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        map.Clear();
        const std::pair<double, int> drawn[] = {{12.5, 4}, {3, 1}, {8, 2}, {20, 5}, {8, 3}};
        for (const auto& [time, value] : drawn)
            Add(time, value);
        EXPECT_EQ(map.Play_GetValue_At_TimePos(13.0), 4) << "a walk that must not go on from where it was";
        item.edit();
        EXPECT_EQ(Points(), item.points);
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
    EXPECT_EQ(map.Points_Around(8.0).first, map.Get_LastPoint_ID());
    const auto around = map.Points_Around(5.0);
    EXPECT_EQ(around,
              std::make_pair(Id_At(4), map.Get_Point(map.Get_Point_NextI(map.GetPoint_I(Id_At(4)))).ID));
    EXPECT_EQ(map.Points_Around(9.0), std::make_pair(map.Get_LastPoint_ID(), map.Get_LastPoint_ID()));
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

TEST_F(Map_Test, Ids_Outlive_The_Moves_Of_Rows) {
    std::vector<std::int32_t> ids;
    for (int i = 0; i < 150; ++i) // beyond the first rows and the first growth
        ids.push_back(Add(150 - i, i % 128));
    for (std::size_t i = 0; i < ids.size(); i += 2)
        EXPECT_TRUE(map.Delete_Point(ids[i]));
    for (std::size_t i = 0; i < ids.size(); ++i) {
        double time = 0.0;
        int value = 0;
        ASSERT_EQ(map.Get_Point_Data(ids[i], time, value), i % 2 == 1) << i;
        if (i % 2 == 1) {
            EXPECT_EQ(time, 150.0 - static_cast<double>(i));
            EXPECT_EQ(value, static_cast<int>(i % 128));
        }
    }
    Points();
    EXPECT_FALSE(map.PointIs_Moveable(map.Get_FirstPoint_ID()));
    EXPECT_TRUE(map.PointIs_Moveable(ids[1]));
    EXPECT_FALSE(map.PointIs_Moveable(ids[0]));
    for (const std::int32_t row : {-1, 77, 1000})
        EXPECT_EQ(map.Get_Point_NextI(row), -1) << row;
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
    maps.Clear();
    EXPECT_EQ(maps.Find_AudioMapRow(500), -1);
}

} // namespace
} // namespace tonvex
