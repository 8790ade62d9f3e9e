// Project files that nobody saved. In the everyday run the long sections are cut and struck at a part of
// their places; TONVEX_TEST_EVERY_BYTE=1 takes them all (some minutes).

#include "base/file_io.h"
#include "project/first_version_reader.h"
#include "project/project_reader.h"
#include "project/project_sections.h"
#include "project/project_writer.h"
#include "support/heap_peak.h"
#include "support/older_project.h"
#include "support/song_corpus.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace tonvex {
namespace {

constexpr std::size_t ALL_PLACES_BELOW = 1500;
/// A song as made, and the widest rows of any section against their bytes in the file.
constexpr std::size_t MEMORY_OF_NO_SONG = 250'000;
constexpr std::size_t MEMORY_PER_BYTE = 2;

Bytes Full_Song() {
    Test_Session bed;
    Session& session = bed.Load();
    session.files->Reset();
    Make_Full_Song(session);
    return Write_Project(session.files->Snapshot()).value();
}

/// Every section that can be read, in all its versions.
std::vector<Section_Bytes> Every_Section() {
    std::vector<Section_Bytes> all = Sections_Of(Full_Song());
    for (const Section_Bytes& section : older::Every_Section())
        all.push_back(section);
    return all;
}

/// The section at the end of a file; channels' events stand behind their table.
Bytes File_Of(const Section_Bytes& section) {
    static const std::vector<Section_Bytes> todays = Sections_Of(Full_Song());
    if (section.name != "Channel_Class_Data")
        return Project_Of({section});
    GlobalChannel row;
    row.ChannelID = 7;
    row.InUse = FLAG_ON;
    return Project_Of({section.version == 1 ? older::Channels(1, {row}, 2) : todays[0], section});
}

/// Places in the section's bytes; the beginning, where the counts stand, and the end always.
std::vector<std::size_t> Places(std::size_t size, std::size_t stride) {
    static const bool every = std::getenv("TONVEX_TEST_EVERY_BYTE") != nullptr;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < size; ++i)
        if (every || i < ALL_PLACES_BELOW / stride || size - i < 50 || i % stride == 0)
            places.push_back(i);
    return places;
}

/// Whatever was read can be written, and then is read as the same.
void Expect_A_Song(const Song_Snapshot& song, const std::string& what) {
    const auto bytes = Write_Project(song);
    Song_Snapshot again;
    ASSERT_TRUE(bytes && Read_Project(*bytes, again) == Read_Outcome::Whole) << what;
    EXPECT_EQ(Write_Project(again), bytes) << what;
}

/// Read within the memory that the file allows.
Read_Outcome Read_Bounded(const Bytes& file, Song_Snapshot& song, const std::string& what) {
    const test::Heap_Peak heap;
    const Read_Outcome outcome = Read_Project(file, song);
    EXPECT_LE(heap.Bytes(), MEMORY_OF_NO_SONG + MEMORY_PER_BYTE * file.size()) << what;
    return outcome;
}

TEST(Hostile_Project, Every_Section_Cut_Anywhere_Is_Refused) {
    for (const Section_Bytes& section : Every_Section()) {
        const Bytes whole = File_Of(section);
        Song_Snapshot song;
        EXPECT_EQ(Read_Bounded(whole, song, section.name), Read_Outcome::Whole) << section.name;
        for (const std::size_t kept : Places(section.bytes.size(), 7)) {
            const Bytes cut(whole.begin(), whole.end() - static_cast<int>(section.bytes.size() - kept));
            const std::string what =
                section.name + " " + std::to_string(section.version) + " cut at " + std::to_string(kept);
            EXPECT_EQ(Read_Bounded(cut, song, what), Read_Outcome::Broken) << what;
        }
    }
}

TEST(Hostile_Project, Absurd_Counts_Anywhere_Cost_No_Memory) {
    for (const Section_Bytes& section : Every_Section()) {
        Bytes file = File_Of(section);
        const std::size_t first = file.size() - section.bytes.size();
        for (const std::size_t place : Places(section.bytes.size(), 61)) {
            for (const std::uint32_t count : {0x7FFFFFFFU, 0x7FFFFFFEU, 0x80000000U, 0xFFFFFFFFU}) {
                Bytes kept;
                for (std::size_t i = first + place; i < std::min(first + place + 4, file.size()); ++i) {
                    kept.push_back(file[i]);
                    file[i] = static_cast<std::uint8_t>(count >> (8 * (i - first - place)));
                }
                const std::string what = section.name + " " + std::to_string(section.version) + " at " +
                                         std::to_string(place) + ": " + std::to_string(count);
                Song_Snapshot song;
                const Read_Outcome outcome = Read_Bounded(file, song, what);
                EXPECT_TRUE(outcome == Read_Outcome::Whole || outcome == Read_Outcome::Broken) << what;
                if (outcome == Read_Outcome::Whole && place % 32 == 0)
                    Expect_A_Song(song, what);
                std::copy(kept.begin(), kept.end(), file.begin() + static_cast<int>(first + place));
            }
        }
    }
}

