#pragma once

#include "song/pan_vol_class.h"

#include <QPointF>
#include <QRectF>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tonvex {

/// A point of a map as an editor shows it. The last one stands at the song's end, or behind what lies later.
struct Map_Dot {
    std::int32_t id = 0;
    double beat = 0.0;
    int value = 0;
    bool moveable = false;
    bool operator==(const Map_Dot&) const = default;
};

/// All points of a map in order of time; songLength in beats.
std::vector<Map_Dot> Map_Dots(const PanVol_Class& map, double songLength);
/// dots with one of them elsewhere: a move keeps the order of time, behind those of the same time. A point
/// that cannot be moved takes the value alone.
std::vector<Map_Dot> Moved_Dots(std::vector<Map_Dot> dots, std::int32_t id, double beat, int value);

/// Beats across, values up a field of pixels. Pure.
class Map_Field {
public:
    static constexpr double BEATS_PER_BAR = 4.0;
    /// box in pixels, not empty; shownBeats above 0 from beat 0 at its left edge.
    Map_Field(const QRectF& box, double shownBeats) noexcept : field(box), beats(shownBeats) {}
    double X_Of(double beat) const noexcept { return field.left() + beat / beats * field.width(); }
    double Y_Of(int value) const noexcept;
    QPointF Place_Of(const Map_Dot& dot) const noexcept { return {X_Of(dot.beat), Y_Of(dot.value)}; }
    /// 0 up to what is shown.
    double Beat_At(double x) const noexcept;
    /// 0 to 127, to the nearer.
    int Value_At(double y) const noexcept;
    /// The nearest dot within reach pixels of point, of several at one place the last; nothing when none is.
    std::optional<std::size_t> Hit(std::span<const Map_Dot> dots, const QPointF& point, double reach) const;

private:
    QRectF field;
    double beats;
};

/// The nearest multiple of step, not below 0.
double Snapped(double beat, double step) noexcept;

} // namespace tonvex
