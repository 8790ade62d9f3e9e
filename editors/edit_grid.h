#pragma once

#include <array>

namespace tonvex {

/// A length of the grid on offer.
struct Grid_Choice {
    int Div;          ///< divisions of a beat
    const char* Text; ///< as a note length
};
/// Straight ones from the beat down, then triplets.
inline constexpr std::array<Grid_Choice, 9> GRID_CHOICES{{{1, "1/4"},
                                                          {2, "1/8"},
                                                          {4, "1/16"},
                                                          {8, "1/32"},
                                                          {16, "1/64"},
                                                          {3, "1/8 triplet"},
                                                          {6, "1/16 triplet"},
                                                          {12, "1/32 triplet"},
                                                          {24, "1/64 triplet"}}};

inline constexpr int MOST_GRID_DIVISIONS = 96;

/// beats on the grid of div divisions of a beat; half a step goes up. div below 1 counts as 1, above
/// MOST_GRID_DIVISIONS as that.
double Round_To_Grid(double beats, int div) noexcept;
/// beats without what sums of steps leave behind: within a billionth of a place that every grid on offer has,
/// it is that place.
double Tidy_Beats(double beats) noexcept;
/// div as Round_To_Grid takes it.
int Grid_Divisions(int div) noexcept;
/// The text of a choice; "own" for what is none.
const char* Grid_Text(int div) noexcept;

/// What edits snap to. Beats.
struct Edit_Grid {
    bool AlignOn = true;
    int AlignDiv = 4; ///< divisions of a beat

    double Step() const noexcept { return 1.0 / Grid_Divisions(AlignDiv); }
    /// On the grid while AlignOn, else as it came.
    double Snap(double beats) const noexcept { return AlignOn ? Round_To_Grid(beats, AlignDiv) : beats; }
    /// Start of the grid cell that beats lies in; beats itself without AlignOn.
    double Cell(double beats) const noexcept;
};

} // namespace tonvex