TEST(Hostile_Project, Struck_Bytes_Give_A_Song_Or_A_Refusal) {
    std::mt19937 random(20261121);
    for (const Section_Bytes& section : Every_Section()) {
        const Bytes whole = File_Of(section);
        for (int round = 0; round < 40; ++round) {
            Bytes file = whole;
            for (unsigned strikes = 1 + random() % 4; strikes > 0; --strikes)
                file[whole.size() - 1 - random() % section.bytes.size()] ^=
                    static_cast<std::uint8_t>(1U << random() % 8);
            const std::string what = section.name + " round " + std::to_string(round);
            Song_Snapshot song;
            if (Read_Bounded(file, song, what) == Read_Outcome::Whole)
                Expect_A_Song(song, what);
        }
    }
}

TEST(Hostile_Project, Texts_Of_The_Greatest_Length_Are_Read_Whole) {
    Song_Snapshot song;
    for (Mark& mark : song.Marks)
        mark.MarkName.assign(65535, 'm');
    for (std::size_t row = 0; row < 10; ++row)
        song.Channels[row].StyleStrings.fill(std::string(65535, '\xE9'));
    song.State.ProjectComments.assign(65535, 'c');
    song.Fonts.assign(200, std::string(65535, 'f'));
    const Bytes file = Write_Project(song).value();
    Song_Snapshot read;
    EXPECT_EQ(Read_Bounded(file, read, "long texts"), Read_Outcome::Whole);
    EXPECT_EQ(Write_Project(read), file);
    EXPECT_EQ(read.Marks[99].MarkName.size(), 65535U);
}

TEST(Hostile_Project, The_Smallest_Rows_Stay_Within_A_Multiple_Of_The_File) {
    constexpr std::size_t ROWS = 50'000;
    Song_Snapshot song;
    song.Channels[0].InUse = FLAG_ON;
    struct Case {
        const char* name;
        std::size_t perByte; ///< bytes of memory for a byte of the file
    };
    for (const Case& one :
         {Case{"notes", 4}, {"points", 4}, {"tempo", 5}, {"events", 2}, {"bars", 2}, {"fonts", 12}}) {
        Song_Snapshot full = song;
        const std::string name = one.name;
        if (name == "notes") {
            Channel_Content content;
            for (std::size_t i = 0; i < ROWS; ++i) {
                content.Events.push_back(
                    {0, static_cast<double>(i % 997), EV_NOTE, static_cast<std::int32_t>(i), FLAG_ON, -1});
                content.Tables.Notes.push_back({60, 100, 1.0});
            }
            content.Settle();
            full.Contents[0] = std::make_shared<const Channel_Content>(content);
        } else if (name == "points") {
            MapPoint point{FLAG_ON, 0, 1, -1, -1, 5.0};
            full.SlotPans[3].Points.resize(ROWS, point); // of one time, and not linked
        } else if (name == "tempo") {
            full.Tempo.Rows.resize(ROWS, {FLAG_ON, 4.0, 90, 0});
        } else if (name == "events") {
            full.MusicCreator.MC_Events.resize(ROWS / 4, {FLAG_ON, 1.0F, 1.0F, {}, {}, 0, 0, 0, 0, {}, 0});
        } else if (name == "bars") {
            full.MusicCreator.MC_Bars.resize(ROWS);
        } else {
            full.Fonts.resize(ROWS, "f");
        }
        const Bytes file = Write_Project(full).value();
        const test::Heap_Peak heap;
        Song_Snapshot read;
        EXPECT_EQ(Read_Project(file, read), Read_Outcome::Whole) << name;
        EXPECT_LE(heap.Bytes(), MEMORY_OF_NO_SONG + one.perByte * file.size()) << name;
        EXPECT_GE(heap.Bytes(), file.size() / 2) << name << ": the measure does not count";
    }
}

