#include "editors/roll_gesture.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvex {

namespace {

/// A hand that only meant to click does not drag. Design pixels.
constexpr double SLIP = 4.0;
/// Notes of a chord that was played begin within this. Beats.
constexpr double TOGETHER = 0.05;

} // namespace

// ---- press ----

void Roll_Gesture::Press(const Roll_Point& at, Roll_Tool tool, const Roll_Modifiers& modifiers) {
    Forget();
    selectedBefore = display.Own().Selected_IDs();
    pressed = last = at;
    held = modifiers;
    if (tool == Roll_Tool::Erase) {
        kind = Kind::Erase;
        Erase_Between(at, at);
        return;
    }
    const int hit = geometry.Hit(display.Own(), at.X, at.Y);
    if (hit >= 0) {
        Press_Event(static_cast<std::size_t>(hit), modifiers);
        return;
    }
    if (tool == Roll_Tool::Draw) {
        kind = Kind::Draw;
        drawn = {};
        const double beat = std::max(0.0, geometry.Beat_At(at.X));
        drawn.StartTime = modifiers.Free ? beat : Grid.Cell(beat);
        drawn.Length = NewLength;
        drawn.Note = static_cast<std::uint8_t>(std::max(1, geometry.Note_At(at.Y)));
        drawn.Vol = static_cast<std::uint8_t>(NewVolume);
        return;
    }
    kind = Kind::Band;
    if (!modifiers.Add)
        display.Own().Select_None();
}

void Roll_Gesture::Press_Event(std::size_t row, const Roll_Modifiers& modifiers) {
    Event_List& events = display.Own();
    heldRow = events.Rows()[row];
    heldId = heldRow.EventID;
    wasSelected = heldRow.Selected;
    onEdge = geometry.On_Edge(heldRow, pressed.X);
    kind = Kind::Pressed;
    if (wasSelected)
        return;
    if (!modifiers.Add)
        events.Select_None();
    events.Set_Selected(row, true);
}

void Roll_Gesture::Press_Volume(double x, int volume, double reach) {
    Forget();
    selectedBefore = display.Own().Selected_IDs();
    kind = Kind::Volume;
    pressed = last = {x, 0.0};
    pressedVolume = lastVolume = volume;
    volumeReach = reach;
    // A stick of a selected event takes all selected along.
    const Event_List& events = display.Own();
    double nearest = reach;
    for (std::size_t i = events.First_From(geometry.Beat_At(x - reach)); i < events.Rows().size(); ++i) {
        const Ev_Display_Row& row = events.Rows()[i];
        const double apart = std::abs(geometry.X_Of(row.StartTime) - x);
        if (geometry.X_Of(row.StartTime) > x + reach)
            break;
        if (!Has_Volume(row.Kind) || apart > nearest)
            continue;
        // Of several at one place a selected one is meant.
        if (heldId && heldRow.Selected && apart == nearest)
            continue;
        nearest = apart;
        heldRow = row;
        heldId = row.EventID;
    }
    changesSelected = heldId && heldRow.Selected && events.Selected_Count() > 1;
    Paint_Volumes(x, volume, x, volume);
}

// ---- move ----

void Roll_Gesture::Move(const Roll_Point& at, const Roll_Modifiers& modifiers) {
    const Roll_Point before = std::exchange(last, at);
    const double slip = SLIP * geometry.Scale;
    if (kind == Kind::Pressed) {
        const double across = std::abs(at.X - pressed.X);
        const double up = std::abs(at.Y - pressed.Y);
        if (std::max(across, up) < slip)
            return;
        if (onEdge && across >= up)
            kind = Kind::Resize;
        else
            kind = across >= up ? Kind::Move_Time : Kind::Move_Pitch;
        copies = kind != Kind::Resize && (held.Copy || modifiers.Copy);
    }
    switch (kind) {
    case Kind::Move_Time:
        Move_In_Time(at.X, modifiers);
        break;
    case Kind::Move_Pitch:
        rows = geometry.Row_At(at.Y) - geometry.Row_At(pressed.Y);
        break;
    case Kind::Resize:
        Stretch(at.X, modifiers);
        break;
    case Kind::Draw:
        Stretch_Drawn(at.X, modifiers);
        break;
    case Kind::Erase:
        Erase_Between(before, at);
        break;
    case Kind::Band: {
        banded.clear();
        const Event_List& events = display.Own();
        for (const std::size_t row : geometry.In_Box(events, pressed.X, pressed.Y, at.X, at.Y))
            banded.insert(events.Rows()[row].EventID);
        break;
    }
    default:
        break;
    }
}

