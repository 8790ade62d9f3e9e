#pragma once

#include "song/pan_vol_class.h"

#include <vector>

namespace tonvex {

/// Adds, in beats, the moments from which on a map gives another value than before, up to its end. Between
/// two of them the value stands. At most 127 for each two points, however far apart they are.
void Add_Map_Moments(const PanVol_Class& map, double songLength, std::vector<double>& moments);

} // namespace tonvex
