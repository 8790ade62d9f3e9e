#include "app/settings.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace tonvex {
namespace {

std::string Stored(const Settings_Store& store, const std::string& key) {
    return store.Get("Config", key, "(nothing)");
}

TEST(Settings_Test, Empty_Store_Gives_Defaults_And_Every_Key_Is_Written) {
    Memory_Settings_Store store;
    Settings settings;
    settings.Load(store, "/audio");
    settings.Save(store);
    std::istringstream keys(
        "InstallationID=0 Global_BASSBufferSize=100 Projects_AudioPath=/audio Global_Rec_WaitForKey=0 "
        "Global_Current_Input=0 Global_Notation=0 Global_UseThreadEngine=1 Global_PianoLayout_ShowStaff=0 "
        "Global_ShowVideoList=1 Global_FirstRun=1 Global_MC_BarsOpMovesMidiData=1 Global_EVEd_ViewBeats=True "
        "Global_EVEd_View_NoteNumbers=0 Global_EVEd_View_Always_NoteReference=0 Global_MidiImport_Warning=0 "
        "Global_MidiSetup_OutDevice=-1000 Global_MidiSetup_InDevice=-1 Global_WMAExport_Bitrate=128 "
        "Global_ShowHelpOnStartUp=0 Global_MC_ShowHelp=1 Global_MC_StartWindowState=1 "
        "Keyboard_Match_SongKey=True LRU0= LRU8=");
    for (std::string row; keys >> row;) {
        const std::size_t sign = row.find('=');
        EXPECT_EQ(Stored(store, row.substr(0, sign)), row.substr(sign + 1)) << row;
    }
    EXPECT_EQ(Stored(store, "LRU9"), "(nothing)");
}

TEST(Settings_Test, Odd_Values_Are_Read_Leniently) {
    struct Row {
        const char* key;
        const char* stored;
        std::int32_t Settings::*field;
        std::int32_t expected;
    };
    const std::vector<Row> rows = {
        {"Global_BASSBufferSize", " 250 ", &Settings::Global_BASSBufferSize, 250},
        {"Global_BASSBufferSize", "", &Settings::Global_BASSBufferSize, 100},
        {"Global_BASSBufferSize", "12x", &Settings::Global_BASSBufferSize, 100},
        {"Global_BASSBufferSize", "0", &Settings::Global_BASSBufferSize, 100},
        {"Global_BASSBufferSize", "99999999999999", &Settings::Global_BASSBufferSize, 100},
        {"Global_Notation", "4", &Settings::Global_Notation, 0},
        {"Global_Notation", "3", &Settings::Global_Notation, 3},
        {"Global_Current_Input", "7", &Settings::Global_Current_Input, 0},
        {"Global_MidiSetup_OutDevice", "-1000", &Settings::Global_MidiSetup_OutDevice, -1000},
        {"InstallationID", "2147483647", &Settings::InstallationID, 2147483647}};
    for (const Row& row : rows) {
        Memory_Settings_Store store;
        store.Set("Config", row.key, row.stored);
        Settings settings;
        settings.Load(store, {});
        EXPECT_EQ(settings.*row.field, row.expected) << row.key << " = " << row.stored;
    }
    const std::vector<std::pair<const char*, bool>> flags = {
        {"True", true}, {"FALSE", false}, {"0", false}, {"-1", true}, {"1", true}, {"perhaps", true}};
    for (const auto& [stored, expected] : flags) {
        Memory_Settings_Store store;
        store.Set("Config", "Keyboard_Match_SongKey", stored);
        Settings settings;
        settings.Load(store, {});
        EXPECT_EQ(settings.Keyboard_Match_SongKey, expected) << stored;
    }
}

TEST(Settings_Test, Recent_Files) {
    Settings settings;
    for (int i = 0; i < 10; ++i)
        settings.Add_Recent("/f" + std::to_string(i));
    EXPECT_EQ(settings.LRU[0], "/f9") << "the newest first";
    EXPECT_EQ(settings.LRU[8], "/f1") << "the tenth fell off";
    settings.Add_Recent("/F5");
    const std::array<std::string, 9> expected = {"/F5", "/f9", "/f8", "/f7", "/f6",
                                                 "/f4", "/f3", "/f2", "/f1"};
    EXPECT_EQ(settings.LRU, expected) << "moved to the top, nothing doubled, nothing lost";
    settings.Add_Recent("/F5");
    EXPECT_EQ(settings.LRU, expected) << "the newest again";
    settings.Add_Recent("/f1");
    EXPECT_EQ(settings.LRU[0], "/f1");
    EXPECT_EQ(settings.LRU[8], "/f2") << "the last one to the top";
}

} // namespace
} // namespace tonvex
