#include "song/global_channels_manager.h"

#include "base/rounding.h"
#include "base/text_codec.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <span>
#include <string_view>

namespace tonvex {

namespace {

constexpr std::uint8_t NO_SLOT = 255;
constexpr std::uint8_t HIGHEST = 127;
constexpr int DRUM_SLOT = 9;
constexpr std::size_t NAME_CHARACTERS = 50;
constexpr std::uint8_t DISTORTED_GUITAR = 2;
constexpr int MAX_DISTORTED_GUITARS = 4;
constexpr double MAP_UNITS_A_PERCENT = 1.27;

bool Continues_Character(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The first count characters of a UTF-8 text.
std::string First_Characters(std::string_view text, std::size_t count) {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!Continues_Character(text[i]) && ++seen > count)
            return std::string(text.substr(0, i));
    return std::string(text);
}

} // namespace

GlobalChannelsManager::GlobalChannelsManager(Channel_Host& host) : Maps(host) {
    for (auto& store : stores)
        store = std::make_unique<ChannelClass>(host);
    Clear();
}

void GlobalChannelsManager::Clear() {
    Channels.fill(GlobalChannel{});
    for (auto& store : stores)
        store->Clear();
    for (std::size_t i = 0; i < OutputSlots.size(); ++i)
        OutputSlots[i] = OutputSlot{.SlotName = "Channel " + std::to_string(i),
                                    .InUse = FLAG_ON,
                                    .SlotDrums = FLAG_OFF,
                                    .MidiChannel = static_cast<std::uint8_t>(i)};
    Maps.Clear();
    Effects.Clear();
    OutputSlots[DRUM_SLOT].SlotName += " (Drums)";
    OutputSlots[DRUM_SLOT].SlotDrums = FLAG_ON;
    nextChannelId = FIRST_ID;
}

// ---- finding ----

bool GlobalChannelsManager::Is_Live_Row(int row) const {
    return row >= 0 && row < CHANNEL_ROWS && Is_On(Channels[static_cast<std::size_t>(row)].InUse);
}

int GlobalChannelsManager::Count_Channels() const {
    int count = 0;
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        count += Is_Live_Row(row) ? 1 : 0;
    return count;
}

int GlobalChannelsManager::Effect_Row(int row) const {
    if (!Is_Live_Row(row))
        return -1;
    const GlobalChannel& channel = Channels[static_cast<std::size_t>(row)];
    if (!Is_On(channel.IsAudio))
        return channel.OutputChannel < SLOTS ? channel.OutputChannel : -1;
    const int effectRow = Song_Effects::SLOTS + channel.AudioOutput;
    return effectRow < Song_Effects::ROWS ? effectRow : -1;
}

int GlobalChannelsManager::ChannelI(std::int32_t channelId) const {
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        if (Is_Live_Row(row) && Channels[static_cast<std::size_t>(row)].ChannelID == channelId)
            return row;
    return -1;
}

GlobalChannel* GlobalChannelsManager::Live_Channel(std::int32_t channelId) {
    const int row = ChannelI(channelId);
    return row == -1 ? nullptr : &Channels[static_cast<std::size_t>(row)];
}

int GlobalChannelsManager::First_Free_Row() const {
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        if (!Is_Live_Row(row))
            return row;
    return -1;
}

ChannelClass& GlobalChannelsManager::Store(int row) {
    assert(row >= 0 && row <= PRACTICE_ROW);
    return *stores[static_cast<std::size_t>(row)];
}

const ChannelClass& GlobalChannelsManager::Store(int row) const {
    assert(row >= 0 && row <= PRACTICE_ROW);
    return *stores[static_cast<std::size_t>(row)];
}

int GlobalChannelsManager::Row_On_Slot(std::uint8_t slot, int exceptRow) const {
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        if (row != exceptRow && Is_Live_Row(row) &&
            Channels[static_cast<std::size_t>(row)].OutputChannel == slot)
            return row;
    return -1;
}

int GlobalChannelsManager::Next_Free_Slot() const {
    for (int slot = 0; slot < SLOTS; ++slot)
        if (!Is_On(OutputSlots[static_cast<std::size_t>(slot)].SlotDrums) &&
            Row_On_Slot(static_cast<std::uint8_t>(slot), -1) == -1)
            return slot;
    return 0;
}

std::uint16_t GlobalChannelsManager::Next_AudioOutput() const {
    std::uint16_t output = 0;
    const auto taken = [this, &output] {
        return std::any_of(Channels.begin(), Channels.begin() + CHANNEL_ROWS, [output](const auto& channel) {
            return Is_On(channel.InUse) && Is_On(channel.IsAudio) && channel.AudioOutput == output;
        });
    };
    while (taken())
        ++output;
    return output;
}

double GlobalChannelsManager::Longest_Channel_Beats() const {
    double longest = 0.0;
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        if (Is_Live_Row(row))
            longest = std::max(longest, Store(row).Get_ChannelLength_Beats());
    return longest;
}

// ---- names ----

bool GlobalChannelsManager::Name_Is_Free(const std::string& name, int exceptRow) const {
    const std::string lower = Lower_Latin(name);
    for (int row = 0; row < CHANNEL_ROWS; ++row)
        if (row != exceptRow && Is_Live_Row(row) &&
            Lower_Latin(Channels[static_cast<std::size_t>(row)].ChannelName) == lower)
            return false;
    return true;
}

std::string GlobalChannelsManager::Unique_Name(const std::string& name, int exceptRow) const {
    std::string asked = First_Characters(Trim(name), NAME_CHARACTERS);
    if (!asked.empty() && Name_Is_Free(asked, exceptRow))
        return asked;
    const std::string base = asked.empty() ? "Channel" : asked;
    // The counter of a second channel of a name is 2; of channels that never had a name 1.
    for (int counter = asked.empty() ? 1 : 2;; ++counter) {
        const std::string tail = " " + std::to_string(counter);
        std::string tried = First_Characters(base, NAME_CHARACTERS - tail.size()) + tail;
        if (Name_Is_Free(tried, exceptRow))
            return tried;
    }
}

void GlobalChannelsManager::Set_Name(std::int32_t channelId, const std::string& name) {
    const int row = ChannelI(channelId);
    if (row != -1)
        Channels[static_cast<std::size_t>(row)].ChannelName = Unique_Name(name, row);
}

// ---- coming and going ----

std::int32_t GlobalChannelsManager::New_ChannelID() {
    // At the end of the numbers it goes on from the first that is free now.
    while (ChannelI(nextChannelId) != -1)
        nextChannelId =
            nextChannelId == std::numeric_limits<std::int32_t>::max() ? FIRST_ID : nextChannelId + 1;
    const std::int32_t channelId = nextChannelId;
    nextChannelId = channelId == std::numeric_limits<std::int32_t>::max() ? FIRST_ID : channelId + 1;
    return channelId;
}

int GlobalChannelsManager::Add_Channel(std::int32_t channelId, bool isAudio, std::int32_t outputSlot,
                                       const std::string& name) {
    const int row = First_Free_Row();
    if (row == -1 || ChannelI(channelId) != -1)
        return -1;
    GlobalChannel channel;
    channel.ChannelID = channelId;
    channel.ChannelName = Unique_Name(name);
    channel.IsAudio = To_Flag(isAudio);
    channel.InUse = FLAG_ON;
    if (isAudio)
        channel.AudioOutput = Next_AudioOutput();
    const std::int32_t slot = outputSlot >= 0 && outputSlot < SLOTS ? outputSlot : Next_Free_Slot();
    channel.OutputChannel = NO_SLOT;
    Channels[static_cast<std::size_t>(row)] = channel;
    if (isAudio)
        Maps.Get_AudioMapRow(channelId);
    else
        Take_Slot(row, static_cast<std::uint8_t>(slot));
    Store(row).Clear();
    Store(row).ChannelNumber = channelId;
    if (channelId >= nextChannelId && channelId != std::numeric_limits<std::int32_t>::max())
        nextChannelId = channelId + 1;
    return row;
}

void GlobalChannelsManager::Delete_Channel(std::int32_t channelId) {
    const int row = ChannelI(channelId);
    if (row == -1)
        return;
    Channels[static_cast<std::size_t>(row)] = GlobalChannel{};
    Store(row).Clear();
    Maps.Free_AudioMapRow(channelId);
}

bool GlobalChannelsManager::Take_Rows(const std::array<GlobalChannel, TABLE_ROWS>& rows) {
    Clear();
    Channels = rows;
    for (int row = 0; row < TABLE_ROWS; ++row) {
        GlobalChannel& channel = Channels[static_cast<std::size_t>(row)];
        if (!Is_On(channel.InUse))
            continue;
        if (row >= CHANNEL_ROWS) {
            channel.InUse = FLAG_OFF;
            continue;
        }
        if (ChannelI(channel.ChannelID) != row) {
            Clear();
            return false;
        }
        channel.Volume = std::min(channel.Volume, HIGHEST);
        channel.Pan = std::min(channel.Pan, HIGHEST);
        if (!Is_On(channel.IsAudio) && channel.OutputChannel >= SLOTS)
            channel.OutputChannel = 0;
        Store(row).ChannelNumber = channel.ChannelID;
        if (channel.ChannelID >= nextChannelId &&
            channel.ChannelID != std::numeric_limits<std::int32_t>::max())
            nextChannelId = channel.ChannelID + 1;
    }
    return true;
}

void GlobalChannelsManager::Restore_Channel(int row, const GlobalChannel& channel,
                                            const Channel_Content& events, int mapRow) {
    if (row < 0 || row >= CHANNEL_ROWS || Is_Live_Row(row))
        return;
    Channels[static_cast<std::size_t>(row)] = channel;
    Store(row).Take_Content(events);
    if (Is_On(channel.IsAudio))
        Maps.Take_AudioMapRow(mapRow, channel.ChannelID);
}

// ---- sound ----

bool GlobalChannelsManager::Give_Patch(GlobalChannel& channel, std::int16_t patchI) const {
    const bool drums = channel.OutputChannel < SLOTS && Is_On(OutputSlots[channel.OutputChannel].SlotDrums);
    if (patchI < 0 || patchI >= (drums ? DRUM_PATCH_ROWS : PATCH_ROWS))
        return false;
    const auto i = static_cast<std::size_t>(patchI);
    const PatchRow& patch = drums ? Global_DrumPatches[i] : Global_Patches[i];
    channel.PatchI = patchI;
    channel.PatchByte0 = static_cast<std::uint8_t>(patch.Patch);
    channel.PatchByte1 = patch.Bank;
    return true;
}

void GlobalChannelsManager::Find_Patches() {
    for (int row = 0; row < CHANNEL_ROWS; ++row) {
        GlobalChannel& channel = Channels[static_cast<std::size_t>(row)];
        if (!Is_Live_Row(row) || Is_On(channel.IsAudio) || channel.OutputChannel >= SLOTS)
            continue;
        const bool drums = Is_On(OutputSlots[channel.OutputChannel].SlotDrums);
        const std::span<const PatchRow> table =
            drums ? std::span<const PatchRow>(Global_DrumPatches) : std::span<const PatchRow>(Global_Patches);
        const auto named = [&channel](const PatchRow& patch) {
            return patch.Patch == channel.PatchByte0 && patch.Bank == channel.PatchByte1;
        };
        const auto patchI = static_cast<std::size_t>(channel.PatchI);
        if (channel.PatchI >= 0 && patchI < table.size() && named(table[patchI]))
            continue;
        const auto filled = table.first(static_cast<std::size_t>(drums ? DrumPatchCount : PatchCount));
        const auto found = std::find_if(filled.begin(), filled.end(), named);
        if (found != filled.end())
            channel.PatchI = static_cast<std::int16_t>(found - filled.begin());
        else if (channel.PatchI < 0 || patchI >= table.size())
            channel.PatchI = 0;
    }
}

void GlobalChannelsManager::Take_Slot(int row, std::uint8_t slot) {
    GlobalChannel& channel = Channels[static_cast<std::size_t>(row)];
    const int other = Row_On_Slot(slot, row);
    channel.OutputChannel = slot;
    if (other != -1) {
        const GlobalChannel& sharer = Channels[static_cast<std::size_t>(other)];
        channel.PatchI = sharer.PatchI;
        channel.PatchByte0 = sharer.PatchByte0;
        channel.PatchByte1 = sharer.PatchByte1;
        return;
    }
    if (!Give_Patch(channel, channel.PatchI))
        Give_Patch(channel, 0); // a melodic row has no counterpart among the kits
    Follow_Pan(channel);
}

void GlobalChannelsManager::Set_OutputChannel(std::int32_t channelId, std::uint8_t slot) {
    const int row = ChannelI(channelId);
    if (row == -1 || slot >= SLOTS || !Is_On(OutputSlots[slot].InUse))
        return;
    const GlobalChannel& channel = Channels[static_cast<std::size_t>(row)];
    if (!Is_On(channel.IsAudio) && channel.OutputChannel != slot)
        Take_Slot(row, slot);
}

void GlobalChannelsManager::Set_Patch(std::int32_t channelId, std::int16_t patchI) {
    const GlobalChannel* const asked = Live_Channel(channelId);
    if (asked == nullptr || Is_On(asked->IsAudio) || asked->OutputChannel >= SLOTS ||
        !Is_On(OutputSlots[asked->OutputChannel].InUse))
        return;
    const std::uint8_t slot = asked->OutputChannel;
    for (GlobalChannel& channel : Channels)
        if (Is_On(channel.InUse) && channel.OutputChannel == slot)
            Give_Patch(channel, patchI);
}

void GlobalChannelsManager::Set_Volume(std::int32_t channelId, std::uint8_t value, double position) {
    GlobalChannel* const channel = Live_Channel(channelId);
    if (channel == nullptr)
        return;
    channel->Volume = std::min(value, HIGHEST);
    if (!Is_On(channel->IsAudio))
        return;
    const int mapRow = Maps.Get_AudioMapRow(channelId);
    if (mapRow == -1)
        return;
    PanVol_Class& map = Maps.Audio_Row(mapRow).VolMap;
    const auto mapValue = static_cast<std::int32_t>(RoundHalfEven(channel->Volume * MAP_UNITS_A_PERCENT));
    const auto [before, behind] = map.Points_Around(position);
    map.Set_Point_Val(before, mapValue);
    if (behind != before)
        map.Set_Point_Val(behind, mapValue);
}

void GlobalChannelsManager::Set_Pan(std::int32_t channelId, std::uint8_t value) {
    GlobalChannel* const asked = Live_Channel(channelId);
    if (asked == nullptr)
        return;
    asked->Pan = std::min(value, HIGHEST);
    if (Is_On(asked->IsAudio))
        return;
    for (GlobalChannel& channel : Channels)
        if (Is_On(channel.InUse) && channel.OutputChannel == asked->OutputChannel)
            channel.Pan = asked->Pan;
    Follow_Pan(*asked);
}

/// An undrawn pan map is where the slider stands.
void GlobalChannelsManager::Follow_Pan(const GlobalChannel& channel) {
    if (channel.OutputChannel >= SLOTS)
        return;
    PanVol_Class& map = Maps.Slot_Map(Map_Kind::Pan, channel.OutputChannel);
    if (map.Is_Undrawn())
        map.Set_Fixed_Points(channel.Pan);
}

bool GlobalChannelsManager::Set_Mute(std::int32_t channelId, bool value, bool toggle) {
    GlobalChannel* const channel = Live_Channel(channelId);
    if (channel == nullptr)
        return false;
    channel->Mute = To_Flag(toggle ? !Is_On(channel->Mute) : value);
    return Is_On(channel->Mute);
}

bool GlobalChannelsManager::Set_Solo(std::int32_t channelId, bool value, bool toggle) {
    GlobalChannel* const channel = Live_Channel(channelId);
    if (channel == nullptr)
        return false;
    channel->Solo = To_Flag(toggle ? !Is_On(channel->Solo) : value);
    return Is_On(channel->Solo);
}

bool GlobalChannelsManager::Effective_Mute(int row) const {
    if (!Is_Live_Row(row))
        return false;
    const GlobalChannel& asked = Channels[static_cast<std::size_t>(row)];
    if (Is_On(asked.Mute) || Is_On(asked.Solo))
        return Is_On(asked.Mute);
    return std::any_of(Channels.begin(), Channels.begin() + CHANNEL_ROWS,
                       [](const auto& channel) { return Is_On(channel.InUse) && Is_On(channel.Solo); });
}

bool GlobalChannelsManager::Style_Limit(std::uint8_t style, std::string& message) const {
    if (style != DISTORTED_GUITAR)
        return true;
    const auto count =
        std::count_if(Channels.begin(), Channels.begin() + CHANNEL_ROWS, [](const auto& channel) {
            return Is_On(channel.InUse) && channel.Style == DISTORTED_GUITAR;
        });
    if (count < MAX_DISTORTED_GUITARS)
        return true;
    message = "Can't create more than " + std::to_string(MAX_DISTORTED_GUITARS) +
              " channels using the \ndistorted guitar style";
    return false;
}

} // namespace tonvex
