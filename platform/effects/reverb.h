#pragma once

#include "platform/effects/delay_line.h"
#include "platform/effects/effect_processor.h"
#include "platform/effects/ramp.h"

#include <array>
#include <vector>

namespace tonvex {

/// A room: eight delay lines that feed each other through a Hadamard matrix (J.-M. Jot's network), behind
/// allpasses that make the first reflections dense. A line of d ms loses 60 d / time dB in each round, above
/// a few kHz that divided by the high frequency ratio, so that the sound falls by 60 dB within the reverb
/// time. The input, less the input gain, stays as it is; the room is added to it.
class Reverb final : public Effect_Processor {
public:
    explicit Reverb(int sampleRate);
    void Set(const Effect_Values& values, bool atOnce) noexcept override;
    void Process(float* left, float* right) noexcept override;
    void Clear() noexcept override;

private:
    static constexpr std::size_t LINES = 8;
    static constexpr std::size_t DIFFUSERS = 3; ///< a side

    struct Room_Line {
        Room_Line(std::size_t delay, double delayMs) : line(delay), frames(delay), ms(delayMs) {}
        Delay_Line line;
        std::size_t frames;
        double ms;
        Glide gain;       ///< of a round, for low frequencies
        Glide high;       ///< further gain for high ones
        float low = 0.0F; ///< state of the filter that parts them
    };
    struct Diffuser {
        explicit Diffuser(std::size_t delay) : line(delay), frames(delay) {}
        void Pass(Effect_Piece& samples) noexcept;
        static constexpr float DIFFUSION = 0.6F;
        Delay_Line line;
        std::size_t frames;
    };

    void Hear(std::array<Effect_Piece, LINES>& heard) noexcept;

    std::vector<Room_Line> lines;
    std::array<std::vector<Diffuser>, 2> diffusers;
    Ramp inGain;
    Ramp mix;
    Glide level; ///< keeps the room as loud whatever its time
    float parting;
};

} // namespace tonvex
