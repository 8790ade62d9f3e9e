#pragma once

#include "song/global_channels_manager.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace tonvex {

/// A row of the channels list as project files carry it. What the view bytes say is the list's own affair;
/// they are kept as they came.
struct Channels_List_Row {
    Flag16 InUse = FLAG_OFF;
    std::int32_t ChannelID = 0;
    std::string ChannelName; ///< at most 50 characters
    std::array<std::uint8_t, 5> ViewBytes{};
    std::int32_t ViewLong = 0;
    bool operator==(const Channels_List_Row&) const = default;
};

using Channels_List_Rows = std::array<Channels_List_Row, GlobalChannelsManager::CHANNEL_ROWS>;

/// Brings the list in step with the channels: a live channel keeps its row or takes the first free one, and
/// has its name there; rows of channels that are gone become free and keep their fields.
void Follow_Channels(Channels_List_Rows& rows, std::span<const GlobalChannel> channels);

} // namespace tonvex
