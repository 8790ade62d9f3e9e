#pragma once

#include "engine/gcm_midi.h"
#include "song/vget_tick_count.h"

#include <cstdint>
#include <vector>

namespace tonvex {

/// Walks one channel's events against the song position and sounds them. One object a MIDI channel for
/// one transport run. Interface thread. Times in beats.
class CHannelPlayerClass {
public:
    /// clock gives the due moment of stored rows; all outlive the player.
    CHannelPlayerClass(GlobalChannelsManager& channels, GCM_Midi& output, const VGetTickCount& clock);

    bool Sounding = true;
    double TimeOffset = 0.0;

    void SetChannel(std::int32_t channelId, int row = -1);
    void InitChannel_MidiData(double startTime);
    void SetTimePos(double time);
    void PlayNextEvent(double time);
    void MuteChannel();
    void UnMuteChannel();
    bool Muted() const noexcept { return muted; }
    /// Nothing left to start and nothing sounding.
    bool At_End() const noexcept;
    int Row() const noexcept { return channelRow; }

private:
    GlobalChannelsManager& channels;
    GCM_Midi& output;
    const VGetTickCount& clock;
    int channelRow = -1;
    bool muted = false;
};

} // namespace tonvex
