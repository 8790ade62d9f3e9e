#pragma once

#include "platform/sound_door.h"

#include <bitset>
#include <cstdint>
#include <filesystem>
#include <fluidsynth/types.h>
#include <memory>
#include <string>
#include <vector>

namespace tonvex {

/// A font asked for, with the handle under which patches name it.
struct Font_Source {
    std::filesystem::path path;
    std::int32_t handle = 0;
};

/// Where a patch was found: FluidSynth's number of the font, its bank and program.
struct Found_Preset {
    int fontId = -1; ///< -1: no font has anything to sound
    int bank = 0;
    int program = 0;
};

/// One FluidSynth instance with its fonts loaded whole: 32 MIDI channels, one stereo pair each, only
/// DRUM_SLOT with drums, no effects, no locks of its own.
/// Made, and destroyed, on any thread but the audio thread; whoever holds it is the only one to call it.
class Synth_Instance {
public:
    static constexpr int POLYPHONY = 256;

    /// sampleRate in frames a second, 8000 to 96000. A font that cannot be loaded is left out; Has_Font
    /// tells. nullptr, with a text in error, when the synthesizer itself cannot be made.
    static std::unique_ptr<Synth_Instance> Make(int sampleRate, const std::vector<Font_Source>& fonts,
                                                std::string& error);
    ~Synth_Instance();
    Synth_Instance(const Synth_Instance&) = delete;
    Synth_Instance& operator=(const Synth_Instance&) = delete;

    bool Has_Font(std::int32_t handle) const noexcept;
    int Sample_Rate() const noexcept { return sampleRate; }
    fluid_synth_t* Synth() const noexcept { return synth; }

    /// The preset that a slot's patch sounds. The font named by handle (above 0) is asked first, then all
    /// from the last in the list to the first; when none has the preset, the same program of bank 0 (of a
    /// drum slot: of the plain kits), then program 0 of it. Audio thread; neither allocates nor locks.
    Found_Preset Find(int slot, int program, int bank, std::int32_t handle) const noexcept;

private:
    /// Banks 0 to 127 are melodic, 128 and up are drum kits.
    static constexpr int BANKS = 256;
    static constexpr int DRUM_BANK = 128;
    struct Loaded_Font {
        std::int32_t handle = 0;
        int id = -1;
        std::bitset<static_cast<std::size_t>(BANKS) * 128> presets;
    };

    Synth_Instance() = default;
    void Load(const Font_Source& source);
    void Warm_Voices() noexcept;
    const Loaded_Font* Last_With(int bank, int program, std::int32_t handle) const noexcept;

    struct Settings_Deleter {
        void operator()(void* settings) const noexcept;
    };
    std::unique_ptr<void, Settings_Deleter> settings;
    fluid_synth_t* synth = nullptr;
    int sampleRate = 0;
    std::vector<Loaded_Font> loaded; ///< in list order
};

} // namespace tonvex
