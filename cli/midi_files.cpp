#include "cli/midi_files.h"

#include "cli/open_song.h"
#include "platform/local_day.h"

namespace tonvex {

Cli_Outcome Export_Midi(const Cli_Options& options, const Midi_Call& call) {
    Cli_Session cli;
    Cli_Outcome outcome = cli.Open(options, false);
    if (outcome.Done())
        outcome = Open_Song(cli, call.song);
    if (!outcome.Done())
        return outcome;
    const bool written =
        cli.session->midiExport->Export(call.out, {call.splitDrums, Local_Day()}) == Work_Outcome::Done;
    return written ? Cli_Outcome{} : Told_Failure(cli, call.out.string());
}

Cli_Outcome Import_Midi(const Cli_Options& options, const Midi_Call& call) {
    Cli_Session cli;
    Cli_Outcome outcome = cli.Open(options, false);
    if (!outcome.Done())
        return outcome;
    if (cli.session->midiImport->ImportMidi(call.song) != Work_Outcome::Done)
        return Told_Failure(cli, call.song);
    return cli.session->files->SaveProject(call.out, Project_Files::SAVE_AS, true)
               ? Cli_Outcome{}
               : Told_Failure(cli, call.out.string());
}

} // namespace tonvex
