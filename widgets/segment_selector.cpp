#include "widgets/segment_selector.h"

#include "widgets/tool_button.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

namespace tonvex {

Segment_Selector::Segment_Selector(const Theme& look, const QString& name, const QString& keys, int segments,
                                   QWidget* parent)
    : QWidget(parent), theme(look), selectorName(name), count(segments) {
    setToolTip(QStringLiteral("%1 (%2)").arg(name, keys));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    Tell_Value();
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Segment_Selector::sizeHint() const {
    return {theme.Px(26) * count, theme.Px(24)};
}

void Segment_Selector::Tell_Value() {
    setAccessibleName(selectorName);
    setAccessibleDescription(QString::number(chosen + 1));
}

void Segment_Selector::Show_Choice(int choice) {
    choice = std::clamp(choice, 0, count - 1);
    if (choice == chosen)
        return;
    chosen = choice;
    Tell_Value();
    update();
}

void Segment_Selector::Choose(int choice) {
    choice = std::clamp(choice, 0, count - 1);
    if (choice == chosen)
        return;
    Show_Choice(choice);
    emit chosenByUser(choice);
}

void Segment_Selector::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme_Tokens& t = theme.Tokens();
    const double width1 = width() / static_cast<double>(count);
    painter.setFont(theme.Font(Text_Size::Caption, QFont::Medium));
    for (int segment = 0; segment < count; ++segment) {
        const QRectF box(segment * width1 + 0.5, 0.5, width1 - 1.0, height() - 1.0);
        const bool on = segment == chosen;
        painter.setPen(Qt::NoPen);
        painter.setBrush(on ? t.accent : t.control);
        painter.drawRoundedRect(box, theme.Px(3), theme.Px(3));
        painter.setPen(on ? t.onAccent : t.dim);
        painter.drawText(box, Qt::AlignCenter, QString::number(segment + 1));
    }
    if (hasFocus()) {
        // Around the control: on the filled segment the ring would not be seen.
        Paint_Focus_Ring(painter, theme, rect(), theme.Px(5));
        const QRectF inner(chosen * width1 + 3.0, 3.0, width1 - 6.0, height() - 6.0);
        painter.setPen(QPen(t.onAccent, 1));
        painter.drawRoundedRect(inner, theme.Px(2), theme.Px(2));
    }
}

void Segment_Selector::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Choose(static_cast<int>(event->position().x() * count / std::max(1, width())));
}

void Segment_Selector::wheelEvent(QWheelEvent* event) {
    Choose(chosen + (event->angleDelta().y() > 0 ? 1 : -1));
    event->accept();
}

void Segment_Selector::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        Choose(chosen - 1);
        return;
    case Qt::Key_Right:
    case Qt::Key_Up:
        Choose(chosen + 1);
        return;
    default:
        break;
    }
    if (event->key() > Qt::Key_0 && event->key() <= Qt::Key_0 + count) {
        Choose(event->key() - Qt::Key_0 - 1);
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace tonvex
