#pragma once

#include "input/piano_selection.h"
#include "widgets/theme.h"

#include <QWidget>

#include <functional>

namespace tonvex {

/// The 31 keys of a Piano_Selection, to be marked by clicks, or with arrow keys and the space bar.
class Piano_Marks final : public QWidget {
    Q_OBJECT
public:
    /// selection outlives the widget; after a change from elsewhere call Selection_Changed.
    Piano_Marks(const Theme& theme, Piano_Selection& selection, QWidget* parent = nullptr);
    QRectF Key_Rect(int slot) const;
    int Cursor() const noexcept { return cursor; }
    void Selection_Changed() { Move_Cursor(cursor); }
    /// The cursor on the lowest mark in sight, where there is one.
    void Go_To_Mark();
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Names below the keys, one an octave.
    std::function<QString(int octaveInSight)> octaveName;
    /// What stands on a key while the cursor is on it.
    std::function<QString(int slot)> slotName;

signals:
    void toggled(int slot);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    int Slot_At(QPointF point) const;
    void Paint_Key(QPainter& painter, int slot);
    void Toggle(int slot);
    void Move_Cursor(int slot);

    const Theme& theme;
    Piano_Selection& selection;
    int cursor = 0;
};

} // namespace tonvex
