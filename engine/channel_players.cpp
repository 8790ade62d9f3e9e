#include "engine/channel_players.h"

#include <algorithm>
#include <utility>

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
            CHannelPlayerClass(parts.channels, parts.gcm, clock, parts.counter, parts.Chord_Parts()), false,
            channel.Volume}));
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

void Channel_Players::Catch_Up(double time) {
    if (std::exchange(parts.state.TempoChangedRequest, false))
        Tempo_Changed();
    Take_Changes();
    Follow_Mutes(time);
}

void Channel_Players::Take_Changes() {
    for (const auto& entry : players) {
        entry->player.Take_Changes();
        const int row = entry->player.Row();
        const GlobalChannel& channel = parts.channels.Channels[static_cast<std::size_t>(row)];
        if (parts.state.EngineRunning && channel.Volume != entry->volume)
            parts.cue.Channel_SetVolFactor(row, Vol_Factor(channel));
        entry->volume = channel.Volume;
    }
}

void Channel_Players::Step(double time) {
    Take_Changes();
    Play_Until(Moment_At(time));
}

CHannelPlayerClass* Channel_Players::Next_Player(Song_Moment& moment) const {
    CHannelPlayerClass* next = nullptr;
    moment = {Song_Moment::NEVER, true};
    for (const auto& entry : players) {
        const Song_Moment ofPlayer = entry->player.Next_Moment();
        if (ofPlayer < moment) {
            moment = ofPlayer;
            next = &entry->player;
        }
    }
    return next;
}

std::int64_t Channel_Players::Next_At() const {
    Song_Moment moment{};
    (void)Next_Player(moment);
    return moment.at;
}

void Channel_Players::Play_Until(std::int64_t moment) {
    Song_Moment next{};
    for (CHannelPlayerClass* player = Next_Player(next); player != nullptr && next.at <= moment;
         player = Next_Player(next))
        player->Play_Next_Moment();
    for (const auto& entry : players)
        entry->player.Played_Until(moment);
}

void Channel_Players::Seek(double time) {
    for (const auto& entry : players)
        entry->player.SetTimePos(time);
}

void Channel_Players::Follow_Mutes(double time) {
    bool played = false;
    for (const auto& entry : players) {
        const bool mute = parts.channels.Effective_Mute(entry->player.Row());
        if (mute == entry->tableMute)
            continue;
        if (!std::exchange(played, true)) {
            Take_Changes();
            Play_Until(Moment_At(time) - 1);
        }
        entry->tableMute = mute;
        if (parts.state.EngineRunning)
            parts.cue.Channel_SetMute(entry->player.Row(), mute);
        if (mute)
            entry->player.MuteChannel();
        else
            entry->player.UnMuteChannel();
    }
}

void Channel_Players::Tempo_Changed() {
    for (const auto& entry : players)
        entry->player.Tempo_Changed();
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
