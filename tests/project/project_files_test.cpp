#include "base/file_io.h"
#include "base/text_codec.h"
#include "base/unfinished_file.h"
#include "project/project_audio_files.h"
#include "support/click_font.h"
#include "support/song_corpus.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

class Project_Files_Test : public testing::Test {
protected:
    Project_Files_Test() : session(bed.Make()) {
        test::Write_Click_Font(defaultFont, {{"Piano", 0, 0}});
        session.fonts->fallbackFonts = {defaultFont};
        session.Load();
        session.settings.InstallationID = 77;
        session.files->Reset();
        bed.dialogs.shown.clear();
    }
    std::vector<std::uint8_t> Bytes_Of(const fs::path& path) const { return Read_File(path).value(); }
    std::string Told() const {
        return bed.dialogs.shown.empty() ? std::string() : bed.dialogs.shown.back().text;
    }
    void Add_Audio_Channel() {
        session.channels->Add_Channel(session.channels->New_ChannelID(), true, NOT_GIVEN, "Voice");
    }
    bool Save(const fs::path& path, std::int32_t saveAs = Project_Files::SAVE_AS, bool updateRecent = true) {
        return session.files->SaveProject(path, saveAs, updateRecent);
    }

    Test_Session bed;
    const fs::path defaultFont = bed.folder / "default.sf2";
    Session& session;
    const fs::path song = bed.folder / "song.tvx";
};

class Project_Listener final : public Project_Observer {
public:
    std::vector<std::string> heard;
    void On_Song_Replaced() override { heard.emplace_back("replaced"); }
    void On_Project_Named(const fs::path& path) override {
        heard.push_back("named " + path.filename().string());
    }
    void On_Project_Saved() override { heard.emplace_back("saved"); }
    void On_Project_Busy(const std::string& status) override { heard.push_back(status); }
    void On_Project_Idle() override { heard.emplace_back("idle"); }
};

TEST_F(Project_Files_Test, A_Save_And_A_Load_Go_The_Whole_Road) {
    Project_Listener listener;
    session.files->observers.push_back(&listener);
    Make_Large_Song(session, 3, 50);
    session.project.Modified = true;
    ASSERT_TRUE(Save(song));
    EXPECT_FALSE(session.project.Modified);
    EXPECT_EQ(session.project.Path, song);
    EXPECT_EQ(session.settings.LRU[0], song.string());
    EXPECT_FALSE(fs::exists(session.Temp_Folder() / "savefile.tvx.tmp"));
    EXPECT_EQ(listener.heard, (std::vector<std::string>{"Saving file", "named song.tvx", "saved", "idle"}));
    const auto first = Bytes_Of(song);
    ASSERT_TRUE(session.files->NewProject());
    EXPECT_EQ(session.channels->Count_Channels(), 0);
    EXPECT_TRUE(session.project.Path.empty());
    listener.heard.clear();
    std::vector<int> messages;
    session.events.Subscribe(
        [&messages](int msg, std::int32_t, const std::string&) { messages.push_back(msg); });
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(listener.heard, (std::vector<std::string>{"Loading file", "replaced", "idle"}));
    EXPECT_EQ(messages, (std::vector<int>{1100, 1101, 1102, 1400, 1302, 1200}));
    EXPECT_FALSE(session.project.Modified);
    EXPECT_EQ(session.project.SongLength, 49 * 0.25 + 0.25 * 5);
    EXPECT_EQ(session.project.InstallationID, 77);
    ASSERT_TRUE(Save(song, 0, false));
    EXPECT_EQ(Bytes_Of(song), first);
    EXPECT_TRUE(bed.dialogs.shown.empty()) << Told();
}

