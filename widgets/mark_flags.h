#pragma once

#include "song/marks.h"
#include "widgets/theme.h"

#include <QRectF>

#include <functional>
#include <span>
#include <vector>

namespace tonvex {

/// A mark as it lies on a ruler.
struct Mark_Flag {
    int row = 0;    ///< of the table of marks
    double x = 0.0; ///< pixel of its start
    double textWidth = 0.0;
};

/// Colour of a mark: its own (red in the low byte), or, where it never got one, that of its row.
QColor Mark_Colour(const Theme_Tokens& tokens, const Mark& mark, int row);
/// The colour of a text on any ground: black or white, whichever stands out more. One of them always has a
/// contrast of 4.58 to 1 at least.
QColor Text_On(const QColor& ground);

/// The flags' boxes between top and top + height, in the order given, which is that of x: as wide as the text
/// and its air, but not over the next flag, though never narrower than leastWidth.
std::vector<QRectF> Flag_Boxes(std::span<const Mark_Flag> flags, double top, double height, double air,
                               double leastWidth);
/// Index of the flag at point, of two that overlap the later; -1 when none is there.
int Flag_At(std::span<const QRectF> boxes, const QPointF& point);

/// Places the flags of all marks and draws them, those that cover a span with a line to its end; no flag is
/// wider than its text or reaches over the next one. xOf: pixel of a beat.
void Draw_Mark_Flags(QPainter& painter, const Theme& theme, const Song_Marks& marks, double top,
                     const std::function<double(double)>& xOf, std::vector<Mark_Flag>& flags,
                     std::vector<QRectF>& boxes);
inline constexpr double FLAG_HEIGHT = 16.0; ///< at 100 %

} // namespace tonvex
