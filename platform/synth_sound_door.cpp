#include "platform/synth_sound_door.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr int DEFAULT_RATE = 44100;

bool Is_Note(Sound_Op op) noexcept {
    return op == Sound_Op::NoteOn || op == Sound_Op::NoteOff;
}

} // namespace

bool Synth_Sound_Door::Is_Welcome(const Sound_Message& message) const noexcept {
    return !Is_Note(message.op) || Is_Running();
}

bool Synth_Sound_Door::Post(const Sound_Message& message) noexcept {
    return Is_Welcome(message) && core.Post(message);
}

bool Synth_Sound_Door::Post_From_Player(const Sound_Message& message) noexcept {
    return !Is_Welcome(message) || core.Post_From_Player(message);
}

std::vector<std::int32_t> Synth_Sound_Door::Set_Fonts(const std::vector<std::filesystem::path>& paths) {
    std::vector<Font_Source> wanted;
    for (const auto& path : paths) {
        const auto next = static_cast<std::int32_t>(handles.size() + 1);
        wanted.push_back({path, handles.try_emplace(path, next).first->second});
    }
    std::vector<std::int32_t> result(paths.size(), 0);
    std::string error;
    const int rate = instanceRate > 0 ? instanceRate : DEFAULT_RATE;
    std::unique_ptr<Synth_Instance> fresh = Synth_Instance::Make(rate, wanted, error);
    if (fresh == nullptr)
        return result; // the fonts before stay in use
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (fresh->Has_Font(wanted[i].handle))
            result[i] = wanted[i].handle;
    fonts = std::move(wanted);
    instanceRate = rate;
    core.Hand_Over(std::move(fresh));
    if (!Is_Running())
        core.Settle();
    return result;
}

bool Synth_Sound_Door::Prepare_Stream(int sampleRate, int blockFrames, double deviceLatencyMs,
                                      std::string& error) {
    core.Collect_Garbage();
    core.Silence();
    if (instanceRate != sampleRate) {
        std::unique_ptr<Synth_Instance> fresh = Synth_Instance::Make(sampleRate, fonts, error);
        if (fresh == nullptr)
            return false;
        core.Hand_Over(std::move(fresh));
        instanceRate = sampleRate;
    }
    core.Settle();
    core.Set_Effect_Rate(sampleRate);
    core.Collect_Garbage();
    core.Begin_Stream(sampleRate, blockFrames, deviceLatencyMs);
    return true;
}

void Synth_Sound_Door::Set_Effects(int slot, const Effect_Settings& settings) noexcept {
    if (slot >= 0 && slot < OUTPUT_SLOTS)
        core.Set_Effects(slot, settings);
}

void Synth_Sound_Door::Set_Master_Volume(int value) noexcept {
    masterVolume = std::clamp(value, 0, 127);
    Update_Gain();
}

void Synth_Sound_Door::Set_Amplification(float factor) noexcept {
    amplification = std::isfinite(factor) ? std::clamp(factor, 1.0F, 4.0F) : 1.0F;
    Update_Gain();
}

void Synth_Sound_Door::Update_Gain() noexcept {
    const float level = static_cast<float>(masterVolume) / 127.0F;
    core.Set_Gain(level * level * amplification);
}

} // namespace tonvex
