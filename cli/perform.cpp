#include "cli/perform.h"

#include "base/byte_cursor.h"
#include "base/file_io.h"
#include "base/text_codec.h"
#include "cli/key_script.h"
#include "cli/progress_line.h"
#include "cli/song_dump.h"
#include "cli/song_source.h"
#include "cli/sound_keeper.h"
#include "cli/trace_writer.h"

#include <system_error>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t NS_PER_MS = 1'000'000;
constexpr std::uint8_t MIDI_NOTE_ON = 0x90;
constexpr std::uint8_t MIDI_NOTE_OFF = 0x80;

/// The words of the call that no file can be blamed for, and the files that cannot become.
Cli_Outcome Check_Call(const Perform_Call& call) {
    const std::string ending = Lower_Ascii(call.out.extension().string());
    if (ending != ".json" && ending != ".tvx")
        return Cli_Outcome::Wrong_Words("OUT must end in .tvx or .json");
    const fs::path outputs[] = {call.out, call.trace, call.wav};
    for (std::size_t i = 0; i < std::size(outputs); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (!outputs[i].empty() && outputs[i].lexically_normal() == outputs[j].lexically_normal())
                return Cli_Outcome::Wrong_Words(outputs[i].string() + " is named for two outputs");
        }
        std::error_code error;
        const fs::path folder = outputs[i].has_parent_path() ? outputs[i].parent_path() : fs::path(".");
        if (!outputs[i].empty() && !fs::is_directory(folder, error))
            return Cli_Outcome::Failed(outputs[i].string(), "its folder does not exist");
    }
    return {};
}

/// ID of the song's first channel; NOT_GIVEN when it has none.
std::int32_t First_Channel(const Session& session) {
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (session.channels->Is_Live_Row(row))
            return session.channels->Channels[static_cast<std::size_t>(row)].ChannelID;
    }
    return NOT_GIVEN;
}

/// The layout as the call names it, else beside the script.
fs::path Layout_File(const Key_Script& script, const fs::path& scriptFile) {
    std::error_code error;
    const fs::path named = script.layout;
    const fs::path beside = scriptFile.parent_path() / named;
    return fs::exists(named, error) || !fs::exists(beside, error) ? named : beside;
}

Cli_Outcome Set_Keyboard(Cli_Session& tool, const Key_Script& script, const fs::path& scriptFile) {
    Session& session = *tool.session;
    KeyboardLayout& layout = *session.layout;
    if (!script.layout.empty()) {
        const fs::path file = Layout_File(script, scriptFile);
        std::error_code error;
        if (!fs::is_regular_file(file, error))
            return Cli_Outcome::Failed(file.string(), "the keyboard layout cannot be read");
        if (!layout.Read_File_Into_Tables(file, session.project.ProjectTempo))
            return Cli_Outcome::Failed(file.string(), tool.dialogs.shown.empty()
                                                          ? "is not a keyboard layout"
                                                          : tool.dialogs.shown.back().text);
    }
    layout.KeyboardTuning = script.tuning;
    layout.KeyboardTuning_Changed();
    layout.NotesOctave = script.notes_octave;
    layout.QChordsOctave = script.qchords_octave;
    return {};
}

Cli_Outcome Set_Edges(Cli_Session& tool, const Key_Script& script) {
    for (const Key_Script::Edge& edge : script.edges) {
        const std::int64_t atNs = edge.ms * NS_PER_MS;
        if (edge.key < Key_Script::FIRST_MIDI_KEY) {
            tool.keys.edges.push_back({atNs, static_cast<std::uint8_t>(edge.key), edge.down});
        } else {
            tool.midi.messages.push_back({atNs, edge.down ? MIDI_NOTE_ON : MIDI_NOTE_OFF,
                                          static_cast<std::uint8_t>(edge.key - Key_Script::FIRST_MIDI_KEY),
                                          static_cast<std::uint8_t>(edge.velocity)});
        }
    }
    if (!script.Has_Midi_Keys())
        return {};
    tool.session->settings.Global_MidiSetup_InDevice = Scripted_Midi_Ports::PORT_ID;
    return tool.session->Select_Input(1) ? Cli_Outcome{}
                                         : Cli_Outcome::Failed("", "the scripted MIDI keys cannot be opened");
}

Cli_Outcome Write_Text(const fs::path& path, const std::string& text) {
    std::string error;
    Byte_Writer bytes;
    bytes.Write_Text(text);
    return Replace_File(path, bytes.Bytes(), error) ? Cli_Outcome{}
                                                    : Cli_Outcome::Failed(path.string(), error);
}

Cli_Outcome Write_Song(Cli_Session& tool, const fs::path& out) {
    if (Lower_Ascii(out.extension().string()) == ".tvx")
        return Save_Song(tool, out);
    std::vector<std::uint8_t> bytes;
    const Cli_Outcome outcome = Song_Bytes(tool, bytes);
    return outcome.Done() ? Write_Text(out, Dump_Song(*tool.session, bytes)) : outcome;
}

} // namespace

Cli_Outcome Perform(const Cli_Options& options, const Perform_Call& call) {
    Key_Script script;
    Cli_Session tool;
    Cli_Outcome outcome = Check_Call(call);
    if (outcome.Done())
        outcome = Read_Key_Script(call.keys, script);
    if (outcome.Done())
        outcome = tool.Open(options, call.wav.empty() ? Cli_Sound::None : Cli_Sound::Pulled);
    if (outcome.Done())
        outcome = Open_Song(tool, call.song, New_Song::With_One_Channel);
    if (outcome.Done())
        outcome = Set_Keyboard(tool, script, call.keys);
    if (outcome.Done())
        outcome = Set_Edges(tool, script);
    if (!outcome.Done())
        return outcome;

    Session& session = *tool.session;
    const std::int32_t channel = script.channel.value_or(First_Channel(session));
    if (session.channels->ChannelI(channel) < 0)
        return Cli_Outcome::Failed(call.keys.string(),
                                   "the song has no channel with the ID " + std::to_string(channel));
    session.options.Global_Rec_WaitForKey = script.wait_for_key;
    session.options.Global_UseThreadEngine = call.threadEngine;
    session.options.Metronome = script.metronome;

    Sound_Keeper sound(tool.synthesizer.get());
    outcome = sound.Open(call.wav);
    if (!outcome.Done())
        return outcome;
    Trace_Writer trace(tool.counter, session.recorder->Clock(), script.position);
    session.output->Set_Observer(&trace);
    session.observers.push_back(&trace);
    Progress_Line progress("Playing", script.end_ms);
    tool.loop.betweenRounds = [&](std::int64_t nowMs) {
        // What is due within the last millisecond is posted in the round to come.
        sound.Follow(tool.counter.Now_Ns() - NS_PER_MS);
        progress.Show(nowMs);
        if (nowMs >= script.end_ms)
            session.transport.StopTransportRequest = true;
    };
    const bool recorded =
        session.recorder->StartRecording(script.position, static_cast<float>(script.speed / 100.0), channel,
                                         script.overwrite, script.metronome, false);
    session.output->Set_Observer(nullptr);
    session.observers.clear();
    progress.Clear();
    if (!recorded)
        return Cli_Outcome::Failed("", tool.dialogs.shown.empty() ? "the recording could not start"
                                                                  : tool.dialogs.shown.back().text);

    sound.Follow(tool.counter.Now_Ns());
    outcome = sound.Keep();
    if (outcome.Done() && !call.trace.empty())
        outcome = Write_Text(call.trace, trace.Text());
    return outcome.Done() ? Write_Song(tool, call.out) : outcome;
}

} // namespace tonvex