TEST(Hostile_Project, The_Table_May_Say_Anything) {
    const Bytes whole = Full_Song();
    const std::vector<Section_Bytes> sections = Sections_Of(whole);
    Bytes file;
    const auto row_places = [&] { // of SectionPos
        std::vector<std::size_t> places;
        std::size_t at = 10;
        for (const Section_Bytes& section : sections) {
            places.push_back(at + 2 + section.name.size());
            at = places.back() + 8;
        }
        return places;
    }();
    const auto put = [&file](std::size_t at, std::int64_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            file[at + i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * i));
    };
    Song_Snapshot song;
    const auto outcome = [&](const std::string& what) { return Read_Bounded(file, song, what); };
    for (std::size_t row = 0; row < sections.size(); ++row) {
        for (const std::int64_t position :
             {-2147483647LL - 1, -1LL, 0LL, static_cast<long long>(whole.size() + 1), 2147483647LL}) {
            file = whole;
            put(row_places[row], position);
            EXPECT_EQ(outcome("position"), Read_Outcome::Broken) << sections[row].name << position;
        }
        for (const std::int64_t position :
             {1LL, 7LL, 311LL, static_cast<long long>(whole.size() / 2)}) { // over one another
            file = whole;
            put(row_places[row], position);
            (void)outcome(sections[row].name + " over others");
        }
        for (const std::int64_t version : {-2147483647LL - 1, -1LL, 0LL, 4LL, 2147483647LL}) {
            file = whole;
            put(row_places[row] + 4, version);
            EXPECT_EQ(outcome("version"), Read_Outcome::Newer_Section) << sections[row].name << version;
        }
    }
    file = whole; // all in one place
    for (const std::size_t place : row_places)
        put(place, 311);
    (void)outcome("all over one another");
    for (const std::int64_t last : {-2147483647LL - 1, -2LL, 2147483647LL}) {
        file = whole;
        put(6, last);
        EXPECT_EQ(outcome("last row"), Read_Outcome::Broken) << last;
    }
    file = whole;
    put(6, -1);
    EXPECT_EQ(outcome("no rows"), Read_Outcome::Whole);
    const std::size_t unknown = row_places.back() - 1; // the end of the last section's name
    for (const auto& [at, byte, told] : {std::tuple{std::size_t{3}, '3', Read_Outcome::Not_A_Project},
                                         {5, '2', Read_Outcome::Version_Not_Supported},
                                         {5, '0', Read_Outcome::Whole},
                                         {4, 'x', Read_Outcome::Broken},
                                         {unknown, 'X', Read_Outcome::Whole}}) {
        file = whole;
        file[at] = static_cast<std::uint8_t>(byte);
        EXPECT_EQ(outcome("a byte of the head"), told) << at << byte;
    }
    file = whole;
    file[10] = file[11] = 255; // a name of 65535
    EXPECT_NE(outcome("a long name"), Read_Outcome::Newer_Section);
    for (std::size_t size = 0; size < 311; ++size) {
        file.assign(whole.begin(), whole.begin() + static_cast<int>(size));
        EXPECT_EQ(outcome("cut head"), size < 4 ? Read_Outcome::Not_A_Project : Read_Outcome::Broken) << size;
    }
}

TEST(Hostile_Project, The_User_Is_Told_And_A_New_Project_Stands) {
    Test_Session bed;
    Session& session = bed.Load();
    const Bytes whole = Full_Song();
    struct Case {
        std::string name;
        Bytes bytes;
        const char* told;
    };
    constexpr const char* BROKEN = "Error loading file";
    std::vector<Case> cases = {{"empty", {}, "Invalid file format (tvx)"},
                               {"another's", Bytes(5000, 'x'), "Invalid file format (tvx)"},
                               {"version 2", whole, "File version not supported"},
                               {"cut", Bytes(whole.begin(), whole.end() - 1), BROKEN}};
    cases[2].bytes[5] = '2';
    for (Section_Bytes section : Every_Section()) {
        const Bytes bytes = section.bytes;
        section.bytes.pop_back();
        cases.push_back({section.name + " cut", File_Of(section), BROKEN});
        section.bytes = bytes;
        section.version = 4;
        cases.push_back({section.name + " of version 4", File_Of(section),
                         "Error loading file. This file was saved using \r\na newer Tonvex version"});
    }
    const auto path = bed.folder / "song.tvx";
    for (const Case& one : cases) {
        Make_Full_Song(session);
        session.project.Path = "old.tvx";
        session.project.Modified = true;
        ASSERT_TRUE(Write_File(path, one.bytes));
        bed.dialogs.shown.clear();
        EXPECT_FALSE(session.files->LoadProject(path, 0, true)) << one.name;
        ASSERT_EQ(bed.dialogs.shown.size(), 1U) << one.name;
        EXPECT_EQ(bed.dialogs.shown[0].text, one.told) << one.name;
        EXPECT_EQ(bed.dialogs.shown[0].kind, Box_Kind::Critical);
        Song_Snapshot stands = session.files->Snapshot();
        EXPECT_EQ(session.channels->Count_Channels(), 0) << one.name;
        EXPECT_EQ(stands.State.ProjectTitle, "Untitled");
        EXPECT_TRUE(session.project.Path.empty()) << one.name;
        EXPECT_FALSE(session.project.Modified);
        EXPECT_EQ(stands.MusicCreator, MusicCreator_Module()) << one.name;
        EXPECT_EQ(stands.EditorSetup, EventsEditor_Setup{});
        EXPECT_TRUE(session.tempoChanges.In_Time_Order().empty()) << one.name;
        EXPECT_EQ(stands.MarkCount, 1);
        EXPECT_EQ(session.settings.LRU[0], "");
    }
    Make_Full_Song(session);
    const int channels = session.channels->Count_Channels();
    EXPECT_FALSE(session.files->LoadProject(bed.folder / "nowhere.tvx", 0, true));
    EXPECT_EQ(bed.dialogs.shown.back().text, "File does not exist");
    EXPECT_EQ(session.channels->Count_Channels(), channels) << "nothing else happens";
    ASSERT_TRUE(Write_File(path, whole)); // and the next good file loads
    EXPECT_TRUE(session.files->LoadProject(path, 0, true));
    EXPECT_GT(session.channels->Count_Channels(), 0);
}

