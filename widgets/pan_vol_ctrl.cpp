#include "widgets/pan_vol_ctrl.h"

#include "song/time_text.h"
#include "widgets/channel_texts.h"
#include "widgets/mark_flags.h"
#include "widgets/song_overview.h"
#include "widgets/tool_button.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace tonvex {

namespace {

constexpr double GRID_BEATS = 0.25;
constexpr int VALUE_STEP = 5;
constexpr double DOT_RADIUS = 5.0;
constexpr double REACH = 10.0;
/// A hand that only meant the value does not shift the time.
constexpr double SLIP = 4.0;

/// The messages of one kind of map; 0 where there is none.
struct Point_Messages {
    int add, addEnd, remove, removeEnd, move, moveEnd, set, setEnd;
};

constexpr Point_Messages Messages_Of(bool audio, Map_Kind kind) {
    if (audio)
        return kind == Map_Kind::Pan
                   ? Point_Messages{MSG_AUDIO_PAN_ADD_POINT,  0, MSG_AUDIO_PAN_DELETE_POINT, 0,
                                    MSG_AUDIO_PAN_MOVE_POINT, 0, MSG_AUDIO_PAN_SET_POINT,    0}
                   : Point_Messages{MSG_AUDIO_VOLUME_ADD_POINT,  0, MSG_AUDIO_VOLUME_DELETE_POINT, 0,
                                    MSG_AUDIO_VOLUME_MOVE_POINT, 0, MSG_AUDIO_VOLUME_SET_POINT,    0};
    return kind == Map_Kind::Pan
               ? Point_Messages{MSG_PAN_ADD_POINT,  MSG_PAN_ADD_END,    MSG_PAN_DELETE_POINT,
                                MSG_PAN_DELETE_END, MSG_PAN_MOVE_POINT, MSG_PAN_MOVE_END,
                                MSG_PAN_SET_POINT,  MSG_PAN_SET_END}
               : Point_Messages{MSG_VOLUME_ADD_POINT,  MSG_VOLUME_ADD_END,    MSG_VOLUME_DELETE_POINT,
                                MSG_VOLUME_DELETE_END, MSG_VOLUME_MOVE_POINT, MSG_VOLUME_MOVE_END,
                                MSG_VOLUME_SET_POINT,  MSG_VOLUME_SET_END};
}

/// Notices after which a map may look different.
bool Touches_Maps(int msgId) {
    return (msgId >= MSG_PAN_ADD_POINT && msgId <= MSG_VOLUME_SET_END) ||
           (msgId >= MSG_AUDIO_PAN_ADD_POINT && msgId <= MSG_AUDIO_VOLUME_SET_POINT) ||
           msgId == MSG_SET_PAN || msgId == MSG_SET_VOLUME || msgId == MSG_DELETE_CHANNEL ||
           msgId == MSG_GENERAL_UPDATE;
}

/// With Shift at most; the number pad has the keys too.
bool Is_Plain(const QKeyEvent& event) {
    return (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
}

} // namespace

PanVolCtrl::PanVolCtrl(Session& theSession, Theme& look, Map_Kind which, QWidget* parent)
    : QWidget(parent), session(theSession), theme(look), kind(which), link(session.observers, *this) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setObjectName(kind == Map_Kind::Pan ? QStringLiteral("panMap") : QStringLiteral("volumeMap"));
    setAccessibleName(kind == Map_Kind::Pan ? tr("Pan map") : tr("Volume map"));
    setWhatsThis(
        tr("Double click: add a point. Drag: move it, with Shift off the grid. Page Up and Page Down, Home "
           "and End: choose a point. Arrows: move it, with Shift fine. Insert: add one at the play position. "
           "Delete: delete it."));
    line = session.transport.PlayPosition;
    subscription = session.events.Subscribe(
        [this](int msgId, std::int32_t, const std::string& text) { Heard(msgId, text); });
    connect(&theme, &Theme::Changed, this, &PanVolCtrl::Changed);
    Refresh();
}

PanVolCtrl::~PanVolCtrl() {
    session.events.Unsubscribe(subscription);
}

