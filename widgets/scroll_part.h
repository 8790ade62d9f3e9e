#pragma once

#include "widgets/theme.h"

#include <QScrollArea>

namespace tonvex {

/// A part of a window that scrolls where there is less room than it needs. It has no ground of its own.
class Scroll_Part final : public QScrollArea {
    Q_OBJECT
public:
    /// least: design pixels. A width of 0: as wide as the content needs, so that it scrolls only upright.
    Scroll_Part(const Theme& theme, QWidget* content, QSize least, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    const Theme& theme;
    QSize least;
};

} // namespace tonvex
