#include "app/windows/video_pane.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace tonvex {

Video_Pane::Video_Pane(const Theme& theme, std::vector<Video> found, QWidget* parent)
    : QWidget(parent), opener(&QDesktopServices::openUrl), videos(std::move(found)),
      list(new QTreeWidget(this)), description(new QLabel(this)), open(new QPushButton(tr("&Watch"), this)) {
    setObjectName(QStringLiteral("Picture_VideoList"));
    list->setObjectName(QStringLiteral("videos"));
    list->setAccessibleName(tr("Video tutorials"));
    list->setToolTip(tr("Video tutorials; Enter opens the chosen one"));
    list->setHeaderHidden(true);
    description->setObjectName(QStringLiteral("description"));
    description->setTextFormat(Qt::PlainText);
    description->setWordWrap(true);
    open->setObjectName(QStringLiteral("watch"));
    open->setToolTip(tr("Open the video in the player of your desktop"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(theme.Px(8), theme.Px(8), theme.Px(8), theme.Px(8));
    column->setSpacing(theme.Px(8));
    column->addWidget(list, 1);
    column->addWidget(description);
    column->addWidget(open);

    QTreeWidgetItem* group = nullptr;
    for (std::size_t i = 0; i < videos.size(); ++i) {
        const QString category = videos[i].category.isEmpty() ? tr("Other") : videos[i].category;
        if (group == nullptr || group->text(0) != category) {
            group = new QTreeWidgetItem(list, {category});
            group->setFlags(Qt::ItemIsEnabled);
            group->setExpanded(true);
        }
        auto* item = new QTreeWidgetItem(group, {videos[i].title});
        item->setData(0, Qt::UserRole, static_cast<qulonglong>(i));
    }
    connect(list, &QTreeWidget::currentItemChanged, this, &Video_Pane::Show_Chosen);
    connect(list, &QTreeWidget::itemActivated, this, &Video_Pane::Open);
    connect(open, &QPushButton::clicked, this, &Video_Pane::Open);
    Show_Chosen();
}

const Video* Video_Pane::Chosen() const {
    const QTreeWidgetItem* item = list->currentItem();
    if (item == nullptr || !item->data(0, Qt::UserRole).isValid())
        return nullptr;
    return &videos[static_cast<std::size_t>(item->data(0, Qt::UserRole).toULongLong())];
}

void Video_Pane::Show_Chosen() {
    const Video* video = Chosen();
    description->setText(video != nullptr ? video->description : tr("Choose a video."));
    open->setEnabled(video != nullptr);
}

void Video_Pane::Open() {
    const Video* video = Chosen();
    if (video == nullptr)
        return;
    if (video->film.empty())
        emit failed(tr("The film of \"%1\" is missing.").arg(video->title));
    else if (!opener(QUrl::fromLocalFile(QString::fromStdString(video->film.string()))))
        emit failed(tr("No program of your desktop opens this video: %1")
                        .arg(QString::fromStdString(video->film.string())));
}

} // namespace tonvex
