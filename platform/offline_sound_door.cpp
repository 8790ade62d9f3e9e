#include "platform/offline_sound_door.h"

#include <algorithm>

namespace tonvex {

Offline_Sound_Door::Offline_Sound_Door(const Millisecond_Counter& clock, int frames, int rate)
    : Synth_Sound_Door(clock), blockFrames(std::clamp(frames, 64, 8192)),
      sampleRate(std::clamp(rate, 8000, 96000)), block(static_cast<std::size_t>(blockFrames) * 2) {}

Offline_Sound_Door::~Offline_Sound_Door() = default;

bool Offline_Sound_Door::Open(const Sound_Request&, std::string& error) {
    Close();
    if (!Prepare_Stream(sampleRate, blockFrames, 0.0, error))
        return false;
    openedNs = counter.Now_Ns();
    framesRendered = 0;
    core.Fix_Time(openedNs);
    Stream_Runs(true);
    return true;
}

void Offline_Sound_Door::Close() {
    Stream_Runs(false);
}

Sound_Status Offline_Sound_Door::Status() {
    Sound_Status status;
    core.Collect_Garbage();
    core.Fill(status);
    status.open = Is_Running();
    status.driver = "Offline";
    status.sampleRate = sampleRate;
    status.blockFrames = blockFrames;
    return status;
}

int Offline_Sound_Door::Minimum_Buffer_Ms() const {
    return 2 * blockFrames * 1000 / sampleRate;
}

void Offline_Sound_Door::Render_Until(std::int64_t ns, const Sample_Sink& sink) {
    const double reached = static_cast<double>(ns - openedNs) * sampleRate / 1e9;
    while (Is_Running() && static_cast<double>(framesRendered) <= reached)
        Render_Block(sink);
}

void Offline_Sound_Door::Render_Tail(double maxSeconds, const Sample_Sink& sink) {
    const double end = static_cast<double>(framesRendered) + maxSeconds * sampleRate;
    while (Is_Running() && static_cast<double>(framesRendered) < end && !core.At_Rest())
        Render_Block(sink);
}

void Offline_Sound_Door::Render_Block(const Sample_Sink& sink) {
    core.Pull(block.data(), blockFrames);
    framesRendered += blockFrames;
    if (sink)
        sink(block);
}

} // namespace tonvex
