#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <array>

namespace tonvex {

/// Bars of a level, one or two, upright or lying. 1.0 is full scale, shown over RANGE_DB. Falls by 24 dB a
/// second. What went over full scale leaves a mark at the bar's end, which stays until a click or Clear_Clip.
/// The owner calls Show_Peaks about 30 times a second while something sounds, and until Is_Still.
class Level_Meter final : public QWidget {
    Q_OBJECT
public:
    static constexpr double RANGE_DB = 48.0;

    Level_Meter(const Theme& theme, const QString& name, int bars, QWidget* parent = nullptr);

    void Set_Name(const QString& name);
    /// Peaks since the last call; the second is not used with one bar.
    void Show_Peaks(float left, float right, int elapsedMs);
    bool Is_Still() const noexcept { return heights[0] <= 0.0 && heights[1] <= 0.0; }
    /// A bar went over full scale since the marks were cleared.
    bool Is_Clipped() const noexcept { return clipped[0] || clipped[1]; }
    void Clear_Clip();
    /// Height of a bar, 0 to 1, of a peak.
    static double Height_Of(double peak) noexcept;
    double Height(int bar) const { return heights[static_cast<std::size_t>(bar)]; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    /// Thickness and length of a bar.
    void Set_Design_Size(double thick, double length);
    /// The colour behind it, so that nothing below need be painted with it; that of panels at first.
    void Set_On_Control(bool onControl);
    /// The bars lie on each other and grow to the right.
    void Set_Lying();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    double Length() const { return lying ? width() : height(); }
    QRectF Bar_Place(int bar) const;
    /// The part of a bar between two heights, in whole pixels.
    QRect Span_Of(int bar, double from, double to) const;
    void Draw_Pictures();

    const Theme& theme;
    int barCount;
    bool lying = false;
    bool onControl = false;
    double designThick = 8;
    double designLength = 36;
    std::array<double, 2> heights{};
    std::array<bool, 2> clipped{};
    QPixmap empty; ///< the bars without a level, and with the highest: what is between is cut from them
    QPixmap full;
};

} // namespace tonvex
