#include "support/test_session.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

namespace tonvex {
namespace {

constexpr std::int32_t NOBODY = FIRST_ID + 40;
constexpr double NAN_ARG = std::numeric_limits<double>::quiet_NaN();
constexpr auto VOLUME = Map_Kind::Volume;
constexpr auto PAN = Map_Kind::Pan;

class Map_And_Mark_Messages : public testing::Test {
protected:
    Map_And_Mark_Messages() : session(test.Load()), store(session.channels->Store(0)) {
        session.events.Subscribe([this](int msg, std::int32_t param, const std::string& text) {
            told.push_back({msg, param, text});
        });
        Send(1013, std::string("Voice"), true);
        voice = told.front().param;
        Fresh();
    }
    void Fresh() {
        told.clear();
        test.sound.posted.clear();
        session.project.Modified = false;
    }
    template <typename... Arg>
    void Send(int msg, Arg&&... arg) {
        session.hub->Message(this, msg, std::forward<Arg>(arg)...);
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
        const char* name;
        std::function<void()> send;
        std::function<bool()> holds;
        std::string told; ///< the whole; "" when nothing may happen
        bool modifies;
    };
    void Check(const std::vector<Case>& cases) {
        for (const Case& row : cases) {
            SCOPED_TRACE(row.name);
            Fresh();
            row.send();
            EXPECT_TRUE(row.holds());
            EXPECT_EQ(Told(), row.told);
            EXPECT_EQ(session.project.Modified, row.modifies);
        }
    }

