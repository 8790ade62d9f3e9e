#include "app/windows/frm_about.h"

#include "platform/library_versions.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tonvex {

namespace {

constexpr int PICTURE = 64;

} // namespace

frmAbout::frmAbout(const Theme& theme, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About Tonvex"));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/icons/tonvex.svg")).pixmap(theme.Px(PICTURE)));
    picture->setAccessibleName(tr("The sign of Tonvex"));
    auto* name = new QLabel(tr("Tonvex"), this);
    name->setFont(theme.Font(Text_Size::Display, QFont::DemiBold));
    auto* version = new QLabel(tr("Version: ") + QStringLiteral(TONVEX_VERSION), this);
    version->setObjectName(QStringLiteral("version"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* what = new QLabel(tr("The computer keyboard or a MIDI keyboard as an instrument of many channels: "
                               "play, record, arrange."),
                            this);
    what->setWordWrap(true);
    auto* thanks = new QLabel(tr("&Libraries that it stands on:"), this);
    auto* libraries = new QTreeWidget(this);
    libraries->setObjectName(QStringLiteral("libraries"));
    libraries->setAccessibleName(tr("Libraries"));
    libraries->setToolTip(tr("The libraries in use, their versions and licences"));
    libraries->setRootIsDecorated(false);
    libraries->setHeaderLabels({tr("Library"), tr("Version"), tr("Licence")});
    std::vector<Library_Row> rows = Core_Libraries();
    rows.push_back({"Qt", qVersion(), "LGPL-3.0-only"});
    for (const Library_Row& row : rows)
        new QTreeWidgetItem(libraries, {QString::fromStdString(row.name), QString::fromStdString(row.version),
                                        QString::fromStdString(row.licence)});
    libraries->sortItems(0, Qt::AscendingOrder);
    libraries->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    libraries->setMinimumSize(theme.Px(440), theme.Px(150));
    thanks->setBuddy(libraries);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* words = new QVBoxLayout;
    words->setSpacing(theme.Px(4));
    for (QLabel* line : {name, version, what})
        words->addWidget(line);
    auto* top = new QHBoxLayout;
    top->setSpacing(theme.Px(20));
    top->addWidget(picture, 0, Qt::AlignTop);
    top->addLayout(words, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    all->addLayout(top);
    all->addWidget(thanks);
    all->addWidget(libraries, 1);
    all->addWidget(buttons);
    resize(QSize(theme.Px(560), theme.Px(540)).boundedTo(screen()->availableSize()));
}

} // namespace tonvex
