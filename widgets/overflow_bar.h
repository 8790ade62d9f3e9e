#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <vector>

class QHBoxLayout;
class QMenu;

namespace tonvex {

class Tool_Button;

/// A bar of controls in a row that may be narrower than they are: what has no room waits in a menu behind a
/// button at the end. Controls go in the order in which Let_Go named them; what was not named always stays.
/// A Tool_Button waits as an entry that clicks it, or with its menu; any other control is just hidden.
class Overflow_Bar : public QWidget {
    Q_OBJECT
public:
    /// Its owner fills the row, then names what may go.
    explicit Overflow_Bar(const Theme& theme, QWidget* parent = nullptr);
    void Let_Go(QWidget* control);
    QHBoxLayout* Row() { return row; }

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Wide enough for all but the first so many of what may go.
    int Width_Without(std::size_t gone) const;
    void Fit();
    void Fill_Menu();

    const Theme& theme;
    QHBoxLayout* row;
    Tool_Button* more;
    QMenu* menu;
    std::vector<QWidget*> mayGo;
};

} // namespace tonvex