// ---- what is shown ----

void PanVolCtrl::Show_Slot(int slot) {
    if (!audio && owner == slot)
        return;
    audio = false;
    owner = slot;
    selectedId = NOT_GIVEN;
    Cancel_Drag();
    Refresh();
}

void PanVolCtrl::Show_Audio_Channel(std::int32_t channelId) {
    if (audio && owner == channelId)
        return;
    audio = true;
    owner = channelId;
    selectedId = NOT_GIVEN;
    Cancel_Drag();
    Refresh();
}

void PanVolCtrl::Show_None() {
    audio = false;
    owner = NOT_GIVEN;
    Cancel_Drag();
    Refresh();
}

PanVol_Class* PanVolCtrl::Map() const {
    Song_Maps& maps = session.channels->Maps;
    if (!audio)
        return owner >= 0 && owner < Song_Maps::SLOTS ? &maps.Slot_Map(kind, owner) : nullptr;
    const int row = maps.Find_AudioMapRow(owner);
    return row < 0 ? nullptr : &maps.Audio_Row(row).Map(kind);
}

void PanVolCtrl::Refresh() {
    const PanVol_Class* map = Map();
    const Map_Dot* const chosen = Dot_Of(selectedId);
    const std::ptrdiff_t place = chosen == nullptr ? -1 : chosen - dots.data();
    const std::size_t count = dots.size();
    dots = map == nullptr ? std::vector<Map_Dot>() : Map_Dots(*map, session.project.SongLength);
    // A point that undo has put back where it was has another ID.
    if (Dot_Of(selectedId) == nullptr)
        selectedId =
            place >= 0 && count == dots.size() ? dots[static_cast<std::size_t>(place)].id : NOT_GIVEN;
    if (!drag)
        Hide_Figure();
    if (drag && Dot_Of(drag->from.id) == nullptr)
        drag.reset();
    Describe();
    Changed();
}

void PanVolCtrl::Changed() {
    const double end = dots.empty() ? 0.0 : dots.back().beat;
    shownBeats = Overview_Scale::Shown_Beats(end, line);
    pictureValid = false;
    update();
}

void PanVolCtrl::Heard(int msgId, const std::string& text) {
    const Point_Messages own = Messages_Of(audio, kind);
    // Of an added and of a moved point the notice tells the new ID.
    if (sending && (msgId == own.add || msgId == own.move)) {
        std::int32_t id = NOT_GIVEN;
        if (std::from_chars(text.data(), text.data() + text.size(), id).ec == std::errc())
            selectedId = id;
    }
    if (Touches_Maps(msgId))
        Refresh();
    else if (msgId == MSG_SONG_POSITION || msgId == MSG_SHOW_POSITION)
        Move_Line(session.transport.PlayPosition);
}

const Map_Dot* PanVolCtrl::Dot_Of(std::int32_t pointId) const {
    const auto found =
        std::find_if(dots.begin(), dots.end(), [pointId](const Map_Dot& dot) { return dot.id == pointId; });
    return found == dots.end() ? nullptr : &*found;
}

void PanVolCtrl::Select_Point(std::int32_t pointId) {
    if (pointId == selectedId)
        return;
    selectedId = pointId;
    Describe();
    pictureValid = false;
    update();
}

QString PanVolCtrl::Value_Text(int value) const {
    return kind == Map_Kind::Pan ? Pan_Text(value) : QString::number(value);
}

void PanVolCtrl::Describe() {
    const Map_Dot* dot = Dot_Of(selectedId);
    setAccessibleDescription(
        dot == nullptr ? tr("%n point(s)", nullptr, static_cast<int>(dots.size()))
                       : tr("Point %1 of %2, position %3, value %4")
                             .arg(dot - dots.data() + 1)
                             .arg(dots.size())
                             .arg(QString::fromStdString(Format_Beats(dot->beat)), Value_Text(dot->value)));
}

// ---- drawing ----

QSize PanVolCtrl::sizeHint() const {
    return {theme.Px(480), theme.Px(220)};
}

