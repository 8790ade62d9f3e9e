#pragma once

#include "platform/effects/effect_processor.h"
#include "platform/effects/effect_settings.h"
#include "platform/effects/ramp.h"

#include <array>
#include <memory>

namespace tonvex {

/// The effects of one slot, one behind the other as a player would set them up: distortion, chorus, flanger,
/// echo, reverb. An effect fades in and out; one that is off costs nothing.
/// Made on the interface thread (about 1.2 MB at 44100 Hz); everything else on the audio thread, where it
/// neither allocates nor locks nor throws.
class Effect_Chain {
public:
    explicit Effect_Chain(int sampleRate);

    /// Bounded values. atOnce: nothing sounds, so nothing has to fade.
    void Set(const Effect_Settings& settings, bool atOnce) noexcept;
    /// EFFECT_PIECE frames of each side, in place.
    void Process(float* left, float* right) noexcept;
    /// Forgets what it heard.
    void Clear() noexcept;
    /// Sound is left in an effect that is on or fading: silence in gives sound out.
    bool Rings() const noexcept;
    /// Every effect is off and has faded out.
    bool Is_Off() const noexcept;

private:
    struct Stage {
        Effect_Kind kind{};
        std::unique_ptr<Effect_Processor> processor;
        Ramp share; ///< of the effect against what goes in
        bool on = false;
        bool Sounds() const noexcept { return on || !share.Stands_At(0.0F); }
    };
    void Process_Stage(Stage& stage, float* left, float* right) noexcept;

    std::array<Stage, EFFECT_KINDS> stages;
    int fadeFrames;
};

} // namespace tonvex
