// Writes the seeds of project_fuzz and older_versions_fuzz below a folder: make_project_seeds
// tests/fuzz/seeds

#include "base/file_io.h"
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
    bool done = true;
    std::uint8_t pick = 0; // the target's readers are in the same order
    for (const Section_Bytes& section : older::Every_Section()) {
        Bytes bytes = {pick++, 79, 2};
        bytes.insert(bytes.end(), section.bytes.begin(), section.bytes.end());
        done &= Put(folder / (section.name + "_" + std::to_string(section.version)), bytes);
    }
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
