#include "cli/open_song.h"

#include "base/text_codec.h"
#include "project/midi_file_reader.h"

#include <array>
#include <fstream>

namespace tonvex {

namespace {

namespace fs = std::filesystem;

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

Cli_Outcome Told_Failure(const Cli_Session& cli, const std::string& file) {
    return Cli_Outcome::Failed(file,
                               cli.dialogs.shown.empty() ? "cannot be read" : cli.dialogs.shown.back().text);
}

Cli_Outcome Open_Song(Cli_Session& cli, const std::string& song) {
    if (song == "-")
        return {};
    Session& session = *cli.session;
    const bool opened = Is_Midi_File(song) ? session.midiImport->ImportMidi(song) == Work_Outcome::Done
                                           : session.files->LoadProject(song, 0, false);
    return opened ? Cli_Outcome{} : Told_Failure(cli, song);
}

} // namespace tonvex
