#pragma once

#include "widgets/theme.h"

#include <QAbstractSlider>

#include <functional>

namespace tonvex {

enum class Slider_Kind {
    Fill,   ///< filled from the left: volume, speed
    Centre, ///< a mark on a line: pan
    Dial    ///< an arc around a pointer, turned by dragging up and down
};

/// A value that is seen where it is. Wheel and arrow keys step it, with Shift by 1; Page keys by the page;
/// Home and End go to the ends; a double click goes to the neutral value. Its number shows on hover and while
/// it changes. userChanged comes from gestures alone, never from setValue.
class Value_Slider final : public QAbstractSlider {
    Q_OBJECT
public:
    /// least to most inclusive; step is that of the wheel and the arrow keys.
    Value_Slider(const Theme& theme, Slider_Kind kind, const QString& name, int least, int most, int neutral,
                 int step, QWidget* parent = nullptr);

    /// How the number is told; plain when not set.
    std::function<QString(int value)> toText;
    /// Shows a value that came from elsewhere; nothing while the user holds the slider.
    void Show_Value(int value);
    void Set_Width(double designPixels);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void userChanged(int value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    void Change_To(int value);
    int Value_At(double x) const;
    double Place_Of(int value) const;
    void Paint_Dial(QPainter& painter);
    QString Number() const;
    void Tell_Number();

    const Theme& theme;
    Slider_Kind kind;
    int neutral;
    int stepSize;
    double designWidth = 68;
    int wheelRest = 0;
    double dragY = 0.0;
    int dragValue = 0;
    bool held = false;
};

} // namespace tonvex