TEST(Fuzz_Seeds, Are_What_They_Are_Named) {
    const std::filesystem::path seeds = std::filesystem::path(TONVEX_TEST_FILES).parent_path() / "fuzz/seeds";
    for (const auto& file : std::filesystem::directory_iterator(seeds / "project_fuzz")) {
        Song_Snapshot song;
        EXPECT_EQ(Read_Project(Read_File(file.path()).value(), song), Read_Outcome::Whole) << file.path();
    }
    std::vector<std::string> older; // as the fuzz target picks them
    for (const Section_Reader& reader : Section_Readers())
        for (const Section_Writer& writer : Section_Writers())
            if (reader.name == writer.name && reader.version < writer.version)
                older.push_back(std::string(reader.name) + "_" + std::to_string(reader.version));
    for (std::size_t i = 0; i < older.size(); ++i)
        EXPECT_EQ(Read_File(seeds / "older_versions_fuzz" / older[i]).value_or(Bytes(1, 255))[0], i)
            << older[i];
}

TEST(First_Version_File, Goes_Into_A_New_Project_Without_A_Path) {
    Test_Session bed;
    Session& session = bed.Load();
    const auto path = bed.folder / "first.tvx";
    const std::vector<std::string> texts = {"Old", "Me", ""};
    struct Case {
        const char* name;
        Bytes bytes;
        const char* told; ///< after the warning
        const char* title;
    };
    for (const Case& one :
         {Case{"a head", older::First_Version("02", texts, 60, 95, 40), nullptr, "Old"},
          {"with notes", older::First_Version("02", texts, 60, 95, 40, {1}), FIRST_VERSION_NOTES_LEFT_OUT,
           "Old"},
          {"version 3", older::First_Version("03", texts, 60, 95, 40), "Format Version not supported",
           "Untitled"},
          {"cut", older::First_Version("02", {"Old"}, 60, 95, 40), "Error loading file", "Untitled"}}) {
        Make_Full_Song(session);
        session.project.Path = "old.tvx";
        bed.dialogs.shown.clear();
        ASSERT_TRUE(Write_File(path, one.bytes));
        const bool read = std::string(one.title) == "Old";
        EXPECT_EQ(session.files->LoadProject(path, 0, true), read) << one.name;
        ASSERT_EQ(bed.dialogs.shown.size(), one.told == nullptr ? 1U : 2U) << one.name;
        EXPECT_EQ(bed.dialogs.shown[0].text.find("Note that Tonvex 2 save files are not compatible"), 0U);
        EXPECT_EQ(bed.dialogs.shown[0].kind, Box_Kind::Warning);
        EXPECT_TRUE(one.told == nullptr || bed.dialogs.shown[1].text == one.told) << one.name;
        EXPECT_EQ(session.project.ProjectTitle, one.title) << one.name;
        EXPECT_EQ(session.project.ProjectTempo, read ? 95 : 80) << one.name;
        EXPECT_TRUE(session.project.Path.empty());
        EXPECT_EQ(session.channels->Count_Channels(), 0);
    }
}

} // namespace
} // namespace tonvex
