#include "widgets/mark_flags.h"

#include <algorithm>

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

} // namespace tonvex
