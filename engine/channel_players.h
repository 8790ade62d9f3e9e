#pragma once

#include "engine/channel_player_class.h"
#include "engine/transport_parts.h"

#include <memory>
#include <vector>

namespace tonvex {

/// The channel players of one run, stepped together, and what the run knows of mute and solo.
/// Interface thread. Times in beats. A step costs what happens in it and a constant a channel.
class Channel_Players {
public:
    /// Both outlive the players.
    Channel_Players(const Transport_Parts& parts, const VGetTickCount& clock);

    /// A player for every live MIDI row; leaveOutRow gets none (-1: all get one). While the thread engine
    /// runs they follow the changes alone.
    void Make(int leaveOutRow);
    /// Lets go of all players.
    void Make_None() noexcept { players.clear(); }
    /// Puts every player at time and takes the mute table as it is now.
    void Start_At(double time);
    /// Before the player library and the clock start at time: acts on what was changed since the lists were
    /// rendered, so that a list is not replaced under the first notes.
    void Catch_Up(double time);
    /// Starts and ends what is due up to time, in order of time over all channels: a note that ends where
    /// another on the same slot begins is ended first.
    void Step(double time);
    /// The moment of what is due next, as of Moment_At; Song_Moment::NEVER when nothing is.
    std::int64_t Next_At() const;
    /// Silences everything and goes on at time.
    void Seek(double time);
    /// Acts on what mute and solo have become since the last look, with all that was due before time played.
    void Follow_Mutes(double time);
    /// The tempo list was edited.
    void Tempo_Changed();
    void Mute_All();
    /// No channel has anything left to start or to end.
    bool At_End() const;

private:
    struct Channel_Player {
        CHannelPlayerClass player;
        bool tableMute;
        std::uint8_t volume; ///< that the player library has been told
    };
    /// Whose next moment comes first, and that moment; null when nobody has one.
    CHannelPlayerClass* Next_Player(Song_Moment& moment) const;

    void Take_Changes();
    void Play_Until(std::int64_t moment);

    const Transport_Parts& parts;
    const VGetTickCount& clock;
    std::vector<std::unique_ptr<Channel_Player>> players;
};

} // namespace tonvex
