#pragma once

#include "widgets/theme.h"

#include <QLabel>
#include <QTimer>

namespace tonvex {

/// A small window that follows the mouse and tells where it stands on the desktop, in pixels, and on which
/// control: for those who lay out windows. It takes neither the focus nor clicks. Interface thread.
class frmMouseStatus final : public QLabel {
    Q_OBJECT
public:
    /// theme outlives the window.
    explicit frmMouseStatus(const Theme& theme);
    /// Where the window goes: beside the mouse, on its other side at the screen's right and lower edges.
    static QPoint Place(QPoint mouse, QSize window, const QRect& screen, int gap);

private:
    void Follow();

    const Theme& theme;
    QTimer timer;
};

} // namespace tonvex
