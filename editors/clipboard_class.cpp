#include "editors/clipboard_class.h"

#include "editors/edit_grid.h"

#include <algorithm>

namespace tonvex {

ClipboardClass::ClipboardClass() : store(host) {}

void ClipboardClass::Copy(const ChannelClass& from, const std::vector<std::int32_t>& eventIds) {
    std::vector<std::pair<double, EventData>> taken;
    for (const std::int32_t eventId : eventIds)
        if (const auto event = from.ReadEvent(from.GetEvent_I(eventId)))
            taken.emplace_back(event->StartTime, event->Payload());
    if (taken.empty())
        return;
    std::stable_sort(taken.begin(), taken.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    store.Clear();
    firstTime = taken.front().first;
    for (const auto& [start, data] : taken)
        store.AddNewEvent(start - firstTime, data);
}

std::vector<std::pair<double, EventData>> ClipboardClass::Placed_At(double beats) const {
    std::vector<std::pair<double, EventData>> placed;
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
        if (const auto event = store.ReadEvent(i))
            placed.emplace_back(Tidy_Beats(beats + event->StartTime), event->Payload());
    return placed;
}

} // namespace tonvex
