#include "widgets/piano_view.h"

#include "widgets/accessible_faces.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int OCTAVE = 12;
constexpr double BLACK_WIDTH = 0.68; ///< of a white key
constexpr double BLACK_HEIGHT = 0.6;
/// White keys below each semitone within an octave.
constexpr std::array<int, 12> WHITE_BELOW{0, 1, 1, 2, 2, 3, 4, 4, 5, 5, 6, 6};
constexpr int LOWEST_FOR_TWO_LINES = 90; ///< pixels at 100 %

/// The face, made smaller when the text would be wider than width.
QFont Fitted(QFont face, const QString& text, double width) {
    const double wide = QFontMetricsF(face).horizontalAdvance(text);
    if (wide > width && face.pixelSize() > 0)
        face.setPixelSize(std::max(1, static_cast<int>(face.pixelSize() * width / wide)));
    return face;
}

} // namespace

Piano_Geometry::Piano_Geometry(int firstNote, int lastNote, QSizeF box)
    : first(firstNote), last(lastNote), whiteCount(0), size(box) {
    whiteCount = White_Index(last) - White_Index(first) + 1;
}

bool Piano_Geometry::Is_Black(int note) noexcept {
    const int place = note % 12;
    return place == 1 || place == 3 || place == 6 || place == 8 || place == 10;
}

int Piano_Geometry::White_Index(int note) const noexcept {
    return note / 12 * 7 + WHITE_BELOW[static_cast<std::size_t>(note % 12)];
}

QRectF Piano_Geometry::Key_Rect(int note) const {
    const double whiteWidth = size.width() / whiteCount;
    const double left = (White_Index(note) - White_Index(first)) * whiteWidth;
    if (!Is_Black(note))
        return {left, 0.0, whiteWidth, size.height()};
    const double width = whiteWidth * BLACK_WIDTH;
    return {left - width / 2, 0.0, width, size.height() * BLACK_HEIGHT};
}

int Piano_Geometry::Note_At(QPointF point) const {
    int found = -1;
    for (int note = first; note <= last; ++note) {
        if (!Key_Rect(note).contains(point))
            continue;
        if (Is_Black(note))
            return note;
        if (found < 0)
            found = note;
    }
    return found;
}

Piano_View::Piano_View(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
    Install_Accessible_Faces();
    setAccessibleName(tr("Piano"));
    setToolTip(tr("Click a key to hear it on the selected channel"));
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Piano_View::sizeHint() const {
    return {theme.Px(848), theme.Px(88)};
}

QSize Piano_View::minimumSizeHint() const {
    return {theme.Px(200), theme.Px(64)};
}

void Piano_View::Set_Range(int firstNote, int lastNote) {
    if (firstNote == first && lastNote == last)
        return;
    Mouse_Off();
    first = firstNote;
    last = lastNote;
    update();
}

void Piano_View::Set_Labels(const std::array<QString, 128>& labels) {
    if (letters == labels)
        return;
    letters = labels;
    update();
}

void Piano_View::Set_Note_Names(const std::array<QString, 128>& names) {
    noteNames = names;
    update();
}

void Piano_View::Update_Key(int note) {
    if (note < first || note > last)
        return;
    const Piano_Geometry keys(first, last, QSizeF(size()));
    update(keys.Key_Rect(note).toAlignedRect().adjusted(-1, 0, 1, 0));
}

void Piano_View::Set_Lit(int note, bool on) {
    if (note < 0 || note > 127 || lit[static_cast<std::size_t>(note)] == on)
        return;
    lit[static_cast<std::size_t>(note)] = on;
    Update_Key(note);
}

bool Piano_View::Is_Lit(int note) const {
    return note >= 0 && note <= 127 && lit[static_cast<std::size_t>(note)];
}

void Piano_View::Clear_Lit() {
    lit.fill(false);
    update();
}

void Piano_View::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Piano_Geometry keys(first, last, QSizeF(size()));
    const QRectF dirty = event->rect();
    for (const bool black : {false, true})
        for (int note = first; note <= last; ++note)
            if (Piano_Geometry::Is_Black(note) == black && keys.Key_Rect(note).intersects(dirty))
                Paint_Key(painter, keys, note);
}

void Piano_View::Paint_Key(QPainter& painter, const Piano_Geometry& keys, int note) {
    const Theme_Tokens& t = theme.Tokens();
    const bool black = Piano_Geometry::Is_Black(note);
    const bool on = lit[static_cast<std::size_t>(note)] || note == mouseNote;
    const QRectF key = keys.Key_Rect(note).adjusted(0.5, black ? -4.0 : -8.0, -0.5, -1.0);
    const double radius = theme.Px(black ? 3 : 4);
    painter.setPen(black ? QPen(Qt::NoPen) : QPen(t.keyLine, 1));
    painter.setBrush(on ? t.accent : black ? t.ebony : t.ivory);
    // The upper corners lie outside the widget, so only the lower ones are round.
    painter.drawRoundedRect(key, radius, radius);
    if (on && black) {
        painter.setPen(QPen(t.ebony, theme.Px(1)));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(key, radius, radius);
    }
    const QColor ink = on ? t.onAccent : black ? t.ivory : t.ebony;
    const auto row = static_cast<std::size_t>(note);
    if (!letters[row].isEmpty()) {
        painter.setFont(Fitted(theme.Font(Text_Size::Caption, QFont::Medium), letters[row], key.width()));
        painter.setPen(ink);
        painter.drawText(key.adjusted(0, 0, 0, -theme.Px(black ? 4 : 6)), Qt::AlignHCenter | Qt::AlignBottom,
                         letters[row]);
    }
    // On a low keyboard the black keys would cover a name above the letter.
    const bool low = key.height() < theme.Px(LOWEST_FOR_TWO_LINES);
    if (note % OCTAVE == 0 && (!low || letters[row].isEmpty())) {
        QFont face = theme.Font(Text_Size::Caption);
        face.setPixelSize(theme.Px(9));
        painter.setFont(Fitted(face, noteNames[row], key.width()));
        painter.setPen(on ? t.onAccent : t.keyLabel);
        painter.drawText(key.adjusted(0, 0, 0, -theme.Px(low ? 6 : 22)), Qt::AlignHCenter | Qt::AlignBottom,
                         noteNames[row]);
    }
}

void Piano_View::Mouse_On(QPointF point) {
    const Piano_Geometry keys(first, last, QSizeF(size()));
    const int note = keys.Note_At(point);
    if (note == mouseNote)
        return;
    Mouse_Off();
    if (note < 0)
        return;
    mouseNote = note;
    const double depth = std::clamp(point.y() / keys.Key_Rect(note).height(), 0.0, 1.0);
    Update_Key(note);
    emit notePressed(note, 64 + static_cast<int>(depth * 63.0));
}

void Piano_View::Mouse_Off() {
    if (mouseNote < 0)
        return;
    const int note = mouseNote;
    mouseNote = -1;
    Update_Key(note);
    emit noteReleased(note);
}

void Piano_View::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Mouse_On(event->position());
}

void Piano_View::mouseMoveEvent(QMouseEvent* event) {
    if (mouseNote >= 0)
        Mouse_On(event->position());
}

void Piano_View::mouseReleaseEvent(QMouseEvent*) {
    Mouse_Off();
}

} // namespace tonvex
