#pragma once

#include "song/channel_class.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace tonvex {

/// A world in which channel stores live alone: no run, clips as long as at 60 beats a minute, chords keep
/// their names. What fell out of the song is kept.
class Quiet_Channel_Host final : public Channel_Host {
public:
    bool liveChanges = false;
    std::vector<std::pair<std::int32_t, std::int32_t>> fellOut; ///< channel and event

    bool Live_Changes_On() const override { return liveChanges; }
    void Event_Fell_Out(std::int32_t channelNumber, std::int32_t eventId) override {
        fellOut.emplace_back(channelNumber, eventId);
    }
    double Clip_Length_Beats(double, std::int32_t sampleCount) const override {
        return sampleCount / 44100.0;
    }
    void Retype_Chord(QChordData& chord, std::uint8_t chordType) const override {
        chord.ChordTypeIndex = chordType;
    }
    void Rename_Chord(QChordData&, int) const override {}
};

} // namespace tonvex
