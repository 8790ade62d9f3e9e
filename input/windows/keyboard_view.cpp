#include "input/windows/keyboard_view.h"

#include "widgets/key_captions.h"
#include "widgets/tool_button.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr int NO_KEY = -1; ///< a key that is drawn for the eye alone
constexpr double COLUMNS = 15.0;
constexpr double ROWS = 5.2;
constexpr double MOST_UNIT = 76.0;
constexpr int ESCAPE = 1;
constexpr int F1 = 59;
constexpr int F10 = 68;
constexpr int F11 = 87;

/// In widths of a key.
struct Place {
    int key;
    double x;
    double y;
    double width;
};

/// The first place has no key, so that an index of 0 can say "none".
std::vector<Place> Make_Places() {
    constexpr double FUNCTIONS = 0.0;
    constexpr double DIGITS = 1.2;
    std::vector<Place> places{{NO_KEY, 13.0, DIGITS, 2.0}};
    const auto run = [&places](int firstKey, int count, double x, double y) {
        for (int i = 0; i < count; ++i)
            places.push_back({firstKey + i, x + i, y, 1.0});
    };
    places.push_back({ESCAPE, 0.0, FUNCTIONS, 1.0});
    run(F1, 4, 2.0, FUNCTIONS);
    run(F1 + 4, 4, 6.5, FUNCTIONS);
    run(F1 + 8, 2, 11.0, FUNCTIONS);
    run(F11, 2, 13.0, FUNCTIONS);
    run(41, 1, 0.0, DIGITS);
    run(2, 12, 1.0, DIGITS);
    places.push_back({NO_KEY, 0.0, DIGITS + 1.0, 1.5});
    run(16, 12, 1.5, DIGITS + 1.0);
    places.push_back({43, 13.5, DIGITS + 1.0, 1.5});
    places.push_back({NO_KEY, 0.0, DIGITS + 2.0, 1.75});
    run(30, 11, 1.75, DIGITS + 2.0);
    places.push_back({NO_KEY, 12.75, DIGITS + 2.0, 2.25});
    places.push_back({NO_KEY, 0.0, DIGITS + 3.0, 1.25});
    run(86, 1, 1.25, DIGITS + 3.0);
    run(44, 10, 2.25, DIGITS + 3.0);
    places.push_back({NO_KEY, 12.25, DIGITS + 3.0, 2.75});
    return places;
}

const std::vector<Place>& Places() {
    static const std::vector<Place> places = Make_Places();
    return places;
}

bool Is_Key(int key) {
    return key >= 0 && key < Keyboard_View::KEYS;
}

} // namespace

Keyboard_View::Keyboard_View(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
    setAccessibleName(tr("Computer keyboard"));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

std::array<QString, Keyboard_View::KEYS> Keyboard_View::Signs() {
    auto signs = Key_Captions();
    signs[ESCAPE] = tr("Esc");
    for (int key = F1; key <= F10; ++key)
        signs[static_cast<std::size_t>(key)] = QStringLiteral("F%1").arg(key - F1 + 1);
    for (int key = F11; key <= F11 + 1; ++key)
        signs[static_cast<std::size_t>(key)] = QStringLiteral("F%1").arg(key - F11 + 11);
    return signs;
}

QSize Keyboard_View::sizeHint() const {
    return {theme.Px(COLUMNS * 64), theme.Px(ROWS * 64)};
}

QSize Keyboard_View::minimumSizeHint() const {
    return {theme.Px(COLUMNS * 40), theme.Px(ROWS * 40)};
}

double Keyboard_View::Unit() const {
    const double border = theme.Px(8);
    return std::min({(width() - border) / COLUMNS, (height() - border) / ROWS, double(theme.Px(MOST_UNIT))});
}

QRectF Keyboard_View::Place_Rect(std::size_t index) const {
    const Place& place = Places()[index];
    const double unit = Unit();
    const double left = (width() - unit * COLUMNS) / 2;
    const double top = (height() - unit * ROWS) / 2;
    const double gap = theme.Px(2);
    return QRectF(left + place.x * unit, top + place.y * unit, place.width * unit, unit)
        .adjusted(gap, gap, -gap, -gap);
}

int Keyboard_View::Convert_KeyN_to_LabelN(int key) const {
    const auto& places = Places();
    const auto found = std::find_if(places.begin() + 1, places.end(),
                                    [key](const Place& place) { return place.key == key; });
    return key < 0 || found == places.end() ? 0 : static_cast<int>(found - places.begin());
}

QRectF Keyboard_View::Key_Rect(int key) const {
    const int index = Convert_KeyN_to_LabelN(key);
    return index == 0 ? QRectF() : Place_Rect(static_cast<std::size_t>(index));
}

int Keyboard_View::Key_At(QPointF point) const {
    for (std::size_t index = 0; index < Places().size(); ++index)
        if (Place_Rect(index).contains(point))
            return Places()[index].key;
    return NO_KEY;
}

void Keyboard_View::Update_Key(int key) {
    update(Key_Rect(key).toAlignedRect().adjusted(-2, -2, 2, 2));
}

void Keyboard_View::Set_Face(int key, const Key_Face& face) {
    if (!Is_Key(key) || faces[static_cast<std::size_t>(key)] == face)
        return;
    faces[static_cast<std::size_t>(key)] = face;
    if (key == current)
        setAccessibleDescription(face.told);
    Update_Key(key);
}

void Keyboard_View::Set_Pressed(int key, bool on) {
    if (!Is_Key(key) || pressed[static_cast<std::size_t>(key)] == on)
        return;
    pressed[static_cast<std::size_t>(key)] = on;
    Update_Key(key);
}

bool Keyboard_View::Is_Pressed(int key) const {
    return Is_Key(key) && pressed[static_cast<std::size_t>(key)];
}

void Keyboard_View::Clear_Pressed() {
    pressed.fill(false);
    update();
}

void Keyboard_View::Select(int key) {
    if (key == current || Convert_KeyN_to_LabelN(key) == 0)
        return;
    Update_Key(current);
    current = key;
    setAccessibleDescription(faces[static_cast<std::size_t>(key)].told);
    Update_Key(current);
    emit currentChanged(current);
}

/// The nearest key in that direction: within the row for columns, in the next row for rows.
void Keyboard_View::Step(int columns, int rows) {
    const QPointF from = Key_Rect(current).center();
    int best = NO_KEY;
    double least = 0.0;
    for (std::size_t index = 1; index < Places().size(); ++index) {
        if (Places()[index].key == NO_KEY)
            continue;
        const QPointF way = Place_Rect(index).center() - from;
        const double along = columns != 0 ? way.x() * columns : way.y() * rows;
        const double aside = std::abs(columns != 0 ? way.y() : way.x());
        if (along < Unit() / 2 || (columns != 0 && aside > Unit() / 2))
            continue;
        // A row further away is never nearer.
        const double distance = columns != 0 ? along : along * COLUMNS + aside;
        if (best == NO_KEY || distance < least) {
            best = Places()[index].key;
            least = distance;
        }
    }
    if (best != NO_KEY)
        Select(best);
}

void Keyboard_View::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t index = 0; index < Places().size(); ++index)
        if (Place_Rect(index).adjusted(-2, -2, 2, 2).intersects(event->rect()))
            Paint_Key(painter, index);
}