TEST_F(Project_Files_Test, A_Template_Takes_Neither_Path_Nor_ID_Nor_Flag) {
    Add_Audio_Channel();
    ASSERT_TRUE(Save(song));
    const fs::path audio = session.settings.Projects_AudioPath;
    bed.folder.Write("projectsaudio/1-0.wav", "sound");
    session.project.Modified = true;
    ASSERT_TRUE(Save(bed.folder / "template.tvx", Project_Files::SAVE_AS, false));
    EXPECT_EQ(session.project.Path, song);
    EXPECT_EQ(session.project.ProjectID, 1);
    EXPECT_TRUE(session.project.Modified);
    EXPECT_EQ(session.settings.LRU[1], "");
    EXPECT_EQ(Temp_Folder::Text_Of(audio / "2-0.wav"), "sound") << "the copy has its own clips";
    EXPECT_EQ(Temp_Folder::Text_Of(audio / "2.idp"), (bed.folder / "template.tvx").string() + "\n");
    ASSERT_TRUE(session.files->LoadProject(bed.folder / "template.tvx", 0, false));
    EXPECT_EQ(session.project.ProjectID, 2);
    session.channels->Clear();
    ASSERT_TRUE(Save(bed.folder / "template.tvx", Project_Files::SAVE_AS, false));
    ASSERT_TRUE(session.files->LoadProject(bed.folder / "template.tvx", 0, false));
    EXPECT_EQ(session.project.ProjectID, 0) << "what is recorded in a song begun from it is no other's";
}

/// Names of a folder's files in order, a blank behind each.
std::string Names_In(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string() + " ");
    return std::accumulate(names.begin(), names.end(), std::string());
}

TEST_F(Project_Files_Test, Clips_Follow_Their_Project) {
    constexpr std::int32_t AS = Project_Files::SAVE_AS;
    struct Case {
        const char* name;
        std::int32_t id;
        bool audioChannel;
        std::int32_t saveAs;
        const char* before; ///< what the audio folder holds
        const char* after;
        std::int32_t newId;
    };
    const Case cases[] = {
        {"no audio, no ID", 0, false, AS, "0-1.wav ", "0-1.wav ", 0},
        {"a first ID renames", 0, true, 0, "0-1.snp 0-1.wav 0-12.wav ", "1-1.snp 1-1.wav 1-12.wav 1.idp ", 1},
        {"the first free ID", 0, true, AS, "1.idp 2.idp 4.idp x3.idp ", "1.idp 2.idp 3.idp 4.idp x3.idp ", 3},
        {"an ID stays", 5, true, 0, "5-1.wav 5.idp ", "5-1.wav 5.idp ", 5},
        {"a new name copies", 5, true, AS, "5-1.snp 5-1.wav 55-1.wav 5-x.wav ",
         "1-1.snp 1-1.wav 1.idp 5-1.snp 5-1.wav 5-x.wav 55-1.wav ", 1},
        {"what has the new name goes", 0, true, AS, "0-1.wav 1-1.snp 1-1.wav ", "1-1.wav 1.idp ", 1},
        {"an ID without audio stays", 5, false, AS, "5-1.wav ", "5-1.wav ", 5},
    };
    const fs::path audio = session.settings.Projects_AudioPath;
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        fs::remove_all(audio);
        std::istringstream names(row.before);
        for (std::string name; names >> name;)
            bed.folder.Write("projectsaudio/" + name, name);
        session.files->Reset();
        if (row.audioChannel)
            Add_Audio_Channel();
        session.project.ProjectID = row.id;
        ASSERT_TRUE(Save(song, row.saveAs));
        EXPECT_EQ(session.project.ProjectID, row.newId);
        EXPECT_EQ(Names_In(audio), row.after);
        ASSERT_TRUE(session.files->LoadProject(song, 0, false));
        EXPECT_EQ(session.project.ProjectID, row.newId);
    }
}

TEST_F(Project_Files_Test, A_Save_That_Fails_Leaves_All_As_It_Was) {
    Add_Audio_Channel();
    const fs::path audio = session.settings.Projects_AudioPath;
    bed.folder.Write("projectsaudio/0-1.wav", "sound");
    session.project.Modified = true;
    EXPECT_FALSE(Save(bed.folder / "no/such/folder/song.tvx"));
    EXPECT_EQ(Told(), "Error saving file");
    EXPECT_EQ(bed.dialogs.shown.back().kind, Box_Kind::Critical);
    EXPECT_TRUE(session.project.Modified);
    EXPECT_EQ(session.project.ProjectID, 0);
    EXPECT_TRUE(fs::exists(audio / "0-1.wav"));
    EXPECT_FALSE(fs::exists(audio / "1.idp"));
    EXPECT_TRUE(session.project.Path.empty());
    EXPECT_TRUE(Save(song)) << "a place that is there serves";
    fs::remove_all(session.Temp_Folder());
    EXPECT_TRUE(Save(bed.folder / "other disk.tvx")) << "without room to prepare it, too";
}

