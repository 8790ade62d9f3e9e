#pragma once

#include "platform/effects/effect_settings.h"
#include "platform/effects/ramp.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tonvex {

/// Frames that an effect works on at a time.
inline constexpr int EFFECT_PIECE = 64;
using Effect_Piece = std::array<float, EFFECT_PIECE>;
/// Below this (-120 dB) an effect's memory counts as silent.
inline constexpr float INAUDIBLE = 1e-6F;

/// One effect of one slot. Made on the interface thread with all the memory that it will need; everything
/// else on the audio thread: neither allocates nor locks nor throws. Values are bounded ones.
class Effect_Processor {
public:
    virtual ~Effect_Processor() = default;
    /// New values, reached without a click; atOnce while nothing sounds.
    virtual void Set(const Effect_Values& values, bool atOnce) noexcept = 0;
    /// EFFECT_PIECE frames of each side, in place.
    virtual void Process(float* left, float* right) noexcept = 0;
    /// Forgets what it heard.
    virtual void Clear() noexcept = 0;
    /// Begins to hear. In the midst of a sound that enters the memory within frames, so that its cut edge is
    /// not repeated; 0 between sounds.
    void Enter(int frames) noexcept {
        entry.Jump(0.0F);
        entry.Move(1.0F, frames);
    }
    /// True when silence in gives silence out: nothing in its memory can be heard.
    bool Rests() const noexcept { return quietFrames >= memoryFrames; }

protected:
    explicit Effect_Processor(int rate) noexcept : sampleRate(rate) {}
    /// The highest magnitude of a piece.
    static float Peak_Of(const float* samples) noexcept {
        std::array<float, 8> peaks{}; // side by side
        for (std::size_t i = 0; i < EFFECT_PIECE; i += peaks.size())
            for (std::size_t n = 0; n < peaks.size(); ++n)
                peaks[n] = std::max(peaks[n], std::fabs(samples[i + n]));
        return *std::max_element(peaks.begin(), peaks.end());
    }
    /// share of the wet signal, the rest of what came in.
    static void Blend(float* samples, const Effect_Piece& wet, const Effect_Piece& share) noexcept {
        for (std::size_t i = 0; i < EFFECT_PIECE; ++i)
            samples[i] += share[i] * (wet[i] - samples[i]);
    }
    /// After each piece: the highest magnitude that went into the memory.
    void Note_Memory(float peak) noexcept {
        quietFrames = peak > INAUDIBLE ? 0 : std::min(quietFrames + EFFECT_PIECE, memoryFrames);
    }
    void Memory_Is_Empty() noexcept { quietFrames = memoryFrames; }
    /// How long a frame stays in the memory before it has been heard.
    void Set_Memory(int frames) noexcept { memoryFrames = frames; }
    int Frames(double ms) const noexcept {
        return std::max(1, static_cast<int>(std::lround(ms * sampleRate / 1000.0)));
    }
    /// Share of the way that a Glide takes a piece, for a time constant in ms.
    float Share(double ms) const noexcept {
        return static_cast<float>(1.0 - std::exp(-EFFECT_PIECE * 1000.0 / (ms * sampleRate)));
    }

    const int sampleRate;
    Ramp entry{1.0F}; ///< of what comes in to the memory

private:
    int quietFrames = 0;
    int memoryFrames = 0;
};

/// 1 for 0 dB; 0 at SILENT_DB and below.
inline float Gain_Of_Db(float db) noexcept {
    return db <= SILENT_DB ? 0.0F : std::pow(10.0F, db / 20.0F);
}

/// What may go round in a feedback: as it is up to full scale, then bent so that it stays below twice that.
inline float Contained(float value) noexcept {
    const float size = std::fabs(value);
    if (size <= 1.0F)
        return value;
    const float over = size - 1.0F;
    return std::copysign(1.0F + over / (1.0F + over), value);
}

} // namespace tonvex
