#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {
namespace {

/// The song while it plays: edits made between rounds, seeks, tempo, the end. One beat is 1000 ms, a
/// velocity of 100 leaves as 80.
TEST(Playing, Ends_By_Itself_When_Nothing_Is_Left_To_Sound) {
    Transport_Rig rig;
    rig.Add_Note({0.1, 60, 100, 0.2});
    rig.Add_Patch(0.25, 5); // reports 500 beats, which nobody hears
    EXPECT_TRUE(rig.Play());
    EXPECT_EQ(rig.Trace(), "100 On 0 60 80\n300 Off 0 60 100\n300 AllOff\n");
    EXPECT_EQ(rig.state.PlayPosition, 0.3);
    EXPECT_TRUE(rig.state.TransportStopped);
    EXPECT_FALSE(rig.state.Song_Runs());
    Transport_Rig empty;
    EXPECT_TRUE(empty.Play());
    EXPECT_EQ(empty.counter.Now_Ms(), 1);
}

TEST(Playing, Stop_Leaves_The_Position_Where_It_Is) {
    Transport_Rig rig;
    rig.Add_Notes("0 60 100 4  9 60 100 4");
    EXPECT_FALSE(rig.Play(1.0, 500)); // begins inside the first note, which stays silent
    EXPECT_EQ(rig.Trace(), "500 AllOff\n");
    EXPECT_EQ(rig.state.PlayPosition, 1.5);
    EXPECT_FALSE(rig.Play(0.0, 500)); // and again, from the start
    EXPECT_EQ(rig.Trace(), "1 On 0 60 80\n500 AllOff\n500 Off 0 60 100\n");
}

TEST(Playing, Seeks_Silence_And_Go_On) {
    Transport_Rig rig;
    rig.Add_Channel(1);
    rig.Add_Notes("0 60 100 9  5.1 62 100 0.1  9 65 100 0.1");
    rig.Add_Note({5.15, 64, 100, 0.1}, 1);
    rig.channels.Set_Mute(rig.channels.Channels[1].ChannelID, true);
    rig.At(205, [&] { rig.state.SeekRequest = 5.0; });
    rig.At(450, [&] { rig.state.SeekRequest = 0.0; });
    rig.At(460, [&] { rig.channels.Set_Mute(rig.channels.Channels[1].ChannelID, false); });
    EXPECT_FALSE(rig.Play(0.0, 600));
    // Looked at every 10 ms: 211 is the first time at or behind 205. From there 5.1 lies 100 ms ahead.
    EXPECT_EQ(rig.Trace(), "1 On 0 60 80\n211 AllOff\n211 Off 0 60 100\n311 On 0 62 80\n411 Off 0 62 100\n"
                           "451 AllOff\n451 On 0 60 80\n600 AllOff\n600 Off 0 60 100\n");
}

TEST(Playing, A_Seek_That_Comes_With_The_End_Goes_On_And_None_Is_Left_Over) {
    Transport_Rig rig;
    rig.Add_Note({0.1, 60, 100, 0.2});
    rig.At(299, [&] { rig.state.SeekRequest = 0.05; }); // seen at 301
    rig.At(415, [&] { rig.state.SeekRequest = 0.0; });
    EXPECT_FALSE(rig.Play(0.0, 416));
    EXPECT_EQ(rig.Trace(), "100 On 0 60 80\n300 Off 0 60 100\n301 AllOff\n351 On 0 60 80\n416 AllOff\n"
                           "416 Off 0 60 100\n");
    EXPECT_EQ(rig.state.SeekRequest, -1.0);
}

TEST(Playing, The_Patch_Before_The_Start_Has_The_Last_Word) {
    Transport_Rig rig;
    rig.withPatches = true;
    for (const auto& [start, patch] : {std::pair{0.5, 40}, {1.0, 41}, {2.0, 42}})
        rig.Add_Patch(start, patch);
    rig.Add_Note({2.0, 60, 100, 0.1});
    rig.Play(1.9);
    EXPECT_EQ(rig.Trace(), "0 Patch 0 0 0\n0 Pan 0 64 0\n0 Patch 0 41 0\n100 Patch 0 42 0\n100 On 0 60 80\n"
                           "200 Off 0 60 100\n200 AllOff\n200 Patch 0 0 0\n200 Pan 0 64 0\n");
}

TEST(Playing, A_Patch_Change_Passed_While_Muted_Counts_From_The_Unmute) {
    struct Case {
        const char* name;
        int muteMs;
        int unmuteMs;
        double seekBeat; ///< asked for at 400 ms; -1 for none
        std::vector<std::pair<int, int>> patches;
    };
    // Patch 40 comes at 300, 41 at 600.
    const Case cases[] = {{"passed one", 200, 500, -1.0, {{500, 40}, {600, 41}}},
                          {"passed both", 200, 800, -1.0, {{800, 41}}},
                          {"passed none", 310, 590, -1.0, {{300, 40}, {600, 41}}},
                          {"sought past one", 100, 500, 0.45, {{500, 40}, {550, 41}}},
                          {"sought back before both", 350, 500, 0.0, {{300, 40}, {700, 40}, {1000, 41}}}};
    for (const bool engine : {false, true}) {
        for (const Case& item : cases) {
            SCOPED_TRACE(std::string(item.name) + (engine ? ", thread engine" : ", polling"));
            Transport_Rig rig;
            rig.options.Global_UseThreadEngine = engine;
            rig.withPatches = true;
            rig.Add_Patch(0.3, 40);
            rig.Add_Patch(0.6, 41);
            rig.Add_Note({1.0, 60, 100, 0.1});
            rig.At(item.muteMs, [&] { rig.channels.Set_Mute(rig.firstChannel, true); });
            rig.At(item.unmuteMs, [&] { rig.channels.Set_Mute(rig.firstChannel, false); });
            if (item.seekBeat >= 0.0)
                rig.At(400, [&] { rig.state.SeekRequest = item.seekBeat; });
            rig.Play();
            std::istringstream lines(rig.Trace());
            std::vector<std::pair<int, int>> found;
            for (std::string line; std::getline(lines, line);) {
                int ms = 0;
                int patch = 0;
                std::string word;
                std::istringstream(line) >> ms >> word >> patch >> patch;
                // Those of the set-up and of the end say nothing here.
                if (word == "Patch" && patch != 0 && ms != 0)
                    found.emplace_back(ms, patch);
            }
            ASSERT_EQ(found.size(), item.patches.size()) << rig.Trace();
            for (std::size_t i = 0; i < found.size(); ++i) {
                EXPECT_EQ(found[i].second, item.patches[i].second);
                EXPECT_NEAR(found[i].first, item.patches[i].first, 1); // the library acts behind its margin
            }
        }
    }
}

TEST(Playing, A_Late_Round_Still_Goes_By_Time) {
    Transport_Rig rig;
    rig.Add_Notes("0.1 60 100 0.1  0.2 60 90 0.1  0.4 62 100 0.1");
    rig.At(50, [&] { rig.counter.Advance_Ms(300); });
    rig.Play();
    EXPECT_EQ(rig.Trace(),
              "350 On 0 60 80\n350 Off 0 60 100\n350 On 0 60 72\n350 Off 0 60 100\n400 On 0 62 80\n"
              "500 Off 0 62 100\n500 AllOff\n");
    EXPECT_EQ(rig.Due_Ms(), (std::vector<std::int64_t>{100, 200, 400})); // the rows' own moments
}

TEST(Playing, More_Notes_At_Once_Than_A_Thousand) {
    Transport_Rig rig;
    for (int i = 0; i < 2500; ++i)
        rig.Add_Note({0.1, i % 128, 100, 0.1});
    EXPECT_TRUE(rig.Play());
    EXPECT_EQ(rig.Due_Ms().size(), 2500U);
    const auto ends = [](const Sound_Message& message) { return message.op == Sound_Op::NoteOff; };
    EXPECT_EQ(std::count_if(rig.sound.posted.begin(), rig.sound.posted.end(), ends), 128) << "with the last";
}

TEST(Playing, Views_Hear_The_Position_Once_In_10_Ms) {
    struct View final : Transport_Observer {
        std::vector<std::int64_t> told;
        void On_Run_Started(bool) override { told.push_back(-1); }
        void On_Position(double, std::int64_t songMs) override { told.push_back(songMs); }
        void On_Run_Ended() override { told.push_back(-2); }
    } view;
    Transport_Rig rig;
    rig.observers.push_back(&view);
    rig.Add_Note({0.0, 60, 100, 4.0});
    rig.Play(0.0, 35);
    EXPECT_EQ(view.told, (std::vector<std::int64_t>{-1, 1, 11, 21, 31, 35, -2})) << "35: where it stopped";
}

} // namespace
} // namespace tonvex
