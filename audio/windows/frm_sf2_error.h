#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QDialog>

class QPushButton;

namespace tonvex {

/// "Sound Font files": no sound font could be loaded. Three ways on; Escape goes on as it is, in silence.
/// Interface thread. Session and theme outlive the window.
class frmSF2Error final : public QDialog {
    Q_OBJECT
public:
    frmSF2Error(Session& session, const Theme& theme, QWidget* parent = nullptr);

    /// True when the user chose to install a font: the program ends, in order.
    bool Program_Ends() const noexcept { return programEnds; }

private:
    QPushButton* Make_Way(const QString& text, const char* name, void (frmSF2Error::*chosen)());
    void Use_Midi_Device();
    void Browse();
    void Install_And_End();

    Session& session;
    bool programEnds = false;
};

} // namespace tonvex
