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
    Effect_Piece leftDelays;
    Effect_Piece rightDelays;
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        const auto steps = static_cast<float>(static_cast<int>(i) + 1);
        leftDelays[i] = std::max(LEAST_FRAMES, leftDelay + steps * leftStep);
        rightDelays[i] = std::max(LEAST_FRAMES, rightDelay + steps * rightStep);
    }
    const auto back = feedback.Next_Ones<EFFECT_PIECE>();
    const auto entered = entry.Next_Ones<EFFECT_PIECE>();
    const auto wet = mix.Next_Ones<EFFECT_PIECE>();
    Effect_Piece leftWet;
    Effect_Piece rightWet;
    Effect_Piece intoLeft;
    Effect_Piece intoRight;
    // What comes out is known for as long as the shortest delay, less the frame after the place that is read.
    const float shortest =
        std::min({leftDelays.front(), leftDelays.back(), rightDelays.front(), rightDelays.back()});
    const std::size_t known = static_cast<std::size_t>(shortest) - 1;
    for (std::size_t from = 0, to = 0; from < EFFECT_PIECE; from = to) {
        to = std::min<std::size_t>(from + known, EFFECT_PIECE);
        leftLine.Read(leftDelays.data() + from, leftWet.data() + from, to - from);
        rightLine.Read(rightDelays.data() + from, rightWet.data() + from, to - from);
        for (std::size_t i = from; i < to; ++i) {
            intoLeft[i] = Contained(entered[i] * left[i] + back[i] * leftWet[i]);
            intoRight[i] = Contained(entered[i] * right[i] + back[i] * rightWet[i]);
        }
        leftLine.Write(intoLeft.data() + from, to - from);
        rightLine.Write(intoRight.data() + from, to - from);
    }
    leftDelay = leftDelays.back();
    rightDelay = rightDelays.back();
    Blend(left, leftWet, wet);
    Blend(right, rightWet, wet);
    Note_Memory(std::max(Peak_Of(intoLeft.data()), Peak_Of(intoRight.data())));
}

void Sweep::Clear() noexcept {
    leftLine.Clear();
    rightLine.Clear();
    Memory_Is_Empty();
}

} // namespace tonvex
