#include "input/windows/piano_marks.h"

#include "widgets/piano_view.h"
#include "widgets/tool_button.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int LAST_WHITE_SLOT = Piano_Selection::SLOTS - 2;
constexpr double WHITE_KEYS = 18.0;
/// The last key is black: its outer part stands out over the last white one.
constexpr double OVERHANG = 0.36;
constexpr int OCTAVE = 12;

} // namespace

Piano_Marks::Piano_Marks(const Theme& look, Piano_Selection& marked, QWidget* parent)
    : QWidget(parent), theme(look), selection(marked) {
    setAccessibleName(tr("Piano keys"));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Piano_Marks::sizeHint() const {
    return {theme.Px(640), theme.Px(180)};
}

QSize Piano_Marks::minimumSizeHint() const {
    return {theme.Px(400), theme.Px(120)};
}

QRectF Piano_Marks::Key_Rect(int slot) const {
    const double names = theme.Px(22);
    const double ring = theme.Px(4);
    const QSizeF box((width() - 2 * ring) * WHITE_KEYS / (WHITE_KEYS + OVERHANG),
                     height() - names - 2 * ring);
    return Piano_Geometry(0, LAST_WHITE_SLOT, box).Key_Rect(slot).translated(ring, ring);
}

int Piano_Marks::Slot_At(QPointF point) const {
    int found = -1;
    for (int slot = 0; slot < Piano_Selection::SLOTS; ++slot) {
        if (!Key_Rect(slot).contains(point))
            continue;
        if (Piano_Geometry::Is_Black(slot))
            return slot;
        if (found < 0)
            found = slot;
    }
    return found;
}

void Piano_Marks::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const bool black : {false, true})
        for (int slot = 0; slot < Piano_Selection::SLOTS; ++slot)
            if (Piano_Geometry::Is_Black(slot) == black && selection.First_Place() + slot <= 127)
                Paint_Key(painter, slot);
    painter.setFont(theme.Font(Text_Size::Body));
    painter.setPen(theme.Tokens().dim);
    for (int octave = 0; octave * OCTAVE < Piano_Selection::SLOTS && octaveName; ++octave) {
        const QRectF key = Key_Rect(octave * OCTAVE);
        painter.drawText(QRectF(key.left(), key.bottom(), key.width() * 3, height() - key.bottom()),
                         Qt::AlignLeft | Qt::AlignVCenter, octaveName(octave));
    }
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), theme.Px(5));
}

void Piano_Marks::Paint_Key(QPainter& painter, int slot) {
    const Theme_Tokens& t = theme.Tokens();
    const bool black = Piano_Geometry::Is_Black(slot);
    const bool marked = selection.Is_Marked(slot);
    const QRectF key = Key_Rect(slot).adjusted(0.5, 0, -0.5, -1);
    const double radius = theme.Px(black ? 3 : 4);
    // Black ones too: the last stands over the panel, which may be as dark.
    painter.setPen(QPen(t.keyLine, 1));
    painter.setBrush(marked ? t.accent : black ? t.ebony : t.ivory);
    painter.drawRoundedRect(key, radius, radius);
    const QColor ink = marked ? t.onAccent : black ? t.ivory : t.ebony;
    // A mark is a colour and a dot.
    const double dot = theme.Px(5);
    const QPointF low(key.center().x(), key.bottom() - theme.Px(14));
    if (marked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(low, dot, dot);
    }
    if (slot == cursor && hasFocus()) {
        painter.setPen(QPen(ink, theme.Px(2)));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(low, dot + theme.Px(3), dot + theme.Px(3));
    }
}

void Piano_Marks::Toggle(int slot) {
    if (slot < 0 || selection.First_Place() + slot > 127)
        return;
    selection.Toggle(slot);
    Move_Cursor(slot);
    emit toggled(slot);
}

void Piano_Marks::Move_Cursor(int slot) {
    cursor = std::clamp(slot, 0, Piano_Selection::SLOTS - 1);
    if (slotName)
        setAccessibleDescription(selection.Is_Marked(cursor) ? tr("%1, selected").arg(slotName(cursor))
                                                             : slotName(cursor));
    update();
}

void Piano_Marks::Go_To_Mark() {
    int slot = 0;
    while (slot < Piano_Selection::SLOTS && !selection.Is_Marked(slot))
        ++slot;
    Move_Cursor(slot < Piano_Selection::SLOTS ? slot : cursor);
}

void Piano_Marks::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Toggle(Slot_At(event->position()));
}

void Piano_Marks::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return Move_Cursor(cursor - 1);
    case Qt::Key_Right:
        return Move_Cursor(cursor + 1);
    case Qt::Key_Up:
        return Move_Cursor(cursor + OCTAVE);
    case Qt::Key_Down:
        return Move_Cursor(cursor - OCTAVE);
    case Qt::Key_Space:
        return Toggle(cursor);
    default:
        QWidget::keyPressEvent(event);
    }
}

bool Piano_Marks::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto& help = *static_cast<QHelpEvent*>(event);
        const int slot = Slot_At(help.pos());
        if (slot >= 0 && slotName)
            QToolTip::showText(help.globalPos(), slotName(slot), this);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

} // namespace tonvex
