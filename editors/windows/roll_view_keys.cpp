// The roll without a mouse: a cursor on the grid, events by Tab, edits by keys.

#include "editors/windows/roll_view.h"

#include <QAccessible>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
constexpr int OCTAVE = 12;

struct Command_Key {
    int key;
    Qt::KeyboardModifiers modifiers;
    Roll_Command command;
};

const Command_Key COMMAND_KEYS[] = {
    {Qt::Key_X, Qt::ControlModifier, Roll_Command::Cut},
    {Qt::Key_C, Qt::ControlModifier, Roll_Command::Copy},
    {Qt::Key_V, Qt::ControlModifier, Roll_Command::Paste},
    {Qt::Key_Delete, Qt::NoModifier, Roll_Command::Delete},
    {Qt::Key_A, Qt::ControlModifier, Roll_Command::Select_All},
    {Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier, Roll_Command::Invert_Selection},
    {Qt::Key_Return, Qt::AltModifier, Roll_Command::Properties},
    {Qt::Key_T, Qt::ControlModifier, Roll_Command::Time_Properties},
    {Qt::Key_L, Qt::ControlModifier, Roll_Command::Volume},
    {Qt::Key_G, Qt::ControlModifier, Roll_Command::Repeat_Align},
    {Qt::Key_J, Qt::ControlModifier, Roll_Command::Legato},
    {Qt::Key_Plus, Qt::AltModifier, Roll_Command::Louder},
    {Qt::Key_Minus, Qt::AltModifier, Roll_Command::Softer},
    {Qt::Key_Plus, Qt::ControlModifier, Roll_Command::Zoom_In},
    {Qt::Key_Minus, Qt::ControlModifier, Roll_Command::Zoom_Out},
    {Qt::Key_F10, Qt::ShiftModifier, Roll_Command::Menu},
};

bool Is_Arrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

/// Modifiers that count; a layout may need Shift for a plus, and the keypad says so itself.
Qt::KeyboardModifiers Plain(const QKeyEvent& event) {
    Qt::KeyboardModifiers modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (event.key() == Qt::Key_Plus)
        modifiers &= ~Qt::ShiftModifier;
    return modifiers;
}

} // namespace

