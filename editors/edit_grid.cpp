#include "editors/edit_grid.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

int Grid_Divisions(int div) noexcept {
    return std::clamp(div, 1, MOST_GRID_DIVISIONS);
}

double Round_To_Grid(double beats, int div) noexcept {
    const int divisions = Grid_Divisions(div);
    return static_cast<double>(RoundHalfUp(beats * divisions)) / divisions;
}

double Tidy_Beats(double beats) noexcept {
    constexpr double FINEST = 48.0; // divisions that hold all choices
    constexpr double NOISE = 1e-9;
    const double place = static_cast<double>(RoundHalfUp(beats * FINEST)) / FINEST;
    return std::abs(beats - place) < NOISE ? place : beats;
}

const char* Grid_Text(int div) noexcept {
    for (const Grid_Choice& choice : GRID_CHOICES)
        if (choice.Div == div)
            return choice.Text;
    return "own";
}

double Edit_Grid::Cell(double beats) const noexcept {
    if (!AlignOn)
        return beats;
    const int divisions = Grid_Divisions(AlignDiv);
    // A place that lies on the grid but for the rounding of its sum belongs to the cell that begins there.
    constexpr double SAME = 1e-9;
    return std::floor(beats * divisions + SAME) / divisions;
}

} // namespace tonvex
