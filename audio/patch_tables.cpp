#include "audio/patch_tables.h"

#include "engine/midiapi.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <utility>

namespace tonvex {

namespace {

constexpr int PROGRAMS = 128;
constexpr std::array<int, 9> COMMON_KITS = {0, 8, 16, 24, 25, 32, 40, 48, 56};

/// Sounds by bank and program.
using Sounds = std::map<std::pair<int, int>, PatchRow>;

PatchRow Row_Of(const Font_Preset& preset, std::int32_t font) {
    PatchRow row;
    row.Name = preset.PresetName;
    if (row.Name.empty())
        row.Name = Is_On(preset.IsDrums) ? PatchNames[PROGRAMS] : PatchNames[preset.PresetNumber];
    row.Patch = preset.PresetNumber;
    row.Bank = preset.PresetBank;
    row.Font = font;
    return row;
}

bool Is_Common_Kit(const std::pair<int, int>& bankAndProgram) {
    return bankAndProgram.first == 0 &&
           std::find(COMMON_KITS.begin(), COMMON_KITS.end(), bankAndProgram.second) != COMMON_KITS.end();
}

void Thin_Out(Sounds& kits, std::size_t limit) {
    for (auto kit = kits.end(); kits.size() > limit && kit != kits.begin();) {
        --kit;
        if (!Is_Common_Kit(kit->first))
            kit = kits.erase(kit);
    }
}

} // namespace

void Fill_Plain_Patches(GlobalChannelsManager& channels) {
    channels.Global_Patches.fill({});
    channels.Global_DrumPatches.fill({});
    for (std::size_t program = 0; program < PROGRAMS; ++program) {
        PatchRow& row = channels.Global_Patches[program];
        row.Name = PatchNames[program];
        row.Patch = static_cast<std::int16_t>(program);
    }
    channels.Global_DrumPatches[0].Name = PatchNames[PROGRAMS];
    channels.PatchCount = PROGRAMS;
    channels.DrumPatchCount = 1;
}

void Fill_Font_Patches(GlobalChannelsManager& channels, std::span<const Loaded_Font> fonts) {
    Fill_Plain_Patches(channels);
    Sounds melodic;
    Sounds kits;
    for (const Loaded_Font& font : fonts) {
        for (const Font_Preset& preset : font.presets) {
            if (preset.PresetNumber >= PROGRAMS)
                continue;
            Sounds& table = Is_On(preset.IsDrums) ? kits : melodic;
            table.insert_or_assign({preset.PresetBank, preset.PresetNumber}, Row_Of(preset, font.handle));
        }
    }

    for (auto& [place, row] : melodic) {
        const auto [bank, program] = place;
        if (bank == 0)
            channels.Global_Patches[static_cast<std::size_t>(program)] = std::move(row);
        else if (channels.PatchCount < GlobalChannelsManager::PATCH_ROWS)
            channels.Global_Patches[static_cast<std::size_t>(channels.PatchCount++)] = std::move(row);
    }

    if (kits.empty())
        return;
    Thin_Out(kits, channels.Global_DrumPatches.size());
    channels.DrumPatchCount = 0;
    for (auto& [place, row] : kits)
        channels.Global_DrumPatches[static_cast<std::size_t>(channels.DrumPatchCount++)] = std::move(row);
}

} // namespace tonvex
