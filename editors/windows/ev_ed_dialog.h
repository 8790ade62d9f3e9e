#pragma once

#include "widgets/theme.h"

#include <QDialog>

class QPushButton;
class QVBoxLayout;

namespace tonvex {

/// What the small dialogs of the events editor have in common: margins, a heading that tells what it is
/// about, the buttons at the foot. Interface thread. The theme outlives it.
class Ev_Ed_Dialog : public QDialog {
    Q_OBJECT
public:
    Ev_Ed_Dialog(const Theme& look, const QString& title, const QString& about, QWidget* parent);

protected:
    /// Cancel and, at the right end, the default button; behind all else.
    QPushButton* Add_Buttons();

    const Theme& theme;
    QVBoxLayout* column = nullptr;
};

} // namespace tonvex
