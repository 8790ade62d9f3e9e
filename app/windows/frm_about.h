#pragma once

#include "widgets/theme.h"

#include <QDialog>

namespace tonvex {

/// Version, what the program is, and the libraries that it stands on with their licences.
class frmAbout final : public QDialog {
    Q_OBJECT
public:
    frmAbout(const Theme& theme, QWidget* parent);
};

} // namespace tonvex
