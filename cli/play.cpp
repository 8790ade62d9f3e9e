#include "cli/play.h"

#include "base/byte_cursor.h"
#include "base/file_io.h"
#include "cli/progress_line.h"
#include "cli/song_source.h"
#include "cli/sound_keeper.h"
#include "cli/trace_writer.h"

#include <cmath>

namespace tonvex {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t NS_PER_MS = 1'000'000;

Cli_Outcome Check_Outputs(const Play_Call& call) {
    if (!call.wav.empty() && call.wav.lexically_normal() == call.trace.lexically_normal())
        return Cli_Outcome::Wrong_Words(call.wav.string() + " is named for two outputs");
    for (const fs::path& output : {call.trace, call.wav}) {
        std::error_code error;
        const fs::path folder = output.has_parent_path() ? output.parent_path() : fs::path(".");
        if (!output.empty() && !fs::is_directory(folder, error))
            return Cli_Outcome::Failed(output.string(), "its folder does not exist");
    }
    return {};
}

/// What a run on the machine's clock sounded, from its beginning on.
Cli_Outcome Keep_Device_Sound(Synth_Sound_Door& device, std::size_t firstFrame, const fs::path& wav) {
    const auto stereo = device.Kept_Samples().subspan(firstFrame * 2);
    std::string error;
    Audio_Format format{Audio_Kind::Wav, device.Status().sampleRate};
    if (!Fit(format, error))
        return Cli_Outcome::Failed(wav.string(), error);
    const auto encoder = Open_Audio_Encoder(wav, format, error);
    if (encoder != nullptr)
        encoder->Write(stereo);
    return encoder != nullptr && encoder->Keep(error) ? Cli_Outcome{}
                                                      : Cli_Outcome::Failed(wav.string(), error);
}

/// What is left of the song, in ms of the machine's clock.
double Length_Ms(const Session& session, const Play_Call& call) {
    const double end = session.channels->Longest_Channel_Beats();
    const double songMs = Beats_To_MS(end, session.tempoChanges, session.project) -
                          Beats_To_MS(call.fromBeat, session.tempoChanges, session.project);
    return std::max(songMs, 0.0) * 100.0 / call.speedPercent;
}

class Playing {
public:
    Playing(Cli_Session& theTool, const Play_Call& theCall)
        : tool(theTool), call(theCall), session(*theTool.session), sound(theTool.synthesizer.get()),
          progress("Playing", static_cast<std::int64_t>(Length_Ms(session, call))) {}

    Cli_Outcome Run() {
        if (tool.device != nullptr && !call.wav.empty()) {
            const double seconds = Length_Ms(session, call) / 1000.0 + 2.0 * Sound_Keeper::LONGEST_TAIL_S;
            tool.device->Keep_Samples(
                static_cast<std::size_t>(seconds * session.output->Sound().Status().sampleRate));
            if (!session.Reopen_Output())
                return Cli_Outcome::Failed("", tool.dialogs.shown.back().text);
        }
        Cli_Outcome outcome = sound.Open(call.wav);
        if (!outcome.Done())
            return outcome;
        const Millisecond_Counter& clock = session.doors.counter;
        const std::int64_t startMs = clock.Now_Ms();
        const auto follow = [&] {
            sound.Follow(clock.Now_Ns() - NS_PER_MS);
            progress.Show(clock.Now_Ms() - startMs);
        };
        tool.loop.betweenRounds = [&](std::int64_t) { follow(); };
        tool.realLoop.betweenRounds = follow;
        const std::size_t firstFrame = tool.device == nullptr ? 0 : tool.device->Kept_Samples().size() / 2;
        Trace_Writer trace(clock, session.player->Clock(), call.fromBeat);
        session.output->Set_Observer(&trace);
        const std::size_t told = tool.dialogs.shown.size();
        (void)session.player->Transport_Play(call.fromBeat, false,
                                             static_cast<float>(call.speedPercent / 100.0));
        session.output->Set_Observer(nullptr);
        if (tool.device != nullptr)
            Let_Ring();
        progress.Clear();
        if (tool.dialogs.shown.size() > told)
            return Cli_Outcome::Failed("", tool.dialogs.shown.back().text);
        return Keep(clock, trace, firstFrame);
    }

private:
    /// On a device: until the last voices have ended.
    void Let_Ring() {
        const std::int64_t endMs =
            session.doors.counter.Now_Ms() + static_cast<std::int64_t>(Sound_Keeper::LONGEST_TAIL_S * 1000.0);
        int quietRounds = 0;
        constexpr int QUIET_ROUNDS = 300;
        tool.realLoop.betweenRounds = {};
        tool.realLoop.Run([&] {
            const Sound_Status status = tool.device->Status();
            quietRounds = status.peakLeft + status.peakRight > 0.0F ? 0 : quietRounds + 1;
            return quietRounds < QUIET_ROUNDS && session.doors.counter.Now_Ms() < endMs;
        });
    }
    Cli_Outcome Keep(const Millisecond_Counter& clock, const Trace_Writer& trace, std::size_t firstFrame) {
        sound.Follow(clock.Now_Ns());
        Cli_Outcome outcome = sound.Keep();
        if (outcome.Done() && tool.device != nullptr && !call.wav.empty())
            outcome = Keep_Device_Sound(*tool.device, firstFrame, call.wav);
        if (!outcome.Done() || call.trace.empty())
            return outcome;
        Byte_Writer bytes;
        bytes.Write_Text(trace.Text());
        std::string error;
        return Replace_File(call.trace, bytes.Bytes(), error)
                   ? Cli_Outcome{}
                   : Cli_Outcome::Failed(call.trace.string(), error);
    }

    Cli_Session& tool;
    const Play_Call& call;
    Session& session;
    Sound_Keeper sound;
    Progress_Line progress;
};

} // namespace

Cli_Outcome Play(const Cli_Options& options, const Play_Call& call) {
    Cli_Outcome outcome = Check_Outputs(call);
    Cli_Session tool;
    const Cli_Sound wanted = !call.onVirtualTime ? Cli_Sound::Device
                             : call.wav.empty()  ? Cli_Sound::None
                                                 : Cli_Sound::Pulled;
    if (outcome.Done())
        outcome = tool.Open(options, wanted);
    if (outcome.Done())
        outcome = Open_Song(tool, call.song, New_Song::With_One_Channel);
    if (outcome.Done())
        outcome = Use_Named_Fonts(tool, options);
    if (!outcome.Done())
        return outcome;
    tool.session->options.Global_UseThreadEngine = call.threadEngine;
    return Playing(tool, call).Run();
}

} // namespace tonvex
