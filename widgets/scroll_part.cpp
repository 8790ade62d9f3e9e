#include "widgets/scroll_part.h"

#include <QScrollBar>

#include <algorithm>

namespace tonvex {

Scroll_Part::Scroll_Part(const Theme& look, QWidget* content, QSize leastSize, QWidget* parent)
    : QScrollArea(parent), theme(look), least(leastSize) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    if (least.width() == 0)
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(content);
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    // The content's size changes with its texts and the theme.
    connect(&theme, &Theme::Changed, this, [this] { updateGeometry(); });
}

QSize Scroll_Part::sizeHint() const {
    return widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
}

QSize Scroll_Part::minimumSizeHint() const {
    const QSize needed = widget()->minimumSizeHint();
    const int width = least.width() == 0 ? needed.width() + verticalScrollBar()->sizeHint().width()
                                         : std::min(needed.width(), theme.Px(least.width()));
    return {width, std::min(needed.height(), theme.Px(least.height()))};
}

} // namespace tonvex
