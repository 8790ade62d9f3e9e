#pragma once

#include "platform/effects/effect_processor.h"
#include "platform/effects/ramp.h"
#include "platform/effects/swept_line.h"

namespace tonvex {

/// Chorus and flanger: a short delay whose length swings around its middle by depth per cent, on the right
/// side ahead of the left by a phase, partly fed back. They differ in the longest delay alone.
class Sweep final : public Effect_Processor {
public:
    /// longestMs: of the delay's middle; with full depth it swings to twice that.
    Sweep(int sampleRate, double longestMs);
    void Set(const Effect_Values& values, bool atOnce) noexcept override;
    void Process(float* left, float* right) noexcept override;
    void Clear() noexcept override;
    /// -1 to 1 at a phase in turns; roundness 0 for the triangle, 1 for the sine.
    static float Wave(double turns, double roundness) noexcept;

private:
    float Delay_At(double turns) const noexcept;

    Swept_Line leftLine;
    Swept_Line rightLine;
    Ramp mix;
    Ramp feedback;
    Glide delayFrames;
    Glide depth;     ///< 0 to 1
    Glide roundness; ///< 0 triangle, 1 sine
    Glide ahead;     ///< turns of the right side before the left
    double turnsAPiece = 0.0;
    double turns = 0.0;
    float leftDelay = 0.0F; ///< at the end of the piece before
    float rightDelay = 0.0F;
    bool placed = false; ///< the two above hold
};

} // namespace tonvex
