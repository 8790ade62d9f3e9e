#include "app/startup.h"

#include "app/session_temp_folder.h"
#include "app/stock_data.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

/// Windows and messages of a start, in order.
class Start_Log final : public Start_Windows {
public:
    explicit Start_Log(const fs::path& configFolder) : config(configFolder) {}
    std::vector<std::string> steps;
    bool loads = true;

    void Show_Start_Window() override { Note("start window"); }
    void Let_Messages_Run() override { Note("messages"); }
    bool Load_Main_Window(const AppPaths_Class&, const fs::path&) override {
        Note("load");
        workingFolder = fs::current_path();
        return loads;
    }
    void Show_Main_Window() override { Note("show"); }

    fs::path workingFolder;

private:
    void Note(const std::string& step) { steps.push_back(step + (fs::exists(config) ? "+" : "")); }
    fs::path config;
};

class Start_Routine_Test : public testing::Test {
protected:
    Start_Routine_Test() : cwd(fs::current_path()) {
        fs::create_directory(folder / "exe");
        folder.Write("data/keyboard/Tonvex default.dat", "layout");
        Put_Paths("config={AppEXE}/../config");
    }
    ~Start_Routine_Test() override { fs::current_path(cwd); }
    void Put_Paths(const std::string& firstLine) {
        folder.Write("data/paths.cfg", firstLine + "\npatterns={AppEXE}/../p\ntemplates={AppEXE}/../t\n");
    }
    Start_Result Run(Start_Routine& routine) {
        Path_Macros macros;
        macros.AppEXE = (folder / "exe").string();
        return routine.Run(
            {folder / "exe", folder / "lock", Find_Program_Files(folder / "exe", folder / "data"), macros});
    }

    Temp_Folder folder;
    fs::path cwd;
    Recorded_Dialogs dialogs;
};

TEST_F(Start_Routine_Test, Goes_In_Order) {
    Start_Log log(folder / "config");
    folder.Write("data/chords.txt", "");
    Start_Routine routine(dialogs, log);
    EXPECT_EQ(Run(routine), Start_Result::Started);
    // "+": the config folder is there; the start window comes before it.
    const std::vector<std::string> expected = {"start window", "messages", "load+", "messages+", "show+"};
    EXPECT_EQ(log.steps, expected);
    EXPECT_EQ(log.workingFolder, fs::canonical(folder / "exe"));
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_EQ(Temp_Folder::Text_Of(folder / "config/keyboard/Tonvex default.dat"), "layout");
}

TEST_F(Start_Routine_Test, Second_Start_Is_Silent_And_Makes_Nothing) {
    Start_Log log(folder / "config");
    {
        bool heldByOther = false;
        const auto first = Held_Lock::Try(folder / "lock", heldByOther);
        ASSERT_TRUE(first);
        Start_Routine second(dialogs, log);
        EXPECT_EQ(Run(second), Start_Result::Already_Running);
        EXPECT_TRUE(log.steps.empty());
        EXPECT_TRUE(dialogs.shown.empty());
        EXPECT_FALSE(fs::exists(folder / "config"));
    }
    Start_Routine third(dialogs, log);
    EXPECT_EQ(Run(third), Start_Result::Started) << "the first one has ended";
}

