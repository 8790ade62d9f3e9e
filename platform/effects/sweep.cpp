#include "platform/effects/sweep.h"

#include <numbers>

namespace tonvex {

namespace {

constexpr double RAMP_MS = 20.0;
/// Slow, so that a new delay bends the pitch only a little on its way.
constexpr double DELAY_GLIDE_MS = 60.0;
/// The shortest delay that can be read between frames.
constexpr float LEAST_FRAMES = 2.0F;
constexpr float QUARTER_TURN = 0.25F;

} // namespace

Sweep::Sweep(int rate, double longestMs)
    : Effect_Processor(rate), leftLine(static_cast<std::size_t>(Frames(2.0 * longestMs)) + 4),
      rightLine(static_cast<std::size_t>(Frames(2.0 * longestMs)) + 4) {
    Set_Memory(Frames(2.0 * longestMs) + EFFECT_PIECE);
}

void Sweep::Set(const Effect_Values& values, bool atOnce) noexcept {
    const int frames = atOnce ? 0 : Frames(RAMP_MS);
    mix.Move(values[SWEEP_MIX] / 100.0F, frames);
    feedback.Move(values[SWEEP_FEEDBACK] / 100.0F, frames);
    delayFrames.Aim(values[SWEEP_DELAY] * static_cast<float>(sampleRate) / 1000.0F, atOnce);
    depth.Aim(values[SWEEP_DEPTH] / 100.0F, atOnce);
    roundness.Aim(values[SWEEP_WAVEFORM], atOnce);
    ahead.Aim((values[SWEEP_PHASE] - 2.0F) * QUARTER_TURN, atOnce);
    turnsAPiece = static_cast<double>(values[SWEEP_FREQUENCY]) * EFFECT_PIECE / sampleRate;
    placed = placed && !atOnce;
}

float Sweep::Wave(double at, double roundness) noexcept {
    const double phase = at - std::floor(at);
    const double sine = std::sin(2.0 * std::numbers::pi * phase);
    const double triangle = phase < 0.25 ? 4.0 * phase : phase < 0.75 ? 2.0 - 4.0 * phase : 4.0 * phase - 4.0;
    return static_cast<float>(triangle + roundness * (sine - triangle));
}

float Sweep::Delay_At(double at) const noexcept {
    const float wave = Wave(at, static_cast<double>(roundness.Now()));
    return std::max(LEAST_FRAMES, delayFrames.Now() * (1.0F + depth.Now() * wave));
}

void Sweep::Process(float* left, float* right) noexcept {
    const float share = Share(DELAY_GLIDE_MS);
    if (!placed) {
        leftDelay = Delay_At(turns);
        rightDelay = Delay_At(turns + static_cast<double>(ahead.Now()));
        placed = true;
    }
    delayFrames.Step(share);
    depth.Step(share);
    roundness.Step(share);
    ahead.Step(share);
    turns += turnsAPiece;
    turns -= std::floor(turns);
    // Within a piece the delays move along a line: a piece is a small part of a turn.
    const float leftStep = (Delay_At(turns) - leftDelay) / EFFECT_PIECE;
    const float rightStep = (Delay_At(turns + static_cast<double>(ahead.Now())) - rightDelay) / EFFECT_PIECE;
    float peak = 0.0F;
    for (int i = 0; i < EFFECT_PIECE; ++i) {
        leftDelay = std::max(LEAST_FRAMES, leftDelay + leftStep);
        rightDelay = std::max(LEAST_FRAMES, rightDelay + rightStep);
        const float leftWet = leftLine.Read_Between(leftDelay);
        const float rightWet = rightLine.Read_Between(rightDelay);
        const float back = feedback.Next();
        const float entered = entry.Next();
        const float intoLeft = Contained(entered * left[i] + back * leftWet);
        const float intoRight = Contained(entered * right[i] + back * rightWet);
        leftLine.Write(intoLeft);
        rightLine.Write(intoRight);
        peak = std::max({peak, std::fabs(intoLeft), std::fabs(intoRight)});
        const float wet = mix.Next();
        left[i] = left[i] * (1.0F - wet) + leftWet * wet;
        right[i] = right[i] * (1.0F - wet) + rightWet * wet;
    }
    Note_Memory(peak);
}

void Sweep::Clear() noexcept {
    leftLine.Clear();
    rightLine.Clear();
    Memory_Is_Empty();
}

} // namespace tonvex
