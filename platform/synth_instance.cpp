#include "platform/synth_instance.h"

#include <fluidsynth.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <mutex>
#include <string_view>
#include <system_error>

namespace tonvex {

namespace {

/// Output for a slot at velocity 127 and volume 64, where an undrawn volume map stands, stays about 10 dB
/// below full scale, so that a full arrangement fits; the user's amplification lies behind it. A map drawn up
/// to 127 is 12 dB louder.
constexpr double SYNTH_GAIN = 1.2;

void Silence_Library_Log() {
    static std::once_flag done;
    std::call_once(done, [] {
        for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG})
            fluid_set_log_function(level, nullptr, nullptr);
    });
}

/// A RIFF file of SoundFont kind. FluidSynth would hand anything else to readers of other formats, which
/// we do not offer.
bool Begins_As_Font(const std::filesystem::path& path) {
    std::array<char, 12> head{};
    std::ifstream file(path, std::ios::binary);
    return file.read(head.data(), head.size()) && std::string_view(head.data(), 4) == "RIFF" &&
           std::string_view(head.data() + 8, 4) == "sfbk";
}

std::size_t Preset_Index(int bank, int program) noexcept {
    return static_cast<std::size_t>(bank) * 128 + static_cast<std::size_t>(program);
}

} // namespace

void Synth_Instance::Settings_Deleter::operator()(void* made) const noexcept {
    delete_fluid_settings(static_cast<fluid_settings_t*>(made));
}

std::unique_ptr<Synth_Instance> Synth_Instance::Make(int sampleRate, const std::vector<Font_Source>& fonts,
                                                     std::string& error) {
    Silence_Library_Log();
    std::unique_ptr<Synth_Instance> made(new Synth_Instance);
    fluid_settings_t* const options = new_fluid_settings();
    if (options == nullptr) {
        error = "The synthesizer could not be set up: not enough memory";
        return nullptr;
    }
    made->settings.reset(options);
    made->sampleRate = std::clamp(sampleRate, 8000, 96000);
    fluid_settings_setint(options, "synth.threadsafe-api", 0);
    fluid_settings_setint(options, "synth.midi-channels", OUTPUT_SLOTS);
    fluid_settings_setint(options, "synth.audio-groups", OUTPUT_SLOTS);
    fluid_settings_setint(options, "synth.audio-channels", OUTPUT_SLOTS);
    fluid_settings_setint(options, "synth.effects-groups", 1);
    fluid_settings_setint(options, "synth.reverb.active", 0);
    fluid_settings_setint(options, "synth.chorus.active", 0);
    fluid_settings_setint(options, "synth.dynamic-sample-loading", 0);
    fluid_settings_setint(options, "synth.polyphony", POLYPHONY);
    fluid_settings_setnum(options, "synth.gain", SYNTH_GAIN);
    fluid_settings_setnum(options, "synth.sample-rate", made->sampleRate);
    made->synth = new_fluid_synth(options);
    if (made->synth == nullptr) {
        error = "The synthesizer could not be made at " + std::to_string(made->sampleRate) +
                " frames a second: not enough memory";
        return nullptr;
    }
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        fluid_synth_set_channel_type(made->synth, slot,
                                     slot == DRUM_SLOT ? CHANNEL_TYPE_DRUM : CHANNEL_TYPE_MELODIC);
    for (const Font_Source& font : fonts)
        made->Load(font);
    made->Warm_Voices();
    return made;
}

Synth_Instance::~Synth_Instance() {
    if (synth != nullptr)
        delete_fluid_synth(synth);
}

void Synth_Instance::Load(const Font_Source& source) {
    std::error_code failed;
    // Anything but a regular file could keep the loader waiting for bytes for ever.
    if (!std::filesystem::is_regular_file(source.path, failed) || failed || !Begins_As_Font(source.path))
        return;
    const int id = fluid_synth_sfload(synth, source.path.c_str(), 0);
    fluid_sfont_t* const font = id == FLUID_FAILED ? nullptr : fluid_synth_get_sfont_by_id(synth, id);
    if (font == nullptr)
        return;
    Loaded_Font entry;
    entry.handle = source.handle;
    entry.id = id;
    fluid_sfont_iteration_start(font);
    while (fluid_preset_t* const preset = fluid_sfont_iteration_next(font)) {
        const int bank = fluid_preset_get_banknum(preset);
        const int program = fluid_preset_get_num(preset);
        if (bank >= 0 && bank < BANKS && program >= 0 && program < 128)
            entry.presets.set(Preset_Index(bank, program));
    }
    loaded.push_back(entry);
}

/// A voice moves from the level of the note it sounded last, so the first note of each voice would fade in
/// from silence and begin later than all others. Every voice sounds once here, unheard.
void Synth_Instance::Warm_Voices() noexcept {
    const Found_Preset preset = Find(0, 0, 0, 0);
    if (preset.fontId < 0)
        return;
    std::array<float, 256> unheard{};
    std::array<float*, 2> pair{unheard.data(), unheard.data()};
    const auto Render = [&] {
        fluid_synth_process(synth, static_cast<int>(unheard.size()), 0, nullptr, 2, pair.data());
    };
    fluid_synth_program_select(synth, 0, preset.fontId, preset.bank, preset.program);
    for (int note = 0; note < 2 * POLYPHONY; ++note) {
        if (fluid_synth_get_active_voice_count(synth) >= POLYPHONY)
            break;
        fluid_synth_noteon(synth, 0, note % 128, 1);
    }
    Render();
    fluid_synth_all_sounds_off(synth, -1);
    for (int tries = 0; tries < 64 && fluid_synth_get_active_voice_count(synth) > 0; ++tries)
        Render();
    fluid_synth_unset_program(synth, 0);
}

bool Synth_Instance::Has_Font(std::int32_t handle) const noexcept {
    return std::any_of(loaded.begin(), loaded.end(),
                       [handle](const Loaded_Font& font) { return font.handle == handle; });
}

const Synth_Instance::Loaded_Font* Synth_Instance::Last_With(int bank, int program,
                                                             std::int32_t handle) const noexcept {
    const std::size_t preset = Preset_Index(bank, program);
    for (auto font = loaded.rbegin(); font != loaded.rend(); ++font)
        if ((handle <= 0 || font->handle == handle) && font->presets[preset])
            return &*font;
    return nullptr;
}

Found_Preset Synth_Instance::Find(int slot, int program, int bank, std::int32_t handle) const noexcept {
    const int firstBank = slot == DRUM_SLOT ? DRUM_BANK : 0;
    const int askedProgram = std::clamp(program, 0, 127);
    const int askedBank = firstBank + std::clamp(bank, 0, 127);
    struct Choice {
        int bank;
        int program;
        std::int32_t handle;
    };
    const Choice choices[] = {{askedBank, askedProgram, handle},
                              {askedBank, askedProgram, 0},
                              {firstBank, askedProgram, 0},
                              {firstBank, 0, 0}};
    for (const Choice& choice : choices)
        if (const Loaded_Font* const font = Last_With(choice.bank, choice.program, choice.handle))
            return {font->id, choice.bank, choice.program};
    return {};
}

} // namespace tonvex
