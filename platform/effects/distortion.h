#pragma once

#include "platform/effects/effect_processor.h"
#include "platform/effects/ramp.h"

#include <array>

namespace tonvex {

/// Lowpass, drive into a soft limit (tanh, by its integral, which keeps mirrored harmonics low), a band of
/// harmonics raised by 6 dB around the centre frequency, gain.
class Distortion final : public Effect_Processor {
public:
    explicit Distortion(int sampleRate);
    void Set(const Effect_Values& values, bool atOnce) noexcept override;
    void Process(float* left, float* right) noexcept override;
    void Clear() noexcept override;
    /// Factor before the limit, for an edge of 0 to 100 per cent.
    static float Drive_Of(float edge) noexcept;

private:
    /// Two-pole state variable filter, trapezoidal: stays stable while its frequency moves.
    struct Filter {
        /// What stays as it is for a piece.
        struct Setting {
            Setting(float warped, float damping) noexcept
                : frequency(warped), sum(warped + damping), inverse(1.0F / (1.0F + warped * sum)) {}
            float frequency;
            float sum;
            float inverse;
        };
        void Pass(float in, const Setting& at, float& low, float& band) noexcept {
            const float high = (in - at.sum * first - second) * at.inverse;
            band = at.frequency * high + first;
            low = at.frequency * band + second;
            first = at.frequency * high + band;
            second = at.frequency * band + low;
        }
        float first = 0.0F;
        float second = 0.0F;
    };
    struct Side {
        float Pass(float in, const Filter::Setting& cut, const Filter::Setting& peak, float width,
                   float factor) noexcept;
        Filter before;
        Filter behind;
        double driven = 0.0; ///< the frame before, and the integral there
        double integral = 0.0;
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
