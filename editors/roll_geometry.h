#pragma once

#include "editors/event_display.h"

#include <array>
#include <cstddef>
#include <vector>

namespace tonvex {

struct Zoom_Row {
    const char* Text;
    float BeatsPerPixel; ///< of a design pixel: 1 / (percent / 100 * 14)
    bool Default;
};
inline constexpr int ZOOM_ROWS = 18;
/// From the widest to the narrowest.
extern const std::array<Zoom_Row, ZOOM_ROWS> ZoomTable;
/// Row of the default zoom.
int Default_Zoom() noexcept;

/// A box in pixels; right and bottom are outside.
struct Roll_Box {
    double Left = 0.0;
    double Top = 0.0;
    double Width = 0.0;
    double Height = 0.0;
    double Right() const noexcept { return Left + Width; }
    double Bottom() const noexcept { return Top + Height; }
    bool Contains(double x, double y) const noexcept {
        return x >= Left && x < Right() && y >= Top && y < Bottom();
    }
};

/// Where beats and notes lie on the drawing surface: pixels from beat 0 and from the top of the highest row.
/// Note 127 stands on row 0. Pure.
class Roll_Geometry {
public:
    static constexpr int NOTE_ROWS = 128;
    /// A move into one of the rows from this one on counts as leaving the notes.
    static constexpr int OUT_ROW = 126;
    static constexpr double DESIGN_ROW_HEIGHT = 18.0;
    /// Nothing is drawn narrower, in design pixels, nor is harder to hit.
    static constexpr double LEAST_WIDTH = 3.0;
    /// The strip at the right edge that stretches, in design pixels, of an event wide enough.
    static constexpr double EDGE_WIDTH = 6.0;

    double Scale = 1.0; ///< screen pixels of a design pixel
    int ZoomIndex = Default_Zoom();

    double Pixels_Per_Beat() const noexcept;
    double X_Of(double beat) const noexcept { return beat * Pixels_Per_Beat(); }
    double Beat_At(double x) const noexcept { return x / Pixels_Per_Beat(); }
    /// Whole pixels, so that rows do not blur.
    double RowHeight() const noexcept;
    static int Row_Of_Note(int note) noexcept { return NOTE_ROWS - 1 - note; }
    double Y_Of_Note(int note) const noexcept { return Row_Of_Note(note) * RowHeight(); }
    /// Row under y, which may lie outside: below 0 above the roll.
    int Row_At(double y) const noexcept;
    /// 0 to 127.
    int Note_At(double y) const noexcept;
    double Total_Height() const noexcept { return NOTE_ROWS * RowHeight(); }
    Roll_Box Box_Of(const Ev_Display_Row& row) const noexcept { return Box_Of(row, row.Note); }
    /// The event's time on another row: where the other notes of a chord lie.
    Roll_Box Box_Of(const Ev_Display_Row& row, int note) const noexcept;
    /// found(box) for the event's own box, then for those of a chord's other notes.
    template <typename Found>
    void Visit_Boxes(const Ev_Display_Row& row, const Found& found) const {
        found(Box_Of(row));
        for (std::size_t i = 0; i < row.ChordCount; ++i)
            if (row.ChordNotes[i] != row.Note && row.ChordNotes[i] != 0)
                found(Box_Of(row, row.ChordNotes[i]));
    }

    /// Index of the event at the point; of several the one that is drawn last, a chord's other notes below
    /// all events. -1 when none is.
    int Hit(const Event_List& events, double x, double y) const;
    /// The point is where pulling stretches the event.
    bool On_Edge(const Ev_Display_Row& row, double x) const noexcept;
    /// Indexes of the events that the box touches, in order of time. Corners in any order.
    std::vector<std::size_t> In_Box(const Event_List& events, double x1, double y1, double x2,
                                    double y2) const;
    /// The zoom row that is steps nearer (positive) or farther, within the table.
    int Zoomed(int steps) const noexcept;
};

} // namespace tonvex
