#include "widgets/level_meter.h"

#include "widgets/accessible_faces.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double FALL_DB_PER_MS = 0.024;
constexpr double MARK_LENGTH = 4.0;
constexpr double ROUNDING = 2.0;

} // namespace

Level_Meter::Level_Meter(const Theme& look, const QString& name, int bars, QWidget* parent)
    : QWidget(parent), theme(look), barCount(std::clamp(bars, 1, 2)) {
    Install_Accessible_Faces();
    Set_Name(name);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&theme, &Theme::Changed, this, [this] {
        empty = {};
        updateGeometry();
        update();
    });
}

void Level_Meter::Set_Name(const QString& name) {
    setAccessibleName(name);
    setAccessibleDescription(Is_Clipped() ? tr("went over full scale") : QString());
    setToolTip(Is_Clipped() ? tr("%1: went over full scale. Click to clear the mark.").arg(name) : name);
}

void Level_Meter::Set_Design_Size(double thick, double length) {
    designThick = thick;
    designLength = length;
    updateGeometry();
}

void Level_Meter::Set_On_Control(bool on) {
    if (on == onControl)
        return;
    onControl = on;
    empty = {};
    update();
}

void Level_Meter::Set_Lying() {
    lying = true;
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    updateGeometry();
}

QSize Level_Meter::sizeHint() const {
    const double gap = lying ? 2.0 : 6.0;
    const QSize upright(theme.Px(designThick * barCount + gap * (barCount - 1)), theme.Px(designLength));
    return lying ? upright.transposed() : upright;
}

double Level_Meter::Height_Of(double peak) noexcept {
    if (!(peak > 0.0))
        return 0.0;
    return std::clamp(1.0 + 20.0 * std::log10(peak) / RANGE_DB, 0.0, 1.0);
}

void Level_Meter::Show_Peaks(float left, float right, int elapsedMs) {
    const double fall = FALL_DB_PER_MS * elapsedMs / RANGE_DB;
    const std::array<float, 2> peaks{left, right};
    for (int bar = 0; bar < barCount; ++bar) {
        const auto at = static_cast<std::size_t>(bar);
        const double before = heights[at];
        const double now = std::max(Height_Of(peaks[at]), std::max(0.0, before - fall));
        heights[at] = now;
        // Only what a bar gains or loses is drawn anew.
        if (const QRect changed = Span_Of(bar, std::min(before, now), std::max(before, now));
            !changed.isEmpty())
            update(changed);
        if (peaks[at] > 1.0F && !clipped[at]) {
            clipped[at] = true;
            Set_Name(accessibleName());
            update();
        }
    }
}

void Level_Meter::Clear_Clip() {
    if (!Is_Clipped())
        return;
    clipped.fill(false);
    Set_Name(accessibleName());
    update();
}

void Level_Meter::mousePressEvent(QMouseEvent* event) {
    if (!Is_Clipped())
        event->ignore();
    Clear_Clip();
}

QRectF Level_Meter::Bar_Place(int bar) const {
    const double thick = theme.Px(designThick);
    const double across = lying ? height() : width();
    const double gap = barCount > 1 ? (across - barCount * thick) / (barCount - 1) : 0.0;
    const double at = bar * (thick + gap);
    return lying ? QRectF(0, at, width(), thick) : QRectF(at, 0, thick, height());
}

QRect Level_Meter::Span_Of(int bar, double from, double to) const {
    const int low = static_cast<int>(std::lround(from * Length()));
    const int high = static_cast<int>(std::lround(to * Length()));
    if (high <= low)
        return {};
    const QRect place = Bar_Place(bar).toAlignedRect();
    return lying ? QRect(low, place.top(), high - low, place.height())
                 : QRect(place.left(), height() - high, place.width(), high - low);
}

void Level_Meter::Draw_Pictures() {
    const double ratio = devicePixelRatioF();
    const Theme_Tokens& t = theme.Tokens();
    QLinearGradient scale(0, lying ? 0 : height(), lying ? width() : 0, 0);
    scale.setColorAt(0.0, t.play);
    scale.setColorAt(0.62, t.play);
    scale.setColorAt(0.82, t.soloMute);
    scale.setColorAt(1.0, t.record);
    for (QPixmap* picture : {&empty, &full}) {
        *picture = QPixmap(size() * ratio);
        picture->setDevicePixelRatio(ratio);
        picture->fill(onControl ? t.control : t.panel);
        QPainter painter(picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(picture == &full ? QBrush(scale) : QBrush(t.hover));
        for (int bar = 0; bar < barCount; ++bar)
            painter.drawRoundedRect(Bar_Place(bar), ROUNDING, ROUNDING);
    }
}

void Level_Meter::resizeEvent(QResizeEvent*) {
    empty = {};
}

void Level_Meter::paintEvent(QPaintEvent* event) {
    if (empty.isNull() || empty.devicePixelRatio() != devicePixelRatioF())
        Draw_Pictures();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.drawPixmap(0, 0, empty);
    const double ratio = devicePixelRatioF();
    for (int bar = 0; bar < barCount; ++bar) {
        const QRect filled = Span_Of(bar, 0.0, heights[static_cast<std::size_t>(bar)]);
        if (!filled.isEmpty())
            painter.drawPixmap(QRectF(filled), full,
                               QRectF(QPointF(filled.topLeft()) * ratio, QSizeF(filled.size()) * ratio));
        if (!clipped[static_cast<std::size_t>(bar)])
            continue;
        const QRectF place = Bar_Place(bar);
        const double mark = theme.Px(MARK_LENGTH);
        painter.fillRect(lying ? QRectF(place.right() - mark, place.top(), mark, place.height())
                               : QRectF(place.left(), place.top(), place.width(), mark),
                         theme.Tokens().record);
    }
}

} // namespace tonvex
