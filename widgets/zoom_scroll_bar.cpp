#include "widgets/zoom_scroll_bar.h"

#include "widgets/accessible_faces.h"
#include "widgets/tool_button.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double THICK = 16;
constexpr double LEAST_THUMB = 28; ///< so that both ends and the middle can be taken hold of
constexpr double HANDLE = 8;
constexpr double ZOOM_STEP = 1.25;
constexpr double PAGE_STEPS = 9.0; ///< a tenth of the window stays in view

} // namespace

Zoom_Scroll_Bar::Zoom_Scroll_Bar(const Theme& look, Qt::Orientation barDirection, const QString& name,
                                 QWidget* parent)
    : QWidget(parent), theme(look), direction(barDirection) {
    Install_Accessible_Faces();
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(Is_Flat() ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  Is_Flat() ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Zoom_Scroll_Bar::sizeHint() const {
    const QSize flat(theme.Px(200), theme.Px(THICK));
    return Is_Flat() ? flat : flat.transposed();
}

QSize Zoom_Scroll_Bar::minimumSizeHint() const {
    const QSize flat(theme.Px(3 * LEAST_THUMB), theme.Px(THICK));
    return Is_Flat() ? flat : flat.transposed();
}

void Zoom_Scroll_Bar::Show_Range(double newBegin, double newEnd) {
    if (newBegin == begin && newEnd == end)
        return;
    begin = newBegin;
    end = newEnd;
    update();
}

void Zoom_Scroll_Bar::Show_Window(double newFirst, double newLength) {
    if ((newFirst == first && newLength == length) || !(newLength > 0.0))
        return;
    first = newFirst;
    length = newLength;
    update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent told(this, first);
        QAccessible::updateAccessibility(&told);
    }
}

void Zoom_Scroll_Bar::Set_Shortest(double newLength) {
    shortest = newLength;
}

void Zoom_Scroll_Bar::Set_Longest(double newLength) {
    longest = newLength;
}

void Zoom_Scroll_Bar::Set_Zoomable(bool zoomable) {
    canZoom = zoomable;
    update();
}

double Zoom_Scroll_Bar::Longest() const noexcept {
    return std::max(shortest, longest > 0.0 ? longest : end - begin);
}

QString Zoom_Scroll_Bar::Told() const {
    const auto text = [this](double place) { return toText ? toText(place) : QString::number(place); };
    return tr("%1 to %2").arg(text(first), text(first + length));
}

void Zoom_Scroll_Bar::Ask_For(double newFirst, double newLength) {
    if (!isEnabled() || !(end > begin))
        return;
    newLength = canZoom ? std::clamp(newLength, shortest, Longest()) : length;
    newFirst = std::clamp(newFirst, begin, std::max(begin, end - newLength));
    if (newFirst != first || newLength != length)
        emit windowAsked(newFirst, newLength);
}

void Zoom_Scroll_Bar::Zoom_By(double factor, double anchor) {
    if (!canZoom)
        return;
    const double wanted = std::clamp(length * factor, shortest, Longest());
    Ask_For(anchor - (anchor - first) * wanted / length, wanted);
}

int Zoom_Scroll_Bar::Along(const QPointF& point) const {
    return static_cast<int>(std::lround(Is_Flat() ? point.x() : point.y()));
}

QRect Zoom_Scroll_Bar::Thumb() const {
    const double span = end - begin;
    const double track = Track();
    if (!(span > 0.0) || track <= 0.0)
        return {};
    const double shown = std::clamp(length, 0.0, span);
    const double size =
        std::clamp(shown / span * track, std::min<double>(theme.Px(LEAST_THUMB), track), track);
    // A thumb that may not become smaller still reaches both ends of the track.
    const double room = span - shown;
    const double share = room > 0.0 ? std::clamp((first - begin) / room, 0.0, 1.0) : 0.0;
    const int at = static_cast<int>(std::lround(share * (track - size)));
    const int wide = static_cast<int>(std::lround(size));
    return Is_Flat() ? QRect(at, 0, wide, height()) : QRect(0, at, width(), wide);
}

Zoom_Scroll_Bar::Part Zoom_Scroll_Bar::Part_At(int along) const {
    const QRect thumb = Thumb();
    const int from = Is_Flat() ? thumb.left() : thumb.top();
    const int to = from + (Is_Flat() ? thumb.width() : thumb.height());
    if (along < from)
        return Part::Before;
    if (along >= to)
        return Part::Behind;
    if (canZoom && along < from + theme.Px(HANDLE))
        return Part::Start;
    if (canZoom && along >= to - theme.Px(HANDLE))
        return Part::Finish;
    return Part::Middle;
}

void Zoom_Scroll_Bar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const Theme_Tokens& t = theme.Tokens();
    painter.fillRect(rect(), t.panel);
    const double inset = theme.Px(3);
    const double radius = theme.Px(5);
    painter.setBrush(t.control);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0, inset, 0, -inset), radius, radius);
    const QRectF thumb = QRectF(Thumb()).adjusted(Is_Flat() ? 0 : inset, Is_Flat() ? inset : 0,
                                                  Is_Flat() ? 0 : -inset, Is_Flat() ? -inset : 0);
    if (thumb.isEmpty())
        return;
    const bool awake =
        held != Part::None || (under != Part::None && under != Part::Before && under != Part::Behind);
    painter.setBrush(isEnabled() ? (awake ? t.accent : t.dim) : t.hover);
    painter.drawRoundedRect(thumb, radius, radius);
    if (canZoom && isEnabled()) {
        painter.setBrush(awake ? t.onAccent : t.panel);
        const double thin = theme.Px(2);
        const double grip = theme.Px(3);
        const double far = (Is_Flat() ? thumb.width() : thumb.height()) - grip - thin;
        for (const double at : {grip, far}) {
            const QRectF mark =
                Is_Flat() ? QRectF(thumb.left() + at, thumb.top() + thin, thin, thumb.height() - 2 * thin)
                          : QRectF(thumb.left() + thin, thumb.top() + at, thumb.width() - 2 * thin, thin);
            painter.drawRect(mark);
        }
    }
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, rect(), radius);
}

