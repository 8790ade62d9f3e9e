#include "project/export_buffers.h"

#include "base/rounding.h"
#include "engine/short_messages.h"

#include <algorithm>

namespace tonvex {

namespace {

std::size_t Index(int value) {
    return static_cast<std::size_t>(value);
}

} // namespace

Export_Buffers::Export_Buffers(const GlobalChannelsManager& channels) {
    constexpr int NEEDS_ONE = -2;
    channelOfSlot.fill(UNUSED);
    firstRow.fill(-1);
    std::array<bool, midi_format::CHANNELS> taken{};
    taken[midi_format::DRUM_CHANNEL] = true;
    const auto live_slot = [&channels](int row) {
        const GlobalChannel& channel = channels.Channels[Index(row)];
        const bool isMidi = channels.Is_Live_Row(row) && !Is_On(channel.IsAudio);
        return isMidi && channel.OutputChannel < GlobalChannelsManager::SLOTS ? channel.OutputChannel : -1;
    };
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const int slot = live_slot(row);
        if (slot < 0)
            continue;
        channelOfSlot[Index(slot)] = slot < midi_format::CHANNELS ? slot : NEEDS_ONE;
        if (slot < midi_format::CHANNELS)
            taken[Index(slot)] = true;
    }
    for (int slot = midi_format::CHANNELS; slot < GlobalChannelsManager::SLOTS; ++slot) {
        if (channelOfSlot[Index(slot)] != NEEDS_ONE)
            continue;
        auto* const free = std::find(taken.begin(), taken.end(), false);
        channelOfSlot[Index(slot)] =
            free == taken.end() ? slot % PORT_CHANNELS : static_cast<int>(free - taken.begin());
        if (free != taken.end())
            *free = true;
    }
    for (int row = GlobalChannelsManager::CHANNEL_ROWS - 1; row >= 0; --row) {
        const int slot = live_slot(row);
        if (slot >= 0)
            firstRow[Index(channelOfSlot[Index(slot)])] = row;
    }
}

std::int64_t Export_Buffers::Tick_At(double beats) noexcept {
    return RoundHalfEven(beats * static_cast<double>(TICKS_A_BEAT));
}

void Export_Buffers::Set_Position(double beats) noexcept {
    tick = std::max(tick, Tick_At(beats));
}

void Export_Buffers::Take(Sound_Op op, int slot, int a, int b) {
    const int channel = channelOfSlot[Index(slot)];
    if (channel == UNUSED)
        return;
    midi_format::Bytes& column = ExportBuffer[Index(channel)];
    Each_Short_Message(op, channel, a, b, [&](int status, int data1, int data2) {
        midi_format::Append_Delta(column, tick - lastTick[Index(channel)]);
        lastTick[Index(channel)] = tick;
        column.push_back(static_cast<std::uint8_t>(status));
        column.push_back(static_cast<std::uint8_t>(data1));
        if (status < STATUS_PROGRAM || status >= STATUS_PROGRAM + PORT_CHANNELS)
            column.push_back(static_cast<std::uint8_t>(data2));
    });
}

} // namespace tonvex