void Roll_Gesture::Move_In_Time(double x, const Roll_Modifiers& modifiers) {
    beats = geometry.Beat_At(x - pressed.X);
    if (!modifiers.Free)
        beats = Grid.Snap(heldRow.StartTime + beats) - heldRow.StartTime;
}

void Roll_Gesture::Stretch(double x, const Roll_Modifiers& modifiers) {
    double length = heldRow.Length + geometry.Beat_At(x - pressed.X);
    double least = Event_Edits::LEAST_LENGTH;
    if (!modifiers.Free && Grid.AlignOn) {
        length = Grid.Snap(length);
        least = std::max(least, Grid.Step());
    }
    beats = std::max(length, least) - heldRow.Length;
}

void Roll_Gesture::Stretch_Drawn(double x, const Roll_Modifiers& modifiers) {
    if (std::abs(x - pressed.X) < SLIP * geometry.Scale)
        return;
    const double end = geometry.Beat_At(x);
    const bool snapped = !modifiers.Free && Grid.AlignOn;
    const double least = snapped ? Grid.Step() : Event_Edits::LEAST_LENGTH;
    drawn.Length = std::max(least, snapped ? Grid.Snap(end - drawn.StartTime) : end - drawn.StartTime);
}

void Roll_Gesture::Erase_Between(const Roll_Point& from, const Roll_Point& to) {
    // The pointer may jump over events between two moves.
    const double step = std::max(1.0, Roll_Geometry::LEAST_WIDTH * geometry.Scale);
    const double way = std::max(std::abs(to.X - from.X), std::abs(to.Y - from.Y));
    const int steps = static_cast<int>(std::min(way / step, 4096.0)) + 1;
    const Event_List& events = display.Own();
    for (int i = 0; i <= steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        const int hit =
            geometry.Hit(events, from.X + (to.X - from.X) * part, from.Y + (to.Y - from.Y) * part);
        if (hit >= 0)
            erased.insert(events.Rows()[static_cast<std::size_t>(hit)].EventID);
    }
}

void Roll_Gesture::Move_Volume(double x, int volume) {
    if (kind != Kind::Volume)
        return;
    Paint_Volumes(last.X, lastVolume, x, volume);
    last.X = x;
    lastVolume = volume;
}

void Roll_Gesture::Paint_Volumes(double fromX, int fromVolume, double toX, int toVolume) {
    if (changesSelected)
        return;
    const auto [left, right] = std::minmax(fromX, toX);
    const double from = geometry.Beat_At(left - volumeReach);
    const double to = geometry.Beat_At(right + volumeReach);
    const std::vector<Ev_Display_Row>& all = display.Own().Rows();
    std::vector<double> chosen; // where selected events begin
    for (std::size_t i = display.Own().First_From(from - TOGETHER);
         i < all.size() && all[i].StartTime <= to + TOGETHER; ++i)
        if (all[i].Selected && Has_Volume(all[i].Kind))
            chosen.push_back(all[i].StartTime);
    for (std::size_t i = display.Own().First_From(from); i < all.size() && all[i].StartTime <= to; ++i) {
        const Ev_Display_Row& row = all[i];
        const auto near = std::lower_bound(chosen.begin(), chosen.end(), row.StartTime - TOGETHER);
        const bool besideChosen = near != chosen.end() && *near <= row.StartTime + TOGETHER;
        // Where some of a chord's notes are selected, those are meant.
        if (!Has_Volume(row.Kind) || (besideChosen && !row.Selected))
            continue;
        const double x = geometry.X_Of(row.StartTime);
        const double part = fromX == toX ? 1.0 : std::clamp((x - fromX) / (toX - fromX), 0.0, 1.0);
        const int volume = static_cast<int>(RoundHalfUp(fromVolume + (toVolume - fromVolume) * part));
        volumes[row.EventID] = volume;
    }
}

// ---- release ----

