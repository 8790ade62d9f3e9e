#pragma once

#include <array>
#include <cstddef>

namespace tonvex {

/// A factor that never jumps: it moves to its target along a line, a frame at a time.
class Ramp {
public:
    explicit Ramp(float value = 0.0F) noexcept : now(value), target(value) {}

    void Jump(float value) noexcept {
        now = target = value;
        left = 0;
    }
    /// Reaches value after frames, at once with 0; a move under way bends.
    void Move(float value, int frames) noexcept {
        if (frames == 0)
            Jump(value);
        if (value == target)
            return;
        target = value;
        left = frames;
        step = (target - now) / static_cast<float>(frames);
    }
    float Next() noexcept {
        if (left > 0) {
            --left;
            now = left == 0 ? target : now + step;
        }
        return now;
    }
    /// The next values at once.
    template <std::size_t COUNT>
    std::array<float, COUNT> Next_Ones() noexcept {
        std::array<float, COUNT> values;
        if (left == 0)
            values.fill(now);
        else
            for (float& value : values)
                value = Next();
        return values;
    }
    float Now() const noexcept { return now; }
    bool Moves() const noexcept { return left > 0; }
    bool Stands_At(float value) const noexcept { return left == 0 && now == value; }

private:
    float now;
    float target;
    float step = 0.0F;
    int left = 0;
};

/// A coefficient that follows its target by the same share of the way a step: for what is worked out anew a
/// piece at a time.
class Glide {
public:
    explicit Glide(float value = 0.0F) noexcept : now(value), target(value) {}

    void Aim(float value, bool atOnce) noexcept {
        target = value;
        if (atOnce)
            now = value;
    }
    /// share above 0, at most 1.
    float Step(float share) noexcept {
        const float way = target - now;
        now = way * way <= NEAR * NEAR * target * target ? target : now + way * share;
        return now;
    }
    float Now() const noexcept { return now; }

private:
    static constexpr float NEAR = 1e-4F;
    float now;
    float target;
};

} // namespace tonvex
