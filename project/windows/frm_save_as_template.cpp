#include "project/windows/frm_save_as_template.h"

#include "project/project_templates.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <system_error>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

frmSaveAsTemplate::frmSaveAsTemplate(User_Dialogs& userDialogs, const Theme& theme, fs::path templates,
                                     std::function<bool(const fs::path&)> saveSong, QWidget* parent)
    : QDialog(parent), dialogs(userDialogs), folder(std::move(templates)), save(std::move(saveSong)) {
    setWindowTitle(tr("Save as template"));
    setObjectName(QStringLiteral("frmSaveAsTemplate"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    auto* listLabel = new QLabel(tr("&Templates:"), this);
    List1 = new QListWidget(this);
    // Rows are measured when the first one comes.
    List1->ensurePolished();
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Project templates"));
    List1->setToolTip(tr("The name of the selected template is taken over"));
    List1->setMinimumSize(theme.Px(320), theme.Px(200));
    listLabel->setBuddy(List1);
    if (Template_Folder_Stands(dialogs, folder)) {
        for (const std::string& name : List_Project_Templates(folder))
            List1->addItem(QString::fromStdString(name));
    }
    auto* nameLabel = new QLabel(tr("&Name:"), this);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Name of the template"));
    nameLabel->setBuddy(Text1);
    connect(List1, &QListWidget::currentTextChanged, Text1, &QLineEdit::setText);
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    row->addWidget(nameLabel);
    row->addWidget(Text1, 1);
    auto* buttons = new QDialogButtonBox(this);
    auto* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    auto* ok = buttons->addButton(QDialogButtonBox::Save);
    cancel->setAutoDefault(false);
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmSaveAsTemplate::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    all->addWidget(listLabel);
    all->addWidget(List1, 1);
    all->addLayout(row);
    all->addWidget(buttons);
    Text1->setFocus();
}

void frmSaveAsTemplate::accept() {
    const fs::path file = Project_Template_File(folder, Text1->text().toStdString());
    std::error_code ignored;
    if (file.empty()) {
        dialogs.Show_Message(Box_Kind::Information, "Please type the filename");
        Text1->setFocus();
        return;
    }
    if (!Template_Folder_Stands(dialogs, folder))
        return;
    if (fs::exists(file, ignored) &&
        !dialogs.Ask_YesNo("Overwrite file ? \r\n" + file.stem().string(), "Confirm"))
        return;
    if (save(file))
        QDialog::accept();
}

} // namespace tonvex