    struct Notice {
        int msg;
        std::int32_t param;
        std::string text;
    };
    Test_Session test;
    Session& session;
    ChannelClass& store;
    std::vector<Notice> told;
    std::int32_t voice = 0;
};

TEST_F(Map_And_Mark_Messages, Marks) {
    const auto mark = [&](int row) { return session.marks.Row(row); };
    const auto length = [&] { return session.project.SongLength; };
    Check({
        {"add", [&] { Send(1202, 8.0, 12.0, std::string("Verse")); },
         [&] {
             return mark(1) == Mark{FLAG_ON, 8.0, 12.0, "Verse", 16777215} && length() == 12.0;
         },
         "1202/1/Verse 1200/0/ ", true},
        {"add plain, nameless, at the same place", [&] { Send(1202, 8.0); },
         [&] {
             return mark(2) == Mark{FLAG_ON, 8.0, 8.0, "", 16777215};
         },
         "1202/2/ 1200/0/ ", true},
        {"add nowhere", [&] { Send(1202); }, [&] { return session.marks.Mark_Count() == 3; }, "", false},
        {"add before the start", [&] { Send(1202, -1.0); }, [&] { return session.marks.Mark_Count() == 3; },
         "", false},
        {"rename", [&] { Send(1204, 1, std::string("Chorus")); },
         [&] { return mark(1).MarkName == "Chorus"; }, "1204/1/Chorus 1200/0/ ", true},
        {"rename a free row", [&] { Send(1204, 3, std::string("x")); },
         [&] { return mark(3).MarkName.empty(); }, "", false},
        {"move", [&] { Send(1225, 1, 20.0); }, [&] { return mark(1).MarkEnd == 24.0 && length() == 24.0; },
         "1225/1/Chorus 1200/0/ ", true},
        {"end", [&] { Send(1225, 1, NOT_GIVEN_TIME, 30.0); },
         [&] { return mark(1).MarkStart == 20.0 && length() == 30.0; }, "1225/1/Chorus 1200/0/ ", true},
        {"move nowhere", [&] { Send(1225, 1, NAN_ARG); }, [&] { return mark(1).MarkStart == 20.0; }, "",
         false},
        {"delete", [&] { Send(1203, 1); }, [&] { return !session.marks.Is_Live(1) && length() == 8.0; },
         "-1203/1/Chorus 1203/1/Chorus 1200/0/ ", true},
        {"delete again", [&] { Send(1203, 1); }, [&] { return length() == 8.0; }, "", false},
        {"delete row 100", [&] { Send(1203, 100); }, [&] { return length() == 8.0; }, "", false},
    });
    for (int i = 3; i < 100; ++i)
        Send(1202, 1.0, 1.0, std::string("m"));
    Check({{"the 101st", [&] { Send(1202, 1.0); }, [&] { return session.marks.Mark_Count() == 100; }, "",
            false}});
    session.New_Project();
    EXPECT_EQ(session.marks.In_Time_Order(), std::vector<int>{0});
}

TEST_F(Map_And_Mark_Messages, Points_Of_Slots_And_Audio_Channels) {
    struct Family {
        const char* name;
        int add, remove, move, set; ///< numbers
        std::int32_t owner;
        std::int32_t nobody;
        PanVol_Class& map;
        PanVol_Class& other; ///< must stay as it is
    };
    const Family families[] = {
        {"slot pan", 1209, 1211, 1213, 1215, 31, 32, Maps().Slot_Map(PAN, 31), Maps().Slot_Map(VOLUME, 31)},
        {"slot volume", 1217, 1219, 1221, 1223, 0, -1, Maps().Slot_Map(VOLUME, 0), Maps().Slot_Map(PAN, 0)},
        {"audio pan", 1230, 1231, 1232, 1233, voice, NOBODY, Voice_Map(PAN), Voice_Map(VOLUME)},
        {"audio volume", 1234, 1235, 1236, 1237, voice, FIRST_ID, Voice_Map(VOLUME), Voice_Map(PAN)},
    };
    for (const Family& f : families) {
        SCOPED_TRACE(f.name);
        // The two fixed points have the first two IDs; each added or moved point takes the next.
        const auto id = [](int n) { return FIRST_ID + n; };
        const auto notice = [&f](int msg, std::int32_t point) {
            return std::to_string(msg) + "/" + std::to_string(f.owner) + "/" + std::to_string(point) + " ";
        };
        const auto points = [&f](const char* text) { return [&f, text] { return Points(f.map) == text; }; };
        Check({
            {"add", [&] { Send(f.add, f.owner, 4.0, 100); }, points("0:64 4:100 -1:64 "),
             notice(f.add, id(2)), true},
            {"add on the line: half-way to 100", [&] { Send(f.add, f.owner, 2.0); },
             points("0:64 2:82 4:100 -1:64 "), notice(f.add, id(3)), true},
            {"add nowhere", [&] { Send(f.add, f.owner, NAN_ARG, 5); }, points("0:64 2:82 4:100 -1:64 "), "",
             false},
            {"add to nobody", [&] { Send(f.add, f.nobody, 4.0, 5); }, points("0:64 2:82 4:100 -1:64 "), "",
             false},
            {"set", [&] { Send(f.set, f.owner, id(3), 200); }, points("0:64 2:127 4:100 -1:64 "),
             notice(f.set, id(3)), true},
            {"lower", [&] { Send(f.set, f.owner, id(3), NOT_GIVEN, -7); }, points("0:64 2:120 4:100 -1:64 "),
             notice(f.set, id(3)), true},
            {"set nothing", [&] { Send(f.set, f.owner, id(3)); }, points("0:64 2:120 4:100 -1:64 "), "",
             false},
            {"set a point that is not there", [&] { Send(f.set, f.owner, id(9), 1); },
             points("0:64 2:120 4:100 -1:64 "), "", false},
            {"move", [&] { Send(f.move, f.owner, id(3), 6.0); }, points("0:64 4:100 6:120 -1:64 "),
             notice(f.move, id(4)), true},
            {"move by, with a value", [&] { Send(f.move, f.owner, id(4), NOT_GIVEN_TIME, -5.0, 9); },
             points("0:64 1:9 4:100 -1:64 "), notice(f.move, id(5)), true},
            {"move nowhere", [&] { Send(f.move, f.owner, id(5)); }, points("0:64 1:9 4:100 -1:64 "), "",
             false},
            {"move the first", [&] { Send(f.move, f.owner, id(0), 3.0); }, points("0:64 1:9 4:100 -1:64 "),
             "", false},
            {"delete", [&] { Send(f.remove, f.owner, id(5)); }, points("0:64 4:100 -1:64 "),
             notice(-f.remove, id(5)) + notice(f.remove, id(5)), true},
            {"delete again", [&] { Send(f.remove, f.owner, id(5)); }, points("0:64 4:100 -1:64 "), "", false},
            {"delete the last", [&] { Send(f.remove, f.owner, id(1)); }, points("0:64 4:100 -1:64 "), "",
             false},
        });
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
    const std::string voiceId = std::to_string(voice);
    Check({
        {"pan", [&] { Send(1205, 0); }, [] { return true; }, "1205/0/Pan Map [Channel 1] ", false},
        {"volume of a slot without a channel", [&] { Send(1206, 9); }, [] { return true; },
         "1206/9/Volume Map [Channel 9 (Drums)] ", false},
        {"slot 32", [&] { Send(1206, 32); }, [] { return true; }, "", false},
        {"audio pan", [&] { Send(1207, voice); }, [] { return true; },
         "1207/" + voiceId + "/Pan Map [Voice] ", false},
        {"audio volume", [&] { Send(1208, voice); }, [] { return true; },
         "1208/" + voiceId + "/Volume Map [Voice] ", false},
        {"of a MIDI channel", [&] { Send(1208, FIRST_ID); }, [] { return true; }, "", false},
        {"both", [&] { Send(1238, voice); }, [] { return true; },
         "1208/" + voiceId + "/Volume Map [Voice] 1207/" + voiceId + "/Pan Map [Voice] 1238/" + voiceId +
             "/ ",
         false},
    });
}

TEST_F(Map_And_Mark_Messages, Sliders_Move_Undrawn_Maps) {
    Send(1005, FIRST_ID, 20);
    EXPECT_EQ(Points(Maps().Slot_Map(PAN, 0)), "0:20 -1:20 ");
    Send(1209, 0, 4.0, 100);
    Send(1005, FIRST_ID, 90);
    EXPECT_EQ(Points(Maps().Slot_Map(PAN, 0)), "0:20 4:100 -1:20 ") << "drawn";
    Send(1002, FIRST_ID, 50);
    EXPECT_EQ(Points(Maps().Slot_Map(VOLUME, 0)), "0:64 -1:64 ");
    Send(1012, FIRST_ID, 3);
    EXPECT_EQ(Points(Maps().Slot_Map(PAN, 3)), "0:90 -1:90 ") << "the slot's first channel brings its pan";
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
    Send(1217, 2, 4.0, 1);
    session.New_Project();
    EXPECT_EQ(Points(Maps().Slot_Map(VOLUME, 2)), "0:64 -1:64 ");
    EXPECT_EQ(Maps().Find_AudioMapRow(voice), -1);
}

} // namespace
} // namespace tonvex
