#include "editors/windows/frm_ev_ed_set_vol.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tonvex {

frmEvEd_SetVol::frmEvEd_SetVol(const Theme& look, int volume, QWidget* parent)
    : Plain_Dialog(look, tr("Volume"), tr("Volume of the selected events"), parent),
      HScroll1(new QSlider(Qt::Horizontal, this)), Text1(new QSpinBox(this)) {
    setObjectName(QStringLiteral("frmEvEd_SetVol"));
    HScroll1->setObjectName(QStringLiteral("HScroll1"));
    HScroll1->setAccessibleName(tr("Volume"));
    HScroll1->setRange(0, 127);
    HScroll1->setMinimumWidth(theme.Px(240));
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Volume in numbers"));
    Text1->setRange(0, 127);
    Text1->setButtonSymbols(QAbstractSpinBox::NoButtons);
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&Volume:"), this);
    label->setBuddy(Text1);
    row->addWidget(label);
    row->addWidget(HScroll1, 1);
    row->addWidget(Text1);
    column->addLayout(row);
    Add_Buttons();
    connect(HScroll1, &QSlider::valueChanged, Text1, &QSpinBox::setValue);
    connect(Text1, &QSpinBox::valueChanged, HScroll1, &QSlider::setValue);
    Text1->setValue(volume);
    Text1->setFocus();
    Text1->selectAll();
}

int frmEvEd_SetVol::Volume() const {
    return Text1->value();
}

} // namespace tonvex
