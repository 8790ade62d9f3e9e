#include "cli/check_files.h"

#include "audio/dls_list_class.h"
#include "base/file_io.h"
#include "base/text_codec.h"
#include "engine/fingerpick_pattern.h"
#include "input/keyboard_layout_file.h"
#include "project/channel_template.h"
#include "project/first_version_reader.h"
#include "project/midi_file_reader.h"
#include "project/project_reader.h"
#include "song/notes_stuff.h"

#include <optional>
#include <span>
#include <string_view>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr const char* OK = "ok";
constexpr double ANY_TEMPO = 80.0;

std::string_view Text_Of(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string Check_Project(Bytes bytes) {
    Song_Snapshot song;
    switch (Read_Project(bytes, song)) {
    case Read_Outcome::Whole:
        return OK;
    case Read_Outcome::Not_A_Project:
        return "Invalid file format (tvx)";
    case Read_Outcome::Version_Not_Supported:
        return "File version not supported";
    case Read_Outcome::Newer_Section:
        return "Error loading file. This file was saved using a newer Tonvex version";
    case Read_Outcome::Broken:
        break;
    }
    return "Error loading file";
}

std::string Check_First_Version(Bytes bytes) {
    Project_State state;
    switch (Read_First_Version(bytes, state)) {
    case First_Version_Outcome::Whole:
        return OK;
    case First_Version_Outcome::Notes_Left_Out:
        return "a Tonvex 1 file, whose notes can't be read";
    case First_Version_Outcome::Version_Not_Supported:
        return FIRST_VERSION_NOT_SUPPORTED;
    default:
        return "Error loading file";
    }
}

std::string Check_Layout(Bytes bytes) {
    Key_Tables tables;
    switch (Read_Layout(bytes, ANY_TEMPO, tables)) {
    case Layout_Read::Replaced:
        return OK;
    case Layout_Read::Kept:
        return "this version of a keyboard layout holds nothing";
    case Layout_Read::Not_Layout:
        return "Invalid file format (keyboard)";
    case Layout_Read::Broken:
        break;
    }
    return "the keyboard layout is cut off";
}

std::string Check_Font(Bytes bytes) {
    std::string title;
    std::vector<Font_Preset> presets;
    return DLSListClass::Parse_SF2_Bytes(bytes, title, presets) ? OK : "Invalid SF2 file";
}

/// Nothing when it is no MIDI file at all.
std::optional<std::string> Check_Midi(Bytes bytes) {
    Midi_File_Reader reader(bytes);
    Midi_File_Data data;
    switch (reader.Read_Header()) {
    case Midi_File_Reader::Header::Good:
        return reader.Read_Tracks(data) ? OK : "Error loading Midi file";
    case Midi_File_Reader::Header::Time_Format:
        return "Time format not supported";
    case Midi_File_Reader::Header::Bad:
        break;
    }
    return std::nullopt;
}

/// Kinds that begin with words of their own.
std::optional<std::string> Check_By_Content(Bytes bytes) {
    const std::string_view text = Text_Of(bytes);
    constexpr std::size_t FORM_TYPE_AT = 8;
    if (text.starts_with("TVX2"))
        return Check_Project(bytes);
    if (Is_First_Version(bytes))
        return Check_First_Version(bytes);
    if (text.starts_with("Keyb"))
        return Check_Layout(bytes);
    if (text.starts_with("RIFF") && text.size() > FORM_TYPE_AT &&
        text.substr(FORM_TYPE_AT).starts_with("sfbk"))
        return Check_Font(bytes);
    if (text.starts_with("[Template Info]")) {
        (void)Parse_Template(text, true);
        return OK;
    }
    return Check_Midi(bytes);
}

std::string Check_Pattern(const Cli_Options& options, std::string_view text) {
    NotesStuff notes;
    std::string error;
    if (!notes.Load_Chords(options.data / "chords.txt", error))
        return error;
    const Fingerpick_Pattern pattern = Parse_Fingerpick_Pattern(text, notes);
    return pattern.PickRows.empty() ? "holds no step of a picking pattern" : OK;
}

/// Plain texts, which only their names tell apart.
std::string Check_By_Name(const Cli_Options& options, const fs::path& file, Bytes bytes) {
    const std::string name = Lower_Ascii(file.filename().string());
    const std::string ending = Lower_Ascii(file.extension().string());
    NotesStuff notes;
    std::string error;
    if (name == "chords.txt")
        return notes.Load_Chords(file, error) ? OK : error;
    if (name == "drums.txt")
        return notes.Load_Drums(file, error) ? OK : error;
    if (ending == ".txt")
        return Check_Pattern(options, Text_Of(bytes));
    if (ending == ".mid")
        return "Error loading Midi file";
    if (ending == ".tvx")
        return Check_Project(bytes);
    if (ending == ".dat")
        return Check_Layout(bytes);
    if (ending == ".sf2")
        return Check_Font(bytes);
    return "is of no kind that Tonvex reads";
}

} // namespace

std::string Check_File(const Cli_Options& options, const fs::path& file) {
    std::error_code error;
    if (!fs::exists(file, error))
        return "there is no such file";
    const auto bytes = Read_File(file);
    if (!bytes)
        return "cannot be read";
    if (auto told = Check_By_Content(*bytes))
        return *told;
    return Check_By_Name(options, file, *bytes);
}

Cli_Outcome Check_Files(const Cli_Options& options, const std::vector<fs::path>& files, std::string& lines) {
    Cli_Outcome outcome;
    for (const fs::path& file : files) {
        std::string told = Check_File(options, file);
        for (char& sign : told)
            sign = sign == '\r' || sign == '\n' ? ' ' : sign;
        lines += file.string() + ": " + told + "\n";
        if (told != OK)
            outcome.status = CLI_FAILED;
    }
    return outcome;
}

} // namespace tonvex
