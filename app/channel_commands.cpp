#include "app/channel_commands.h"

#include "app/session.h"
#include "editors/edit_grid.h"
#include "editors/event_edits.h"

namespace tonvex {

bool Align_Channel_Events(Session& session, std::int32_t channelId) {
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return false;
    const ChannelClass& store = session.channels->Store(row);
    const int div = session.editorSetup.AlignDiv;
    Event_Edits::IDs offGrid;
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
        if (const auto event = store.ReadEvent(i);
            event && Round_To_Grid(event->StartTime, div) != event->StartTime)
            offGrid.push_back(event->EventID);
    if (offGrid.empty())
        return true;
    Event_Edits edits({*session.hub, session.events, *session.channels, session.doors.dialogs}, nullptr);
    edits.Channel = channelId;
    edits.Align(offGrid, div);
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
