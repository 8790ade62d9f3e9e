#include "engine/channel_players.h"

#include <algorithm>

namespace tonvex {

Channel_Players::Channel_Players(const Transport_Parts& transportParts, const VGetTickCount& runClock)
    : parts(transportParts), clock(runClock) {}

void Channel_Players::Make(int leaveOutRow) {
    players.clear();
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const GlobalChannel& channel = parts.channels.Channels[static_cast<std::size_t>(row)];
        if (row == leaveOutRow || !parts.channels.Is_Live_Row(row) || Is_On(channel.IsAudio))
            continue;
        players.push_back(std::make_unique<Channel_Player>(Channel_Player{
            CHannelPlayerClass(parts.channels, parts.gcm, clock, parts.counter, parts.Chord_Parts()),
            false}));
        players.back()->player.SetChannel(channel.ChannelID, row);
        players.back()->player.renderer = parts.state.EngineRunning ? &parts.render : nullptr;
    }
}

void Channel_Players::Start_At(double time) {
    for (const auto& entry : players) {
        entry->tableMute = parts.channels.Effective_Mute(entry->player.Row());
        entry->player.SetTimePos(time);
        if (entry->tableMute)
            entry->player.MuteChannel();
    }
}

void Channel_Players::Step(double time) {
    for (const auto& entry : players)
        entry->player.Take_Changes(time);
    const std::int64_t now = CHannelPlayerClass::Moment_At(time);
    while (true) {
        CHannelPlayerClass* next = nullptr;
        CHannelPlayerClass::Moment nextMoment{CHannelPlayerClass::NEVER, true};
        for (const auto& entry : players) {
            const auto moment = entry->player.Next_Moment();
            if (moment < nextMoment) {
                nextMoment = moment;
                next = &entry->player;
            }
        }
        if (next == nullptr || nextMoment.at > now)
            return;
        next->Play_Next_Moment();
    }
}

void Channel_Players::Seek(double time) {
    for (const auto& entry : players) {
        entry->player.MuteChannel();
        if (!entry->tableMute)
            entry->player.UnMuteChannel();
        entry->player.SetTimePos(time);
    }
}

void Channel_Players::Follow_Mutes() {
    for (const auto& entry : players) {
        const bool mute = parts.channels.Effective_Mute(entry->player.Row());
        if (mute == entry->tableMute)
            continue;
        entry->tableMute = mute;
        if (parts.state.EngineRunning)
            parts.cue.Channel_SetMute(entry->player.Row(), mute);
        if (mute)
            entry->player.MuteChannel();
        else
            entry->player.UnMuteChannel();
    }
}

void Channel_Players::Mute_All() {
    for (const auto& entry : players)
        entry->player.MuteChannel();
}

bool Channel_Players::At_End() const {
    if (parts.state.EngineRunning)
        return parts.cue.At_End();
    return std::all_of(players.begin(), players.end(),
                       [](const auto& entry) { return entry->player.At_End(); });
}

} // namespace tonvex
