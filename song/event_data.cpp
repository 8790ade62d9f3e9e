#include "song/event_data.h"

namespace tonvex {

Event_Kind Kind_Of(const EventData& data) noexcept {
    constexpr std::array<Event_Kind, std::variant_size_v<EventData>> kinds = {EV_NOTE,  EV_QCHORD, EV_PATCH,
                                                                              EV_NAMED, EV_MC,     EV_AUDIO};
    return kinds[data.index()];
}

} // namespace tonvex
