#include "widgets/map_field.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

std::vector<Map_Dot> Map_Dots(const PanVol_Class& map, double songLength) {
    std::vector<Map_Dot> dots;
    double latest = 0.0;
    for (const MapPoint& point : map.In_Time_Order()) {
        const bool last = point.TimePos == PanVol_Class::SONG_END;
        latest = last ? std::max(latest, songLength) : point.TimePos;
        dots.push_back({point.ID, latest, point.Value, map.PointIs_Moveable(point.ID)});
    }
    return dots;
}

std::vector<Map_Dot> Moved_Dots(std::vector<Map_Dot> dots, std::int32_t id, double beat, int value) {
    const auto found =
        std::find_if(dots.begin(), dots.end(), [id](const Map_Dot& dot) { return dot.id == id; });
    if (found == dots.end())
        return dots;
    found->value = std::clamp(value, 0, PanVol_Class::HIGHEST);
    if (!found->moveable)
        return dots;
    Map_Dot moved = *found;
    moved.beat = std::max(0.0, beat);
    dots.erase(found);
    // The last of all stays behind everything.
    const auto last = dots.end() - 1;
    last->beat = std::max(last->beat, moved.beat);
    dots.insert(std::upper_bound(dots.begin(), last, moved.beat,
                                 [](double time, const Map_Dot& dot) { return time < dot.beat; }),
                moved);
    return dots;
}

double Map_Field::Y_Of(int value) const noexcept {
    return field.bottom() - static_cast<double>(value) / PanVol_Class::HIGHEST * field.height();
}

double Map_Field::Beat_At(double x) const noexcept {
    return std::clamp((x - field.left()) / field.width(), 0.0, 1.0) * beats;
}

int Map_Field::Value_At(double y) const noexcept {
    const double share = std::clamp((field.bottom() - y) / field.height(), 0.0, 1.0);
    return static_cast<int>(RoundHalfUp(share * PanVol_Class::HIGHEST));
}

std::optional<std::size_t> Map_Field::Hit(std::span<const Map_Dot> dots, const QPointF& point,
                                          double reach) const {
    std::optional<std::size_t> nearest;
    double least = reach;
    for (std::size_t i = 0; i < dots.size(); ++i) {
        const QPointF apart = Place_Of(dots[i]) - point;
        const double distance = std::hypot(apart.x(), apart.y());
        if (distance <= least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

double Snapped(double beat, double step) noexcept {
    return std::max(0.0, std::round(beat / step) * step);
}

} // namespace tonvex
