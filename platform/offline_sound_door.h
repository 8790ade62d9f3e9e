#pragma once

#include "platform/synth_sound_door.h"

#include <cstdint>
#include <functional>
#include <span>

namespace tonvex {

/// The synthesizer without a device and without a clock of its own: samples come out when they are
/// pulled, in step with a counter that is usually simulated. The same messages give the same samples each
/// time.
///
/// Use: make, Open, then after each round of the run call Render_Until(counter.Now_Ns(), sink); at the end
/// Render_Tail. Frame 0 of the stream belongs to the counter's reading at Open. A message sounds one block
/// (Latency_Frames) after its due moment on the synthesizer's grid of 64 frames, exactly as with a device;
/// whoever keeps the samples may cut that many frames off the beginning.
/// One thread calls everything (Post_From_Player may come from the player thread while it runs).
class Offline_Sound_Door final : public Synth_Sound_Door {
public:
    /// Interleaved stereo, left first, 1.0 is full scale; the span is valid during the call alone.
    using Sample_Sink = std::function<void(std::span<const float> stereo)>;

    static constexpr int DEFAULT_BLOCK = 512;

    /// blockFrames 64 to 8192.
    explicit Offline_Sound_Door(const Millisecond_Counter& counter, int blockFrames = DEFAULT_BLOCK,
                                int sampleRate = 44100);
    ~Offline_Sound_Door() override;

    /// The request is not looked at: block and rate are those of the constructor.
    bool Open(const Sound_Request& request, std::string& error) override;
    void Close() override;
    Sound_Status Status() override;
    int Minimum_Buffer_Ms() const override;

    /// Renders every whole block that a device would have asked for up to ns, that moment included; ns is
    /// Millisecond_Counter time. Messages due before ns must have been posted: in a round that advanced the
    /// counter, post first. Nothing when not open. An empty sink lets the samples go.
    void Render_Until(std::int64_t ns, const Sample_Sink& sink);
    /// Goes on until nothing is posted and no voice sounds any more, at most maxSeconds. Time runs on
    /// beyond the counter's, so no Render_Until may follow.
    void Render_Tail(double maxSeconds, const Sample_Sink& sink);

    /// Frames given to sinks since Open.
    std::int64_t Frames_Rendered() const noexcept { return framesRendered; }
    int Latency_Frames() const noexcept { return static_cast<int>(core.Delay_Frames()); }
    int Sample_Rate() const noexcept { return sampleRate; }

private:
    void Render_Block(const Sample_Sink& sink);

    int blockFrames;
    int sampleRate;
    std::int64_t openedNs = 0;
    std::int64_t framesRendered = 0;
    std::vector<float> block;
};

} // namespace tonvex
