#pragma once

#include "platform/effects/delay_line.h"
#include "platform/effects/effect_processor.h"
#include "platform/effects/ramp.h"

namespace tonvex {

/// Repeats on each side after a delay of its own, each the feedback quieter than the one before. With swapped
/// sides every repeat changes over, so that the two delays take turns.
class Echo final : public Effect_Processor {
public:
    explicit Echo(int sampleRate);
    void Set(const Effect_Values& values, bool atOnce) noexcept override;
    void Process(float* left, float* right) noexcept override;
    void Clear() noexcept override;

private:
    /// A place in a line. A new place fades in while the old one fades out; one asked for meanwhile waits.
    struct Tap {
        explicit Tap(std::size_t longest) : line(longest) {}
        /// The next frames, at most Known() of them.
        void Read(float* to, std::size_t count) noexcept;
        std::size_t Known() const noexcept { return static_cast<std::size_t>(std::min(place, next)); }
        void Aim(int frames, bool atOnce) noexcept;
        void Follow(int fadeFrames) noexcept;

        Delay_Line line;
        int place = 1;
        int next = 1;
        int wanted = 1;
        Ramp fade;
    };

    Tap leftTap;
    Tap rightTap;
    Ramp mix;
    Ramp feedback;
    Ramp swapped; ///< 0 each side repeats itself, 1 the other
};

} // namespace tonvex
