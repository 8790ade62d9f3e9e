#pragma once

#include "song/event_data.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace tonvex {

/// An event as the tool's documents show it: its start in beats and its payload.
struct Timed_Event {
    double StartTime = 0.0;
    EventData data;
};

/// Reads one. Numbers left out are 0, InUse is live, blocks shorter than theirs are filled up with zero
/// bytes. False with a text in problem for what is no event.
bool Read_Event(const nlohmann::json& object, Timed_Event& event, std::string& problem);

} // namespace tonvex
