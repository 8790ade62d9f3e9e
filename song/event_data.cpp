#include "song/event_data.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

double Stored_Beats(double beats, double instead) noexcept {
    return std::isnan(beats) ? instead : std::clamp(beats, -MAX_EVENT_BEATS, MAX_EVENT_BEATS);
}

double Start_In_Song(double beats) noexcept {
    return std::max(0.0, Stored_Beats(beats, 0.0));
}

Event_Kind Kind_Of(const EventData& data) noexcept {
    constexpr std::array<Event_Kind, std::variant_size_v<EventData>> kinds = {EV_NOTE,  EV_QCHORD, EV_PATCH,
                                                                              EV_NAMED, EV_MC,     EV_AUDIO};
    return kinds[data.index()];
}

} // namespace tonvex
