#include "widgets/level_meter.h"

#include "widgets/accessible_faces.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double FALL_DB_PER_MS = 0.024;

} // namespace

Level_Meter::Level_Meter(const Theme& look, const QString& name, int bars, QWidget* parent)
    : QWidget(parent), theme(look), barCount(std::clamp(bars, 1, 2)) {
    Install_Accessible_Faces();
    setAccessibleName(name);
    setToolTip(name);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

void Level_Meter::Set_Design_Size(double barWidth, double height) {
    designBar = barWidth;
    designHeight = height;
    updateGeometry();
}

QSize Level_Meter::sizeHint() const {
    return {theme.Px(designBar * barCount + 6 * (barCount - 1)), theme.Px(designHeight)};
}

double Level_Meter::Height_Of(double peak) noexcept {
    if (!(peak > 0.0))
        return 0.0;
    return std::clamp(1.0 + 20.0 * std::log10(peak) / RANGE_DB, 0.0, 1.0);
}

void Level_Meter::Show_Peaks(float left, float right, int elapsedMs) {
    const double fall = FALL_DB_PER_MS * elapsedMs / RANGE_DB;
    const std::array<float, 2> peaks{left, right};
    bool changed = false;
    for (std::size_t bar = 0; bar < static_cast<std::size_t>(barCount); ++bar) {
        const double now = std::max(Height_Of(peaks[bar]), std::max(0.0, heights[bar] - fall));
        // Half a pixel less is not seen.
        if (std::abs(now - heights[bar]) * height() >= 0.5 || (now <= 0.0) != (heights[bar] <= 0.0))
            changed = true;
        heights[bar] = now;
    }
    if (changed)
        update();
}

void Level_Meter::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const Theme_Tokens& t = theme.Tokens();
    const double barWidth = theme.Px(designBar);
    const double gap = barCount > 1 ? (width() - barCount * barWidth) / (barCount - 1) : 0.0;
    QLinearGradient scale(0, height(), 0, 0);
    scale.setColorAt(0.0, t.play);
    scale.setColorAt(0.62, t.play);
    scale.setColorAt(0.82, t.soloMute);
    scale.setColorAt(1.0, t.record);
    for (int bar = 0; bar < barCount; ++bar) {
        const QRectF whole(bar * (barWidth + gap), 0, barWidth, height());
        painter.setBrush(t.hover);
        painter.drawRoundedRect(whole, 2, 2);
        const double filled = heights[static_cast<std::size_t>(bar)] * height();
        if (filled < 0.5)
            continue;
        painter.setBrush(scale);
        painter.drawRoundedRect(whole.adjusted(0, height() - filled, 0, 0), 2, 2);
    }
}

} // namespace tonvex
