#pragma once

#include "platform/effects/effect_processor.h"

namespace tonvex {

/// tanh, taken as its mean along the line from one frame to the next, which keeps mirrored harmonics low
/// (J. D. Parker, V. Zavalishin, E. Le Bivic, antiderivative antialiasing). Half a frame late.
class Soft_Limit {
public:
    /// EFFECT_PIECE frames of any size, in place.
    void Process(float* samples) noexcept;

private:
    /// Of the frame before.
    float driven = 0.0F;
    float limited = 0.0F;
    float bend = LN_2;

    static constexpr float LN_2 = 0.69314718F;
};

} // namespace tonvex
