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

float Echo::Tap::Read() noexcept {
    const float now = line.Read(static_cast<std::size_t>(place));
    if (place == next)
        return now;
    return now + fade.Next() * (line.Read(static_cast<std::size_t>(next)) - now);
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
    float peak = 0.0F;
    for (int i = 0; i < EFFECT_PIECE; ++i) {
        const float leftWet = leftTap.Read();
        const float rightWet = rightTap.Read();
        const float across = swapped.Next();
        const float back = feedback.Next();
        const float entered = entry.Next();
        const float intoLeft =
            Contained(entered * left[i] + back * (leftWet + across * (rightWet - leftWet)));
        const float intoRight =
            Contained(entered * right[i] + back * (rightWet + across * (leftWet - rightWet)));
        leftTap.line.Write(intoLeft);
        rightTap.line.Write(intoRight);
        peak = std::max({peak, std::fabs(intoLeft), std::fabs(intoRight)});
        const float wet = mix.Next();
        left[i] = left[i] * (1.0F - wet) + leftWet * wet;
        right[i] = right[i] * (1.0F - wet) + rightWet * wet;
    }
    Note_Memory(peak);
}

void Echo::Clear() noexcept {
    leftTap.line.Clear();
    rightTap.line.Clear();
    Memory_Is_Empty();
}

} // namespace tonvex
