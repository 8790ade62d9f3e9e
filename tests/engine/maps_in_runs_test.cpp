#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

namespace tonvex {
namespace {

constexpr auto VOLUME = Map_Kind::Volume;
constexpr auto PAN = Map_Kind::Pan;

/// Pan and volume maps in the two transports. One beat is 1000 ms; positions are looked at 1, 11, 21 … ms
/// after the start.
class Maps_In_Runs : public testing::Test {
protected:
    Transport_Rig rig;

    Maps_In_Runs() {
        rig.withPatches = rig.withVolumes = true;
        rig.project.SongLength = 1.0;
        rig.Add_Note({0.0, 60, 100, 9.0});
    }
    PanVol_Class& Map(Map_Kind kind, int slot = 0) { return rig.channels.Maps.Slot_Map(kind, slot); }
    void Draw(PanVol_Class& map, double time, int value) {
        std::int32_t id = 0;
        ASSERT_TRUE(map.Add_Point(time, value, id));
    }
    /// Lines of the trace that hold the text, joined by blanks.
    std::string Sent(const std::string& text) const {
        std::istringstream lines(rig.Trace());
        std::string found;
        for (std::string line; std::getline(lines, line);)
            if (line.find(text) != std::string::npos)
                found += line + ", ";
        return found;
    }
    std::ptrdiff_t Count(const std::string& text) const {
        const std::string found = Sent(text);
        return std::count(found.begin(), found.end(), ',');
    }
};

TEST_F(Maps_In_Runs, Only_What_Differs_Is_Sent) {
    Draw(Map(VOLUME), 0.1, 68); // 40 a beat: a unit each 25 ms, seen at the half
    Map(VOLUME).Set_Point_Val(Map(VOLUME).Get_LastPoint_ID(), 68);
    Draw(Map(PAN), 0.0, 10); // a step at the very start
    Map(PAN).Set_Point_Val(Map(PAN).Get_LastPoint_ID(), 10);
    Draw(Map(PAN, 5), 0.0, 10); // nobody plays there
    for (const bool record : {true, false}) {
        SCOPED_TRACE(record ? "recording" : "playing");
        if (record)
            rig.Record(200);
        else
            rig.Play(0.0, 200);
        EXPECT_EQ(Sent("Volume 0 "),
                  "0 Volume 0 64 0, 21 Volume 0 65 0, 41 Volume 0 66 0, 71 Volume 0 67 0, 91 Volume 0 68 0, "
                  "200 Volume 0 64 0, ");
        EXPECT_EQ(Sent("Pan 0 "), "0 Pan 0 64 0, 1 Pan 0 10 0, 200 Pan 0 64 0, 200 Pan 0 10 0, ");
        EXPECT_EQ(Count("Volume"), 32 + 4 + 32);
        EXPECT_EQ(Count("Pan"), 4);
    }
}

TEST_F(Maps_In_Runs, Between_Runs_No_Slot_Is_Below_64) {
    const std::pair<int, int> starts[] = {{20, 64}, {63, 64}, {64, 64}, {65, 65}, {127, 127}};
    int slot = 0;
    for (const auto& [value, idle] : starts)
        Map(VOLUME, slot++).Set_Fixed_Points(value);
    rig.Record(100);
    slot = 0;
    for (const auto& [value, idle] : starts) {
        const std::string name = "Volume " + std::to_string(slot++) + " ";
        const std::string sent = name + std::to_string(value) + " 0, ";
        const std::string raised = value == idle ? "" : "100 " + name + std::to_string(idle) + " 0, ";
        EXPECT_EQ(Sent(name), "0 " + sent + "100 " + sent + raised);
    }
}

TEST_F(Maps_In_Runs, Starts_Seeks_And_Edits_Are_Followed) {
    Draw(Map(VOLUME), 0.5, 100);
    Draw(Map(VOLUME), 2.0, 100);
    Draw(Map(VOLUME), 2.0, 30);
    Draw(Map(VOLUME), 9.0, 30);
    rig.project.SongLength = 9.0;
    rig.Add_Note({5.0, 60, 100, 9.0});
    rig.At(100, [&] { rig.state.SeekRequest = 3.0; });
    rig.At(150, [&] {
        for (const MapPoint& point : Map(VOLUME).In_Time_Order())
            Map(VOLUME).Set_Point_Val(point.ID, 50);
    });
    rig.Play(1.0, 200);
    EXPECT_EQ(Sent("Volume 0 "), "0 Volume 0 64 0, 1 Volume 0 100 0, 101 Volume 0 30 0, 151 Volume 0 50 0, "
                                 "200 Volume 0 50 0, 200 Volume 0 64 0, ");
}

TEST_F(Maps_In_Runs, An_Undrawn_Pan_Map_Follows_The_Slider_And_A_Drawn_One_Does_Not) {
    rig.channels.Set_Pan(rig.firstChannel, 20);
    rig.At(50, [&] {
        rig.channels.Set_Pan(rig.firstChannel, 90);
        rig.gcm.GCM_SetChannelPan(0);
    });
    rig.Record(100);
    EXPECT_EQ(Sent("Pan 0 "), "0 Pan 0 20 0, 50 Pan 0 90 0, 100 Pan 0 90 0, ");
    Draw(Map(PAN), 0.5, 90);
    rig.At(150, [&] {
        rig.channels.Set_Pan(rig.firstChannel, 30);
        rig.gcm.GCM_SetChannelPan(0);
    });
    rig.Record(100);
    EXPECT_EQ(Sent("Pan 0 "), "0 Pan 0 90 0, 50 Pan 0 30 0, 51 Pan 0 90 0, 100 Pan 0 30 0, 100 Pan 0 90 0, ");
}

TEST_F(Maps_In_Runs, Practice_Begins_With_The_Volumes_And_Ends_Idle) {
    Map(VOLUME).Set_Fixed_Points(20);
    rig.recorder.PracticeMode = true;
    EXPECT_TRUE(rig.recorder.StartRecording(0, 1, RecorderClass::PRACTICE_PLAIN, false, false, false));
    EXPECT_EQ(Sent("Volume 0 "), "0 Volume 0 20 0, 0 Volume 0 127 0, ");
    rig.recorder.StopRequested = true;
    rig.recorder.StartRecording(0, 0, 0, false, false, true);
    EXPECT_EQ(Sent("Volume 0 "), "0 Volume 0 20 0, 0 Volume 0 127 0, 0 Volume 0 20 0, 0 Volume 0 64 0, ");
}

} // namespace
} // namespace tonvex
