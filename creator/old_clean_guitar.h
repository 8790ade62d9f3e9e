#pragma once

#include <array>
#include <cstdint>

namespace tonvex {

/// Brings the style block of a clean guitar event from its older form into today's.
/// The chord in it was 52 bytes: a length in ms (signed 32) and no finger-picking. It is 60 today, so what
/// lies behind it (the strum's speed and its two texts of 20 characters) moves up 8 bytes as it stands; the
/// last 8 bytes of the older block were never used. The length becomes beats by msPerBeat, above 0. The
/// style is asked to make its notes anew from root and chord type.
void Renew_Old_Clean_Guitar(std::array<std::uint8_t, 200>& styleBlock, double msPerBeat);

} // namespace tonvex
