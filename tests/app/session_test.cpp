#include "support/test_session.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

TEST(Session_Test, Loads_To_A_New_Song) {
    Test_Session test;
    test.store.Set("Config", "Global_BASSBufferSize", "40");
    test.store.Set("Config", "Global_Rec_WaitForKey", "1");
    test.store.Set("Config", "Global_UseThreadEngine", "0");
    test.store.Set("Config", "Global_Notation", "1");
    ASSERT_TRUE(test.Make().Load());
    Session& session = *test.session;
    EXPECT_TRUE(test.dialogs.shown.empty()) << test.dialogs.shown.front().text;
    for (const char* name : {"patterns/Drums", "projectsaudio"})
        EXPECT_TRUE(fs::is_directory(test.folder / name)) << name;
    EXPECT_TRUE(session.undo->UndoEnabled);
    EXPECT_EQ(session.notes.DrumSoundNames[60], "Drum 60");
    EXPECT_TRUE(session.options.Global_Rec_WaitForKey && !session.options.Global_UseThreadEngine);
    EXPECT_EQ(session.notes.Global_Notation, 1);
    ASSERT_EQ(test.sound.opened.size(), 1U);
    EXPECT_EQ(test.sound.opened[0].bufferMs, 40);
    EXPECT_EQ(session.layout->KeyboardFileName, "Tonvex default");
    EXPECT_EQ(session.channels->Count_Channels(), 1);
    EXPECT_EQ(session.channels->Channels[0].ChannelID, FIRST_ID);
    EXPECT_EQ(session.channels->Channels[0].ChannelName, "Channel 1");
    EXPECT_EQ(session.project.ProjectTempo, 80);
    EXPECT_FALSE(session.project.Modified);
}

