#pragma once

#include "widgets/theme.h"

#include <QDialog>

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

namespace tonvex {

/// What small dialogs have in common: margins, a heading that tells what it is about, the buttons at the
/// foot. Interface thread. The theme outlives it.
class Plain_Dialog : public QDialog {
    Q_OBJECT
public:
    Plain_Dialog(const Theme& look, const QString& title, const QString& about, QWidget* parent);

protected:
    struct Foot {
        QHBoxLayout* row = nullptr; ///< further buttons go to its left end
        QPushButton* ok = nullptr;
        QPushButton* cancel = nullptr;
    };
    /// "Cancel", which rejects, and, at the right end, the default button, which accepts; behind all else.
    Foot Add_Buttons();

    const Theme& theme;
    QVBoxLayout* column = nullptr;
};

} // namespace tonvex
