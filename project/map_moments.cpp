#include "project/map_moments.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

/// A value is rounded, so the next one begins half a step on; a little more, so that no rounding of the slope
/// falls short of it.
constexpr double INTO_THE_NEXT = 0.501;

} // namespace

void Add_Map_Moments(const PanVol_Class& map, double songLength, std::vector<double>& moments) {
    double start = 0.0;
    int value = 0;
    bool isFirst = true;
    for (const MapPoint& point : map.In_Time_Order()) {
        // The last point stands at the end of the song, or where the point before it does if that is later.
        const double end =
            point.TimePos == PanVol_Class::SONG_END ? std::max(songLength, start) : point.TimePos;
        const int steps = isFirst || end <= start ? 0 : std::abs(point.Value - value);
        for (int step = 0; step < steps; ++step)
            moments.push_back(std::min(start + (end - start) * (step + INTO_THE_NEXT) / steps, end));
        moments.push_back(end);
        start = end;
        value = point.Value;
        isFirst = false;
    }
}

} // namespace tonvex