TEST(Session_Test, What_Is_Missing_Is_Told) {
    struct Row {
        const char* name;
        std::function<void(Test_Session&)> damage;
        bool goesOn;
        std::string text; ///< @ stands for the test's folder
    };
    const std::vector<Row> rows = {
        {"no patterns folder", [](Test_Session& t) { t.folder.Write("patterns", ""); }, false,
         "Could not create folder: @/patterns\nTonvex will exit now"},
        {"no audio folder", [](Test_Session& t) { t.folder.Write("projectsaudio", ""); }, false,
         "Could not create folder: @/projectsaudio\nTonvex will exit now"},
        {"no temp folder", [](Test_Session& t) { t.folder.Write("temp", ""); }, true,
         "Could not create temp folder, Undo function will be disabled"},
        {"no chords", [](Test_Session& t) { fs::remove(t.folder / "data/chords.txt"); }, true,
         "Cannot open '@/data/chords.txt'"},
        {"output gone", [](Test_Session& t) { t.store.Set("Config", "Global_MidiSetup_OutDevice", "3"); },
         true, "Can't open Output device\nTry configuring the Output device"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Test_Session test;
        row.damage(test);
        EXPECT_EQ(test.Make().Load(), row.goesOn);
        ASSERT_EQ(test.dialogs.shown.size(), 1U);
        std::string expected = row.text;
        if (const auto at = expected.find('@'); at != std::string::npos)
            expected.replace(at, 1, test.folder.Path().string());
        EXPECT_EQ(test.dialogs.shown[0].text, expected);
        if (row.goesOn) {
            EXPECT_EQ(test.session->channels->Count_Channels(), 1);
        }
    }
    Test_Session test;
    test.store.Set("Config", "Projects_AudioPath", "/proc/nowhere");
    EXPECT_TRUE(test.Make().Load()) << "a disk that is away today does not stop the program";
    EXPECT_TRUE(fs::is_directory(test.folder / "projectsaudio"));
    EXPECT_EQ(test.session->settings.Projects_AudioPath, "/proc/nowhere");
}

/// A store whose disk is full.
class Full_Store final : public Settings_Store {
public:
    std::string Get(const std::string&, const std::string&, const std::string& fallback) const override {
        return fallback;
    }
    void Set(const std::string&, const std::string&, const std::string&) override {}
    bool Flush() override { return false; }
};

TEST(Session_Test, Ends_In_Order) {
    Test_Session test;
    Session& session = test.Load();
    const fs::path temp = session.Temp_Folder();
    EXPECT_TRUE(fs::is_directory(temp));
    session.options.Global_Rec_WaitForKey = true;
    session.settings.Add_Recent("/a.tvx");
    session.settings.InstallationID = 5;
    session.Keep_Recent_Files();
    EXPECT_EQ(test.store.Get("Config", "InstallationID", ""), "5") << "a saved song has it";
    session.Shutdown();
    EXPECT_FALSE(fs::exists(temp));
    EXPECT_FALSE(test.sound.status.open);
    EXPECT_EQ(test.store.Get("Config", "Global_Rec_WaitForKey", ""), "1");
    EXPECT_EQ(test.store.Get("Config", "Global_FirstRun", ""), "0");
    EXPECT_EQ(test.store.Get("Config", "LRU0", ""), "/a.tvx");
    test.store.Set("Config", "LRU0", "untouched");
    session.Shutdown();
    EXPECT_EQ(test.store.Get("Config", "LRU0", ""), "untouched") << "once";

    Test_Session failed;
    failed.folder.Write("patterns", "");
    failed.store.Set("Config", "InstallationID", "77");
    failed.Load().Shutdown();
    EXPECT_EQ(failed.store.Get("Config", "InstallationID", ""), "77")
        << "settings that were never read are not overwritten";

    Test_Session full;
    Full_Store store;
    Session onFullDisk({full.sound, full.midi, full.keys, full.counter, full.loop, store, full.dialogs},
                       full.paths, full.folder / "data");
    ASSERT_TRUE(onFullDisk.Load());
    onFullDisk.Shutdown();
    ASSERT_EQ(full.dialogs.shown.size(), 1U);
    EXPECT_NE(full.dialogs.shown[0].text.find("settings could not be saved"), std::string::npos);
}

TEST(Session_Test, Own_Default_Layout_Comes_First) {
    Test_Session test;
    fs::copy(test.folder / "config/keyboard/Tonvex default.dat", test.folder / "config/keyboard/default.dat");
    EXPECT_EQ(test.Load().layout->KeyboardFileName, "default");
}

TEST(Session_Test, Input_Source) {
    Test_Session test;
    test.midi.inputs = {{"Keys", 4}};
    Session& session = test.Load();
    EXPECT_EQ(test.midi.openInput, -1);
    EXPECT_FALSE(session.Select_Input(1)) << "no device chosen";
    session.settings.Global_MidiSetup_InDevice = 4;
    EXPECT_TRUE(session.Select_Input(1));
    EXPECT_EQ(test.midi.openInput, 4);
    EXPECT_TRUE(session.Select_Input(0));
    EXPECT_EQ(test.midi.openInput, -1);
    session.Select_Input(1);
    session.Shutdown();
    Test_Session next;
    next.midi.inputs = {{"Keys", 4}};
    next.store = test.store;
    next.Load();
    EXPECT_EQ(next.midi.openInput, 4) << "open from the start";
}

TEST(Session_Test, Velocity_Reaches_The_Row_Of_A_Note_Key) {
    Test_Session test;
    test.midi.inputs = {{"Keys", 4}};
    Session& session = test.Load();
    session.settings.Global_MidiSetup_InDevice = 4;
    ASSERT_TRUE(session.Select_Input(1));
    session.layout->KeyMap[256 + 60] = {-1, 300, KEY_NOTE};
    session.layout->KeyMap[256 + 61] = {-1, 301, KEY_QCHORD};
    session.layout->KeyNoteTable[301].Vol = 5;
    for (const int note : {60, 61})
        test.midi.incoming.push_back({0, 0x93, static_cast<std::uint8_t>(note), 99});
    session.input->Input_Poll();
    EXPECT_EQ(session.layout->KeyNoteTable[300].Vol, 99);
    EXPECT_EQ(session.layout->KeyNoteTable[301].Vol, 5) << "a chord key's row is no row of notes";
}

TEST(Session_Test, New_Project_Forgets_The_Song_But_Not_In_A_Run) {
    Test_Session test;
    Session& session = test.Load();
    const auto spoil = [&session] {
        session.hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Lead"));
        session.hub->Message(nullptr, MSG_SET_TEMPO, 120);
        session.hub->Message(nullptr, MSG_ADD_TEMPO_CHANGE, 4.0, 60);
        session.hub->Message(nullptr, MSG_SONG_POSITION, 8.0);
    };
    spoil();
    session.transport.PlayRequested = true;
    session.New_Project();
    EXPECT_EQ(session.channels->Count_Channels(), 2) << "a song runs";
    session.transport.PlayRequested = false;
    session.New_Project();
    EXPECT_EQ(session.channels->Count_Channels(), 1);
    EXPECT_EQ(session.channels->Channels[0].ChannelID, FIRST_ID);
    EXPECT_EQ(session.project.ProjectTempo, 80);
    EXPECT_EQ(session.transport.PlayPosition, 0.0);
    EXPECT_TRUE(session.tempoChanges.In_Time_Order().empty());
    EXPECT_FALSE(session.project.Modified);
}

TEST(Session_Channel_Host_Test, Clips_And_Chords) {
    Test_Session test;
    Session& session = test.Load();
    session.project.ProjectTempo = 120; // a beat is half a second
    EXPECT_NEAR(session.channelHost->Clip_Length_Beats(1.0, 44100), 2.0, 1e-6);
    session.tempoChanges.AddTempoChange(2.0,
                                        60); // 1 beat at 120 takes 0.5 s, the other 0.5 s are half a beat
    EXPECT_NEAR(session.channelHost->Clip_Length_Beats(1.0, 44100), 1.5, 1e-6);

    QChordData chord;
    chord.ChordName = "C#m7 x";
    session.channelHost->Rename_Chord(chord, 3);
    EXPECT_EQ(chord.ChordName, "Em7 x");
    session.channelHost->Rename_Chord(chord, -5);
    EXPECT_EQ(chord.ChordName, "Bm7 x");
    chord.ChordName = "?";
    session.channelHost->Rename_Chord(chord, 1);
    EXPECT_EQ(chord.ChordName, "?") << "no note name leads it";

    struct Row {
        const char* name;
        std::uint8_t octave;
        std::uint8_t firstNote;
        std::array<std::uint8_t, 3> expected;
    };
    // D minor: root 2, then 3 and 7 semitones above it.
    const std::vector<Row> rows = {{"fixed octave 3", 3, 50, {50, 53, 57}},
                                   {"played in the active octave, it stays there", 0, 62, {62, 65, 69}},
                                   {"relative to no octave", 0, 2, {2, 5, 9}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        chord = QChordData{};
        chord.ChordFlagA = 2;
        chord.Octave = row.octave;
        chord.ChordNotes[0] = row.firstNote;
        session.channelHost->Retype_Chord(chord, 1);
        EXPECT_EQ(chord.ChordName, "Dm");
        EXPECT_EQ(chord.Active, 3);
        EXPECT_EQ(chord.Octave, row.octave);
        for (std::size_t i = 0; i < row.expected.size(); ++i)
            EXPECT_EQ(chord.ChordNotes[i], row.expected[i]);
    }
}

} // namespace
} // namespace tonvex
