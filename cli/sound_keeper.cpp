#include "cli/sound_keeper.h"

#include <algorithm>

namespace tonvex {

Cli_Outcome Sound_Keeper::Open(const std::filesystem::path& path) {
    if (synthesizer == nullptr)
        return {};
    file = path;
    // Sound comes one block after its moment: without that block, sound and song begin together.
    framesToSkip = static_cast<std::size_t>(synthesizer->Latency_Frames());
    Audio_Format format{Audio_Kind::Wav, synthesizer->Sample_Rate()};
    std::string error;
    if (Fit(format, error))
        encoder = Open_Audio_Encoder(path, format, error);
    return encoder == nullptr ? Cli_Outcome::Failed(path.string(), error) : Cli_Outcome{};
}

void Sound_Keeper::Take(std::span<const float> stereo) {
    const std::size_t skipped = std::min(framesToSkip, stereo.size() / 2);
    framesToSkip -= skipped;
    encoder->Write(stereo.subspan(skipped * 2));
}

void Sound_Keeper::Follow(std::int64_t ns) {
    if (encoder != nullptr)
        synthesizer->Render_Until(ns, sink);
}

Cli_Outcome Sound_Keeper::Keep() {
    if (encoder == nullptr)
        return {};
    synthesizer->Render_Tail(LONGEST_TAIL_S, sink);
    std::string error;
    return encoder->Keep(error) ? Cli_Outcome{} : Cli_Outcome::Failed(file.string(), error);
}

} // namespace tonvex
