#pragma once

#include "song/channel_class.h"

#include <cstdint>

namespace tonvex {

class Session;

/// What the channel stores know of the session: whether a song runs, the hub for events that fall out of
/// the song, the tempo map, the names of chords. Interface thread.
class Session_Channel_Host final : public Channel_Host {
public:
    /// session owns the host.
    explicit Session_Channel_Host(Session& owner) : session(owner) {}

    double Song_Length_Beats() const override;
    bool Live_Changes_On() const override;
    void Event_Fell_Out(std::int32_t channelNumber, std::int32_t eventId) override;
    double Clip_Length_Beats(double startBeat, std::int32_t sampleCount) const override;
    void Retype_Chord(QChordData& chord, std::uint8_t chordType) const override;
    void Rename_Chord(QChordData& chord, int semitones) const override;

private:
    Session& session;
};

} // namespace tonvex
