#pragma once

#include "audio/font_preset.h"
#include "song/global_channels_manager.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tonvex {

/// A font in the synthesizer with what it offers.
struct Loaded_Font {
    std::int32_t handle = 0; ///< of the sound door, above 0
    std::vector<Font_Preset> presets;
};

/// What a MIDI port offers: rows 0 to 127 the General MIDI programs, drum row 0 the standard kit; Font 0.
void Fill_Plain_Patches(GlobalChannelsManager& channels);

/// What the fonts, in list order, offer; where two have the same sound, the later one's is taken.
/// Songs keep row numbers, so melodic rows 0 to 127 are always the programs of bank 0: one that no font
/// has keeps its General MIDI name with Font 0. Behind them come the other banks' sounds in order of bank
/// and program, as many as there are rows. Drum kits stand in order of bank and program; when there are
/// more than rows, the kits of the General Standard (0, 8, 16, 24, 25, 32, 40, 48, 56) of bank 0 are kept
/// before others. Without any kit the standard kit stays with Font 0.
void Fill_Font_Patches(GlobalChannelsManager& channels, std::span<const Loaded_Font> fonts);

} // namespace tonvex
