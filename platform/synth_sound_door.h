#pragma once

#include "platform/millisecond_counter.h"
#include "platform/sound_core.h"
#include "platform/sound_door.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// What all sound doors share: messages, fonts, levels. A door adds where its blocks come from.
/// While no stream is open, patches, pans and volumes are kept for the next one; notes are refused.
class Synth_Sound_Door : public Sound_Door {
public:
    bool Post(const Sound_Message& message) noexcept override;
    bool Post_From_Player(const Sound_Message& message) noexcept override;
    bool Take_Back_From_Player(std::int64_t fromNs) noexcept override {
        return core.Take_Back_From_Player(fromNs);
    }
    /// A path keeps its handle as long as the door lives.
    std::vector<std::int32_t> Set_Fonts(const std::vector<std::filesystem::path>& paths) override;
    void Set_Effects(int slot, const Effect_Settings& settings) noexcept override;
    /// The square of value / 127, the curve of a channel's volume.
    void Set_Master_Volume(int value) noexcept override;
    int Master_Volume() const noexcept override { return masterVolume; }
    void Set_Amplification(float factor) noexcept override;
    float Slot_Peak(int slot) noexcept override { return core.Take_Slot_Peak(slot); }

    /// Fonts with the handles under which patches name them already. Before the first Open, which loads them.
    void Start_With_Fonts(std::vector<Font_Source> sources) { fonts = std::move(sources); }
    /// Keeps what is sounded from the next Open on, up to so many frames; for tests and measurements.
    void Keep_Samples(std::size_t frames) { core.Keep_Samples(frames); }
    /// Interleaved stereo, kept so far. Any thread.
    std::span<const float> Kept_Samples() const noexcept { return core.Kept_Samples(); }

protected:
    explicit Synth_Sound_Door(const Millisecond_Counter& clock) : counter(clock), core(clock) {}

    /// A stream of that rate may begin: the synthesizer with the fonts asked for stands ready in the core.
    bool Prepare_Stream(int sampleRate, int blockFrames, double deviceLatencyMs, std::string& error);
    void Stream_Runs(bool runs) noexcept { running.store(runs, std::memory_order_release); }
    bool Is_Running() const noexcept { return running.load(std::memory_order_acquire); }

    const Millisecond_Counter& counter;
    Sound_Core core;

private:
    bool Is_Welcome(const Sound_Message& message) const noexcept;
    void Update_Gain() noexcept;

    std::vector<Font_Source> fonts;
    std::map<std::filesystem::path, std::int32_t> handles;
    int instanceRate = 0; ///< rate of the instance that the core has, 0 for none
    int masterVolume = 127;
    float amplification = 1.0F;
    std::atomic<bool> running{false};
};

} // namespace tonvex
