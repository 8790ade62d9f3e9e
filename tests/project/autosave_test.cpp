#include "project/autosave.h"

#include "app/left_songs.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <thread>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

/// A song that is one text, and its autosave on a clock that stands.
class Autosave_Test : public testing::Test {
protected:
    Autosave_Test() {
        fs::create_directories(folder / "own");
        autosave = std::make_unique<Autosave>(project, counter, folder / "own", [this] {
            EXPECT_EQ(std::this_thread::get_id(), interfaceThread);
            takenAt.push_back(counter.Now_Ms() / 1000);
            return [this, song = text] {
                EXPECT_NE(std::this_thread::get_id(), interfaceThread);
                return std::vector<std::uint8_t>(song.begin(), song.end());
            };
        });
        autosave->onFailure = [this](const std::string& error) { told.push_back(error); };
    }
    void Edit(const std::string& changed) {
        text = changed;
        project.Modified = true;
    }
    /// As the timer does, each write coming to its end within the second.
    void Pass(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            autosave->Tick();
            autosave->Finish();
            counter.Advance_Ms(1000);
        }
    }
    std::string Copy() const { return Temp_Folder::Text_Of(folder / "own/recovery.tvx"); }

    Temp_Folder folder;
    Project_State project;
    Simulated_Counter counter;
    std::string text = "new";
    const std::thread::id interfaceThread = std::this_thread::get_id();
    std::vector<std::int64_t> takenAt; ///< seconds
    std::vector<std::string> told;
    std::unique_ptr<Autosave> autosave;
};

using Seconds = std::vector<std::int64_t>;

TEST_F(Autosave_Test, Copies_What_Changed_Once_In_Thirty_Seconds) {
    Pass(100);
    EXPECT_EQ(takenAt, Seconds{}) << "nothing is unsaved";
    Edit("one");
    Pass(1);
    EXPECT_EQ(Copy(), "one") << "soon after the first change";
    Edit("two");
    Pass(29);
    EXPECT_EQ(Copy(), "one");
    for (int i = 0; i < 60; ++i) { // an edit each second
        Edit("later " + std::to_string(i));
        Pass(1);
    }
    EXPECT_EQ(takenAt, (Seconds{100, 130, 160}));
    EXPECT_EQ(Copy(), "later 30");
    Pass(200);
    EXPECT_EQ(takenAt, (Seconds{100, 130, 160, 190})) << "the rest, and then nothing changed any more";
    EXPECT_EQ(Copy(), "later 59");
    EXPECT_TRUE(project.Modified) << "a copy is no save";
}

TEST_F(Autosave_Test, A_Take_Does_Not_Wait) {
    Edit("before");
    Pass(2);
    text = "take"; // the events join the song after the last change was counted
    autosave->Take_Ended();
    autosave->Finish();
    EXPECT_EQ(Copy(), "take");
    project.Modified = false;
    autosave->Take_Ended();
    Pass(1);
    EXPECT_EQ(takenAt, (Seconds{0, 2})) << "a run that brought nothing";
}

TEST_F(Autosave_Test, A_Save_Or_Another_Song_Takes_The_Copy_Away) {
    for (const bool inTheMiddleOfAWrite : {false, true}) {
        SCOPED_TRACE(inTheMiddleOfAWrite);
        counter.Advance_Ms(Autosave::INTERVAL_MS);
        Edit("one");
        autosave->Tick();
        if (!inTheMiddleOfAWrite)
            autosave->Finish();
        autosave->Song_Is_Settled();
        Edit("the next song");
        Pass(1);
        EXPECT_FALSE(Find_Recovery_Copy(folder / "own"));
        Pass(30);
        EXPECT_EQ(Copy(), "the next song");
        project.Modified = false;
        Pass(1);
        EXPECT_FALSE(Find_Recovery_Copy(folder / "own")) << "whoever takes the flag back";
    }
}