void Keyboard_View::Paint_Key(QPainter& painter, std::size_t index) {
    const Theme_Tokens& t = theme.Tokens();
    const QRectF box = Place_Rect(index).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = theme.Px(5);
    const int key = Places()[index].key;
    if (key == NO_KEY) {
        painter.setPen(QPen(t.line, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box, radius, radius);
        return;
    }
    const Key_Face& face = faces[static_cast<std::size_t>(key)];
    const bool down = pressed[static_cast<std::size_t>(key)];
    const bool plays = face.face != Face::Off && face.face != Face::Reserved;
    const bool chord = face.face == Face::Chord || face.face == Face::Style;
    painter.setPen(QPen(down ? t.accent : t.line, 1));
    painter.setBrush(down ? t.accent : chord ? t.hover : plays ? t.control : t.panel);
    painter.drawRoundedRect(box, radius, radius);
    painter.setPen(down ? t.onAccent : plays ? t.text : t.dim);
    painter.setFont(theme.Font(Text_Size::Body, QFont::DemiBold));
    const double rim = theme.Px(6);
    painter.drawText(box.adjusted(rim, rim / 2, -rim, -rim / 2), Qt::AlignLeft | Qt::AlignTop, face.sign);
    // Chords are told from notes by a filled chip behind their name.
    const QFont labelFont =
        theme.Font(chord ? Text_Size::Body : Text_Size::Caption, chord ? QFont::DemiBold : QFont::Normal);
    const QFontMetricsF metrics(labelFont);
    const QString label = metrics.elidedText(face.label, Qt::ElideRight, box.width() - rim);
    const QRectF low(box.left() + rim / 2, box.bottom() - metrics.height() - rim, box.width() - rim,
                     metrics.height() + rim / 2);
    if (chord && !down) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(t.accent);
        painter.drawRoundedRect(low, theme.Px(4), theme.Px(4));
    }
    painter.setFont(labelFont);
    painter.setPen(down || chord ? t.onAccent : t.dim);
    painter.drawText(low, Qt::AlignCenter, label);
    if (key == current) {
        if (hasFocus()) {
            Paint_Focus_Ring(painter, theme, box.adjusted(-1, -1, 1, 1), radius);
        } else {
            painter.setPen(QPen(t.dim, theme.Px(1)));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(box.adjusted(1, 1, -1, -1), radius, radius);
        }
    }
}

void Keyboard_View::mousePressEvent(QMouseEvent* event) {
    const int key = Key_At(event->position());
    if (key != NO_KEY)
        Select(key);
}

void Keyboard_View::mouseDoubleClickEvent(QMouseEvent* event) {
    const int key = Key_At(event->position());
    if (key != NO_KEY && event->button() == Qt::LeftButton)
        emit configureAsked(key);
}

void Keyboard_View::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse) {
        const int key = Key_At(event->pos());
        if (key == NO_KEY)
            return;
        Select(key);
        emit menuAsked(key, event->globalPos());
    } else {
        emit menuAsked(current, mapToGlobal(Key_Rect(current).center().toPoint()));
    }
}

void Keyboard_View::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return Step(-1, 0);
    case Qt::Key_Right:
        return Step(1, 0);
    case Qt::Key_Up:
        return Step(0, -1);
    case Qt::Key_Down:
        return Step(0, 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit configureAsked(current);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool Keyboard_View::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // Enter is a shortcut of the main window.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Left || key == Qt::Key_Right ||
            key == Qt::Key_Up || key == Qt::Key_Down) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::ToolTip) {
        const auto& help = *static_cast<QHelpEvent*>(event);
        const int key = Key_At(help.pos());
        if (Is_Key(key) && faces[static_cast<std::size_t>(key)].face != Face::Reserved)
            QToolTip::showText(
                help.globalPos(),
                tr("Dbl click to configure the Note/Qchord, right click to select the function"), this);
        else if (Is_Key(key))
            QToolTip::showText(help.globalPos(), faces[static_cast<std::size_t>(key)].told, this);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

} // namespace tonvex