TEST_F(Project_Files_Test, A_Locked_File_Stays_And_A_Long_Name_Is_Cut_Between_Characters) {
    const fs::path locked = bed.folder.Write("mine.tvx", "old");
    const fs::path open = bed.folder.Write("yours.tvx", "old");
    fs::permissions(locked, static_cast<fs::perms>(0444));
    for (const fs::path& path : {bed.folder.Path(), open})
        fs::permissions(path, fs::perms::all);
    std::string error;
    const pid_t child = fork();
    if (child == 0) // as nobody: nothing is locked for root
        _exit((geteuid() == 0 && seteuid(65534) != 0) || !Replace_File(open, {}, error) ||
              Replace_File(locked, {}, error));
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    Unfinished_File file;
    ASSERT_TRUE(file.Begin(bed.folder / (std::string(99, 'x') + "\u00E9"), error)) << error;
    EXPECT_TRUE(Is_Valid_Utf8(Names_In(bed.folder.Path())));
}

TEST_F(Project_Files_Test, A_Link_Is_Followed_And_Permissions_Stay) {
    ASSERT_TRUE(Save(song));
    fs::permissions(song, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::path link = bed.folder / "link.tvx";
    fs::create_symlink(song, link);
    session.project.ProjectTitle = "Another";
    ASSERT_TRUE(Save(link));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(song).permissions(), static_cast<fs::perms>(0640));
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(session.project.ProjectTitle, "Another");
}

TEST_F(Project_Files_Test, Another_Installation_Is_Told_Only_With_Audio) {
    ASSERT_TRUE(Save(song));
    session.settings.InstallationID = 78;
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_TRUE(bed.dialogs.shown.empty()) << Told();
    session.settings.InstallationID = 77;
    Add_Audio_Channel();
    ASSERT_TRUE(Save(song));
    session.settings.InstallationID = 78;
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(
        Told(),
        "The installation of Tonvex used to create this file\r\nis not the same as this one, this might "
        "result in invalid\r\naudio channels.");
    EXPECT_EQ(bed.dialogs.shown.back().kind, Box_Kind::Warning);
}

TEST_F(Project_Files_Test, A_Song_Sounds_With_Its_Own_Fonts_Or_The_Default_List) {
    const fs::path own = bed.folder / "own.sf2";
    test::Write_Click_Font(own, {{"Third", 1, 3}, {"Fifth", 1, 5}});
    session.fonts->CurList = {own.string()};
    session.fonts->Load_CurList_Fonts();
    session.Add_First_Channel();
    const GlobalChannel& channel = session.channels->Channels[0];
    session.channels->Set_Patch(channel.ChannelID, 129);
    ASSERT_TRUE(Save(song));
    session.files->NewProject();
    EXPECT_EQ(session.fonts->CurList, std::vector{defaultFont.string()});
    test::Write_Click_Font(own, {{"Fifth", 1, 5}});
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(bed.sound.fontSets.back(), std::vector{own});
    EXPECT_EQ(channel.PatchI, 128) << "program and bank name the sound, the row is where it stands now";
    const std::size_t loads = bed.sound.fontSets.size();
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(bed.sound.fontSets.size(), loads) << "the same fonts are not loaded again";
    EXPECT_TRUE(bed.dialogs.shown.empty()) << Told();
    fs::remove(own);
    ASSERT_TRUE(session.files->LoadProject(song, 0, false));
    EXPECT_EQ(Told(),
              "Some soundfont files used by this project don't exist.\r\nThe default soundfont list will be "
              "used instead.\r\nThis might result in midi channels without sound (to fix\r\nthe problem "
              "select a valid patch for the channel)");
    EXPECT_EQ(session.fonts->CurList, std::vector{defaultFont.string()});
    EXPECT_EQ(bed.sound.fontSets.back(), std::vector{defaultFont});
    session.fonts->fallbackFonts.clear();
    session.files->NewProject();
    EXPECT_TRUE(Told().starts_with("Could not load the default sf2 file(s).\r\nUse the 'Project menu ->"));
    bed.midi.outputs = {{"Port", 3}};
    ASSERT_TRUE(session.output->Midi_OpenDevice(3));
    session.fonts->CurList = {own.string()};
    session.files->NewProject();
    EXPECT_TRUE(session.fonts->CurList.empty()) << "a new song has not the fonts of the one before";
}

