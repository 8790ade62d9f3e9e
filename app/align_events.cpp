#include "app/align_events.h"

#include "app/session.h"
#include "base/rounding.h"

#include <utility>
#include <vector>

namespace tonvex {

namespace {

constexpr std::int32_t USUAL_PARTS = 4;
/// Finer than any grid that can be heard.
constexpr std::int32_t MOST_PARTS = 960;

} // namespace

bool Align_Channel_Events(Session& session, std::int32_t channelId) {
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return false;
    const std::int32_t asked = session.editorSetup.AlignDiv;
    const double parts = asked >= 1 && asked <= MOST_PARTS ? asked : USUAL_PARTS;
    const ChannelClass& store = session.channels->Store(row);
    std::vector<std::pair<std::int32_t, double>> moves;
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
        const auto event = store.ReadEvent(i);
        if (!event)
            continue;
        const double onGrid = static_cast<double>(RoundHalfUp(event->StartTime * parts)) / parts;
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

} // namespace tonvex
