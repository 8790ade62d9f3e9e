#pragma once

#include <cstdint>

namespace tonvex {

class Session;

/// Puts the start of every event of the channel on the grid of the song's events editor (AlignDiv; see
/// Round_To_Grid): one step of undo, none when all stand there. False without such a channel. Interface
/// thread.
bool Align_Channel_Events(Session& session, std::int32_t channelId);

/// No channel is mute or solo any more. Interface thread.
void Clear_All_Status(Session& session);

} // namespace tonvex
