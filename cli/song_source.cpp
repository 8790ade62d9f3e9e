#include "cli/song_source.h"

#include "project/project_writer.h"

#include <system_error>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

/// What the program's last box said of a failure.
std::string Last_Words(const Cli_Session& tool, const char* otherwise) {
    return tool.dialogs.shown.empty() ? otherwise : tool.dialogs.shown.back().text;
}

} // namespace

Cli_Outcome Open_Song(Cli_Session& tool, const std::string& song, New_Song newSong) {
    Session& session = *tool.session;
    tool.dialogs.shown.clear();
    if (song == "-") {
        if (newSong == New_Song::With_One_Channel)
            session.New_Project();
        else
            session.files->NewProject();
        return {};
    }
    std::error_code error;
    if (!fs::is_regular_file(song, error))
        return Cli_Outcome::Failed(song, "there is no such file");
    return session.files->LoadProject(song, 0, false)
               ? Cli_Outcome{}
               : Cli_Outcome::Failed(song, Last_Words(tool, "cannot be loaded"));
}

Cli_Outcome Use_Named_Fonts(Cli_Session& tool, const Cli_Options& options) {
    if (options.soundfonts.empty())
        return {};
    std::vector<std::string> list;
    for (const fs::path& font : options.soundfonts)
        list.push_back(font.string());
    if (!tool.session->fonts->Load_SF2_List(list))
        return Cli_Outcome::Failed(list.front(), "the soundfont cannot be loaded");
    tool.session->Send_Idle_Sound();
    return {};
}

Cli_Outcome Song_Bytes(const Cli_Session& tool, std::vector<std::uint8_t>& bytes) {
    auto written = Write_Project(tool.session->files->Snapshot());
    if (!written)
        return Cli_Outcome::Failed("", "the song is too long for a project file");
    bytes = std::move(*written);
    return {};
}

Cli_Outcome Save_Song(Cli_Session& tool, const fs::path& out) {
    return tool.session->files->SaveProject(out, Project_Files::SAVE_AS, true)
               ? Cli_Outcome{}
               : Cli_Outcome::Failed(out.string(), Last_Words(tool, "cannot be written"));
}

} // namespace tonvex
