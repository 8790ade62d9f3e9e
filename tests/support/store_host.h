#pragma once

#include "song/channel_class.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tonvex {

/// The world of a store under test.
class Store_Host final : public Channel_Host {
public:
    bool live = false;
    double samplesPerBeat = 22050.0;
    double songLength = 0.0;
    std::vector<std::int32_t> fallen;
    std::function<void(std::int32_t eventId)> onFall = [](std::int32_t) {}; ///< the hub's part

    double Song_Length_Beats() const override { return songLength; }
    bool Live_Changes_On() const override { return live; }
    void Event_Fell_Out(std::int32_t /*channelNumber*/, std::int32_t eventId) override {
        fallen.push_back(eventId);
        onFall(eventId);
    }
    double Clip_Length_Beats(double /*startBeat*/, std::int32_t sampleCount) const override {
        return sampleCount / samplesPerBeat;
    }
    void Retype_Chord(QChordData& chord, std::uint8_t chordType) const override {
        chord.ChordTypeIndex = chordType;
    }
    void Rename_Chord(QChordData& chord, int semitones) const override {
        chord.ChordName += std::to_string(semitones);
    }
};

} // namespace tonvex