void Roll_Gesture::Release() {
    const Kind done = kind;
    releasing = true;
    Event_List& events = display.Own();
    switch (done) {
    case Kind::Pressed:
        Release_Press();
        break;
    case Kind::Move_Time:
    case Kind::Move_Pitch: {
        const Event_Edits::IDs ids = events.Selected_IDs();
        if (copies) {
            if (beats != 0.0 || rows != 0) {
                const Event_Edits::IDs added = edits.Copy_Events(ids, beats, rows);
                if (!added.empty())
                    display.Own().Select(added);
            }
        } else if (done == Kind::Move_Time) {
            (void)edits.Move_Beats(ids, beats);
        } else {
            (void)edits.Move_Rows(ids, rows);
        }
        break;
    }
    case Kind::Resize:
        edits.Resize(events.Selected_IDs(), beats);
        NewLength = std::max(Event_Edits::LEAST_LENGTH, heldRow.Length + beats);
        break;
    case Kind::Band:
        for (const std::int32_t eventId : banded) {
            const int row = events.Row_Of(eventId);
            if (row >= 0)
                events.Set_Selected(static_cast<std::size_t>(row), true);
        }
        break;
    case Kind::Draw: {
        NewLength = drawn.Length;
        const Event_Edits::IDs added =
            edits.Add({{drawn.StartTime, NoteData{drawn.Note, drawn.Vol, drawn.Length}}}, "Add note");
        display.Own().Select(added);
        break;
    }
    case Kind::Erase:
        edits.Delete({erased.begin(), erased.end()});
        break;
    case Kind::Volume:
        Release_Volume();
        break;
    case Kind::None:
        break;
    }
    Forget();
}

/// A click: it chooses that one event alone, or takes it in or out.
void Roll_Gesture::Release_Press() {
    Event_List& events = display.Own();
    const int row = heldId ? events.Row_Of(*heldId) : -1;
    if (row < 0 || !wasSelected)
        return;
    if (held.Add) {
        events.Set_Selected(static_cast<std::size_t>(row), false);
        return;
    }
    events.Select({*heldId});
}

void Roll_Gesture::Release_Volume() {
    if (changesSelected) {
        edits.Change_Volume(display.Own().Selected_IDs(), lastVolume - pressedVolume);
        return;
    }
    if (volumes.empty())
        return;
    NewVolume = lastVolume;
    edits.Set_Volumes({volumes.begin(), volumes.end()});
}

void Roll_Gesture::Cancel() {
    if (releasing)
        return;
    if (Is_On())
        display.Own().Select(selectedBefore);
    Forget();
}

void Roll_Gesture::Forget() {
    kind = Kind::None;
    heldId.reset();
    heldRow = {};
    beats = 0.0;
    rows = 0;
    copies = false;
    onEdge = false;
    wasSelected = false;
    releasing = false;
    changesSelected = false;
    selectedBefore.clear();
    erased.clear();
    banded.clear();
    volumes.clear();
}

// ---- what will be ----

bool Roll_Gesture::Drags_Across() const noexcept {
    return kind != Kind::None && kind != Kind::Pressed && kind != Kind::Move_Pitch && kind != Kind::Volume;
}

bool Roll_Gesture::Drags_Down() const noexcept {
    return kind == Kind::Move_Pitch || kind == Kind::Band || kind == Kind::Erase;
}

Roll_Box Roll_Gesture::Box() const noexcept {
    if (kind == Kind::Draw)
        return geometry.Box_Of(drawn);
    const auto [left, right] = std::minmax(pressed.X, last.X);
    const auto [top, bottom] = std::minmax(pressed.Y, last.Y);
    return {left, top, right - left, bottom - top};
}

std::optional<int> Roll_Gesture::Note() const noexcept {
    if (kind == Kind::Draw)
        return drawn.Note;
    if (kind != Kind::Move_Time && kind != Kind::Move_Pitch)
        return std::nullopt;
    const int note = heldRow.Note - rows;
    return note < 0 || note > 127 ? std::nullopt : std::optional<int>(note);
}

bool Roll_Gesture::Will_Be_Selected(const Ev_Display_Row& row) const {
    return row.Selected || (kind == Kind::Band && banded.count(row.EventID) > 0);
}

std::optional<int> Roll_Gesture::New_Volume(const Ev_Display_Row& row) const {
    if (kind != Kind::Volume || !Has_Volume(row.Kind))
        return std::nullopt;
    if (changesSelected) {
        if (!row.Selected)
            return std::nullopt;
        return std::clamp(row.Vol + lastVolume - pressedVolume, 0, 127);
    }
    const auto known = volumes.find(row.EventID);
    return known == volumes.end() ? std::nullopt : std::optional<int>(known->second);
}

} // namespace tonvex
