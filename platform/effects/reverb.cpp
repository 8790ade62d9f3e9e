#include "platform/effects/reverb.h"

#include <numbers>

namespace tonvex {

namespace {

constexpr double RAMP_MS = 20.0;
constexpr double GLIDE_MS = 30.0;
/// Without a common measure, so that the echoes of the lines do not fall together.
constexpr std::array<double, 8> LINE_MS = {22.3, 25.1, 28.7, 31.9, 35.3, 38.9, 42.7, 46.1};
constexpr std::array<std::array<double, 3>, 2> DIFFUSER_MS = {{{2.3, 3.7, 7.9}, {2.9, 4.3, 7.1}}};
/// From about here on the high frequency ratio counts.
constexpr double PARTING_HZ = 4000.0;
/// The room against its input at a mix of 0 dB, both of noise.
constexpr float ROOM_LEVEL = 0.7F;
/// Powers below this would only make denormal numbers.
constexpr double LEAST_GAIN = 1e-6;
/// Eight signals weighed alike keep their power.
constexpr float EVEN_SHARE = 0.35355339F;

float Gain_In(double ms, double timeMs) noexcept {
    const double gain = std::pow(10.0, -3.0 * ms / timeMs);
    return gain < LEAST_GAIN ? 0.0F : static_cast<float>(gain);
}

/// Each gets an even mix of all, the power as before (Hadamard's matrix of order 8, by butterflies).
void Spread(std::array<float, 8>& signals) noexcept {
    for (std::size_t half = 1; half < signals.size(); half *= 2)
        for (std::size_t i = 0; i < signals.size(); ++i)
            if ((i & half) == 0) {
                const float a = signals[i];
                const float b = signals[i + half];
                signals[i] = a + b;
                signals[i + half] = a - b;
            }
    for (float& signal : signals)
        signal *= EVEN_SHARE;
}

} // namespace

Reverb::Reverb(int rate)
    : Effect_Processor(rate),
      parting(static_cast<float>(
          1.0 - std::exp(-2.0 * std::numbers::pi * std::min(PARTING_HZ, 0.4 * rate) / rate))) {
    for (const double ms : LINE_MS)
        lines.emplace_back(static_cast<std::size_t>(Frames(ms)), ms);
    for (std::size_t side = 0; side < 2; ++side)
        for (const double ms : DIFFUSER_MS[side])
            diffusers[side].emplace_back(static_cast<std::size_t>(Frames(ms)));
    Set_Memory(Frames(LINE_MS.back() * 2.0));
}

void Reverb::Set(const Effect_Values& values, bool atOnce) noexcept {
    const int frames = atOnce ? 0 : Frames(RAMP_MS);
    inGain.Move(Gain_Of_Db(values[REVERB_IN_GAIN]), frames);
    mix.Move(Gain_Of_Db(values[REVERB_MIX]), frames);
    const auto timeMs = static_cast<double>(values[REVERB_TIME]);
    const auto ratio = static_cast<double>(values[REVERB_HIGH_RATIO]);
    float power = 0.0F;
    for (Room_Line& line : lines) {
        const float gain = Gain_In(line.ms, timeMs);
        line.gain.Aim(gain, atOnce);
        line.high.Aim(Gain_In(line.ms * (1.0 / ratio - 1.0), timeMs), atOnce);
        power += gain * gain / static_cast<float>(LINES);
    }
    level.Aim(ROOM_LEVEL * std::sqrt(1.0F - power), atOnce);
}

void Reverb::Process(float* left, float* right) noexcept {
    const float share = Share(GLIDE_MS);
    for (Room_Line& line : lines) {
        line.gain.Step(share);
        line.high.Step(share);
    }
    const float room = level.Step(share);
    // The lines are longer than a piece, so all that comes out of them in it is known before it begins.
    std::array<std::array<float, EFFECT_PIECE>, LINES> heard;
    std::array<float, LINES> low;
    std::array<float, LINES> gains;
    std::array<float, LINES> highs;
    for (std::size_t n = 0; n < LINES; ++n) {
        low[n] = lines[n].low;
        gains[n] = lines[n].gain.Now();
        highs[n] = lines[n].high.Now();
        lines[n].line.Read_Block(lines[n].frames, heard[n].data(), EFFECT_PIECE);
    }
    std::array<float, LINES> peaks{};
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        const float gain = inGain.Next();
        const float entered = entry.Next();
        left[i] *= gain;
        right[i] *= gain;
        std::array<float, 2> sides = {left[i] * entered, right[i] * entered};
        for (std::size_t side = 0; side < 2; ++side)
            for (Diffuser& diffuser : diffusers[side])
                sides[side] = diffuser.Pass(sides[side]);
        std::array<float, LINES> signals;
        for (std::size_t n = 0; n < LINES; ++n)
            signals[n] = heard[n][i];
        for (std::size_t n = 0; n < LINES; ++n) {
            low[n] += parting * (signals[n] - low[n]);
            signals[n] = gains[n] * (low[n] + highs[n] * (signals[n] - low[n]));
        }
        // Each side hears every line, with signs of its own.
        const float even = signals[0] - signals[2] + signals[4] - signals[6];
        const float odd = signals[1] - signals[3] + signals[5] - signals[7];
        const float wet = mix.Next() * room * EVEN_SHARE;
        left[i] += wet * (even + odd);
        right[i] += wet * (even - odd);
        Spread(signals);
        for (std::size_t n = 0; n < LINES; ++n) {
            const float into = signals[n] + sides[n % 2];
            heard[n][i] = into;
            peaks[n] = std::max(peaks[n], std::fabs(into));
        }
    }
    const float peak = *std::max_element(peaks.begin(), peaks.end());
    for (std::size_t n = 0; n < LINES; ++n) {
        lines[n].low = low[n];
        lines[n].line.Write_Block(heard[n].data(), EFFECT_PIECE);
    }
    Note_Memory(peak);
}

void Reverb::Clear() noexcept {
    for (Room_Line& line : lines) {
        line.line.Clear();
        line.low = 0.0F;
    }
    for (auto& side : diffusers)
        for (Diffuser& diffuser : side)
            diffuser.line.Clear();
    Memory_Is_Empty();
}

} // namespace tonvex
