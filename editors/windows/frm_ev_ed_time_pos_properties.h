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
    std::optional<double> Start() const noexcept { return start.value; }
    std::optional<double> Length() const noexcept { return length.value; }
    bool Adds() const;

    void accept() override;

private:
    struct Field {
        QLineEdit* line = nullptr;
        bool distance = false; ///< also without Check1
        QString shown{};       ///< how value was written last, to three decimals
        std::optional<double> value{};
    };
    bool Bar_Beat() const;
    /// Nothing when the field is empty or holds what is no value.
    std::optional<double> Value(const Field& field, bool inBars) const;
    void Write(Field& field);
    void Change_Format();
    /// False, after a message, when a field holds what is no value.
    bool Read_Fields();

    User_Dialogs& dialogs;
    Field start;  ///< Text1
    Field length; ///< Text2
    QRadioButton* barBeat = nullptr;
    QRadioButton* beats = nullptr;
    QCheckBox* Check1 = nullptr; ///< add
};

} // namespace tonvex
