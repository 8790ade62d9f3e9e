#include "widgets/tool_button.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tonvex {

Tool_Button::Tool_Button(const Theme& look, Button_Kind buttonKind, const QString& pictureName,
                         const QString& name, const QString& key, QWidget* parent)
    : QToolButton(parent), theme(look), kind(buttonKind), picture(pictureName) {
    Set_Name(name, key);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

void Tool_Button::Set_Tint(Icon_Tint newTint) {
    tint = newTint;
    update();
}

void Tool_Button::Set_Name(const QString& name, const QString& key) {
    setAccessibleName(name);
    setToolTip(key.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, key));
}

void Tool_Button::Set_Pill(const QString& newCaption, const QString& newValue) {
    if (caption == newCaption && value == newValue)
        return;
    const int before = Pill_Width();
    caption = newCaption;
    value = newValue;
    if (Pill_Width() != before)
        updateGeometry();
    update();
}

void Tool_Button::Reserve_For(const QString& widestValue) {
    widest = widestValue;
    updateGeometry();
}

void Tool_Button::Set_Letter(const QString& newLetter) {
    letter = newLetter;
    update();
}

void Tool_Button::Set_On_Control(bool on) {
    onControl = on;
    update();
}

void Tool_Button::Set_Dot(bool isArmed) {
    if (dot && armed == isArmed)
        return;
    dot = true;
    armed = isArmed;
    update();
}

int Tool_Button::Pill_Width() const {
    const QFontMetrics captionMetrics(theme.Font(Text_Size::Body));
    const QFontMetrics valueMetrics(theme.Font(Text_Size::Body, QFont::Medium));
    int width = std::max(valueMetrics.horizontalAdvance(value), valueMetrics.horizontalAdvance(widest));
    if (!caption.isEmpty())
        width += captionMetrics.horizontalAdvance(caption) + theme.Px(4);
    return width + theme.Px(24);
}

QSize Tool_Button::sizeHint() const {
    switch (kind) {
    case Button_Kind::Flat:
        return {theme.Px(32), theme.Px(32)};
    case Button_Kind::Boxed:
        return {theme.Px(36), theme.Px(36)};
    case Button_Kind::Transport:
        return {theme.Px(44), theme.Px(44)};
    case Button_Kind::Letter:
        return {theme.Px(22), theme.Px(22)};
    case Button_Kind::Caption:
        return {theme.Px(120), theme.Px(18)};
    case Button_Kind::Pill:
        break;
    }
    return {Pill_Width(), theme.Px(32)};
}

void Tool_Button::enterEvent(QEnterEvent* event) {
    QToolButton::enterEvent(event);
    update();
}

void Tool_Button::leaveEvent(QEvent* event) {
    QToolButton::leaveEvent(event);
    update();
}

void Tool_Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme_Tokens& t = theme.Tokens();
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = theme.Px(kind == Button_Kind::Letter ? 5 : 8);
    const bool hot = isEnabled() && (underMouse() || isDown());
    const bool filledState = kind == Button_Kind::Letter && isChecked() && !dot;

    if (kind == Button_Kind::Caption) {
        painter.setFont(theme.Font(Text_Size::Caption));
        painter.setPen(hot ? t.text : t.dim);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(value, Qt::ElideRight, width()));
        if (hasFocus())
            Paint_Focus_Ring(painter, theme, rect(), theme.Px(5));
        return;
    }
    QColor ground = kind == Button_Kind::Flat ? QColor(Qt::transparent) : t.control;
    if (hot || onControl)
        ground = t.hover;
    if (filledState)
        ground = t.soloMute;
    painter.setBrush(ground);
    const bool outlined = isChecked() && !filledState && !dot;
    if (outlined)
        painter.setPen(QPen(t.accent, theme.Px(1)));
    else
        painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(box, radius, radius);
    Paint_Face(painter, box);
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), radius);
}

void Tool_Button::Paint_Face(QPainter& painter, const QRectF& box) {
    const Theme_Tokens& t = theme.Tokens();
    if (kind == Button_Kind::Pill) {
        const QColor front = !isEnabled() ? t.dim : isChecked() ? t.accent : t.text;
        QRectF place = box.adjusted(theme.Px(12), 0, -theme.Px(8), 0);
        if (!caption.isEmpty()) {
            painter.setFont(theme.Font(Text_Size::Body));
            painter.setPen(t.dim);
            painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft, caption);
            place.setLeft(place.left() + QFontMetrics(painter.font()).horizontalAdvance(caption) +
                          theme.Px(4));
        }
        painter.setFont(theme.Font(Text_Size::Body, QFont::Medium));
        painter.setPen(front);
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft, value);
        return;
    }
    if (dot) {
        const double radius = theme.Px(armed ? 5 : 4);
        painter.setPen(armed ? QPen(Qt::NoPen) : QPen(t.dim, theme.Px(1.5)));
        painter.setBrush(armed ? QBrush(t.record) : QBrush(Qt::NoBrush));
        painter.drawEllipse(box.center(), radius, radius);
        return;
    }
    if (!letter.isEmpty()) {
        painter.setFont(theme.Font(Text_Size::Caption, QFont::Medium));
        painter.setPen(isChecked() ? t.onState : isEnabled() ? t.text : t.dim);
        painter.drawText(box, Qt::AlignCenter, letter);
        return;
    }
    QColor front = t.text;
    // The sign of the run that is on stays bright, though its button is locked.
    if (!isEnabled() && !isChecked())
        front = t.dim;
    else if (tint == Icon_Tint::Record)
        front = t.record;
    else if (tint == Icon_Tint::Play)
        front = t.play;
    else if (isChecked())
        front = t.accent;
    const int edge = theme.Px(kind == Button_Kind::Transport ? 22 : 18);
    const QPixmap image = theme.Picture(picture, front, edge, devicePixelRatioF());
    painter.drawPixmap(QPointF(box.center().x() - edge / 2.0, box.center().y() - edge / 2.0), image);
}

void Paint_Focus_Ring(QPainter& painter, const Theme& theme, const QRectF& rect, double radius) {
    const double width = std::max(2, theme.Px(2));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.Tokens().accent, width));
    painter.drawRoundedRect(rect.adjusted(width / 2, width / 2, -width / 2, -width / 2), radius, radius);
}

} // namespace tonvex
