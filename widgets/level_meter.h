#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <array>

namespace tonvex {

/// Upright bars of a level, one or two. 1.0 is full scale, shown over RANGE_DB. Falls by 24 dB a second.
/// The owner calls Show_Peaks about 30 times a second while something sounds, and until Is_Still.
class Level_Meter final : public QWidget {
    Q_OBJECT
public:
    static constexpr double RANGE_DB = 48.0;

    Level_Meter(const Theme& theme, const QString& name, int bars, QWidget* parent = nullptr);

    /// Peaks since the last call; the second is not used with one bar.
    void Show_Peaks(float left, float right, int elapsedMs);
    bool Is_Still() const noexcept { return heights[0] <= 0.0 && heights[1] <= 0.0; }
    /// Height of a bar, 0 to 1, of a peak.
    static double Height_Of(double peak) noexcept;
    double Height(int bar) const { return heights[static_cast<std::size_t>(bar)]; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    void Set_Design_Size(double barWidth, double height);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    int barCount;
    double designBar = 8;
    double designHeight = 36;
    std::array<double, 2> heights{};
};

} // namespace tonvex
