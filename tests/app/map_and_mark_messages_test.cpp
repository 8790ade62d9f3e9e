#include "support/hub_bed.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace tonvex {
namespace {

constexpr auto VOLUME = Map_Kind::Volume;
constexpr auto PAN = Map_Kind::Pan;

class Map_And_Mark_Messages : public Hub_Bed {
protected:
    Map_And_Mark_Messages() {
        Send(1013, std::string("Voice"), true);
        voice = told.front().param;
        Fresh();
    }
    Song_Maps& Maps() { return session.channels->Maps; }
    PanVol_Class& Voice_Map(Map_Kind kind) {
        return Maps().Audio_Row(Maps().Find_AudioMapRow(voice)).Map(kind);
    }
    static std::string Points(const PanVol_Class& map) {
        std::ostringstream text;
        for (const MapPoint& point : map.In_Time_Order())
            text << point.TimePos << ':' << point.Value << ' ';
        return text.str();
    }
    /// "<msg> <param> <text>" of every notice, a blank between.
    std::string Told() const {
        std::ostringstream words;
        for (const Notice& notice : told)
            words << notice.msg << '/' << notice.param << '/' << notice.text << ' ';
        return words.str();
    }
    struct Case {
        int msg;
        std::vector<Msg_Arg> args;
        std::string then; ///< what state tells
        std::string told; ///< all notices; "": nothing may happen
    };
    void Check(const std::vector<Case>& cases, const std::function<std::string()>& state,
               bool modifies = true) {
        for (const Case& row : cases) {
            SCOPED_TRACE(std::to_string(&row - cases.data()) + ": " + std::to_string(row.msg));
            Fresh();
            Change_Hub::Args args;
            std::copy(row.args.begin(), row.args.end(), args.begin());
            session.hub->Send(this, row.msg, args);
            EXPECT_EQ(state(), row.then);
            EXPECT_EQ(Told(), row.told);
            EXPECT_EQ(session.project.Modified, modifies && !row.told.empty());
        }
    }

