#include "engine/transport_parts.h"

#include <cmath>
#include <utility>

namespace tonvex {

bool Follow_Tempo(const Transport_Parts& parts, VGetTickCount& clock) {
    const bool asked = std::exchange(parts.state.TempoChangedRequest, false);
    if (!asked && !clock.Map_Changed())
        return false;
    // What the clock reads on the way is not to be played by.
    Clock_Listener* const listener = std::exchange(clock.listener, nullptr);
    const double beats = clock.GetTime();
    clock.UpdateClockTempo(beats);
    const double beatsPerMs = clock.Tempo * static_cast<double>(clock.Speed) / 60000.0;
    if (std::abs(clock.GetTime() - beats) > beatsPerMs)
        clock.SetTime(beats);
    clock.listener = listener;
    clock.Set_RenderDLL_Clock();
    return true;
}

double Current_Position(VGetTickCount& clock) {
    double segmentEnd = clock.Next_Change_Beat();
    double time = clock.GetTime();
    while (clock.Next_Change_Beat() != segmentEnd) {
        segmentEnd = clock.Next_Change_Beat();
        time = clock.GetTime();
    }
    return time;
}

double Usable_Position(double beats) noexcept {
    return std::isfinite(beats) && beats > 0.0 ? beats : 0.0;
}

} // namespace tonvex
