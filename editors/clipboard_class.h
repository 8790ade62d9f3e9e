#pragma once

#include "song/channel_class.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace tonvex {

/// Events that were cut or copied, in a channel of their own, at their distance from the earliest of them.
/// Interface thread. Beats.
class ClipboardClass {
public:
    ClipboardClass();

    /// In place of what it held; unknown IDs are passed over. None at all leaves the clipboard as it was.
    void Copy(const ChannelClass& from, const std::vector<std::int32_t>& eventIds);
    bool Is_Empty() const { return store.GetTotalEvents() < 0; }
    /// Where the earliest event stood; -1 when empty.
    double First_Time() const noexcept { return firstTime; }
    /// All events as they begin when the earliest begins at beats, in order of time.
    std::vector<std::pair<double, EventData>> Placed_At(double beats) const;

private:
    /// Nobody plays these events, and no edit reaches them.
    class Quiet_Host final : public Channel_Host {
        double Song_Length_Beats() const override { return 0.0; }
        bool Live_Changes_On() const override { return false; }
        void Event_Fell_Out(std::int32_t, std::int32_t) override {}
        double Clip_Length_Beats(double, std::int32_t) const override { return 0.0; }
        void Retype_Chord(QChordData&, std::uint8_t) const override {}
        void Rename_Chord(QChordData&, int) const override {}
    };

    Quiet_Host host;
    ChannelClass store;
    double firstTime = -1.0;
};

} // namespace tonvex
