#include "project/channels_list_rows.h"

#include <algorithm>

namespace tonvex {

void Follow_Channels(Channels_List_Rows& rows, std::span<const GlobalChannel> channels) {
    const auto liveChannels = channels.first(std::min(channels.size(), rows.size()));
    for (Channels_List_Row& row : rows) {
        const bool lives = std::any_of(liveChannels.begin(), liveChannels.end(), [&row](const auto& channel) {
            return Is_On(channel.InUse) && channel.ChannelID == row.ChannelID;
        });
        if (!lives)
            row.InUse = FLAG_OFF;
    }
    for (const GlobalChannel& channel : liveChannels) {
        if (!Is_On(channel.InUse))
            continue;
        auto* row = std::find_if(rows.begin(), rows.end(), [&channel](const Channels_List_Row& listed) {
            return Is_On(listed.InUse) && listed.ChannelID == channel.ChannelID;
        });
        if (row == rows.end()) {
            row = std::find_if(rows.begin(), rows.end(),
                               [](const Channels_List_Row& listed) { return !Is_On(listed.InUse); });
            if (row == rows.end())
                return; // two rows of one channel, from a file: the list shows what it can
            *row = Channels_List_Row{.InUse = FLAG_ON, .ChannelID = channel.ChannelID, .ChannelName = {}};
        }
        row->ChannelName = channel.ChannelName;
    }
}

} // namespace tonvex