void Zoom_Scroll_Bar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    pressedAlong = Along(event->position());
    pressedFirst = first;
    pressedLength = length;
    held = Part_At(pressedAlong);
    if (held == Part::Before || held == Part::Behind) {
        Ask_For(first + (held == Part::Before ? -PAGE_STEPS : PAGE_STEPS) * Step(), length);
        held = Part::None;
    }
    update();
}

void Zoom_Scroll_Bar::mouseMoveEvent(QMouseEvent* event) {
    const int along = Along(event->position());
    if (held == Part::None) {
        const Part now = Part_At(along);
        if (now != under) {
            under = now;
            const bool onEnd = now == Part::Start || now == Part::Finish;
            setCursor(onEnd ? (Is_Flat() ? Qt::SizeHorCursor : Qt::SizeVerCursor) : Qt::ArrowCursor);
            update();
        }
        return;
    }
    const double span = end - begin;
    const QRect thumb = Thumb();
    const int moved = along - pressedAlong;
    if (held == Part::Middle) {
        const double room = Track() - (Is_Flat() ? thumb.width() : thumb.height());
        if (room > 0.0)
            Ask_For(pressedFirst + moved / room * (span - pressedLength), pressedLength);
        return;
    }
    // The other end stays where it is.
    const double change = moved / std::max(1.0, static_cast<double>(Track())) * span;
    const double finish = pressedFirst + pressedLength;
    if (held == Part::Finish) {
        Ask_For(pressedFirst, std::min(pressedLength + change, end - pressedFirst));
    } else {
        const double wanted =
            std::clamp(pressedLength - change, shortest, std::max(shortest, finish - begin));
        Ask_For(finish - wanted, wanted);
    }
}

void Zoom_Scroll_Bar::mouseReleaseEvent(QMouseEvent* event) {
    held = Part::None;
    under = rect().contains(event->position().toPoint()) ? Part_At(Along(event->position())) : Part::None;
    update();
}

void Zoom_Scroll_Bar::mouseDoubleClickEvent(QMouseEvent*) {
    Ask_For(begin, end - begin);
}

void Zoom_Scroll_Bar::leaveEvent(QEvent*) {
    under = Part::None;
    update();
}

void Zoom_Scroll_Bar::wheelEvent(QWheelEvent* event) {
    constexpr int NOTCH = 120;
    const QPoint turn = event->angleDelta();
    wheelRest += turn.y() != 0 ? turn.y() : turn.x();
    const int notches = wheelRest / NOTCH;
    wheelRest -= notches * NOTCH;
    event->accept();
    if (notches == 0)
        return;
    if ((event->modifiers() & Qt::ControlModifier) != 0)
        Zoom_By(std::pow(ZOOM_STEP, -notches), first + length / 2.0);
    else
        Ask_For(first - notches * Step(), length);
}

void Zoom_Scroll_Bar::keyPressEvent(QKeyEvent* event) {
    const double middle = first + length / 2.0;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        Ask_For(first - Step(), length);
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        Ask_For(first + Step(), length);
        break;
    case Qt::Key_PageUp:
        Ask_For(first - PAGE_STEPS * Step(), length);
        break;
    case Qt::Key_PageDown:
        Ask_For(first + PAGE_STEPS * Step(), length);
        break;
    case Qt::Key_Home:
        Ask_For(begin, length);
        break;
    case Qt::Key_End:
        Ask_For(end - length, length);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        Zoom_By(1.0 / ZOOM_STEP, middle);
        break;
    case Qt::Key_Minus:
        Zoom_By(ZOOM_STEP, middle);
        break;
    case Qt::Key_Backspace:
        Ask_For(begin, end - begin);
        break;
    default:
        event->ignore();
        return;
    }
    event->accept();
}

bool Zoom_Scroll_Bar::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           QStringLiteral("%1: %2").arg(accessibleName(), Told()), this);
        return true;
    }
    // Keys of the window, Home among them, are the bar's own while it has the focus.
    if (event->type() == QEvent::ShortcutOverride) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Plus:
        case Qt::Key_Equal:
        case Qt::Key_Minus:
        case Qt::Key_Backspace:
            event->accept();
            return true;
        default:
            break;
        }
    }
    return QWidget::event(event);
}

} // namespace tonvex
