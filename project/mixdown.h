#pragma once

#include "engine/transport_parts.h"
#include "platform/audio_encoder.h"
#include "platform/synth_instance.h"
#include "platform/work_progress.h"

#include <string>
#include <vector>

namespace tonvex {

/// How a mixdown ended, and what it holds.
struct Mixdown_Result {
    enum class Outcome { Done, Cancelled, Failed };
    Outcome outcome = Outcome::Failed;
    std::string error; ///< of a failed one
    double seconds = 0.0;
    double peakDb =
        0.0;          ///< largest sample, dB below (or, above 0, beyond) full scale; minus infinity: silence
    bool cut = false; ///< what lies beyond full scale is cut off in the file
    double loudness = 0.0; ///< integrated, LUFS (see Loudness_Meter); minus infinity: silence
};

/// Mixes the song down: plays it from its start as the Play button does, on a clock that goes as fast as the
/// machine can, into a synthesizer of its own. What the session has open (output, clock, mute table, run
/// state, views) is neither used nor changed. The master volume belongs to the listener and not to the song:
/// a mixdown has it at full. The file begins with the song and ends with the release of the last voices.
/// Memory does not grow with the song's length. The same song gives the same samples each time. Interface
/// thread.
class Mixdown {
public:
    /// Longest release behind the song's end.
    static constexpr double LONGEST_TAIL_S = 8.0;

    /// session: its song and tables; they outlive the mixdown. fonts: as patches name them.
    Mixdown(const Transport_Parts& session, std::vector<Font_Source> fonts);

    /// format: as Fit leaves it. progress is told how far the song is and asked whether to go on.
    /// No song runs meanwhile. What was at the target stands untouched unless the outcome is Done.
    Mixdown_Result Run(const std::filesystem::path& target, const Audio_Format& format,
                       Work_Progress& progress, double tailSeconds = LONGEST_TAIL_S) const;
    /// The same into an encoder for rate frames a second.
    Mixdown_Result Run(Audio_Encoder& encoder, int rate, Work_Progress& progress, double tailSeconds) const;

private:
    bool Has_Something_To_Play() const;

    Transport_Parts session;
    std::vector<Font_Source> fonts;
};

/// "3:05 long, peak -4.2 dB, loudness -18.3 LUFS", with a warning when the peak lies beyond full scale.
std::string Mixdown_Summary(const Mixdown_Result& result);

} // namespace tonvex
