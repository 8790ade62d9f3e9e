#pragma once

#include "editors/edit_grid.h"
#include "editors/event_display.h"
#include "editors/event_edits.h"
#include "editors/roll_geometry.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace tonvex {

/// What a press in the roll does.
enum class Roll_Tool {
    Select, ///< chooses, moves, stretches; from an empty place a rubber band
    Draw,   ///< on an empty place a note; else as Select
    Erase,  ///< takes away what the pointer passes
    Chord   ///< asks for a chord at the place
};

/// Held while the pointer acts.
struct Roll_Modifiers {
    bool Add = false;  ///< adds to the selection, or takes away from it
    bool Copy = false; ///< a drag leaves the originals
    bool Free = false; ///< off the grid
};

/// A place on the drawing surface, see Roll_Geometry.
struct Roll_Point {
    double X = 0.0;
    double Y = 0.0;
};

/// One gesture of the pointer: press, moves, release or cancel. It shows what will be and changes nothing but
/// the selection before the release, which sends the messages: one gesture, one undo step.
/// Interface thread. display, geometry and edits outlive it; the geometry's zoom stands while one is on.
class Roll_Gesture {
public:
    enum class Kind {
        None,
        Pressed, ///< on an event, not moved yet
        Move_Time,
        Move_Pitch,
        Resize,
        Band,
        Draw,
        Erase,
        Volume ///< in the volume lane
    };

    Roll_Gesture(Event_Display& shown, const Roll_Geometry& places, Event_Edits& changes)
        : display(shown), geometry(places), edits(changes) {}

    Edit_Grid Grid;
    double NewLength = 1.0; ///< of a note drawn by a click; beats
    int NewVolume = 100;    ///< of a note drawn

    void Press(const Roll_Point& at, Roll_Tool tool, const Roll_Modifiers& modifiers);
    /// In the volume lane: volume 0 to 127 at the pointer; reach in pixels to either side of an event's
    /// start.
    void Press_Volume(double x, int volume, double reach);
    void Move(const Roll_Point& at, const Roll_Modifiers& modifiers);
    void Move_Volume(double x, int volume);
    /// Sends what the gesture stands for.
    void Release();
    /// The selection is what it was before the press. Nothing while Release asks about what would be lost.
    void Cancel();

    Kind What() const noexcept { return kind; }
    bool Is_On() const noexcept { return kind != Kind::None; }
    /// The pointer drags what may have to scroll into view: in time, in pitch.
    bool Drags_Across() const noexcept;
    bool Drags_Down() const noexcept;

    // ---- what will be, for drawing ----
    double Beats() const noexcept { return beats; } ///< of a move in time, of a stretch
    int Rows() const noexcept { return rows; }      ///< of a move in pitch, downward
    bool Copies() const noexcept { return copies; }
    /// The event that the pointer took.
    std::optional<std::int32_t> Held_Event() const noexcept { return heldId; }
    /// The row that the hand holds, while it moves or draws.
    std::optional<int> Note() const noexcept;
    /// The rubber band, or the note being drawn.
    Roll_Box Box() const noexcept;
    /// Chosen once the band lets go.
    bool Will_Be_Selected(const Ev_Display_Row& row) const;
    bool Will_Be_Erased(std::int32_t eventId) const { return erased.count(eventId) > 0; }
    std::optional<int> New_Volume(const Ev_Display_Row& row) const;
    const Ev_Display_Row& Drawn() const noexcept { return drawn; }

private:
    void Forget();
    void Press_Event(std::size_t row, const Roll_Modifiers& modifiers);
    void Move_In_Time(double x, const Roll_Modifiers& modifiers);
    void Stretch(double x, const Roll_Modifiers& modifiers);
    void Stretch_Drawn(double x, const Roll_Modifiers& modifiers);
    void Erase_Between(const Roll_Point& from, const Roll_Point& to);
    void Paint_Volumes(double fromX, int fromVolume, double toX, int toVolume);
    void Release_Press();
    void Release_Volume();

    Event_Display& display;
    const Roll_Geometry& geometry;
    Event_Edits& edits;

    Kind kind = Kind::None;
    Roll_Point pressed;
    Roll_Point last;
    Roll_Modifiers held; ///< at the press
    bool onEdge = false; ///< the press was where pulling stretches
    bool copies = false;
    bool wasSelected = false;
    std::optional<std::int32_t> heldId;
    Ev_Display_Row heldRow;
    double beats = 0.0;
    int rows = 0;
    Ev_Display_Row drawn;
    std::vector<std::int32_t> selectedBefore;
    std::set<std::int32_t> erased;
    std::set<std::int32_t> banded;
    std::map<std::int32_t, int> volumes; ///< painted, by event
    int pressedVolume = 0;
    int lastVolume = 0;
    double volumeReach = 0.0;
    bool releasing = false;
    bool changesSelected = false; ///< the lane moves all selected by one difference
};

} // namespace tonvex
