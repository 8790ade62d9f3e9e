#pragma once

#include <cstdint>

namespace tonvex {

class Session;

/// Puts the start of every event of the channel on the grid of the song's events editor (AlignDiv parts of
/// a beat; four when that is no number of parts), half a part upwards: one step of undo, none when all stand
/// there. False without such a channel. Interface thread.
bool Align_Channel_Events(Session& session, std::int32_t channelId);

} // namespace tonvex
