#include "cli/song_source.h"

#include "base/text_codec.h"
#include "project/midi_file_reader.h"
#include "project/project_writer.h"

#include <array>
#include <fstream>
#include <system_error>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

bool Is_There(const std::string& file) {
    std::error_code error;
    return fs::is_regular_file(file, error);
}

/// By its content or its ending.
bool Is_Midi_File(const fs::path& path) {
    if (Lower_Ascii(path.extension().string()) == ".mid")
        return true;
    std::array<char, 64> start{};
    std::ifstream file(path, std::ios::binary);
    file.read(start.data(), start.size());
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(start.data());
    return Midi_File_Reader({bytes, static_cast<std::size_t>(file.gcount())}).Read_Header() !=
           Midi_File_Reader::Header::Bad;
}

} // namespace

Cli_Outcome Told_Failure(const Cli_Session& tool, const std::string& file) {
    return Cli_Outcome::Failed(file, tool.dialogs.shown.empty() ? "cannot be read or written"
                                                                : tool.dialogs.shown.back().text);
}

Cli_Outcome Import_Song(Cli_Session& tool, const std::string& file) {
    if (!Is_There(file))
        return Cli_Outcome::Failed(file, "there is no such file");
    return tool.session->midiImport->ImportMidi(file) == Work_Outcome::Done ? Cli_Outcome{}
                                                                            : Told_Failure(tool, file);
}

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
    if (!Is_There(song))
        return Cli_Outcome::Failed(song, "there is no such file");
    if (Is_Midi_File(song))
        return Import_Song(tool, song);
    return session.files->LoadProject(song, 0, false) ? Cli_Outcome{} : Told_Failure(tool, song);
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
               : Told_Failure(tool, out.string());
}

} // namespace tonvex
