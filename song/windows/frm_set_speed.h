#pragma once

#include "app/session.h"
#include "widgets/plain_dialog.h"

class QLabel;
class QSpinBox;

namespace tonvex {

/// "Change speed": plays the song faster or slower by a percentage, by moving and stretching all that is in
/// it; its tempo stays. Shows the length that comes out. OK changes, "Cancel" and Escape leave all as it was.
/// Interface thread. Session and theme outlive the window.
class frmSetSpeed final : public Plain_Dialog {
    Q_OBJECT
public:
    frmSetSpeed(Session& session, const Theme& look, QWidget* parent = nullptr);

    void accept() override;

private:
    /// By which every position and length is multiplied.
    double Factor() const;
    void Show_Length();

    Session& session;
    QSpinBox* Text1 = nullptr; ///< percent
    QLabel* Label1 = nullptr;  ///< the new length
};

} // namespace tonvex
