// The hand in the roll: gestures, wheel, hover.

#include "editors/windows/roll_view.h"

#include "base/rounding.h"
#include "song/time_text.h"

#include <QContextMenuEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
constexpr double STICK_REACH = 6.0;
constexpr double WHEEL_ROWS = 3.0;
constexpr int NOTCH = 120;
/// Pixels that a step of scrolling at the edge takes, for each pixel that the pointer is outside.
constexpr double EDGE_SPEED = 0.5;
constexpr double EDGE_MOST = 60.0;

} // namespace

Roll_Point Roll_View::Surface(const QPointF& at) const {
    const QRect area = Painter().Layout().Roll;
    return {at.x() - area.left() + viewed.ScrollX, at.y() - area.top() + viewed.ScrollY};
}

Roll_Modifiers Roll_View::Held(Qt::KeyboardModifiers modifiers) const {
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    return {shift || control, control || copyMode, shift || modifiers.testFlag(Qt::AltModifier)};
}

int Roll_View::Lane_Volume(double y) const {
    const Roll_Painter painter = Painter();
    const double top = painter.Lane_Y(127);
    const double part = (painter.Lane_Y(0) - y) / (painter.Lane_Y(0) - top);
    return static_cast<int>(RoundHalfUp(std::clamp(part, 0.0, 1.0) * 127.0));
}

// ---- buttons ----

void Roll_View::mousePressEvent(QMouseEvent* event) {
    if (gesture.Is_On())
        return; // the other button has it
    const QPointF at = event->position();
    const Roll_Layout layout = Painter().Layout();
    const QPoint pixel = at.toPoint();
    cursorShown = false;
    setFocus(Qt::MouseFocusReason);
    Hide_Figure();
    if (event->button() != Qt::LeftButton) {
        // The menu is about what it was opened on, and about the place.
        if (layout.Roll.contains(pixel))
            Set_Cursor(Grid().Cell(viewed.Geometry.Beat_At(Surface(at).X)),
                       viewed.Geometry.Note_At(Surface(at).Y));
        const int hit = layout.Roll.contains(pixel)
                            ? viewed.Geometry.Hit(display.Own(), Surface(at).X, Surface(at).Y)
                            : -1;
        if (hit >= 0 && !display.Own().Rows()[static_cast<std::size_t>(hit)].Selected) {
            display.Own().Select_None();
            display.Own().Set_Selected(static_cast<std::size_t>(hit), true);
            Changed();
            emit selectionChanged();
        }
        return;
    }
    if (at.y() < layout.Roll.top()) {
        if (at.x() >= layout.Left)
            Press_Header(at, event->button());
        return;
    }
    if (layout.Piano.contains(pixel)) {
        emit keyClicked(viewed.Geometry.Note_At(Surface(at).Y));
        return;
    }
    if (display.Store() == nullptr || at.x() < layout.Left)
        return;
    if (layout.Lane.contains(pixel)) {
        gesture.Press_Volume(Surface(at).X, Lane_Volume(at.y()), theme.Px(STICK_REACH));
        update();
        return;
    }
    const Roll_Point place = Surface(at);
    Set_Cursor(Grid().Cell(viewed.Geometry.Beat_At(place.X)), viewed.Geometry.Note_At(place.Y));
    if (tool == Roll_Tool::Chord) {
        emit chordWanted(cursorBeat, cursorNote);
        return;
    }
    gesture.Press(place, tool, Held(event->modifiers()));
    if (const auto held = gesture.Held_Event())
        emit eventClicked(*held);
    else if (gesture.What() == Roll_Gesture::Kind::Draw)
        emit keyClicked(gesture.Drawn().Note);
    Changed();
    emit selectionChanged();
}

void Roll_View::Press_Header(const QPointF& at, Qt::MouseButton) {
    const int flag = Flag_At(flagBoxes, at);
    const double beat = std::max(0.0, Painter().Beat_At(at.x()));
    if (flag >= 0)
        emit goTo(session.marks.Row(flags[static_cast<std::size_t>(flag)].row).MarkStart);
    else if (!Painter().Layout().Chords.contains(at.toPoint()))
        emit goTo(Grid().Snap(beat));
}

void Roll_View::mouseMoveEvent(QMouseEvent* event) {
    if (!gesture.Is_On()) {
        Hover(event->position());
        return;
    }
    dragAt = event->position();
    dragModifiers = event->modifiers();
    Drag_To(dragAt, dragModifiers);
    const bool outside = !Painter().Layout().Roll.contains(dragAt.toPoint());
    if (!outside || (!gesture.Drags_Across() && !gesture.Drags_Down()))
        edgeTimer.stop();
    else if (!edgeTimer.isActive()) // a hand that moves on does not put it off
        edgeTimer.start();
}

