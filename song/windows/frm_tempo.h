#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QDialog>

#include <optional>

class QLineEdit;
class QPushButton;
class QSpinBox;
class QTreeWidget;

namespace tonvex {

/// "Tempo changes": the song's tempo and the list of its changes, to add, to set and to delete. Every edit
/// goes through the hub at once, during a run as well; closing the window only closes it.
/// Interface thread. Session and theme outlive the window.
class frmTempo final : public QDialog {
    Q_OBJECT
public:
    frmTempo(Session& session, const Theme& theme, QWidget* parent = nullptr);
    ~frmTempo() override;

    /// The list as the model has it now; the selected change stays selected.
    void Update_View();

private:
    void Make_Controls(const Theme& theme);
    QWidget* Make_Fields(const Theme& theme);
    QPushButton* Make_Button(const QString& text, const char* name, void (frmTempo::*clicked)());
    void Show_Selected();
    void Take_Play_Position();
    void Add();
    void Change();
    void Remove();
    void Say(const std::string& text);
    /// ID of the selected change.
    std::optional<std::int32_t> Selected() const;
    /// Beats of the position field; says so when it holds none.
    std::optional<double> Typed_Position();
    /// Says so when a change stands at beats.
    bool Is_Free(double beats);

    Session& session;
    QSpinBox* songTempo = nullptr;
    QTreeWidget* List1 = nullptr;
    QLineEdit* Text1 = nullptr; ///< position
    QSpinBox* Text2 = nullptr;  ///< tempo
    QPushButton* changeButton = nullptr;
    QPushButton* deleteButton = nullptr;
    int subscription = 0;
};

} // namespace tonvex
