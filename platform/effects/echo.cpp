#include "platform/effects/echo.h"

namespace tonvex {

namespace {

constexpr double LONGEST_MS = 2000.0;
constexpr double RAMP_MS = 20.0;
constexpr double FADE_MS = 50.0;

} // namespace

Echo::Echo(int rate)
    : Effect_Processor(rate), leftTap(static_cast<std::size_t>(Frames(LONGEST_MS))),
      rightTap(static_cast<std::size_t>(Frames(LONGEST_MS))) {}

void Echo::Tap::Read(float* to, std::size_t count) noexcept {
    line.Read(static_cast<std::size_t>(place), to, count);
    if (place == next)
        return;
    Effect_Piece later;
    line.Read(static_cast<std::size_t>(next), later.data(), count);
    for (std::size_t i = 0; i < count; ++i)
        to[i] += fade.Next() * (later[i] - to[i]);
}

void Echo::Tap::Aim(int frames, bool atOnce) noexcept {
    wanted = frames;
    if (atOnce)
        place = next = frames;
}

void Echo::Tap::Follow(int fadeFrames) noexcept {
    if (place != next && !fade.Moves())
        place = next;
    if (place == next && next != wanted) {
        next = wanted;
        fade.Jump(0.0F);
        fade.Move(1.0F, fadeFrames);
    }
}

void Echo::Set(const Effect_Values& values, bool atOnce) noexcept {
    const int frames = atOnce ? 0 : Frames(RAMP_MS);
    mix.Move(values[ECHO_MIX] / 100.0F, frames);
    feedback.Move(values[ECHO_FEEDBACK] / 100.0F, frames);
    swapped.Move(values[ECHO_PAN], frames);
    leftTap.Aim(Frames(static_cast<double>(values[ECHO_LEFT])), atOnce);
    rightTap.Aim(Frames(static_cast<double>(values[ECHO_RIGHT])), atOnce);
    Set_Memory(std::max(leftTap.wanted, rightTap.wanted) + Frames(2.0 * FADE_MS));
}

void Echo::Process(float* left, float* right) noexcept {
    leftTap.Follow(Frames(FADE_MS));
    rightTap.Follow(Frames(FADE_MS));
    const auto across = swapped.Next_Ones<EFFECT_PIECE>();
    const auto back = feedback.Next_Ones<EFFECT_PIECE>();
    const auto entered = entry.Next_Ones<EFFECT_PIECE>();
    const auto wet = mix.Next_Ones<EFFECT_PIECE>();
    Effect_Piece leftWet;
    Effect_Piece rightWet;
    Effect_Piece intoLeft;
    Effect_Piece intoRight;
    // What comes out is known for as long as the shortest delay.
    const std::size_t known = std::min(leftTap.Known(), rightTap.Known());
    for (std::size_t from = 0, to = 0; from < EFFECT_PIECE; from = to) {
        to = std::min<std::size_t>(from + known, EFFECT_PIECE);
        leftTap.Read(leftWet.data() + from, to - from);
        rightTap.Read(rightWet.data() + from, to - from);
        for (std::size_t i = from; i < to; ++i) {
            const float apart = across[i] * (rightWet[i] - leftWet[i]);
            intoLeft[i] = Contained(entered[i] * left[i] + back[i] * (leftWet[i] + apart));
            intoRight[i] = Contained(entered[i] * right[i] + back[i] * (rightWet[i] - apart));
        }
        leftTap.line.Write(intoLeft.data() + from, to - from);
        rightTap.line.Write(intoRight.data() + from, to - from);
    }
    Blend(left, leftWet, wet);
    Blend(right, rightWet, wet);
    Note_Memory(std::max(Peak_Of(intoLeft.data()), Peak_Of(intoRight.data())));
}

void Echo::Clear() noexcept {
    leftTap.line.Clear();
    rightTap.line.Clear();
    Memory_Is_Empty();
}

} // namespace tonvex
