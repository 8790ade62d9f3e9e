#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <functional>

namespace tonvex {

/// A scroll bar whose thumb is the window that an editor shows of its content: dragging the thumb scrolls,
/// dragging one of its ends zooms, a click beside it pages. Wheel scrolls, with Ctrl zooms; arrow and Page
/// keys scroll, Home and End go to the ends, + and - zoom, Backspace or a double click shows everything.
/// Lengths are of the owner's unit: beats, rows, samples. Interface thread.
///
/// How it is used: Show_Range whenever the content grows or shrinks, Show_Window whenever the editor scrolls
/// or zooms by itself; neither emits. Upon windowAsked the editor takes the window (rounded as it likes) and
/// answers with Show_Window:
///
///     bar = new Zoom_Scroll_Bar(theme, Qt::Horizontal, tr("Time shown"), this);
///     bar->Set_Shortest(0.5);
///     bar->Show_Range(0.0, lastBeat);
///     bar->Show_Window(firstBeat, width() / pixelsPerBeat);
///     connect(bar, &Zoom_Scroll_Bar::windowAsked, this, [this](double first, double length) { ... });
class Zoom_Scroll_Bar final : public QWidget {
    Q_OBJECT
public:
    Zoom_Scroll_Bar(const Theme& theme, Qt::Orientation orientation, const QString& name,
                    QWidget* parent = nullptr);

    /// begin below end, else nothing is shown.
    void Show_Range(double begin, double end);
    /// A window that reaches beyond the range is shown as far as it lies within; length above 0.
    void Show_Window(double first, double length);
    /// The user cannot zoom to less than this; above 0. 1 at first.
    void Set_Shortest(double length);
    /// Nor to more than this; the range's own length at first, and for 0.
    void Set_Longest(double length);
    /// Without zoom the ends cannot be dragged, as for the rows of a list.
    void Set_Zoomable(bool zoomable);
    /// How a place is told to people ("2:1.0"); plain when not set.
    std::function<QString(double place)> toText;

    double Begin() const noexcept { return begin; }
    double End() const noexcept { return end; }
    double First() const noexcept { return first; }
    double Length() const noexcept { return length; }
    QString Told() const; ///< "1:1.0 to 5:1.0", for the tool tip and for assistive tools

    /// As the user does it: the window is kept inside the range and asked for by windowAsked if it differs.
    void Ask_For(double newFirst, double newLength);
    /// factor below 1 zooms in; the place anchor keeps its share of the window.
    void Zoom_By(double factor, double anchor);

    /// Where the thumb lies, in pixels; for tests.
    QRect Thumb() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void windowAsked(double first, double length);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    enum class Part { None, Before, Start, Middle, Finish, Behind };
    bool Is_Flat() const noexcept { return direction == Qt::Horizontal; }
    int Along(const QPointF& point) const;
    int Track() const { return Is_Flat() ? width() : height(); }
    Part Part_At(int along) const;
    double Longest() const noexcept;
    double Step() const noexcept { return length / 10.0; }

    const Theme& theme;
    Qt::Orientation direction;
    bool canZoom = true;
    double begin = 0.0;
    double end = 1.0;
    double first = 0.0;
    double length = 1.0;
    double shortest = 1.0;
    double longest = 0.0;
    Part held = Part::None;
    Part under = Part::None;
    int pressedAlong = 0;
    double pressedFirst = 0.0;
    double pressedLength = 0.0;
    int wheelRest = 0;
};

} // namespace tonvex
