#pragma once

#include "cli/cli_outcome.h"
#include "platform/audio_encoder.h"
#include "platform/offline_sound_door.h"

#include <filesystem>
#include <memory>

namespace tonvex {

/// Pulls the synthesizer along with a run on simulated time, into a WAV file of 16 bits. The file begins with
/// the run. One thread.
class Sound_Keeper {
public:
    static constexpr double LONGEST_TAIL_S = 8.0;

    /// Null: nothing is kept, and nothing fails. The door outlives the keeper.
    explicit Sound_Keeper(Offline_Sound_Door* door) : synthesizer(door) {}

    /// Begins a file; until Keep there is none of that name.
    Cli_Outcome Open(const std::filesystem::path& path);
    /// All that was due until then has been posted.
    void Follow(std::int64_t ns);
    /// The release of the last voices, and the file comes to its name.
    Cli_Outcome Keep();

private:
    void Take(std::span<const float> stereo);

    Offline_Sound_Door* synthesizer;
    std::filesystem::path file;
    std::unique_ptr<Audio_Encoder> encoder;
    std::size_t framesToSkip = 0;
    Offline_Sound_Door::Sample_Sink sink = [this](std::span<const float> stereo) { Take(stereo); };
};

} // namespace tonvex