void Roll_View::Drag_To(const QPointF& at, Qt::KeyboardModifiers modifiers) {
    if (gesture.What() == Roll_Gesture::Kind::Volume)
        gesture.Move_Volume(Surface(at).X, Lane_Volume(at.y()));
    else
        gesture.Move(Surface(at), Held(modifiers));
    Show_Gesture_Figure(at);
    update();
}

void Roll_View::Scroll_At_Edge() {
    const bool across = gesture.Drags_Across();
    const bool down = gesture.Drags_Down();
    if (!across && !down) {
        edgeTimer.stop();
        return;
    }
    const QRect area = Painter().Layout().Roll;
    const auto beyond = [](double at, double low, double high) {
        const double out = at < low ? at - low : at > high ? at - high : 0.0;
        return std::clamp(out * EDGE_SPEED, -EDGE_MOST, EDGE_MOST);
    };
    Scroll_To(viewed.ScrollX + (across ? beyond(dragAt.x(), area.left(), area.right()) : 0.0),
              viewed.ScrollY + (down ? beyond(dragAt.y(), area.top(), area.bottom()) : 0.0));
    Drag_To(dragAt, dragModifiers);
}

void Roll_View::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !gesture.Is_On())
        return;
    edgeTimer.stop();
    const bool drew = gesture.What() == Roll_Gesture::Kind::Draw;
    gesture.Release();
    End_Gesture();
    if (drew && toolOnce)
        Set_Tool(Roll_Tool::Select);
}

void Roll_View::End_Gesture() {
    edgeTimer.stop();
    Hide_Figure();
    Changed();
    emit selectionChanged();
}

void Roll_View::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    const Roll_Layout layout = Painter().Layout();
    if (event->button() != Qt::LeftButton || !layout.Roll.contains(at.toPoint()) ||
        display.Store() == nullptr || tool != Roll_Tool::Select) {
        mousePressEvent(event);
        return;
    }
    const int hit = viewed.Geometry.Hit(display.Own(), Surface(at).X, Surface(at).Y);
    if (hit >= 0) {
        emit eventDoubleClicked(display.Own().Rows()[static_cast<std::size_t>(hit)].EventID);
        return;
    }
    gesture.Press(Surface(at), Roll_Tool::Draw, Held(event->modifiers()));
    emit keyClicked(gesture.Drawn().Note);
    update();
}

// ---- hover ----

QString Roll_View::Short_Name(const Ev_Display_Row& row) const {
    const Event_Names names = Painter().Names(display.Channel());
    const ChannelClass* store = display.Store();
    // A note may be one that is only being drawn or moved.
    const auto event = row.Kind == EV_NOTE || store == nullptr
                           ? std::nullopt
                           : store->ReadEvent(store->GetEvent_I(row.EventID));
    return QString::fromStdString(event ? Short_Text(*event, names) : Note_Text(row.Note, names));
}

QString Roll_View::Hover_Text(const Ev_Display_Row& row) const {
    QString text =
        QString::fromStdString(Format_Beats(row.StartTime)) + QStringLiteral("   ") + Short_Name(row);
    if (Has_Length(row.Kind))
        text += tr("   Length: %1").arg(QString::fromStdString(Beats_Text(row.Length)));
    if (Has_Volume(row.Kind))
        text += tr("   Vol: %1").arg(row.Vol);
    return text;
}

void Roll_View::Hover(const QPointF& at) {
    const Roll_Layout layout = Painter().Layout();
    const Roll_Point place = Surface(at);
    const int hit =
        layout.Roll.contains(at.toPoint()) ? viewed.Geometry.Hit(display.Own(), place.X, place.Y) : -1;
    if (hit < 0) {
        const bool places = tool != Roll_Tool::Select && layout.Roll.contains(at.toPoint());
        setCursor(places ? Qt::CrossCursor : Qt::ArrowCursor);
        Ev_Display_Row under;
        under.Note = static_cast<std::uint8_t>(viewed.Geometry.Note_At(place.Y));
        if (layout.Lane.contains(at.toPoint()))
            Show_Figure(at, tr("Vol: %1").arg(Lane_Volume(at.y())));
        else if (layout.Roll.contains(at.toPoint()))
            Show_Figure(
                at, QString::fromStdString(Format_Beats(std::max(0.0, viewed.Geometry.Beat_At(place.X)))) +
                        QStringLiteral("   ") + Short_Name(under));
        else if (layout.Piano.contains(at.toPoint()))
            Show_Figure(at, Short_Name(under));
        else
            Hide_Figure();
        return;
    }
    const Ev_Display_Row& row = display.Own().Rows()[static_cast<std::size_t>(hit)];
    if (tool == Roll_Tool::Erase || tool == Roll_Tool::Chord)
        setCursor(Qt::CrossCursor);
    else
        setCursor(viewed.Geometry.On_Edge(row, place.X) ? Qt::SizeHorCursor : Qt::PointingHandCursor);
    Show_Figure(at, Hover_Text(row));
}