TEST_F(Project_Files_Test, A_Running_Song_Is_Left_Alone) {
    ASSERT_TRUE(Save(song));
    Make_Large_Song(session, 2, 2);
    session.transport.PlayRequested = true;
    EXPECT_FALSE(session.files->LoadProject(song, 0, true));
    EXPECT_FALSE(Save(song));
    EXPECT_FALSE(session.files->NewProject());
    session.transport.PlayRequested = false;
    EXPECT_EQ(session.channels->Count_Channels(), 2);
}

TEST_F(Project_Files_Test, Only_The_Window_Clears_What_Unsaved_Songs_Recorded) {
    const fs::path audio = session.settings.Projects_AudioPath;
    for (const char* name : {"0-1.wav", "0-1.snp", "0-x.wav", "10-1.wav"})
        bed.folder.Write(std::string("projectsaudio/") + name, "");
    session.files->NewProject();
    EXPECT_EQ(Names_In(audio), "0-1.snp 0-1.wav 0-x.wav 10-1.wav ");
    session.files->clearsUnsavedAudio = true;
    session.files->NewProject();
    EXPECT_EQ(Names_In(audio), "0-x.wav 10-1.wav ");
}

// ---- in a child, so that a limit or a kill hits nobody else ----

TEST_F(Project_Files_Test, A_Full_Disk_Is_Told_And_The_Old_File_Stands) {
    Make_Large_Song(session, 4, 500);
    ASSERT_TRUE(Save(song));
    const auto before = Bytes_Of(song);
    for (const rlim_t limit : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{before.size() - 1}}) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit bound{limit, limit};
            setrlimit(RLIMIT_FSIZE, &bound);
            session.project.ProjectTitle = "longer than before";
            session.project.Modified = true;
            bed.dialogs.shown.clear();
            const bool right = !Save(song, 0) && Told() == "Error saving file" && session.project.Modified &&
                               !fs::exists(session.Temp_Folder() / "savefile.tvx.tmp");
            _exit(right ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << "limit " << limit;
        EXPECT_EQ(Bytes_Of(song), before) << "limit " << limit;
        for (const auto& entry : fs::directory_iterator(bed.folder.Path()))
            EXPECT_FALSE(entry.path().filename().string().starts_with(".tonvex-")) << entry.path();
    }
}

TEST_F(Project_Files_Test, Killed_At_Any_Moment_A_Save_Leaves_One_Whole_Song) {
    Make_Large_Song(session, 20, 2000);
    session.project.ProjectTitle = "old";
    ASSERT_TRUE(Save(song));
    const auto oldSong = Bytes_Of(song);
    session.project.ProjectTitle = "new";
    const auto begun = std::chrono::steady_clock::now();
    ASSERT_TRUE(Save(song));
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begun;
    const auto newSong = Bytes_Of(song);
    std::minstd_rand random(1);
    std::uniform_int_distribution<useconds_t> moment(0, static_cast<useconds_t>(2.0 * took.count()));
    for (int n = 0; n < 20; ++n) {
        std::string error;
        ASSERT_TRUE(Replace_File(song, oldSong, error)) << error;
        const pid_t child = fork();
        if (child == 0) {
            Save(song);
            for (;;)
                pause();
        }
        usleep(moment(random));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const auto after = Bytes_Of(song);
        EXPECT_TRUE(after == oldSong || after == newSong) << "kill " << n;
    }
}

} // namespace
} // namespace tonvex
