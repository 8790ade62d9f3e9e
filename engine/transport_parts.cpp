#include "engine/transport_parts.h"

#include <cmath>

namespace tonvex {

void Keep_Position_After_Tempo_Edit(VGetTickCount& clock, double beats) {
    clock.UpdateClockTempo(beats);
    const double beatsPerMs = clock.Tempo * static_cast<double>(clock.Speed) / 60000.0;
    if (std::abs(clock.GetTime() - beats) > beatsPerMs)
        clock.SetTime(beats);
    clock.Set_RenderDLL_Clock();
}

double Usable_Position(double beats) noexcept {
    return std::isfinite(beats) && beats > 0.0 ? beats : 0.0;
}

} // namespace tonvex
