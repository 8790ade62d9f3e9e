#include "app/channel_commands.h"

#include "app/session.h"
#include "editors/edit_grid.h"

#include <utility>
#include <vector>

namespace tonvex {

bool Align_Channel_Events(Session& session, std::int32_t channelId) {
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return false;
    const ChannelClass& store = session.channels->Store(row);
    std::vector<std::pair<std::int32_t, double>> moves;
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
        const auto event = store.ReadEvent(i);
        if (!event)
            continue;
        const double onGrid = Round_To_Grid(event->StartTime, session.editorSetup.AlignDiv);
        if (onGrid != event->StartTime)
            moves.emplace_back(event->EventID, onGrid);
    }
    if (moves.empty())
        return true;
    const MsgManager::Batch batch(*session.hub, MsgManager::Batch::Update_At_End, "Align Events");
    for (const auto& [eventId, startBeat] : moves)
        session.hub->Message(nullptr, MSG_MOVE_EVENT, channelId, eventId, startBeat);
    session.hub->Message(nullptr, MSG_MOVE_END, channelId);
    return true;
}

void Clear_All_Status(Session& session) {
    const MsgManager::Batch batch(*session.hub, MsgManager::Batch::Update_At_End,
                                  "Clear all channels status");
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const std::int32_t channelId = session.channels->Channels[static_cast<std::size_t>(row)].ChannelID;
        session.hub->Message(nullptr, MSG_CLEAR_MUTE, channelId, false);
        session.hub->Message(nullptr, MSG_CLEAR_SOLO, channelId, false);
    }
}

} // namespace tonvex
