#include "editors/roll_geometry.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double PIXELS_PER_BEAT_AT_100 = 14.0;

constexpr Zoom_Row Zoom(const char* text, int percent) {
    return {text, static_cast<float>(1.0 / (percent / 100.0 * PIXELS_PER_BEAT_AT_100)), percent == 100};
}

} // namespace

const std::array<Zoom_Row, ZOOM_ROWS> ZoomTable{
    {Zoom("2000 %", 2000), Zoom("1500 %", 1500), Zoom("1000 %", 1000), Zoom("850 %", 850), Zoom("700 %", 700),
     Zoom("500 %", 500), Zoom("300 %", 300), Zoom("250 %", 250), Zoom("200 %", 200), Zoom("175 %", 175),
     Zoom("150 %", 150), Zoom("120 %", 120), Zoom("100 %", 100), Zoom("90 %", 90), Zoom("80 %", 80),
     Zoom("70 %", 70), Zoom("50 %", 50), Zoom("40 %", 40)}};

int Default_Zoom() noexcept {
    const auto found =
        std::find_if(ZoomTable.begin(), ZoomTable.end(), [](const Zoom_Row& row) { return row.Default; });
    return static_cast<int>(found - ZoomTable.begin());
}

double Roll_Geometry::Pixels_Per_Beat() const noexcept {
    const auto row = static_cast<std::size_t>(std::clamp(ZoomIndex, 0, ZOOM_ROWS - 1));
    return Scale / static_cast<double>(ZoomTable[row].BeatsPerPixel);
}

double Roll_Geometry::RowHeight() const noexcept {
    return std::max(1.0, std::floor(DESIGN_ROW_HEIGHT * Scale));
}

int Roll_Geometry::Row_At(double y) const noexcept {
    return static_cast<int>(std::floor(std::clamp(y / RowHeight(), -1e6, 1e6)));
}

int Roll_Geometry::Note_At(double y) const noexcept {
    return NOTE_ROWS - 1 - std::clamp(Row_At(y), 0, NOTE_ROWS - 1);
}

Roll_Box Roll_Geometry::Box_Of(const Ev_Display_Row& row, int note) const noexcept {
    const double width = std::max(X_Of(row.Length), LEAST_WIDTH * Scale);
    return {X_Of(row.StartTime), Y_Of_Note(note), width, RowHeight()};
}

int Roll_Geometry::Hit(const Event_List& events, double x, double y) const {
    int found = -1;
    int chord = -1;
    // What is drawn wider than it is long reaches farther than its end.
    const double reach = Beat_At(LEAST_WIDTH * Scale);
    events.Visit(Beat_At(x) - reach, Beat_At(x) + reach, [&](std::size_t i) {
        const Ev_Display_Row& row = events.Rows()[i];
        if (Box_Of(row).Contains(x, y))
            found = static_cast<int>(i);
        else
            Visit_Boxes(
                row, [&](const Roll_Box& box) { chord = box.Contains(x, y) ? static_cast<int>(i) : chord; });
    });
    return found >= 0 ? found : chord;
}

bool Roll_Geometry::On_Edge(const Ev_Display_Row& row, double x) const noexcept {
    const Roll_Box box = Box_Of(row);
    const double edge = std::min(EDGE_WIDTH * Scale, box.Width / 3.0);
    return Has_Length(row.Kind) && x >= box.Right() - edge && x < box.Right();
}

std::vector<std::size_t> Roll_Geometry::In_Box(const Event_List& events, double x1, double y1, double x2,
                                               double y2) const {
    const double left = std::min(x1, x2);
    const double right = std::max(x1, x2);
    const double upper = std::min(y1, y2);
    const double lower = std::max(y1, y2);
    std::vector<std::size_t> found;
    const double reach = Beat_At(LEAST_WIDTH * Scale);
    events.Visit(Beat_At(left) - reach, std::nextafter(Beat_At(right), 1e300), [&](std::size_t i) {
        bool touched = false;
        Visit_Boxes(events.Rows()[i], [&](const Roll_Box& box) {
            touched = touched ||
                      (box.Right() > left && box.Left <= right && box.Bottom() > upper && box.Top <= lower);
        });
        if (touched)
            found.push_back(i);
    });
    return found;
}

int Roll_Geometry::Zoomed(int steps) const noexcept {
    return std::clamp(ZoomIndex - steps, 0, ZOOM_ROWS - 1);
}

} // namespace tonvex