QSize PanVolCtrl::minimumSizeHint() const {
    return {theme.Px(240), theme.Px(126)};
}

Map_Field PanVolCtrl::Field() const {
    const QRectF box(theme.Px(60), theme.Px(46), std::max(1, width() - theme.Px(76)),
                     std::max(1, height() - theme.Px(60)));
    return {box, shownBeats};
}

void PanVolCtrl::Draw_Grid(QPainter& painter, const Map_Field& field) {
    const Theme_Tokens& t = theme.Tokens();
    painter.setFont(theme.Font(Text_Size::Caption));
    const double left = field.X_Of(0.0);
    const double right = field.X_Of(shownBeats);
    const double top = field.Y_Of(PanVol_Class::HIGHEST);
    const double bottom = field.Y_Of(0);
    const double barPixels = field.X_Of(Map_Field::BEATS_PER_BAR) - left;
    const int bars = Overview_Scale(shownBeats, left, right - left).Bars_Per_Line(theme.Px(48));
    const double step = barPixels < theme.Px(48) ? bars * Map_Field::BEATS_PER_BAR : 1.0;
    for (double beat = 0.0; beat <= shownBeats; beat += step) {
        const bool bar = std::fmod(beat, Map_Field::BEATS_PER_BAR) == 0.0;
        const int number = static_cast<int>(beat / Map_Field::BEATS_PER_BAR);
        const double x = std::floor(field.X_Of(beat)) + 0.5;
        painter.setPen(bar ? t.gridBar : t.gridBeat);
        painter.drawLine(QPointF(x, top), QPointF(x, bottom));
        painter.setPen(t.dim);
        if (bar && beat < shownBeats)
            painter.drawText(QPointF(x + theme.Px(4), theme.Px(36)), QString::number(number + 1));
    }
    std::vector<Mark_Flag> flags;
    std::vector<QRectF> boxes;
    Draw_Mark_Flags(
        painter, theme, session.marks, theme.Px(4), [&field](double beat) { return field.X_Of(beat); }, flags,
        boxes);
    painter.setFont(theme.Font(Text_Size::Caption));
    const bool pan = kind == Map_Kind::Pan;
    const std::pair<int, QString> levels[] = {
        {PanVol_Class::HIGHEST, pan ? tr("Right") : QStringLiteral("127")},
        {PanVol_Class::NEW_VALUE, pan ? tr("Centre") : QStringLiteral("64")},
        {0, pan ? tr("Left") : QStringLiteral("0")}};
    for (const auto& [value, text] : levels) {
        const double y = std::floor(field.Y_Of(value)) + 0.5;
        painter.setPen(t.gridBar);
        painter.drawLine(QPointF(left, y), QPointF(right, y));
        painter.setPen(t.dim);
        painter.drawText(QRectF(0, y - theme.Px(10), left - theme.Px(8), theme.Px(20)),
                         Qt::AlignRight | Qt::AlignVCenter, text);
    }
}

void PanVolCtrl::Draw_Curve(QPainter& painter, const Map_Field& field) {
    const Theme_Tokens& t = theme.Tokens();
    const std::vector<Map_Dot> shown = drag ? Moved_Dots(dots, drag->from.id, drag->beat, drag->value) : dots;
    QPolygonF curve;
    for (const Map_Dot& dot : shown)
        curve << field.Place_Of(dot);
    curve << QPointF(field.X_Of(shownBeats), curve.back().y());
    QPolygonF area = curve;
    const double ground = field.Y_Of(kind == Map_Kind::Pan ? PanVol_Class::NEW_VALUE : 0);
    area << QPointF(curve.back().x(), ground) << QPointF(curve.front().x(), ground);
    QColor fill = t.accent;
    fill.setAlphaF(0.14F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPolygon(area);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(t.accent, theme.Px(2)));
    painter.drawPolyline(curve);
    for (const Map_Dot& dot : shown) {
        const bool chosen = dot.id == selectedId;
        const QPointF at = field.Place_Of(dot);
        const double radius = theme.Px(DOT_RADIUS);
        painter.setPen(QPen(chosen ? t.text : t.accent, theme.Px(2)));
        painter.setBrush(chosen ? t.accent : t.panel);
        // The two that stay where they are look like it.
        if (dot.moveable)
            painter.drawEllipse(at, radius, radius);
        else
            painter.drawRect(QRectF(at.x() - radius, at.y() - radius, 2 * radius, 2 * radius));
    }
}