void Roll_View::Show_Gesture_Figure(const QPointF& at) {
    Ev_Display_Row row;
    switch (gesture.What()) {
    case Roll_Gesture::Kind::Draw:
        row = gesture.Drawn();
        break;
    case Roll_Gesture::Kind::Volume:
        Show_Figure(at, tr("Vol: %1").arg(Lane_Volume(at.y())));
        return;
    case Roll_Gesture::Kind::Move_Time:
    case Roll_Gesture::Kind::Move_Pitch:
    case Roll_Gesture::Kind::Resize: {
        const int held = gesture.Held_Event() ? display.Own().Row_Of(*gesture.Held_Event()) : -1;
        if (held < 0)
            return;
        row = display.Own().Rows()[static_cast<std::size_t>(held)];
        if (gesture.What() == Roll_Gesture::Kind::Resize)
            row.Length += gesture.Beats();
        else
            row.StartTime += gesture.Beats();
        row.Note = static_cast<std::uint8_t>(std::clamp(row.Note - gesture.Rows(), 0, 127));
        break;
    }
    default:
        Hide_Figure();
        return;
    }
    Show_Figure(at, Hover_Text(row));
}

void Roll_View::Show_Figure(const QPointF& at, const QString& text) {
    const QRect before = figurePlace;
    const QFontMetrics metrics(theme.Font(Text_Size::Caption));
    const QSize box(metrics.horizontalAdvance(text) + theme.Px(16), theme.Px(22));
    QPoint corner(static_cast<int>(at.x()) + theme.Px(14),
                  static_cast<int>(at.y()) - box.height() - theme.Px(10));
    corner.setX(std::clamp(corner.x(), 0, std::max(0, width() - box.width())));
    corner.setY(std::clamp(corner.y(), 0, std::max(0, height() - box.height())));
    figure = text;
    figurePlace = QRect(corner, box);
    update(before);
    update(figurePlace);
}

void Roll_View::Hide_Figure() {
    if (figure.isEmpty())
        return;
    figure.clear();
    update(figurePlace);
}

void Roll_View::leaveEvent(QEvent*) {
    if (!gesture.Is_On())
        Hide_Figure();
}

// ---- wheel and menus ----

void Roll_View::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        // Of small turns as many make a step as of whole notches.
        zoomRest += delta.y();
        const int notches = zoomRest / NOTCH;
        zoomRest -= notches * NOTCH;
        Set_Zoom(viewed.Geometry.Zoomed(notches), event->position().x());
    } else {
        const double rows = viewed.Geometry.RowHeight() * WHEEL_ROWS / NOTCH;
        const bool sideways = event->modifiers().testFlag(Qt::ShiftModifier);
        const double across = delta.x() + (sideways ? delta.y() : 0);
        const double down = sideways ? 0 : delta.y();
        wheelRest += QPointF(across, down) * rows;
        const QPointF whole(std::trunc(wheelRest.x()), std::trunc(wheelRest.y()));
        wheelRest -= whole;
        Scroll_To(viewed.ScrollX - whole.x(), viewed.ScrollY - whole.y());
    }
    // What lies under the pointer is another place now.
    dragAt = event->position();
    if (!gesture.Is_On())
        Hover(dragAt);
    else if (gesture.What() != Roll_Gesture::Kind::Pressed)
        Drag_To(dragAt, event->modifiers());
    event->accept();
}

void Roll_View::contextMenuEvent(QContextMenuEvent* event) {
    const Roll_Painter painter = Painter();
    const Roll_Layout layout = painter.Layout();
    QPoint at = event->pos();
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    if (byKey)
        at = Cursor_Place();
    const QPoint global = byKey ? mapToGlobal(at) : event->globalPos();
    const double beat = std::max(0.0, painter.Beat_At(at.x()));
    if (gesture.Is_On() || (!byKey && at.x() < layout.Left))
        return;
    if (byKey || layout.Roll.contains(at))
        emit eventMenu(global);
    else if (layout.Marks.contains(at)) {
        const int flag = Flag_At(flagBoxes, at);
        emit markMenu(global, beat, flag < 0 ? -1 : flags[static_cast<std::size_t>(flag)].row);
    } else if (layout.Rule.contains(at))
        emit ruleMenu(global, beat);
    else if (layout.Chords.contains(at))
        emit barMenu(global, static_cast<int>(beat / BEATS_PER_BAR));
}

} // namespace tonvex
