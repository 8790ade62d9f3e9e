#pragma once

#include "platform/user_dialogs.h"
#include "widgets/theme.h"

#include <QDialog>

#include <filesystem>
#include <functional>

class QLineEdit;
class QListWidget;

namespace tonvex {

/// "Save as template": writes the song into the folder of project templates under a name. The song keeps its
/// own path, title and modified mark. Interface thread. Dialogs and theme outlive the window.
class frmSaveAsTemplate final : public QDialog {
    Q_OBJECT
public:
    /// save writes the file and tells the user when it cannot; the window stays when it gives false.
    frmSaveAsTemplate(User_Dialogs& dialogs, const Theme& theme, std::filesystem::path folder,
                      std::function<bool(const std::filesystem::path&)> save, QWidget* parent = nullptr);

    void accept() override;

private:
    User_Dialogs& dialogs;
    std::filesystem::path folder;
    std::function<bool(const std::filesystem::path&)> save;
    QListWidget* List1 = nullptr;
    QLineEdit* Text1 = nullptr; ///< the name
};

} // namespace tonvex
