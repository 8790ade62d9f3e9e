#pragma once

#include "platform/user_dialogs.h"
#include "widgets/plain_dialog.h"

#include <optional>

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace tonvex {

/// "Time Properties": start and length of the selected events, new or as a difference. A field left empty
/// leaves what it is about alone. Interface thread. Beats.
class frmEvEd_TimePosProperties final : public Plain_Dialog {
    Q_OBJECT
public:
    frmEvEd_TimePosProperties(User_Dialogs& userDialogs, const Theme& look, QWidget* parent = nullptr);

    void Show_Times(double start, std::optional<double> length);
    // what was asked for, once accepted
    std::optional<double> Start() const noexcept { return start; }
    std::optional<double> Length() const noexcept { return length; }
    bool Adds() const;

    void accept() override;

private:
    bool Bar_Beat() const;
    void Write_Fields();
    /// False, after a message, when a field holds what is no value.
    bool Read_Fields();

    User_Dialogs& dialogs;
    QLineEdit* Text1 = nullptr;  ///< start
    QLineEdit* Text2 = nullptr;  ///< length
    QCheckBox* Check1 = nullptr; ///< add
    QRadioButton* barBeat = nullptr;
    QRadioButton* beats = nullptr;
    std::optional<double> start;
    std::optional<double> length;
};

} // namespace tonvex