TEST_F(Start_Routine_Test, Failures_Are_Told) {
    const std::string blocked = (folder.Write("file", "") / "config").string();
    struct Row {
        const char* name;
        std::string firstLine;
        std::size_t stepsTaken;
        std::string text;
    };
    const std::vector<Row> rows = {
        {"bad paths", "temp=a\ntemp=b", 0, "Couldn't find paths setup. Tonvex will now exit"},
        {"no config folder", "config=" + blocked, 2,
         "Can't create forlder: " + blocked + "\nTonvex will now exit"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Put_Paths(row.firstLine);
        Recorded_Dialogs told;
        Start_Log log(folder / "config");
        Start_Routine routine(told, log);
        EXPECT_EQ(Run(routine), Start_Result::Failed);
        EXPECT_EQ(log.steps.size(), row.stepsTaken);
        ASSERT_EQ(told.shown.size(), 1U);
        EXPECT_EQ(told.shown[0].text, row.text);
        EXPECT_EQ(told.shown[0].kind, Box_Kind::Critical);
    }
    Put_Paths("config={AppEXE}/../config");
    Start_Log log(folder / "config");
    log.loads = false;
    Start_Routine routine(dialogs, log);
    EXPECT_EQ(Run(routine), Start_Result::Failed);
    EXPECT_EQ(log.steps.back(), "load+") << "nothing is shown";
}

TEST(Startup_Test, Project_Argument) {
    const Temp_Folder folder;
    const fs::path song = folder.Write("my songs/a b.tvx", "x");
    const fs::path called = folder / "my songs";
    const std::vector<std::tuple<std::string, fs::path, bool>> rows = {
        {song.string(), "/", true},  {"\"" + song.string() + "\"", "/", true},
        {"a b.tvx", called, true},   {"\"a b.tvx\"", called, true},
        {"\"a b.tvx", called, true}, {"../my songs/a b.tvx", called, true},
        {"a b.tvx", "/", false},     {"other.tvx", called, false},
        {"", called, false},         {"\"\"", called, false},
        {".", called, false}};
    for (const auto& [argument, from, found] : rows) {
        const auto resolved = Project_Argument(argument, from);
        EXPECT_EQ(resolved.has_value(), found) << argument;
        if (resolved && found) {
            EXPECT_EQ(*resolved, song) << argument;
        }
    }
}

TEST(Startup_Test, Installation_Is_Numbered_Once) {
    Settings first;
    Settings second;
    Draw_Installation_ID(first);
    Draw_Installation_ID(second);
    EXPECT_GT(first.InstallationID, 0);
    EXPECT_NE(first.InstallationID, second.InstallationID);
    const std::int32_t drawn = first.InstallationID;
    Draw_Installation_ID(first);
    EXPECT_EQ(first.InstallationID, drawn);
}

TEST(Startup_Test, Program_Files_Are_Looked_For_In_Order) {
    const Temp_Folder folder;
    const auto found = [&folder] {
        const Program_Files files = Find_Program_Files(folder / "bin", folder / "src");
        return std::pair{files.pathsFile, files.dataFolder};
    };
    EXPECT_EQ(found().first, folder / "bin/paths.cfg") << "nowhere";
    for (const char* place : {"src", "share/tonvex"}) {
        folder.Write(std::string(place) + "/paths.cfg", "");
        folder.Write(std::string(place) + "/chords.txt", "");
        EXPECT_EQ(found(), std::pair(folder / place / "paths.cfg", folder / place));
    }
    folder.Write("bin/paths.cfg", "");
    EXPECT_EQ(found(), std::pair(folder / "bin/paths.cfg", folder / "share/tonvex")) << "each by itself";
}

TEST(Stock_Data_Test, Changed_Files_Stay_And_Unchanged_Ones_Follow_The_Program) {
    const Temp_Folder folder;
    const std::vector<Stock_Folder> folders = {{folder / "stock", folder / "user"},
                                               {folder / "nothing", folder / "user"}};
    const fs::path manifest = folder / "manifest.txt";
    for (const char* name : {"same.txt", "deep/edited.txt", "a b.txt"})
        folder.Write("stock/" + std::string(name), "one");
    folder.Write("user/own.txt", "mine");
    folder.Write("stock/own.txt", "one");
    Stock_Result result = Copy_Stock_Files(folders, manifest);
    EXPECT_EQ(result.copied, 3U);
    EXPECT_EQ(result.kept, 1U) << "it was there before the program came";
    EXPECT_EQ(Temp_Folder::Text_Of(folder / "user/a b.txt"), "one");

    folder.Write("user/deep/edited.txt", "edited");
    fs::remove(folder / "user/a b.txt");
    for (const char* name : {"same.txt", "deep/edited.txt", "own.txt", "new.txt"})
        folder.Write("stock/" + std::string(name), "two");
    result = Copy_Stock_Files(folders, manifest);
    EXPECT_TRUE(result.errors.empty());
    const std::pair<const char*, const char*> expected[] = {{"same.txt", "two"},
                                                            {"deep/edited.txt", "edited"},
                                                            {"a b.txt", "one"},
                                                            {"own.txt", "mine"},
                                                            {"new.txt", "two"}};
    for (const auto& [name, text] : expected)
        EXPECT_EQ(Temp_Folder::Text_Of(folder / "user" / name), text) << name;
    EXPECT_EQ(result.updated, 1U);
    EXPECT_EQ(result.copied, 2U);
    EXPECT_EQ(result.kept, 2U);

    folder.Write("blocked", "");
    result = Copy_Stock_Files({{folder / "stock", folder / "blocked"}}, manifest);
    EXPECT_EQ(result.errors.size(), 5U) << "told file by file, nothing thrown";
}

TEST(Session_Temp_Folder_Test, Sessions_Do_Not_Meet_And_Leftovers_Stay) {
    const Temp_Folder folder;
    const fs::path base = folder / "deep/temp";
    auto first = Session_Temp_Folder::Make(base);
    auto second = Session_Temp_Folder::Make(base);
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->Path(), second->Path());
    EXPECT_TRUE(fs::is_directory(first->Path())) << "the second start leaves a living one alone";
    const fs::path firstPath = first->Path();
    const fs::path secondPath = second->Path();
    std::ofstream(firstPath / "undo.dat") << "work";
    first.reset(); // as a crash would: the lock goes, the folder stays
    second.reset();
    auto third = Session_Temp_Folder::Make(base);
    EXPECT_TRUE(fs::exists(firstPath / "undo.dat")) << "can be recovered";
    EXPECT_FALSE(fs::exists(secondPath)) << "held nothing";
    const fs::path thirdPath = third->Path();
    third->Remove();
    EXPECT_FALSE(fs::exists(thirdPath));
    EXPECT_FALSE(Session_Temp_Folder::Make(folder.Write("file", "") / "temp")) << "cannot be made";
}

} // namespace
} // namespace tonvex