    std::int32_t voice = 0;
};

TEST_F(Map_And_Mark_Messages, Marks) {
    const auto state = [&] {
        std::ostringstream text;
        for (const int row : session.marks.In_Time_Order()) {
            const Mark& mark = session.marks.Row(row);
            text << row << ':' << mark.MarkStart << '-' << mark.MarkEnd << mark.MarkName << ' ';
        }
        text << session.project.SongLength;
        return text.str();
    };
    const std::string a = "a";
    const std::string b = "b";
    Check({{1202, {8.0, 12.0, a}, "0:0-0Start 1:8-12a 12", "1202/1/a 1200/0/ "},
           {1202, {8.0}, "0:0-0Start 1:8-12a 2:8-8 12", "1202/2/ 1200/0/ "},
           {1202, {}, "0:0-0Start 1:8-12a 2:8-8 12", ""},
           {1204, {1, b}, "0:0-0Start 1:8-12b 2:8-8 12", "1204/1/b 1200/0/ "},
           {1225, {1, 20.0}, "0:0-0Start 2:8-8 1:20-24b 24", "1225/1/b 1200/0/ "},
           {1225, {1, NOT_GIVEN_TIME, 30.0}, "0:0-0Start 2:8-8 1:20-30b 30", "1225/1/b 1200/0/ "},
           {1225, {1, NAN_ARG}, "0:0-0Start 2:8-8 1:20-30b 30", ""},
           {1203, {1}, "0:0-0Start 2:8-8 8", "-1203/1/b 1203/1/b 1200/0/ "},
           {1203, {1}, "0:0-0Start 2:8-8 8", ""}},
          state);
    for (int i = 3; i < 100; ++i)
        Send(1202, 1.0);
    Fresh();
    Send(1202, 1.0);
    EXPECT_EQ(Told(), "") << "the 101st";
    session.New_Project();
    EXPECT_EQ(state(), "0:0-0Start 0");
}

TEST_F(Map_And_Mark_Messages, Points_Of_Slots_And_Audio_Channels) {
    struct Family {
        int add, remove, move, set; ///< numbers
        std::int32_t owner;
        std::int32_t nobody;
        PanVol_Class& map;
        PanVol_Class& other; ///< must stay as it is
    };
    const Family families[] = {
        {1209, 1211, 1213, 1215, 31, 32, Maps().Slot_Map(PAN, 31), Maps().Slot_Map(VOLUME, 31)},
        {1217, 1219, 1221, 1223, 0, -1, Maps().Slot_Map(VOLUME, 0), Maps().Slot_Map(PAN, 0)},
        {1230, 1231, 1232, 1233, voice, NOBODY, Voice_Map(PAN), Voice_Map(VOLUME)},
        {1234, 1235, 1236, 1237, voice, FIRST_ID, Voice_Map(VOLUME), Voice_Map(PAN)},
    };
    for (const Family& f : families) {
        // The two fixed points have the first two IDs; each added or moved point takes the next.
        const auto id = [](int n) { return FIRST_ID + n; };
        const auto notice = [&f](int msg, int n) {
            return std::to_string(msg) + "/" + std::to_string(f.owner) + "/" + std::to_string(FIRST_ID + n) +
                   " ";
        };
        Check(
            {{f.add, {f.owner, 4.0, 100}, "0:64 4:100 -1:64 ", notice(f.add, 2)},
             {f.add, {f.owner, 2.0}, "0:64 2:82 4:100 -1:64 ", notice(f.add, 3)}, // half-way up the line
             {f.add, {f.owner, NAN_ARG, 5}, "0:64 2:82 4:100 -1:64 ", ""},
             {f.add, {f.nobody, 4.0, 5}, "0:64 2:82 4:100 -1:64 ", ""},
             {f.set, {f.owner, id(3), NOT_GIVEN, -7}, "0:64 2:75 4:100 -1:64 ", notice(f.set, 3)},
             {f.set, {f.owner, id(3)}, "0:64 2:75 4:100 -1:64 ", ""},
             {f.move, {f.owner, id(3), 6.0}, "0:64 4:100 6:75 -1:64 ", notice(f.move, 4)},
             {f.move, {f.owner, id(4), NOT_GIVEN_TIME, -5.0, 9}, "0:64 1:9 4:100 -1:64 ", notice(f.move, 5)},
             {f.move, {f.owner, id(0), 3.0}, "0:64 1:9 4:100 -1:64 ", ""},
             {f.remove, {f.owner, id(5)}, "0:64 4:100 -1:64 ", notice(-f.remove, 5) + notice(f.remove, 5)},
             {f.remove, {f.owner, id(5)}, "0:64 4:100 -1:64 ", ""},
             {f.remove, {f.owner, id(1)}, "0:64 4:100 -1:64 ", ""}},
            [&f] { return Points(f.map); });
        EXPECT_EQ(Points(f.other), "0:64 -1:64 ");
        f.map.Clear();
    }
}

TEST_F(Map_And_Mark_Messages, Closing_Messages_Bring_The_Idle_Slots_In_Step) {
    for (const int msg : {1210, 1212, 1214, 1216, 1218, 1220, 1222, 1224}) {
        SCOPED_TRACE(msg);
        const int volume = 70 + msg % 50;
        Send(1223, 5, Maps().Slot_Map(VOLUME, 5).Get_FirstPoint_ID(), volume);
        Fresh();
        Send(msg, 5);
        EXPECT_EQ(Told(), std::to_string(msg) + "/5/ ");
        EXPECT_FALSE(session.project.Modified);
        ASSERT_EQ(test.sound.posted.size(), 1U) << "only what differs";
        EXPECT_EQ(test.sound.posted[0].op, Sound_Op::Volume);
        EXPECT_EQ(test.sound.posted[0].a, volume);
        Fresh();
        Send(msg, 32);
        EXPECT_EQ(Told(), "");
    }
    session.transport.PlayRequested = true;
    Send(1223, 5, Maps().Slot_Map(VOLUME, 5).Get_FirstPoint_ID(), 65);
    Fresh();
    Send(1224, 5);
    EXPECT_TRUE(test.sound.posted.empty()) << "a run goes by its own position";
}

TEST_F(Map_And_Mark_Messages, Map_Windows_Open_Under_Their_Titles) {
    const std::string id = std::to_string(voice);
    const std::string pan = "1207/" + id + "/Pan Map [Voice] ";
    const std::string volume = "1208/" + id + "/Volume Map [Voice] ";
    Check(
        {{1205, {0}, "", "1205/0/Pan Map [Channel 1] "},
         {1206, {9}, "", "1206/9/Volume Map [Channel 9 (Drums)] "},
         {1206, {32}, "", ""},
         {1207, {voice}, "", pan},
         {1208, {voice}, "", volume},
         {1208, {FIRST_ID}, "", ""},
         {1238, {voice}, "", volume + pan + "1238/" + id + "/ "}},
        [] { return std::string(); }, false);
}

TEST_F(Map_And_Mark_Messages, Sliders_Of_Audio_Channels_Move_The_Volume_Map) {
    Send(1202, 16.0);
    for (const double time : {2.0, 6.0, 9.0})
        Send(1234, voice, time, 10);
    Send(1102, 7.0);
    Send(1002, voice, 50); // 63.5 is 64, the even one
    EXPECT_EQ(Points(Voice_Map(VOLUME)), "0:64 2:10 6:64 9:64 -1:64 ");
    Send(1102, 16.0);
    Send(1002, voice, 100);
    EXPECT_EQ(Points(Voice_Map(VOLUME)), "0:64 2:10 6:64 9:64 -1:127 ") << "the last point alone";
    Send(1005, voice, 3);
    EXPECT_EQ(Points(Voice_Map(PAN)), "0:64 -1:64 ");
}

TEST_F(Map_And_Mark_Messages, Maps_Follow_The_Songs_Length_And_Speed) {
    const std::int32_t last = store.AddNewEvent(15.0, NoteData{60, 100, 1.0});
    store.AddNewEvent(7.0, NoteData{60, 100, 1.0});
    Send(1200);
    for (const double time : {4.0, 8.0, 16.0, 99.0}) {
        Send(1217, 2, time, 1);
        Send(1230, voice, time, 1);
    }
    Send(1301, 0.5);
    EXPECT_EQ(Points(Maps().Slot_Map(VOLUME, 2)), "0:64 2:1 4:1 8:1 49.5:1 -1:64 ");
    EXPECT_EQ(Points(Voice_Map(PAN)), "0:64 2:1 4:1 8:1 49.5:1 -1:64 ");
    session.transport.Recording = true;
    Send(1017, FIRST_ID, last);
    EXPECT_EQ(session.project.SongLength, 4.0);
    EXPECT_EQ(Points(Voice_Map(PAN)), "0:64 2:1 4:1 8:1 49.5:1 -1:64 ") << "a take";
    session.transport.Recording = false;
    Send(1017, FIRST_ID, store.GetEvent_ID(store.FirstEvent()));
    EXPECT_EQ(Points(Voice_Map(PAN)), "0:64 -1:64 ");
    EXPECT_EQ(Points(Maps().Slot_Map(VOLUME, 2)), "0:64 -1:64 ") << "an edit made the song shorter";
}

} // namespace
} // namespace tonvex
