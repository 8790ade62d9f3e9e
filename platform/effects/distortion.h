#pragma once

#include "platform/effects/effect_processor.h"
#include "platform/effects/ramp.h"
#include "platform/effects/soft_limit.h"

#include <array>

namespace tonvex {

/// Lowpass, drive into a soft limit, a band of harmonics raised by 6 dB around the centre frequency, gain.
class Distortion final : public Effect_Processor {
public:
    explicit Distortion(int sampleRate);
    void Set(const Effect_Values& values, bool atOnce) noexcept override;
    void Process(float* left, float* right) noexcept override;
    void Clear() noexcept override;
    /// Factor before the limit, for an edge of 0 to 100 per cent.
    static float Drive_Of(float edge) noexcept;

private:
    /// Two-pole state variable filter, trapezoidal: stays stable while its frequency moves. Its two states
    /// are worked out from those before and the input at once, so that a frame waits for the last as little
    /// as can be.
    struct Filter {
        /// What stays as it is for a piece.
        struct Setting {
            Setting(float warped, float damping) noexcept;
            float firstOfFirst, firstOfSecond, firstOfIn;
            float secondOfFirst, secondOfSecond, secondOfIn;
        };
        struct Out {
            float low;
            float band;
        };
        Out Pass(float in, const Setting& at) noexcept {
            const float firstNow = at.firstOfFirst * first + (at.firstOfSecond * second + at.firstOfIn * in);
            const float secondNow =
                at.secondOfFirst * first + (at.secondOfSecond * second + at.secondOfIn * in);
            const Out out = {0.5F * (second + secondNow), 0.5F * (first + firstNow)};
            first = firstNow;
            second = secondNow;
            return out;
        }
        float first = 0.0F;
        float second = 0.0F;
    };
    struct Side {
        Filter before;
        Soft_Limit limit;
        Filter behind;
    };
    /// tan(pi f / rate), below half the rate.
    float Warped(float hz) const noexcept;

    std::array<Side, 2> sides;
    Ramp gain;
    Ramp drive;
    Glide lowpass; ///< warped, as is the centre
    Glide centre;
    Glide bandwidth; ///< over the centre: the band's damping
};

} // namespace tonvex
