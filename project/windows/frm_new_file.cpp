#include "project/windows/frm_new_file.h"

#include "project/project_templates.h"

#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

frmNewFile::frmNewFile(User_Dialogs& userDialogs, const Theme& theme, fs::path templates,
                       std::function<bool(const fs::path&)> makeSong, QWidget* parent)
    : QDialog(parent), dialogs(userDialogs), folder(std::move(templates)), make(std::move(makeSong)) {
    setWindowTitle(tr("New song"));
    setObjectName(QStringLiteral("frmNewFile"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    Option1 = new QRadioButton(tr("&Empty song"), this);
    Option1->setObjectName(QStringLiteral("Option1"));
    Option1->setToolTip(tr("One channel and nothing in it"));
    Option2 = new QRadioButton(tr("From a &template:"), this);
    Option2->setObjectName(QStringLiteral("Option2"));
    Option2->setToolTip(tr("A song with channels and sounds to begin with"));
    Option1->setChecked(true);
    List1 = new QListWidget(this);
    // Rows are measured when the first one comes.
    List1->ensurePolished();
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Project templates"));
    List1->setToolTip(tr("Enter or a double click takes the template"));
    List1->setMinimumSize(theme.Px(320), theme.Px(200));
    if (Template_Folder_Stands(dialogs, folder)) {
        for (const std::string& name : List_Project_Templates(folder))
            List1->addItem(QString::fromStdString(name));
    }
    connect(List1, &QListWidget::itemSelectionChanged, this, [this] {
        if (List1->currentItem() != nullptr)
            Option2->setChecked(true);
    });
    connect(List1, &QListWidget::itemDoubleClicked, this, &frmNewFile::accept);
    auto* buttons = new QDialogButtonBox(this);
    auto* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    auto* ok = buttons->addButton(QDialogButtonBox::Ok);
    cancel->setAutoDefault(false);
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmNewFile::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    all->addWidget(Option1);
    all->addWidget(Option2);
    all->addWidget(List1, 1);
    all->addWidget(buttons);
}

void frmNewFile::accept() {
    fs::path file;
    if (Option2->isChecked()) {
        const QListWidgetItem* item = List1->currentItem();
        if (item == nullptr) {
            dialogs.Show_Message(Box_Kind::Critical, "You must select a file from the list.", "Error");
            return;
        }
        file = Project_Template_File(folder, item->text().toStdString());
    }
    if (make(file))
        QDialog::accept();
}

} // namespace tonvex
