#include "widgets/value_slider.h"

#include "widgets/tool_button.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tonvex {

Value_Slider::Value_Slider(const Theme& look, Slider_Kind sliderKind, const QString& name, int least,
                           int most, int neutralValue, int step, QWidget* parent)
    : QAbstractSlider(parent), theme(look), kind(sliderKind), neutral(neutralValue), stepSize(step) {
    setOrientation(Qt::Horizontal);
    setRange(least, most);
    setSingleStep(step);
    setPageStep(step * 3);
    setValue(neutralValue);
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

void Value_Slider::Show_Value(int newValue) {
    if (!held)
        setValue(newValue);
}

void Value_Slider::Set_Width(double designPixels) {
    designWidth = designPixels;
    updateGeometry();
}

QSize Value_Slider::sizeHint() const {
    if (kind == Slider_Kind::Dial)
        return {theme.Px(44), theme.Px(44)};
    return {theme.Px(designWidth), theme.Px(16)};
}

QString Value_Slider::Number() const {
    return toText ? toText(value()) : QString::number(value());
}

void Value_Slider::Tell_Number() {
    QToolTip::showText(mapToGlobal(QPoint(width() / 2, height())),
                       QStringLiteral("%1: %2").arg(accessibleName(), Number()), this);
}

void Value_Slider::Change_To(int newValue) {
    newValue = std::clamp(newValue, minimum(), maximum());
    if (newValue == value())
        return;
    setValue(newValue);
    emit userChanged(newValue);
    if (isVisible())
        Tell_Number();
}

double Value_Slider::Place_Of(int place) const {
    const double inset = theme.Px(4);
    const double span = std::max(1, maximum() - minimum());
    return inset + (place - minimum()) / span * (width() - 2 * inset);
}

int Value_Slider::Value_At(double x) const {
    const double inset = theme.Px(4);
    const double part = (x - inset) / std::max(1.0, width() - 2 * inset);
    return minimum() + static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * (maximum() - minimum())));
}

void Value_Slider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (kind == Slider_Kind::Dial) {
        Paint_Dial(painter);
        return;
    }
    const Theme_Tokens& t = theme.Tokens();
    const double middle = height() / 2.0;
    const double inset = theme.Px(4);
    const double thick = theme.Px(kind == Slider_Kind::Fill ? 5 : 3);
    const QRectF track(inset, middle - thick / 2, width() - 2 * inset, thick);
    painter.setBrush(t.hover);
    painter.drawRoundedRect(track, thick / 2, thick / 2);
    const double place = Place_Of(value());
    if (kind == Slider_Kind::Fill) {
        painter.setBrush(isEnabled() ? t.accent : t.dim);
        painter.drawRoundedRect(QRectF(track.left(), track.top(), place - track.left(), thick), thick / 2,
                                thick / 2);
    } else {
        const double markWidth = theme.Px(3);
        const double markHeight = theme.Px(11);
        painter.setBrush(isEnabled() ? t.text : t.dim);
        painter.drawRoundedRect(QRectF(place - markWidth / 2, middle - markHeight / 2, markWidth, markHeight),
                                1, 1);
    }
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), theme.Px(5));
}

void Value_Slider::Paint_Dial(QPainter& painter) {
    const Theme_Tokens& t = theme.Tokens();
    const double thick = theme.Px(3);
    const double edge = std::min(width(), height()) - theme.Px(8);
    const QRectF box((width() - edge) / 2, (height() - edge) / 2, edge, edge);
    painter.setBrush(t.control);
    painter.drawEllipse(box.adjusted(thick + 1, thick + 1, -thick - 1, -thick - 1));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(t.hover, thick, Qt::SolidLine, Qt::RoundCap));
    // Qt counts sixteenths of a degree against the clock; the scale runs from 225 down to -45 degrees.
    painter.drawArc(box, 225 * 16, -270 * 16);
    const double span = std::max(1, maximum() - minimum());
    const auto angle = [&](int place) { return 225.0 - 270.0 * (place - minimum()) / span; };
    // A dial whose neutral value is the middle fills from there: pan.
    const bool fromNeutral = std::abs(2 * neutral - minimum() - maximum()) <= 1;
    const double from = fromNeutral ? angle(neutral) : 225.0;
    const double to = angle(value());
    if (std::abs(from - to) > 0.5) {
        painter.setPen(QPen(isEnabled() ? t.accent : t.dim, thick, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(box, static_cast<int>(std::lround(from * 16)),
                        static_cast<int>(std::lround((to - from) * 16)));
    }
    const double radians = to * 3.14159265358979323846 / 180.0;
    const QPointF direction(std::cos(radians), -std::sin(radians));
    painter.setPen(QPen(isEnabled() ? t.text : t.dim, theme.Px(2), Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(box.center() + direction * edge * 0.08, box.center() + direction * edge * 0.3);
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), theme.Px(8));
}

void Value_Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    held = true;
    dragY = event->position().y();
    dragValue = value();
    if (kind != Slider_Kind::Dial)
        Change_To(Value_At(event->position().x()));
    Tell_Number();
}

void Value_Slider::mouseMoveEvent(QMouseEvent* event) {
    if (!held)
        return;
    if (kind != Slider_Kind::Dial) {
        Change_To(Value_At(event->position().x()));
        return;
    }
    const double whole = theme.Px((event->modifiers() & Qt::ShiftModifier) != 0 ? 600 : 150);
    const double turned = (dragY - event->position().y()) / whole * (maximum() - minimum());
    Change_To(dragValue + static_cast<int>(std::lround(turned)));
}

void Value_Slider::mouseReleaseEvent(QMouseEvent*) {
    held = false;
}

void Value_Slider::mouseDoubleClickEvent(QMouseEvent*) {
    Change_To(neutral);
}

void Value_Slider::wheelEvent(QWheelEvent* event) {
    // Shift turns the wheel sideways on some desktops, so either axis counts.
    const QPoint turn = event->angleDelta();
    wheelRest += turn.y() != 0 ? turn.y() : turn.x();
    const int notches = wheelRest / 120;
    wheelRest -= notches * 120;
    const bool fine = (event->modifiers() & Qt::ShiftModifier) != 0;
    if (notches != 0)
        Change_To(value() + notches * (fine ? 1 : stepSize));
    event->accept();
}

void Value_Slider::keyPressEvent(QKeyEvent* event) {
    const int step = (event->modifiers() & Qt::ShiftModifier) != 0 ? 1 : stepSize;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        Change_To(value() - step);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        Change_To(value() + step);
        break;
    case Qt::Key_PageDown:
        Change_To(value() - pageStep());
        break;
    case Qt::Key_PageUp:
        Change_To(value() + pageStep());
        break;
    case Qt::Key_Home:
        Change_To(minimum());
        break;
    case Qt::Key_End:
        Change_To(maximum());
        break;
    case Qt::Key_Backspace:
        Change_To(neutral);
        break;
    default:
        event->ignore();
        return;
    }
    event->accept();
}

bool Value_Slider::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        Tell_Number();
        return true;
    }
    // The main window has shortcuts on these keys; while the slider has the focus they are its own.
    if (event->type() == QEvent::ShortcutOverride) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Home:
        case Qt::Key_End:
            event->accept();
            return true;
        default:
            break;
        }
    }
    return QAbstractSlider::event(event);
}

void Value_Slider::sliderChange(SliderChange change) {
    QAbstractSlider::sliderChange(change);
    update();
}

} // namespace tonvex