void PanVolCtrl::Draw_Picture() {
    const double ratio = devicePixelRatioF();
    picture = QPixmap(size() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(theme.Tokens().panel);
    QPainter painter(&picture);
    if (dots.empty()) {
        painter.setFont(theme.Font(Text_Size::Lead));
        painter.setPen(theme.Tokens().dim);
        painter.drawText(rect(), Qt::AlignCenter, tr("Select a channel (S) to see its map."));
    } else {
        const Map_Field field = Field();
        Draw_Grid(painter, field);
        Draw_Curve(painter, field);
    }
    pictureValid = true;
}

void PanVolCtrl::paintEvent(QPaintEvent* event) {
    if (!pictureValid)
        Draw_Picture();
    const Theme_Tokens& t = theme.Tokens();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.drawPixmap(0, 0, picture);
    if (!dots.empty())
        painter.fillRect(QRectF(std::floor(Field().X_Of(line)), 0, theme.Px(2), height()), t.record);
    if (!figure.isEmpty()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(t.line);
        painter.setBrush(t.control);
        painter.drawRoundedRect(QRectF(figurePlace).adjusted(0.5, 0.5, -0.5, -0.5), theme.Px(5), theme.Px(5));
        painter.setPen(t.text);
        painter.setFont(theme.Font(Text_Size::Caption));
        painter.drawText(figurePlace, Qt::AlignCenter, figure);
    }
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, QRectF(rect()), 0.0);
}

void PanVolCtrl::resizeEvent(QResizeEvent*) {
    pictureValid = false;
    Hide_Figure();
}

void PanVolCtrl::Show_Figure(const QPointF& at, double beat, int value) {
    Hide_Figure();
    figure = QStringLiteral("%1 · %2").arg(QString::fromStdString(Format_Beats(beat)), Value_Text(value));
    const QFontMetrics metrics(theme.Font(Text_Size::Caption));
    QRect place(0, 0, metrics.horizontalAdvance(figure) + theme.Px(16), metrics.height() + theme.Px(6));
    place.moveBottomLeft((at + QPointF(theme.Px(10), -theme.Px(10))).toPoint());
    // Wholly inside, so that it can be read at every edge.
    place.moveLeft(std::clamp(place.left(), 0, std::max(0, width() - place.width())));
    place.moveTop(std::max(0, place.top()));
    figurePlace = place;
    update(figurePlace);
}

void PanVolCtrl::Hide_Figure() {
    if (figure.isEmpty())
        return;
    update(figurePlace);
    figure.clear();
}

QRect PanVolCtrl::Line_Place(double beats) const {
    const int x = static_cast<int>(std::floor(Field().X_Of(beats)));
    return {x - 2, 0, theme.Px(2) + 4, height()};
}

void PanVolCtrl::Move_Line(double beats) {
    if (beats > shownBeats) {
        line = beats;
        Changed();
        return;
    }
    const QRect before = Line_Place(line);
    line = beats;
    if (const QRect now = Line_Place(line); now != before) {
        update(before);
        update(now);
    }
}

void PanVolCtrl::On_Position(double beats, std::int64_t) {
    Move_Line(beats);
}

void PanVolCtrl::On_Run_Ended() {
    line = session.transport.PlayPosition;
    Refresh();
}

// ---- changes ----

void PanVolCtrl::Add(double beat, int value) {
    const Point_Messages messages = Messages_Of(audio, kind);
    sending = true;
    session.hub->Message(this, messages.add, owner, beat, std::int32_t{value});
    if (messages.addEnd != 0)
        session.hub->Message(this, messages.addEnd, owner);
    sending = false;
}

