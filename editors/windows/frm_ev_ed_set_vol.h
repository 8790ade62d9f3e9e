#pragma once

#include "widgets/plain_dialog.h"

class QSlider;
class QSpinBox;

namespace tonvex {

/// "Volume": one volume for the selected events, 0 to 127. Interface thread.
class frmEvEd_SetVol final : public Plain_Dialog {
    Q_OBJECT
public:
    frmEvEd_SetVol(const Theme& look, int volume, QWidget* parent = nullptr);
    int Volume() const;

private:
    QSlider* HScroll1 = nullptr;
    QSpinBox* Text1 = nullptr;
};

} // namespace tonvex
