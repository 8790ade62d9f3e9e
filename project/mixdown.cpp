#include "project/mixdown.h"

#include "engine/midi_cue_output.h"
#include "engine/recorder_class.h"
#include "platform/offline_sound_door.h"
#include "platform/scripted_midi_ports.h"
#include "project/loudness_meter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

namespace tonvex {

namespace {

constexpr double FULL_SCALE_DB = 0.0;
constexpr std::int64_t SECONDS_A_MINUTE = 60;

/// What the synthesizer sounds, measured, into the file.
class Mixdown_Sink {
public:
    /// framesToSkip: sound that comes before the song's first moment.
    Mixdown_Sink(Audio_Encoder& target, int rate, int framesToSkip)
        : encoder(target), meter(rate), toSkip(static_cast<std::size_t>(framesToSkip)) {}

    void Take(std::span<const float> stereo) {
        const std::size_t skipped = std::min(toSkip, stereo.size() / 2);
        toSkip -= skipped;
        const auto heard = stereo.subspan(skipped * 2);
        meter.Add(heard);
        frames += static_cast<std::int64_t>(heard.size() / 2);
        written = written && encoder.Write(heard);
    }
    bool Written() const noexcept { return written; }
    std::int64_t Frames() const noexcept { return frames; }
    const Loudness_Meter& Meter() const noexcept { return meter; }

private:
    Audio_Encoder& encoder;
    Loudness_Meter meter;
    std::size_t toSkip;
    std::int64_t frames = 0;
    bool written = true;
};

/// Asks and tells at most so often, since an answer may repaint windows.
class Paced_Progress {
public:
    Paced_Progress(Work_Progress& shown, double songMs) : progress(shown), whole(std::max(songMs, 1.0)) {}

    bool Go_On(std::int64_t doneMs) {
        constexpr std::int64_t ROUNDS_BETWEEN_LOOKS = 32;
        constexpr auto PAUSE = std::chrono::milliseconds(50);
        if (doneMs % ROUNDS_BETWEEN_LOOKS != 0 || std::chrono::steady_clock::now() < next)
            return true;
        next = std::chrono::steady_clock::now() + PAUSE;
        const double percent = std::min(100.0 * static_cast<double>(doneMs) / whole, 99.0);
        return progress.Show("Mixing the song down", static_cast<int>(percent));
    }

private:
    Work_Progress& progress;
    double whole;
    std::chrono::steady_clock::time_point next = std::chrono::steady_clock::now();
};

/// Rounds as fast as they go, the synthesizer pulled along. The release of the last voices is sounded here,
/// before the transport puts patches and volumes back.
class Mixdown_Loop final : public Run_Loop {
public:
    Mixdown_Loop(Simulated_Counter& clock, Offline_Sound_Door& door, Mixdown_Sink& target,
                 Paced_Progress shown, double tail)
        : counter(clock), synthesizer(door), sink(target), progress(shown), tailSeconds(tail) {}

    void Run(const std::function<bool()>& round) override {
        const auto take = [this](std::span<const float> stereo) { sink.Take(stereo); };
        bool more = true;
        while (more) {
            counter.Advance_Ms(1);
            more = round();
            synthesizer.Render_Until(counter.Now_Ns(), take);
            cancelled = !progress.Go_On(counter.Now_Ms());
            if (cancelled || !sink.Written())
                return;
        }
        synthesizer.Render_Tail(tailSeconds, take);
    }
    void Let_Messages_Run() override {}
    bool Cancelled() const noexcept { return cancelled; }

private:
    Simulated_Counter& counter;
    Offline_Sound_Door& synthesizer;
    Mixdown_Sink& sink;
    Paced_Progress progress;
    double tailSeconds;
    bool cancelled = false;
};

Mixdown_Result Failed(std::string error) {
    Mixdown_Result result;
    result.error = std::move(error);
    return result;
}

std::string One_Decimal(double value) {
    if (!std::isfinite(value))
        return "none";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    return text.data();
}

} // namespace

Mixdown::Mixdown(const Transport_Parts& sessionParts, std::vector<Font_Source> soundFonts)
    : session(sessionParts), fonts(std::move(soundFonts)) {}

bool Mixdown::Has_Something_To_Play() const {
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (session.channels.Is_Live_Row(row) && session.channels.Store(row).GetTotalEvents() >= 0)
            return true;
    }
    return false;
}

