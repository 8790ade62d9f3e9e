#include "app/windows/frm_recovery.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tonvex {

namespace {

enum Column { Song, Written, File, COLUMNS };

QString When(std::chrono::system_clock::time_point moment) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(moment.time_since_epoch());
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds.count()), QLocale::ShortFormat);
}

} // namespace

frmRecovery::frmRecovery(Left_Songs& found, User_Dialogs& boxes, const Theme& look, QWidget* parent)
    : QDialog(parent), songs(found), dialogs(boxes), theme(look), List1(new QTreeWidget(this)),
      restore(new QPushButton(tr("&Restore"), this)), discard(new QPushButton(tr("&Discard..."), this)) {
    setObjectName(QStringLiteral("frmRecovery"));
    setWindowTitle(tr("Recover songs"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    auto* about = new QLabel(tr("Tonvex did not end in order"), this);
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    auto* why = new QLabel(tr("What was not saved then has been kept. A restored song is as unsaved as it "
                              "was: its own file changes only when you save it."),
                           this);
    why->setWordWrap(true);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Songs that can be recovered"));
    List1->setToolTip(tr("Songs with changes that were not saved, the newest first"));
    List1->setRootIsDecorated(false);
    List1->setAllColumnsShowFocus(true);
    List1->setHeaderLabels({tr("Song"), tr("Last kept"), tr("Its file")});
    List1->setTextElideMode(Qt::ElideMiddle);
    List1->setMinimumSize(theme.Px(640), theme.Px(140));
    restore->setObjectName(QStringLiteral("restore"));
    restore->setToolTip(tr("Open the selected song as it was"));
    restore->setDefault(true);
    discard->setObjectName(QStringLiteral("discard"));
    discard->setToolTip(tr("Delete what was kept of the selected song"));
    discard->setAutoDefault(false);
    auto* later = new QPushButton(tr("&Ask later"), this);
    later->setObjectName(QStringLiteral("later"));
    later->setToolTip(tr("Keep the songs and ask again at the next start"));
    later->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme.Px(8));
    buttons->addWidget(discard);
    buttons->addStretch(1);
    buttons->addWidget(later);
    buttons->addWidget(restore);
    all->addWidget(about);
    all->addWidget(why);
    all->addWidget(List1, 1);
    all->addLayout(buttons);
    connect(List1, &QTreeWidget::itemActivated, this, &QDialog::accept);
    connect(restore, &QPushButton::clicked, this, &QDialog::accept);
    connect(later, &QPushButton::clicked, this, &QDialog::reject);
    connect(discard, &QPushButton::clicked, this, &frmRecovery::Discard);
    Fill();
    List1->setFocus();
}

std::size_t frmRecovery::Chosen() const {
    return static_cast<std::size_t>(List1->indexOfTopLevelItem(List1->currentItem()));
}

void frmRecovery::Fill() {
    List1->clear();
    for (std::size_t i = 0; i < songs.Count(); ++i) {
        const Recovery_Find& find = songs.Find(i);
        const QString file = QString::fromStdString(find.note.songPath.string());
        auto* row = new QTreeWidgetItem(List1);
        row->setText(Song, QString::fromStdString(find.note.title));
        row->setText(Written, When(find.writtenAt));
        row->setText(File, file.isEmpty() ? tr("never saved") : file);
        row->setToolTip(File, file);
    }
    for (const Column column : {Song, Written})
        List1->resizeColumnToContents(column);
    List1->setCurrentItem(List1->topLevelItem(0));
}

void frmRecovery::Discard() {
    const QString question = tr("Discard this song ?\nWhat was not saved of it will be lost.");
    if (!dialogs.Ask_YesNo(question.toStdString(), windowTitle().toStdString()))
        return;
    songs.Discard(Chosen());
    if (songs.Count() == 0)
        reject();
    else
        Fill();
}

} // namespace tonvex
