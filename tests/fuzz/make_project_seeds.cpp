// Writes the seeds of project_fuzz and older_versions_fuzz below a folder: make_project_seeds
// tests/fuzz/seeds

#include "base/file_io.h"
#include "creator/style_names.h"
#include "project/project_writer.h"
#include "support/older_project.h"
#include "support/song_corpus.h"
#include "support/test_session.h"

#include <cstdio>
#include <filesystem>

namespace {

using namespace tonvex;
namespace fs = std::filesystem;

bool Put(const fs::path& path, const Bytes& bytes) {
    std::error_code ignored;
    fs::create_directories(path.parent_path(), ignored);
    if (Write_File(path, bytes))
        return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

/// One section a file, so that the fuzzer has short ones to work on; the channels' events come with their
/// table. And all in one.
bool Put_Todays(const fs::path& folder) {
    Test_Session bed;
    Session& session = bed.Load();
    session.files->Reset();
    Make_Full_Song(session);
    const Bytes whole = Write_Project(session.files->Snapshot()).value();
    const std::vector<Section_Bytes> sections = Sections_Of(whole);
    bool done = Put(folder / "whole", whole);
    for (const Section_Bytes& section : sections) {
        if (section.name == "Channel_Class_Data")
            done &= Put(folder / section.name, Project_Of({sections[0], section}));
        else if (section.name != "Global_Channels_Array")
            done &= Put(folder / section.name, Project_Of({section}));
    }
    return done;
}

bool Put_Older(const fs::path& folder) {
    GlobalChannel row;
    row.ChannelID = 7;
    row.ChannelName = "Old channel";
    row.PatchI = 33;
    row.InUse = FLAG_ON;
    MusicCreator_Module creator;
    for (std::uint8_t i = 0; i < STYLES; ++i) {
        creator.MC_Tracks[i] = {90, i, i, "Track", 0, i, FLAG_ON, 0, FLAG_ON, 31, 26, {}};
        creator.MC_Events[i].InUse = FLAG_ON;
        creator.MC_Events[i].TrackID = i;
    }
    const older::Old_Channel channel{
        .channelNumber = 7,
        .events = {{1500, EV_NOTE, 0}, {750, EV_QCHORD, 0}, {0, EV_MC, 0}, {0, EV_PATCH, 5}},
        .notes = {{60, 100, 375}},
        .chords = {older::Old_Chord(6000)},
        .fragments = {MCEventData{}}};
    const std::vector<older::Old_Mark> marks = {{true, 0, 0, "Start", 0}, {true, 3000, 4500, "Chorus", 255}};
    bool done = true;
    std::uint8_t pick = 0;
    const auto put = [&](const Section_Bytes& section) {
        Bytes bytes = {pick++, 79, 2};
        bytes.insert(bytes.end(), section.bytes.begin(), section.bytes.end());
        done &= Put(folder / (section.name + "_" + std::to_string(section.version)), bytes);
    };
    // in the order of the readers
    put(older::Globals(1, 80));
    put(older::Globals(2, 80));
    put(older::Channels(1, {row}, 2));
    put(older::Channels(2, {row}, 2));
    put(older::Maps({10, 20, {{0, 5}, {250, 127}}}, {}));
    put(older::Events({channel, {}}));
    put(older::Marks(1, marks));
    put(older::Marks(2, marks));
    put(older::Effects({}));
    put(older::Editor(4, 0.5));
    put(older::Creator(1, creator));
    put(older::Creator(2, creator));
    return done && Put(folder / "first_version", older::First_Version("02", {"Title", "Author", "Comments"},
                                                                      60, 95, 40, {0x90, 60, 100, 0}));
}

} // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::fprintf(stderr, "make_project_seeds FOLDER\n");
        return 2;
    }
    const fs::path folder = words[1];
    return Put_Todays(folder / "project_fuzz") && Put_Older(folder / "older_versions_fuzz") ? 0 : 1;
}
