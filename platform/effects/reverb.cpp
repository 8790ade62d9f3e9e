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
void Spread(std::array<Effect_Piece, 8>& signals) noexcept {
    for (std::size_t half = 1; half < signals.size(); half *= 2)
        for (std::size_t n = 0; n < signals.size(); ++n)
            if ((n & half) == 0)
                for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
                    const float a = signals[n][i];
                    const float b = signals[n + half][i];
                    signals[n][i] = a + b;
                    signals[n + half][i] = a - b;
                }
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

void Reverb::Diffuser::Pass(Effect_Piece& samples) noexcept {
    Effect_Piece delayed;
    for (std::size_t done = 0, count = 0; done < samples.size(); done += count) {
        count = std::min(frames, samples.size() - done);
        line.Read(frames, delayed.data(), count);
        float* const at = samples.data() + done;
        for (std::size_t i = 0; i < count; ++i)
            at[i] += DIFFUSION * delayed[i];
        line.Write(at, count);
        for (std::size_t i = 0; i < count; ++i)
            at[i] = delayed[i] - DIFFUSION * at[i];
    }
}

// What comes out of the lines in this piece, after the losses of a round. The lines are longer than a piece,
// so all of it is known before it begins.
void Reverb::Hear(std::array<Effect_Piece, LINES>& heard) noexcept {
    std::array<float, LINES> low;
    std::array<float, LINES> direct;
    std::array<float, LINES> ofLow;
    for (std::size_t n = 0; n < LINES; ++n) {
        low[n] = lines[n].low;
        direct[n] = lines[n].gain.Now() * lines[n].high.Now();
        ofLow[n] = lines[n].gain.Now() - direct[n];
        lines[n].line.Read(lines[n].frames, heard[n].data(), EFFECT_PIECE);
    }
    const float kept = 1.0F - parting;
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i)
        for (std::size_t n = 0; n < LINES; ++n) {
            low[n] = kept * low[n] + parting * heard[n][i];
            heard[n][i] = direct[n] * heard[n][i] + ofLow[n] * low[n];
        }
    for (std::size_t n = 0; n < LINES; ++n)
        lines[n].low = low[n];
}

void Reverb::Process(float* left, float* right) noexcept {
    const float share = Share(GLIDE_MS);
    for (Room_Line& line : lines) {
        line.gain.Step(share);
        line.high.Step(share);
    }
    const float room = level.Step(share) * EVEN_SHARE;
    std::array<Effect_Piece, LINES> signals;
    Hear(signals);

    const auto gains = inGain.Next_Ones<EFFECT_PIECE>();
    const auto entered = entry.Next_Ones<EFFECT_PIECE>();
    const auto mixes = mix.Next_Ones<EFFECT_PIECE>();
    std::array<Effect_Piece, 2> sides;
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        left[i] *= gains[i];
        right[i] *= gains[i];
        sides[0][i] = left[i] * entered[i];
        sides[1][i] = right[i] * entered[i];
    }
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        // Each side hears every line, with signs of its own.
        const float even = signals[0][i] - signals[2][i] + signals[4][i] - signals[6][i];
        const float odd = signals[1][i] - signals[3][i] + signals[5][i] - signals[7][i];
        left[i] += mixes[i] * room * (even + odd);
        right[i] += mixes[i] * room * (even - odd);
    }
    for (std::size_t side = 0; side < 2; ++side)
        for (Diffuser& diffuser : diffusers[side])
            diffuser.Pass(sides[side]);
    Spread(signals);
    float peak = 0.0F;
    for (std::size_t n = 0; n < LINES; ++n) {
        for (std::size_t i = 0; i < EFFECT_PIECE; ++i)
            signals[n][i] = EVEN_SHARE * signals[n][i] + sides[n % 2][i];
        lines[n].line.Write(signals[n].data(), EFFECT_PIECE);
        peak = std::max(peak, Peak_Of(signals[n].data()));
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
