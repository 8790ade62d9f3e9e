#pragma once

#include "widgets/theme.h"

#include <QWidget>

namespace tonvex {

/// One of a few numbered choices in a row, the chosen one filled. Arrow keys, wheel and a click choose.
class Segment_Selector final : public QWidget {
    Q_OBJECT
public:
    /// Shows 1 to count; choices are counted from 0.
    Segment_Selector(const Theme& theme, const QString& name, const QString& keys, int count,
                     QWidget* parent = nullptr);
    int Chosen() const noexcept { return chosen; }
    int Count() const noexcept { return count; }
    void Show_Choice(int choice);
    /// As the user does it; out of range the nearer end.
    void Choose(int choice);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void chosenByUser(int choice);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Tell_Value();

    const Theme& theme;
    QString selectorName;
    int count;
    int chosen = 0;
};

} // namespace tonvex
