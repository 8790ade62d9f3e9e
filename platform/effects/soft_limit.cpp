#include "platform/effects/soft_limit.h"

#include <array>
#include <bit>
#include <cstdint>

namespace tonvex {

namespace {

/// 2 to the power of -x for x from 0 to 1, within 1.1e-7 of it: the polynomial through Chebyshev's points.
constexpr std::array<float, 6> POWER = {0.9999999439F,   -0.6931431346F,  0.2401789563F,
                                        -0.05529811968F, 0.009209180357F, -0.0009468770291F};
/// ln(1 + x) / x for x from 0 to 1, within 3.4e-8 of it, likewise.
constexpr std::array<float, 9> LOGARITHM = {0.9999999659F,  -0.4999944498F,  0.3331812171F,
                                            -0.2483539899F, 0.1907688074F,   -0.1360224762F,
                                            0.07751608674F, -0.02907406468F, 0.005126102141F};
constexpr float TWO_OVER_LN_2 = 2.88539008F;
/// From here on tanh is 1 in single precision.
constexpr float LARGEST = 20.0F;
/// Frames closer together than this get the mean by their ends and slopes, whose error (the fifth power of
/// the way) is then below that of the difference of integrals.
constexpr float CLOSE = 0.1F;
constexpr int EXPONENT_BIAS = 127;
constexpr int EXPONENT_AT = 23;

template <std::size_t N>
float Polynomial(const std::array<float, N>& factors, float x) noexcept {
    float sum = factors[N - 1];
    for (std::size_t i = N - 1; i > 0; --i)
        sum = sum * x + factors[i - 1];
    return sum;
}

} // namespace

// The integral of tanh is ln cosh x = |x| + ln(1 + exp(-2 |x|)) - ln 2; the second term is what is kept as
// the bend. No step hangs on the one before nor on a condition, so that the compiler takes four frames at a
// time.
void Soft_Limit::Process(float* samples) noexcept {
    std::array<float, EFFECT_PIECE + 1> x;
    std::array<float, EFFECT_PIECE + 1> tanh;
    std::array<float, EFFECT_PIECE + 1> bends;
    x[0] = driven;
    tanh[0] = limited;
    bends[0] = bend;
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        const std::size_t at = i + 1;
        x[at] = samples[i];
        const float turns = std::min(LARGEST, std::fabs(samples[i])) * TWO_OVER_LN_2;
        const auto whole = static_cast<std::int32_t>(turns);
        const float power = Polynomial(POWER, turns - static_cast<float>(whole)) *
                            std::bit_cast<float>((EXPONENT_BIAS - whole) << EXPONENT_AT);
        bends[at] = power * Polynomial(LOGARITHM, power);
        tanh[at] = std::copysign((1.0F - power) / (1.0F + power), samples[i]);
    }
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        const std::size_t now = i + 1;
        const float way = x[now] - x[i];
        const bool isClose = std::fabs(way) < CLOSE;
        const float far =
            (std::fabs(x[now]) - std::fabs(x[i]) + (bends[now] - bends[i])) / (isClose ? 1.0F : way);
        const float sum = tanh[now] + tanh[i];
        const float near = sum * (0.5F + way * (tanh[now] - tanh[i]) / 12.0F);
        samples[i] = isClose ? near : far;
    }
    driven = x.back();
    limited = tanh.back();
    bend = bends.back();
}

} // namespace tonvex