TEST_F(Autosave_Test, A_Failure_Is_Told_Once_And_The_Old_Copy_Stays) {
    Edit("one");
    Pass(1);
    fs::rename(folder / "own", folder / "away");
    Edit("two");
    Pass(100);
    EXPECT_EQ(told.size(), 1U);
    EXPECT_EQ(takenAt, (Seconds{0, 30, 60, 90})) << "tried again, without a storm";
    EXPECT_FALSE(autosave->Copy_Now());
    fs::rename(folder / "away", folder / "own");
    EXPECT_EQ(Copy(), "one");
    Pass(31);
    EXPECT_EQ(Copy(), "two");
    fs::remove_all(folder / "own");
    Edit("three");
    Pass(40);
    EXPECT_EQ(told.size(), 2U) << "another failure is news again";
    fs::create_directories(folder / "own");
    EXPECT_TRUE(autosave->Copy_Now());
    EXPECT_EQ(Copy(), "three");

    using Bytes = std::optional<std::vector<std::uint8_t>>;
    const Autosave::Song_Copier broken[] = {
        []() -> Autosave::Song_Writer { throw std::bad_alloc(); },
        [] { return []() -> Bytes { throw std::bad_alloc(); }; },
        [] { return []() -> Bytes { return std::nullopt; }; }, // longer than a file can be
    };
    for (const Autosave::Song_Copier& copier : broken)
        EXPECT_FALSE(Autosave(project, counter, folder / "own", copier).Copy_Now());
    EXPECT_FALSE(Autosave(project, counter, {}, broken[0]).Copy_Now());
    EXPECT_EQ(Copy(), "three");
}

TEST(Left_Songs_Test, Dead_Sessions_Are_Found_And_The_Living_Left_Alone) {
    const Temp_Folder folder;
    const std::vector<std::uint8_t> song = {1, 2, 3};
    const Recovery_Note notes[] = {{"/a \\ b\n.tvx", "Tune = 1\r\n"}, {{}, "Untitled"}};
    std::string error;
    std::vector<fs::path> dead;
    for (const Recovery_Note& note : notes) {
        const auto session = Session_Temp_Folder::Make(folder.Path());
        dead.push_back(session->Path());
        ASSERT_TRUE(Write_Recovery_Copy(session->Path(), song, note, error)) << error;
        fs::last_write_time(session->Path() / "recovery.tvx",
                            fs::file_time_type::clock::now() - std::chrono::hours(dead.size()));
    }
    fs::remove(dead[1] / "recovery.txt");
    const fs::path undoOnly = folder / "session-1";
    folder.Write("session-1/undofile1.dat", "u");
    const auto living = Session_Temp_Folder::Make(folder.Path());
    ASSERT_TRUE(Write_Recovery_Copy(living->Path(), song, {}, error));
    {
        Left_Songs left(folder.Path());
        ASSERT_EQ(left.Count(), 2U);
        EXPECT_EQ(left.Find(0).note, notes[0]) << "the newest first";
        EXPECT_EQ(left.Find(1).note, notes[1]) << "a copy without a note is one too";
        EXPECT_EQ(left.Song_File(0), dead[0] / "recovery.tvx");
        EXPECT_EQ(Left_Songs(folder.Path()).Count(), 0U) << "taken";
        EXPECT_TRUE(fs::exists(undoOnly)) << "nothing goes before the question is answered";
        left.Clear_The_Rest();
        EXPECT_FALSE(fs::exists(undoOnly));
        left.Discard(0);
        EXPECT_FALSE(fs::exists(dead[0]));
    }
    Left_Songs later(folder.Path());
    ASSERT_EQ(later.Count(), 1U) << "what was not answered is found again";
    EXPECT_EQ(later.Song_File(0), dead[1] / "recovery.tvx");
    EXPECT_TRUE(fs::exists(living->Path() / "recovery.tvx"));
}

} // namespace
} // namespace tonvex
