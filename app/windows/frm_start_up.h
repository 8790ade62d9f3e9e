#pragma once

#include "widgets/theme.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

namespace tonvex {

/// The window that the start shows at once: name and version. It closes and frees itself when more than
/// SHOWN_MS have passed, or at a click or key, and holds nothing up. Interface thread.
class frmStartUp final : public QWidget {
    Q_OBJECT
public:
    static constexpr int SHOWN_MS = 2000;

    /// theme outlives the window.
    explicit frmStartUp(const Theme& theme);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QElapsedTimer sinceOpened;
    QTimer timer;
};

} // namespace tonvex
