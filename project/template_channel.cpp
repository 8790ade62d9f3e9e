#include "project/template_channel.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int HIGHEST = 127;

int Row_In(const PatchRow* rows, int count, int program, int bank) {
    for (int row = 0; row < count; ++row) {
        if (rows[row].Patch == program && rows[row].Bank == bank)
            return row;
    }
    return -1;
}

int Asked_Slot(const ChannelTemplate& preset) {
    const int slot = preset.TemplateOutput;
    return slot >= 0 && slot < GlobalChannelsManager::SLOTS ? slot : NOT_GIVEN;
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

std::optional<std::int32_t> Add_Template_Channel(Change_Hub& hub, int addMessage,
                                                 GlobalChannelsManager& channels, GCM_Midi& gcm,
                                                 const Template_Channel& wanted) {
    const ChannelTemplate& preset = wanted.preset;
    std::array<bool, GlobalChannelsManager::CHANNEL_ROWS> before{};
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        before[static_cast<std::size_t>(row)] = channels.Is_Live_Row(row);
    hub.Message(nullptr, addMessage, wanted.name, false, std::int32_t{Asked_Slot(preset)});
    int row = 0;
    while (row < GlobalChannelsManager::CHANNEL_ROWS &&
           (before[static_cast<std::size_t>(row)] || !channels.Is_Live_Row(row)))
        ++row;
    if (row == GlobalChannelsManager::CHANNEL_ROWS)
        return std::nullopt;

    GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
    const int slot = channel.OutputChannel;
    channel.Style = static_cast<std::uint8_t>(preset.TemplateStyle);
    channel.StyleInts = preset.StyleInts;
    channel.StyleStrings = preset.StyleStrings;
    std::copy(preset.CustomInts.begin(), preset.CustomInts.end(), channel.StyleCustomInts.begin());
    channels.Set_Volume(channel.ChannelID, wanted.volume);
    channels.Set_Pan(channel.ChannelID, wanted.pan);
    channels.Set_Patch(channel.ChannelID,
                       Patch_Row_Of(channels, slot, preset.TemplatePatch0, preset.TemplatePatch1));
    if (preset.EffectCount > 0)
        channels.Effects.Set_Row(channels.Effect_Row(row), preset.Effects());
    gcm.GCM_SetChannelPatch(row, channel.PatchI);
    gcm.GCM_SetChannelPan(row);
    gcm.GCM_SetChannelEffects(row);
    hub.Message(nullptr, HUB_GENERAL_UPDATE);
    return channel.ChannelID;
}

} // namespace tonvex
