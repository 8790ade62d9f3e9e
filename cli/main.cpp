#include "base/file_io.h"
#include "cli/apply.h"
#include "cli/check_files.h"
#include "cli/listings.h"
#include "cli/midi_files.h"
#include "cli/perform.h"
#include "cli/play.h"
#include "cli/render.h"
#include "cli/song_listings.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <map>

namespace {

using namespace tonvex;

/// One line, whatever the text of the program's own boxes looks like.
std::string One_Line(std::string text) {
    for (char& character : text) {
        if (character == '\n' || character == '\r')
            character = ' ';
    }
    return text;
}

int Report(const Cli_Outcome& outcome) {
    if (!outcome.Done() && !outcome.problem.empty()) {
        const std::string file = outcome.file.empty() ? "" : outcome.file + ": ";
        std::cerr << One_Line("tonvex-cli: " + file + outcome.problem) << '\n';
    }
    return outcome.status;
}

int Print(const Cli_Outcome& outcome, const std::string& text) {
    std::cout << text << std::flush;
    if (!std::cout)
        return Report(Cli_Outcome::Failed("standard output", "cannot be written"));
    return Report(outcome);
}

int Run(int argc, char** argv) {
    CLI::App app{"Tonvex without its windows: for batch work, scripting and tests."};
    app.set_version_flag("--version", std::string("tonvex-cli ") + TONVEX_VERSION);
    app.require_subcommand(1);
    Cli_Options options;
    options.data = Usual_Data_Folder();
    app.add_option("--data", options.data, "Folder of the data that ships (chords.txt, keyboard/ …)")
        ->type_name("DIR");
    app.add_option("--soundfont", options.soundfonts, "Replaces the font list; may be repeated")
        ->type_name("FILE.sf2")
        ->expected(1)
        ->take_all();
    app.fallthrough();

    Perform_Call call;
    std::string engine = "thread";
    CLI::App* perform = app.add_subcommand(
        "perform", "Records the key edges of a script on a simulated clock and writes the song");
    perform->add_option("SONG", call.song, "A project file, or - for a new project with one MIDI channel")
        ->required();
    perform->add_option("KEYS.json", call.keys, "The script")->required();
    perform->add_option("OUT", call.out, "The song: a project file (.tvx) or JSON (.json)")->required();
    perform->add_option("--trace", call.trace, "Every message that left for the output, as JSON lines")
        ->type_name("OUT.jsonl");
    perform->add_option("--wav", call.wav, "What the synthesizer sounded")->type_name("OUT.wav");
    perform->add_option("--engine", engine, "What sounds stored events: thread or polling")
        ->check(CLI::IsMember({"thread", "polling"}))
        ->type_name("ENGINE");

    Midi_Call midi;
    CLI::App* exportMidi = app.add_subcommand("export-midi", "Writes a song as a Standard MIDI File");
    exportMidi->add_option("SONG.tvx", midi.song, "The song; - for a new project")->required();
    exportMidi->add_option("OUT.mid", midi.out, "The MIDI file")->required();
    exportMidi->add_flag("--split-drums", midi.splitDrums, "A track for each drum note");
    CLI::App* importMidi = app.add_subcommand("import-midi", "Writes a Standard MIDI File as a project file");
    importMidi->add_option("IN.mid", midi.song, "The MIDI file")->required();
    importMidi->add_option("OUT.tvx", midi.out, "The project file")->required();
    Render_Call mix;
    CLI::App* render =
        app.add_subcommand("render", "Mixes a song down to a sound file; its ending picks the kind");
    render->add_option("SONG", mix.song, "The song: a project file (.tvx) or a MIDI file (.mid)")->required();
    render->add_option("OUT", mix.out, "A file ending in .wav, .flac, .ogg, .opus, .mp3 or .wma")->required();
    render->add_option("--rate", mix.rate, "Frames a second; usually 44100, of Opus 48000")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    render
        ->add_option("--quality", mix.quality,
                     ".wav 16, 24 or 32 bits (32: floating point), .flac 16 or 24 bits, .ogg 1 to 10, "
                     ".opus, .mp3 and .wma kbit/s; usually 16, 16, 6, 128, 192 and 128")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    render->add_option("--tail", mix.tailSeconds, "Seconds that the last voices may ring on; usually 8")
        ->check(CLI::Range(0.0, 60.0))
        ->type_name("S");

    Play_Call playing;
    CLI::App* play = app.add_subcommand("play", "Plays a song on the sound device, or in no time");
    play->add_option("SONG", playing.song, "The song: a project file (.tvx) or a MIDI file (.mid)")
        ->required();
    play->add_option("--from", playing.fromBeat, "Where to begin, in beats")
        ->check(CLI::Range(0.0, MAX_EVENT_BEATS))
        ->type_name("BEAT");
    play->add_option("--speed", playing.speedPercent, "Usually 100")
        ->check(CLI::Range(1.0, 400.0))
        ->type_name("PERCENT");
    play->add_flag("--virtual", playing.onVirtualTime,
                   "On a simulated clock: without a device, in no time, each time the same");
    play->add_option("--trace", playing.trace, "Every message that left for the output, as JSON lines")
        ->type_name("OUT.jsonl");
    play->add_option("--wav", playing.wav, "What the synthesizer sounded")->type_name("OUT.wav");
    play->add_option("--engine", engine, "What sounds stored events: thread or polling")
        ->check(CLI::IsMember({"thread", "polling"}))
        ->type_name("ENGINE");

    std::string song;
    const auto takesSong = [&song](CLI::App* verb) {
        verb->add_option("SONG.tvx", song, "The project file")->required();
        return verb;
    };
    CLI::App* dump = takesSong(app.add_subcommand("dump", "Prints a whole song as JSON"));
    CLI::App* notes = takesSong(
        app.add_subcommand("notes", "Prints the lists that a play hands to the player library as JSON"));
    Apply_Call edits;
    CLI::App* apply = app.add_subcommand("apply", "Sends change messages through the hub and saves the song");
    apply->add_option("SONG", edits.song, "A project file, or - for a new project")->required();
    apply->add_option("EDITS.json", edits.edits, "The changes")->required();
    apply->add_option("OUT.tvx", edits.out, "The project file to write")->required();
    std::vector<std::filesystem::path> files;
    CLI::App* check = app.add_subcommand("check", "Tells of each file whether it can be read");
    check->add_option("FILE", files, "Files of any kind that the program reads")->required();

    std::filesystem::path font;
    CLI::App* fonts = app.add_subcommand("fonts", "Prints title and presets of a soundfont as JSON");
    fonts->add_option("FILE.sf2", font, "The soundfont")->required();
    CLI::App* devices = app.add_subcommand("devices", "Prints the output and input devices found as JSON");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? CLI_DONE : CLI_WRONG_WORDS;
    }
    std::string text;
    if (perform->parsed()) {
        call.threadEngine = engine == "thread";
        return Report(Perform(options, call));
    }
    if (exportMidi->parsed())
        return Report(Export_Midi(options, midi));
    if (importMidi->parsed())
        return Report(Import_Midi(options, midi));
    if (render->parsed()) {
        const Cli_Outcome outcome = Render(options, mix, text);
        return Print(outcome, text);
    }
    if (play->parsed()) {
        playing.threadEngine = engine == "thread";
        return Report(Play(options, playing));
    }
    if (dump->parsed()) {
        const Cli_Outcome outcome = Print_Song(options, song, text);
        return Print(outcome, text);
    }
    if (notes->parsed()) {
        const Cli_Outcome outcome = Print_Notes(options, song, text);
        return Print(outcome, text);
    }
    if (apply->parsed())
        return Report(Apply(options, edits));
    if (check->parsed()) {
        const Cli_Outcome outcome = Check_Files(options, files, text);
        return Print(outcome, text);
    }
    if (fonts->parsed()) {
        const Cli_Outcome outcome = List_Font(font, text);
        return Print(outcome, text);
    }
    if (devices->parsed()) {
        const Cli_Outcome outcome = List_Devices(text);
        return Print(outcome, text);
    }
    return CLI_WRONG_WORDS;
}

} // namespace

int main(int argc, char** argv) {
    Survive_File_Limits();
    try {
        return Run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << One_Line(std::string("tonvex-cli: ") + error.what()) << '\n';
        return CLI_FAILED;
    }
}