bool Roll_View::Handles(const QKeyEvent& event) const {
    const int key = event.key();
    if (key == Qt::Key_Escape)
        return gesture.Is_On() || (!session.transport.Song_Runs() &&
                                   (tool != Roll_Tool::Select || display.Own().Selected_Count() > 0));
    if (display.Store() == nullptr || event.modifiers().testFlag(Qt::KeypadModifier))
        return false;
    const Qt::KeyboardModifiers modifiers = Plain(event);
    if (Is_Arrow(key) || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
        return !modifiers.testFlag(Qt::MetaModifier);
    if (key == Qt::Key_Insert || key == Qt::Key_Space)
        return modifiers == Qt::NoModifier || (key == Qt::Key_Insert && modifiers == Qt::AltModifier);
    if ((key == Qt::Key_Home || key == Qt::Key_End) && modifiers == Qt::ControlModifier)
        return true;
    return std::any_of(std::begin(COMMAND_KEYS), std::end(COMMAND_KEYS),
                       [&](const Command_Key& row) { return row.key == key && row.modifiers == modifiers; });
}

bool Roll_View::event(QEvent* event) {
    // These keys have other meanings in the window's menus.
    if (event->type() == QEvent::ShortcutOverride && Handles(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void Roll_View::keyPressEvent(QKeyEvent* event) {
    if (!Handles(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        if (gesture.Is_On())
            gesture.Cancel();
        else if (tool != Roll_Tool::Select)
            Set_Tool(Roll_Tool::Select);
        else
            display.Own().Select_None();
        End_Gesture();
        return;
    }
    // One thing at a time: what the hand holds is not edited under it.
    if (gesture.Is_On())
        return;
    cursorShown = true;
    Hide_Figure();
    if (!Run_Command_Key(*event) && !Edit_By_Key(*event))
        (void)Move_Cursor(*event);
    update();
}

bool Roll_View::Run_Command_Key(const QKeyEvent& event) {
    for (const Command_Key& row : COMMAND_KEYS)
        if (row.key == event.key() && row.modifiers == Plain(event)) {
            emit command(row.command);
            return true;
        }
    return false;
}

bool Roll_View::Edit_By_Key(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = Plain(event);
    const int key = event.key();
    if (key == Qt::Key_Insert) {
        modifiers == Qt::AltModifier ? emit chordWanted(cursorBeat, cursorNote) : Insert_At_Cursor();
        return true;
    }
    if (key == Qt::Key_Space) {
        Select_At_Cursor();
        return true;
    }
    if (!Is_Arrow(key))
        return false;
    const bool across = key == Qt::Key_Left || key == Qt::Key_Right;
    const int sign = key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1;
    const double step = sign * Edit_Grid{true, session.editorSetup.AlignDiv}.Step();
    const bool moves = modifiers.testFlag(Qt::AltModifier);
    const bool octave =
        !across && (modifiers == Qt::ControlModifier || modifiers == (Qt::AltModifier | Qt::ShiftModifier));
    const bool stretches = across && modifiers == Qt::ShiftModifier;
    if (!moves && !octave && !stretches)
        return false;
    const Event_Edits::IDs ids = display.Own().Selected_IDs();
    if (ids.empty())
        return true;
    if (octave)
        (void)edits.Move_Rows(ids, sign * OCTAVE);
    else if (stretches)
        edits.Resize(ids, step, std::abs(step));
    else if (across)
        (void)edits.Move_Beats(ids, modifiers.testFlag(Qt::ControlModifier) ? sign * BEATS_PER_BAR : step);
    else
        (void)edits.Move_Rows(ids, sign);
    // The cursor stays with what it stands on.
    const Event_List& events = display.Own();
    const int row = events.Row_Of(ids.front());
    if (row >= 0) {
        const Ev_Display_Row& moved = events.Rows()[static_cast<std::size_t>(row)];
        Set_Cursor(moved.StartTime, moved.Note);
        Cursor_Into_View();
    }
    Changed();
    emit selectionChanged();
    return true;
}

bool Roll_View::Move_Cursor(const QKeyEvent& event) {
    const bool far = Plain(event).testFlag(Qt::ControlModifier);
    const double step = far ? BEATS_PER_BAR : Edit_Grid{true, session.editorSetup.AlignDiv}.Step();
    const auto onGrid = [&](double beat) { return Round_To_Grid(beat, session.editorSetup.AlignDiv); };
    switch (event.key()) {
    case Qt::Key_Left:
        Set_Cursor(onGrid(cursorBeat) < cursorBeat ? onGrid(cursorBeat) : onGrid(cursorBeat - step),
                   cursorNote);
        break;
    case Qt::Key_Right:
        Set_Cursor(onGrid(cursorBeat + step), cursorNote);
        break;
    case Qt::Key_Up:
        Set_Cursor(cursorBeat, cursorNote + 1);
        break;
    case Qt::Key_Down:
        Set_Cursor(cursorBeat, cursorNote - 1);
        break;
    case Qt::Key_PageUp:
        Set_Cursor(cursorBeat, cursorNote + OCTAVE);
        break;
    case Qt::Key_PageDown:
        Set_Cursor(cursorBeat, cursorNote - OCTAVE);
        break;
    case Qt::Key_Home:
        Set_Cursor(0.0, cursorNote);
        break;
    case Qt::Key_End: {
        const auto& rows = display.Own().Rows();
        Set_Cursor(rows.empty() ? 0.0 : onGrid(rows.back().End()), cursorNote);
        break;
    }
    default:
        return false;
    }
    Cursor_Into_View();
    Tell_Focus();
    return true;
}

void Roll_View::Cursor_Into_View() {
    Ev_Display_Row place;
    place.StartTime = cursorBeat;
    place.Length = Edit_Grid{true, session.editorSetup.AlignDiv}.Step();
    place.Note = static_cast<std::uint8_t>(cursorNote);
    Bring_Into_View(place);
}

void Roll_View::Select_At_Cursor() {
    const double x = viewed.Geometry.X_Of(cursorBeat) + 1.0;
    const int hit = viewed.Geometry.Hit(display.Own(), x, viewed.Geometry.Y_Of_Note(cursorNote) + 1.0);
    if (hit < 0)
        return;
    Event_List& events = display.Own();
    const auto row = static_cast<std::size_t>(hit);
    events.Set_Selected(row, !events.Rows()[row].Selected);
    Changed();
    emit selectionChanged();
}

void Roll_View::Insert_At_Cursor() {
    const NoteData note{static_cast<std::uint8_t>(cursorNote), static_cast<std::uint8_t>(gesture.NewVolume),
                        gesture.NewLength};
    const Event_Edits::IDs added = edits.Add({{cursorBeat, note}}, "Add note");
    display.Own().Select(added);
    emit keyClicked(cursorNote);
    // On to the next place: one key after the other makes a phrase.
    Set_Cursor(cursorBeat + note.Length, cursorNote);
    Cursor_Into_View();
    Changed();
    emit selectionChanged();
}

bool Roll_View::Step_Event(bool next) {
    Event_List& events = display.Own();
    if (events.Rows().empty())
        return false;
    const std::vector<std::int32_t> selected = events.Selected_IDs();
    std::size_t row = 0;
    if (selected.size() == 1) {
        const int at = events.Row_Of(selected.front());
        if (at < 0 || (next ? static_cast<std::size_t>(at) + 1 >= events.Rows().size() : at == 0))
            return false; // out of the roll, as any control
        row = static_cast<std::size_t>(next ? at + 1 : at - 1);
    } else {
        row = events.First_From(cursorBeat);
        if (!next)
            row = row == 0 ? events.Rows().size() : row - 1;
        if (row >= events.Rows().size())
            return false;
    }
    events.Select_None();
    events.Set_Selected(row, true);
    cursorShown = true;
    Set_Cursor(events.Rows()[row].StartTime, events.Rows()[row].Note);
    Bring_Into_View(events.Rows()[row]);
    Changed();
    emit eventClicked(events.Rows()[row].EventID);
    emit selectionChanged();
    Tell_Focus();
    return true;
}

bool Roll_View::focusNextPrevChild(bool next) {
    return (!gesture.Is_On() && Step_Event(next)) || QWidget::focusNextPrevChild(next);
}

void Roll_View::Tell_Focus() {
    setAccessibleDescription(
        tr("Cursor at %1").arg(QString::fromStdString(session.notes.NoteName(cursorNote))));
    QAccessibleEvent told(this, QAccessible::Selection);
    QAccessible::updateAccessibility(&told);
}

void Roll_View::focusInEvent(QFocusEvent* event) {
    cursorShown = cursorShown || event->reason() != Qt::MouseFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void Roll_View::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason && gesture.Is_On())
        gesture.Cancel();
    Hide_Figure();
    QWidget::focusOutEvent(event);
    Changed();
}

} // namespace tonvex
