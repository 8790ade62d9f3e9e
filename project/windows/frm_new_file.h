#pragma once

#include "platform/user_dialogs.h"
#include "widgets/theme.h"

#include <QDialog>

#include <filesystem>
#include <functional>

class QListWidget;
class QRadioButton;

namespace tonvex {

/// "New song": an empty one, or one that begins as a project template. Interface thread. Dialogs and theme
/// outlive the window.
class frmNewFile final : public QDialog {
    Q_OBJECT
public:
    /// Templates are listed from the folder, which is asked to be made when it is not there. make is called
    /// once with the template's file, or with an empty path for an empty song, when the user has chosen; the
    /// window stays when it gives false.
    frmNewFile(User_Dialogs& dialogs, const Theme& theme, std::filesystem::path folder,
               std::function<bool(const std::filesystem::path&)> make, QWidget* parent = nullptr);

    void accept() override;

private:
    User_Dialogs& dialogs;
    std::filesystem::path folder;
    std::function<bool(const std::filesystem::path&)> make;
    QRadioButton* Option1 = nullptr; ///< an empty song
    QRadioButton* Option2 = nullptr; ///< from a template
    QListWidget* List1 = nullptr;
};

} // namespace tonvex
