#include "platform/effects/effect_chain.h"

#include "platform/effects/denormals_off.h"
#include "platform/effects/distortion.h"
#include "platform/effects/echo.h"
#include "platform/effects/reverb.h"
#include "platform/effects/sweep.h"

namespace tonvex {

namespace {

constexpr double FADE_SECONDS = 0.03;
constexpr double CHORUS_MS = 20.0;
constexpr double FLANGER_MS = 4.0;

constexpr std::array<Effect_Kind, EFFECT_KINDS> CHAIN_ORDER = {Effect_Kind::Distortion, Effect_Kind::Chorus,
                                                               Effect_Kind::Flanger, Effect_Kind::Echo,
                                                               Effect_Kind::Reverb};

std::unique_ptr<Effect_Processor> Make_Processor(Effect_Kind kind, int rate) {
    switch (kind) {
    case Effect_Kind::Reverb:
        return std::make_unique<Reverb>(rate);
    case Effect_Kind::Chorus:
        return std::make_unique<Sweep>(rate, CHORUS_MS);
    case Effect_Kind::Flanger:
        return std::make_unique<Sweep>(rate, FLANGER_MS);
    case Effect_Kind::Echo:
        return std::make_unique<Echo>(rate);
    case Effect_Kind::Distortion:
        break;
    }
    return std::make_unique<Distortion>(rate);
}

bool Is_Silent(const float* samples) noexcept {
    return std::all_of(samples, samples + EFFECT_PIECE, [](float sample) { return sample == 0.0F; });
}

} // namespace

Effect_Chain::Effect_Chain(int sampleRate) : fadeFrames(static_cast<int>(FADE_SECONDS * sampleRate)) {
    for (std::size_t i = 0; i < EFFECT_KINDS; ++i) {
        stages[i].kind = CHAIN_ORDER[i];
        stages[i].processor = Make_Processor(CHAIN_ORDER[i], sampleRate);
    }
    Set({}, true);
    Clear();
}

void Effect_Chain::Set(const Effect_Settings& settings, bool atOnce) noexcept {
    for (Stage& stage : stages) {
        // What does not sound yet begins where it is to be.
        stage.processor->Set(settings.Of(stage.kind), atOnce || !stage.Sounds());
        if (!stage.Sounds() && settings.Is_On(stage.kind))
            stage.processor->Enter(atOnce ? 0 : fadeFrames);
        stage.on = settings.Is_On(stage.kind);
        stage.share.Move(stage.on ? 1.0F : 0.0F, atOnce ? 0 : fadeFrames);
        if (!stage.Sounds())
            stage.processor->Clear();
    }
}

void Effect_Chain::Process(float* left, float* right) noexcept {
    const Denormals_Off flushed;
    for (Stage& stage : stages)
        if (stage.Sounds())
            Process_Stage(stage, left, right);
}

void Effect_Chain::Process_Stage(Stage& stage, float* left, float* right) noexcept {
    if (stage.processor->Rests() && Is_Silent(left) && Is_Silent(right)) {
        for (int i = 0; i < EFFECT_PIECE; ++i)
            stage.share.Next();
        return;
    }
    if (stage.share.Stands_At(1.0F)) {
        stage.processor->Process(left, right);
        return;
    }
    std::array<float, EFFECT_PIECE> dryLeft;
    std::array<float, EFFECT_PIECE> dryRight;
    std::copy_n(left, EFFECT_PIECE, dryLeft.begin());
    std::copy_n(right, EFFECT_PIECE, dryRight.begin());
    stage.processor->Process(left, right);
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        const float share = stage.share.Next();
        left[i] = dryLeft[i] + share * (left[i] - dryLeft[i]);
        right[i] = dryRight[i] + share * (right[i] - dryRight[i]);
    }
    if (!stage.Sounds())
        stage.processor->Clear();
}

void Effect_Chain::Clear() noexcept {
    for (Stage& stage : stages)
        stage.processor->Clear();
}

bool Effect_Chain::Rings() const noexcept {
    return std::any_of(stages.begin(), stages.end(),
                       [](const Stage& stage) { return stage.Sounds() && !stage.processor->Rests(); });
}

bool Effect_Chain::Is_Off() const noexcept {
    return std::none_of(stages.begin(), stages.end(), [](const Stage& stage) { return stage.Sounds(); });
}

} // namespace tonvex