Mixdown_Result Mixdown::Run(const std::filesystem::path& target, const Audio_Format& format,
                            Work_Progress& progress, double tailSeconds) const {
    std::string error;
    const auto encoder = Open_Audio_Encoder(target, format, error);
    if (encoder == nullptr)
        return Failed(error);
    Mixdown_Result result = Run(*encoder, format.rate, progress, tailSeconds);
    const bool floating = format.kind == Audio_Kind::Wav && format.quality == 32;
    result.cut = result.peakDb > FULL_SCALE_DB && !floating;
    return result;
}

Mixdown_Result Mixdown::Run(Audio_Encoder& encoder, int rate, Work_Progress& progress,
                            double tailSeconds) const {
    if (fonts.empty())
        return Failed("Mixing down needs the SoundFont synthesizer as the output, and a soundfont");
    if (!Has_Something_To_Play())
        return Failed("There is nothing in the song to be heard");
    Simulated_Counter counter;
    Recorded_Dialogs dialogs;
    Scripted_Midi_Ports noPorts(counter);
    Offline_Sound_Door synthesizer(counter, Offline_Sound_Door::DEFAULT_BLOCK, rate);
    synthesizer.Start_With_Fonts(fonts);
    midiapi output(synthesizer, noPorts, dialogs, counter, session.channels);
    if (!output.Midi_OpenDevice(midiapi::SYNTH_DEVICE))
        return Failed(dialogs.shown.back().text);

    Mixdown_Sink sink(encoder, rate, synthesizer.Latency_Frames());
    const double songMs =
        Beats_To_MS(session.channels.Longest_Channel_Beats(), session.tempoChanges, session.project);
    Mixdown_Loop loop(counter, synthesizer, sink, Paced_Progress(progress, songMs), tailSeconds);
    Transport_State state;
    Transport_Options options;
    std::vector<Transport_Observer*> nobody;
    GCM_Midi gcm(output, session.channels, state);
    Midi_Cue_Output cueOutput(synthesizer, noPorts);
    CueEngine cue(counter, cueOutput, Cue_Drive::Stepped);
    RenderModule render(session.channels, gcm, cue, loop, session.Chord_Parts());
    Player_Recorder player({session.channels, session.tempoChanges, session.project, output, gcm,
                            session.input, session.layout, session.hub, state, options, loop, counter,
                            dialogs, nobody, session.fingerpicks, cue, render});
    (void)cue.InitDLL(); // without a thread it cannot fail
    gcm.GCM_SendAllEffects();
    (void)player.Transport_Play(0.0, false, 1.0F);

    Mixdown_Result result;
    if (loop.Cancelled()) {
        result.outcome = Mixdown_Result::Outcome::Cancelled;
        return result;
    }
    if (!encoder.Keep(result.error))
        return result;
    result.outcome = Mixdown_Result::Outcome::Done;
    result.seconds = static_cast<double>(sink.Frames()) / rate;
    result.peakDb = Decibels(static_cast<double>(sink.Meter().Peak()));
    result.loudness = sink.Meter().Loudness();
    return result;
}

std::string Mixdown_Summary(const Mixdown_Result& result) {
    const auto seconds = static_cast<std::int64_t>(result.seconds);
    std::array<char, 64> length{};
    std::snprintf(length.data(), length.size(), "%lld:%02lld",
                  static_cast<long long>(seconds / SECONDS_A_MINUTE),
                  static_cast<long long>(seconds % SECONDS_A_MINUTE));
    std::string text = std::string("Length ") + length.data() + ", peak " + One_Decimal(result.peakDb) +
                       " dB, loudness " + One_Decimal(result.loudness) + " LUFS";
    if (result.cut)
        text += ". The loudest places are cut off; turn the channels down by " +
                One_Decimal(std::ceil(result.peakDb * 10.0) / 10.0) + " dB to keep them";
    return text;
}

} // namespace tonvex
