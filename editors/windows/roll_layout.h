#pragma once

#include "widgets/theme.h"

#include <QRect>
#include <QSize>

#include <algorithm>

namespace tonvex {

/// What the roll shows besides the events.
struct Roll_Options {
    bool Bars = true;
    bool Beats = true;
    bool CreatorBars = true; ///< the chord strip
    bool NoteNumbers = false;
    bool ReferenceLines = false; ///< of every note, always; else of the Cs, and while the pointer drags
    bool VolumeLane = true;
    bool AutoScroll = true; ///< the view follows the play line
};

/// Where the parts of the roll lie in its widget, in pixels; parts that are not shown are empty.
struct Roll_Layout {
    Roll_Layout(const Theme& theme, const QSize& size, const Roll_Options& options, int pianoWidth)
        : Left(pianoWidth) {
        const int width = std::max(1, size.width() - Left);
        int y = 0;
        const auto take = [&](int height) {
            const QRect strip(Left, y, width, height);
            y += height;
            return strip;
        };
        Marks = take(theme.Px(24));
        Rule = take(theme.Px(20));
        Chords = take(options.CreatorBars ? theme.Px(26) : 0);
        // The notes go before their volumes.
        const bool hasRoom = size.height() - y >= theme.Px(172);
        const int laneHeight = options.VolumeLane && hasRoom ? theme.Px(72) : 0;
        Roll = take(std::max(1, size.height() - y - laneHeight));
        Lane = take(laneHeight);
        Piano = QRect(0, Roll.top(), Left, Roll.height());
    }

    int Left; ///< width of the piano
    QRect Marks;
    QRect Rule;
    QRect Chords;
    QRect Piano;
    QRect Roll;
    QRect Lane; ///< volumes
};

} // namespace tonvex
