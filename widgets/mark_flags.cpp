#include "widgets/mark_flags.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tonvex {

QColor Mark_Colour(const Theme_Tokens& tokens, const Mark& mark, int row) {
    if (mark.MarkColor == Mark::WHITE)
        // The first mark begins at the third colour, so that flags do not look like the first channels.
        return tokens.Channel(row + 2);
    const auto bits = static_cast<std::uint32_t>(mark.MarkColor);
    return {static_cast<int>(bits & 255U), static_cast<int>((bits >> 8U) & 255U),
            static_cast<int>((bits >> 16U) & 255U)};
}

QColor Text_On(const QColor& ground) {
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return Contrast_Ratio(black, ground) >= Contrast_Ratio(white, ground) ? black : white;
}

std::vector<QRectF> Flag_Boxes(std::span<const Mark_Flag> flags, double top, double height, double air,
                               double leastWidth) {
    std::vector<QRectF> boxes;
    boxes.reserve(flags.size());
    for (std::size_t i = 0; i < flags.size(); ++i) {
        double width = flags[i].textWidth + 2.0 * air;
        if (i + 1 < flags.size())
            width = std::min(width, flags[i + 1].x - flags[i].x - 1.0);
        boxes.emplace_back(flags[i].x, top, std::max(width, leastWidth), height);
    }
    return boxes;
}

int Flag_At(std::span<const QRectF> boxes, const QPointF& point) {
    for (std::size_t i = boxes.size(); i > 0; --i)
        if (boxes[i - 1].contains(point))
            return static_cast<int>(i - 1);
    return -1;
}

void Draw_Mark_Flags(QPainter& painter, const Theme& theme, const Song_Marks& marks, double top,
                     const std::function<double(double)>& xOf, std::vector<Mark_Flag>& flags,
                     std::vector<QRectF>& boxes) {
    const double air = theme.Px(6);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(theme.Font(Text_Size::Caption, QFont::DemiBold));
    const QFontMetrics metrics(painter.font());
    flags.clear();
    for (const int row : marks.In_Time_Order()) {
        const Mark& mark = marks.Row(row);
        flags.push_back(
            {row, std::floor(xOf(mark.MarkStart)),
             static_cast<double>(metrics.horizontalAdvance(QString::fromStdString(mark.MarkName)))});
    }
    boxes = Flag_Boxes(flags, top, theme.Px(FLAG_HEIGHT), air, theme.Px(8));
    for (std::size_t i = 0; i < flags.size(); ++i) {
        const Mark& mark = marks.Row(flags[i].row);
        const QColor colour = Mark_Colour(theme.Tokens(), mark, flags[i].row);
        const QRectF& box = boxes[i];
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        // Its pole stands square at the place, its cloth is round.
        painter.drawRoundedRect(box, theme.Px(5), theme.Px(5));
        painter.drawRect(QRectF(box.left(), box.top(), box.width() / 2, box.height()));
        if (mark.MarkEnd > mark.MarkStart)
            painter.drawRect(QRectF(box.left(), box.bottom(), xOf(mark.MarkEnd) - box.left(), theme.Px(2)));
        const int room = static_cast<int>(box.width() - 2.0 * air) + 1;
        painter.setPen(Text_On(colour));
        if (room > 0)
            painter.drawText(box, Qt::AlignCenter,
                             metrics.elidedText(QString::fromStdString(mark.MarkName), Qt::ElideRight, room));
    }
    painter.restore();
}

} // namespace tonvex