void PanVolCtrl::Add_At(const QPointF& point, bool onGrid) {
    const Map_Field field = Field();
    const double beat = field.Beat_At(point.x());
    Add(onGrid ? Snapped(beat, GRID_BEATS) : beat, field.Value_At(point.y()));
}

void PanVolCtrl::Add_At_Line() {
    if (dots.empty())
        return;
    const auto there =
        std::find_if(dots.begin(), dots.end(), [this](const Map_Dot& dot) { return dot.beat == line; });
    if (there != dots.end())
        Select_Point(there->id);
    else
        Add(line, Map()->Play_GetValue_At_TimePos(line));
}

void PanVolCtrl::Move(const Map_Dot& from, double beat, int value) {
    const bool moved = from.moveable && beat != from.beat;
    if (!moved && value == from.value)
        return;
    const Point_Messages messages = Messages_Of(audio, kind);
    sending = true;
    if (moved)
        session.hub->Message(this, messages.move, owner, from.id, beat, Msg_Arg(), std::int32_t{value});
    else
        session.hub->Message(this, messages.set, owner, from.id, std::int32_t{value});
    const int end = moved ? messages.moveEnd : messages.setEnd;
    if (end != 0)
        session.hub->Message(this, end, owner);
    sending = false;
}

void PanVolCtrl::Delete_Selected() {
    const Map_Dot* dot = Dot_Of(selectedId);
    if (dot == nullptr || !dot->moveable)
        return;
    // The one before takes over, so that Delete goes on from there.
    const Map_Dot going = *dot;
    selectedId = (dot - 1)->id;
    const Point_Messages messages = Messages_Of(audio, kind);
    session.hub->Message(this, messages.remove, owner, going.id);
    if (messages.removeEnd != 0)
        session.hub->Message(this, messages.removeEnd, owner);
}

void PanVolCtrl::Cancel_Drag() {
    if (!drag)
        return;
    drag.reset();
    Hide_Figure();
    pictureValid = false;
    update();
}

void PanVolCtrl::Step_Selection(int by) {
    const auto count = static_cast<int>(dots.size());
    const Map_Dot* dot = Dot_Of(selectedId);
    const int at = dot == nullptr ? (by > 0 ? -1 : count) : static_cast<int>(dot - dots.data());
    Select_Point(dots[static_cast<std::size_t>(std::clamp(at + by, 0, count - 1))].id);
}

// ---- gestures ----

void PanVolCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || dots.empty())
        return;
    const auto hit = Field().Hit(dots, event->position(), theme.Px(REACH));
    Select_Point(hit ? dots[*hit].id : NOT_GIVEN);
    if (hit)
        drag = Drag{dots[*hit], event->position(), dots[*hit].beat, dots[*hit].value};
}

void PanVolCtrl::mouseMoveEvent(QMouseEvent* event) {
    if (dots.empty())
        return;
    const Map_Field field = Field();
    const QPointF at = event->position();
    if (!drag) {
        const auto hit = field.Hit(dots, at, theme.Px(REACH));
        setCursor(hit ? Qt::SizeAllCursor : Qt::ArrowCursor);
        Show_Figure(at, hit ? dots[*hit].beat : field.Beat_At(at.x()),
                    hit ? dots[*hit].value : field.Value_At(at.y()));
        return;
    }
    const QPointF apart = at - drag->pressed;
    const QPointF goal = field.Place_Of(drag->from) + apart;
    drag->beat = drag->from.beat;
    if (drag->from.moveable && std::abs(apart.x()) >= theme.Px(SLIP)) {
        const double beat = field.Beat_At(goal.x());
        drag->beat = event->modifiers().testFlag(Qt::ShiftModifier) ? beat : Snapped(beat, GRID_BEATS);
    }
    drag->value = std::abs(apart.y()) < 1.0 ? drag->from.value : field.Value_At(goal.y());
    pictureValid = false;
    update();
    Show_Figure(field.Place_Of({0, drag->beat, drag->value, false}), drag->beat, drag->value);
}

void PanVolCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !drag)
        return;
    const Drag done = *drag;
    Cancel_Drag();
    Move(done.from, done.beat, done.value);
}

void PanVolCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || dots.empty())
        return;
    if (!Field().Hit(dots, event->position(), theme.Px(REACH)))
        Add_At(event->position(), !event->modifiers().testFlag(Qt::ShiftModifier));
}

/// Of the point under the pointer, or, for the Menu key, of the one that is chosen.
void PanVolCtrl::contextMenuEvent(QContextMenuEvent* event) {
    if (dots.empty() || drag)
        return;
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint at = event->pos();
    const auto hit = Field().Hit(dots, at, theme.Px(REACH));
    if (!byKey)
        Select_Point(hit ? dots[*hit].id : NOT_GIVEN);
    const Map_Dot* dot = Dot_Of(selectedId);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (byKey)
        menu->addAction(tr("&Add a point at the play position"), this, &PanVolCtrl::Add_At_Line);
    else
        menu->addAction(tr("&Add a point here"), this, [this, at] { Add_At(at, true); })->setEnabled(!hit);
    menu->addAction(tr("&Delete the point"), this, &PanVolCtrl::Delete_Selected)
        ->setEnabled(dot != nullptr && dot->moveable);
    menu->popup(byKey && dot != nullptr ? mapToGlobal(Field().Place_Of(*dot).toPoint()) : event->globalPos());
}

void PanVolCtrl::leaveEvent(QEvent*) {
    Hide_Figure();
}

void PanVolCtrl::focusOutEvent(QFocusEvent* event) {
    Cancel_Drag();
    Hide_Figure();
    QWidget::focusOutEvent(event);
    update();
}

bool PanVolCtrl::Handles(int key) noexcept {
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Insert:
    case Qt::Key_Delete:
        return true;
    default:
        return false;
    }
}

bool PanVolCtrl::event(QEvent* event) {
    // These keys have other meanings in the window's menus.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* offered = static_cast<QKeyEvent*>(event);
        if ((Is_Plain(*offered) && !dots.empty() && Handles(offered->key())) ||
            (drag && offered->key() == Qt::Key_Escape)) {
            offered->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void PanVolCtrl::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Escape && drag) {
        Cancel_Drag();
        return;
    }
    if (drag || dots.empty() || !Is_Plain(*event) || !Handles(key)) {
        QWidget::keyPressEvent(event);
        return;
    }
    const bool fine = event->modifiers().testFlag(Qt::ShiftModifier);
    const Map_Dot* chosen = Dot_Of(selectedId);
    const auto shift = [&](double beats, int value) {
        if (chosen == nullptr) {
            Step_Selection(1);
            return;
        }
        const Map_Dot from = *chosen;
        Move(from, std::max(0.0, from.beat + beats),
             std::clamp(from.value + value, 0, PanVol_Class::HIGHEST));
    };
    const double beats = fine ? GRID_BEATS : 1.0;
    const int value = fine ? 1 : VALUE_STEP;
    switch (key) {
    case Qt::Key_PageUp:
        Step_Selection(-1);
        break;
    case Qt::Key_PageDown:
        Step_Selection(1);
        break;
    case Qt::Key_Home:
        Select_Point(dots.front().id);
        break;
    case Qt::Key_End:
        Select_Point(dots.back().id);
        break;
    case Qt::Key_Left:
        shift(-beats, 0);
        break;
    case Qt::Key_Right:
        shift(beats, 0);
        break;
    case Qt::Key_Up:
        shift(0.0, value);
        break;
    case Qt::Key_Down:
        shift(0.0, -value);
        break;
    case Qt::Key_Insert:
        Add_At_Line();
        break;
    default:
        Delete_Selected();
        break;
    }
    if (const Map_Dot* dot = Dot_Of(selectedId)) {
        emit pointChosen(Field().Place_Of(*dot).toPoint());
        Show_Figure(Field().Place_Of(*dot), dot->beat, dot->value);
    } else {
        Hide_Figure();
    }
}

} // namespace tonvex
