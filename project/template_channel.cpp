#include "project/template_channel.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int HIGHEST = 127;
constexpr const char* STEP = "Add channel";

int Row_In(const PatchRow* rows, int count, int program, int bank) {
    for (int row = 0; row < count; ++row) {
        if (rows[row].Patch == program && rows[row].Bank == bank)
            return row;
    }
    return -1;
}

int Slot_For(const GlobalChannelsManager& channels, const ChannelTemplate& preset) {
    const int slot = preset.TemplateOutput;
    return slot >= 0 && slot < GlobalChannelsManager::SLOTS ? slot : channels.Next_Free_Slot();
}

int Live_Row_On(const GlobalChannelsManager& channels, int slot) {
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (channels.Is_Live_Row(row) &&
            channels.Channels[static_cast<std::size_t>(row)].OutputChannel == slot)
            return row;
    }
    return -1;
}

} // namespace

std::int16_t Patch_Row_Of(const GlobalChannelsManager& channels, int slot, int program, int bank) {
    const int sound = std::clamp(program, 0, HIGHEST);
    const bool drums = slot == DRUM_SLOT;
    const int row = drums ? Row_In(channels.Global_DrumPatches.data(), channels.DrumPatchCount, sound, bank)
                          : Row_In(channels.Global_Patches.data(), channels.PatchCount, sound, bank);
    if (row >= 0)
        return static_cast<std::int16_t>(row);
    return static_cast<std::int16_t>(drums ? 0 : sound);
}

ChannelTemplate Template_Of(const GlobalChannel& channel, const std::string& layoutName) {
    ChannelTemplate made;
    made.KeyboardSetupFile = layoutName;
    made.TemplatePan = channel.Pan;
    made.TemplateVol = channel.Volume;
    made.TemplatePatch0 = channel.PatchByte0;
    made.TemplatePatch1 = channel.PatchByte1;
    made.TemplateStyle = channel.Style;
    if (channel.OutputChannel == DRUM_SLOT)
        made.TemplateOutput = DRUM_SLOT;
    made.StyleInts = channel.StyleInts;
    made.StyleStrings = channel.StyleStrings;
    std::copy_n(channel.StyleCustomInts.begin(), made.CustomInts.size(), made.CustomInts.begin());
    return made;
}

std::optional<std::int32_t> Add_Template_Channel(Change_Hub& hub, UndoModule& undo,
                                                 GlobalChannelsManager& channels, GCM_Midi& gcm,
                                                 const Template_Channel& wanted) {
    const ChannelTemplate& preset = wanted.preset;
    const int row = channels.First_Free_Row();
    const int slot = Slot_For(channels, preset);
    undo.Begin_Step(STEP);
    undo.Undo_Effects(slot, STEP);
    undo.Undo_SlotMap(Map_Kind::Pan, slot, STEP);
    // Sound and pan are the same on all rows of a slot.
    if (const int sharer = Live_Row_On(channels, slot); sharer >= 0)
        undo.Undo_Row(sharer, STEP);
    hub.Message(nullptr, HUB_ADD_CHANNEL, wanted.name, false, std::int32_t{slot});
    const bool added = channels.Is_Live_Row(row);
    if (added) {
        GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
        channel.Style = static_cast<std::uint8_t>(preset.TemplateStyle);
        channel.StyleInts = preset.StyleInts;
        channel.StyleStrings = preset.StyleStrings;
        std::copy(preset.CustomInts.begin(), preset.CustomInts.end(), channel.StyleCustomInts.begin());
        channels.Set_Volume(channel.ChannelID, wanted.volume);
        channels.Set_Pan(channel.ChannelID, wanted.pan);
        channels.Set_Patch(channel.ChannelID,
                           Patch_Row_Of(channels, slot, preset.TemplatePatch0, preset.TemplatePatch1));
        if (preset.EffectCount > 0)
            channels.Effects.Set_Row(slot, preset.Effects());
        gcm.GCM_SetChannelPatch(row, channel.PatchI);
        gcm.GCM_SetChannelPan(row);
        gcm.GCM_SetChannelEffects(row);
        hub.Message(nullptr, HUB_GENERAL_UPDATE);
    }
    undo.End_Step();
    return added ? std::optional(channels.Channels[static_cast<std::size_t>(row)].ChannelID) : std::nullopt;
}

} // namespace tonvex
