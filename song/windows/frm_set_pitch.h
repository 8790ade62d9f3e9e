#pragma once

#include "app/session.h"
#include "widgets/plain_dialog.h"

class QLabel;
class QSpinBox;

namespace tonvex {

/// "Change pitch": moves every note and chord of the song by semitones. Says how many notes would leave the
/// range and go. OK changes, "Cancel" and Escape leave all as it was. Interface thread. Session and look
/// outlive the window.
class frmSetPitch final : public Plain_Dialog {
    Q_OBJECT
public:
    frmSetPitch(Session& session, const Theme& look, QWidget* parent = nullptr);

    void accept() override;

private:
    /// Notes of the song that the move would take out of 0 to 127.
    int Lost_Notes() const;
    void Show_Result();

    Session& session;
    QSpinBox* Text1 = nullptr; ///< semitones
    QLabel* Label1 = nullptr;  ///< the interval, and what would be lost
};

} // namespace tonvex
