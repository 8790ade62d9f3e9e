#include "widgets/plain_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

Plain_Dialog::Plain_Dialog(const Theme& look, const QString& title, const QString& about, QWidget* parent)
    : QDialog(parent), theme(look), column(new QVBoxLayout(this)) {
    setWindowTitle(title);
    column->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    column->setSpacing(theme.Px(12));
    auto* heading = new QLabel(about, this);
    heading->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    column->addWidget(heading);
}

Plain_Dialog::Foot Plain_Dialog::Add_Buttons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    auto* cancel = new QPushButton(tr("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel"));
    cancel->setAutoDefault(false);
    auto* ok = new QPushButton(tr("O&K"), this);
    ok->setObjectName(QStringLiteral("ok"));
    ok->setDefault(true);
    row->addStretch(1);
    row->addWidget(cancel);
    row->addWidget(ok);
    column->addStretch(1);
    column->addLayout(row);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    return {row, ok, cancel};
}

} // namespace tonvex
