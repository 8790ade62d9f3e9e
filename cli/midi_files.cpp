#include "cli/midi_files.h"

#include "cli/song_source.h"
#include "platform/local_day.h"

namespace tonvex {

Cli_Outcome Export_Midi(const Cli_Options& options, const Midi_Call& call) {
    Cli_Session tool;
    Cli_Outcome outcome = tool.Open(options, Cli_Sound::None);
    if (outcome.Done())
        outcome = Open_Song(tool, call.song, New_Song::With_One_Channel);
    if (!outcome.Done())
        return outcome;
    const bool written =
        tool.session->midiExport->Export(call.out, {call.splitDrums, Local_Day()}) == Work_Outcome::Done;
    return written ? Cli_Outcome{} : Told_Failure(tool, call.out.string());
}

Cli_Outcome Import_Midi(const Cli_Options& options, const Midi_Call& call) {
    Cli_Session tool;
    Cli_Outcome outcome = tool.Open(options, Cli_Sound::None);
    if (outcome.Done())
        outcome = Import_Song(tool, call.song);
    return outcome.Done() ? Save_Song(tool, call.out) : outcome;
}

} // namespace tonvex
