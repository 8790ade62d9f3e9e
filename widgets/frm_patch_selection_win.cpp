#include "widgets/frm_patch_selection_win.h"

#include "widgets/help_button.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

frmPatchSelectionWin::frmPatchSelectionWin(Session& owner, std::int32_t channel, QWidget* parent)
    : QDialog(parent), session(owner), channelId(channel), search(new QLineEdit(this)),
      list(new QListWidget(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    const int row = session.channels->ChannelI(channelId);
    const GlobalChannelsManager& table = *session.channels;
    const auto& current = table.Channels[static_cast<std::size_t>(row < 0 ? 0 : row)];
    const bool drums = current.OutputChannel == DRUM_SLOT;
    const QString name = QString::fromStdString(current.ChannelName);
    setWindowTitle(tr("Set patch"));

    auto* heading =
        new QLabel(drums ? tr("Drum kit of \"%1\"").arg(name) : tr("Patch of \"%1\"").arg(name), this);
    auto* label = new QLabel(tr("&Search:"), this);
    label->setBuddy(search);
    search->setAccessibleName(tr("Search"));
    search->setPlaceholderText(tr("Name or number"));
    search->installEventFilter(this);
    list->setAccessibleName(tr("Patches"));

    const int rows = drums ? table.DrumPatchCount : table.PatchCount;
    for (int patch = 0; patch < rows; ++patch) {
        const auto at = static_cast<std::size_t>(patch);
        const PatchRow& offer = drums ? table.Global_DrumPatches[at] : table.Global_Patches[at];
        if (offer.Name.empty())
            continue;
        const QString bank = offer.Bank > 0 ? tr("  (bank %1)").arg(offer.Bank) : QString();
        auto* item = new QListWidgetItem(QStringLiteral("%1  %2%3")
                                             .arg(offer.Patch + 1, 3)
                                             .arg(QString::fromStdString(offer.Name).simplified(), bank),
                                         list);
        item->setData(Qt::UserRole, patch);
        if (patch == current.PatchI)
            list->setCurrentItem(item);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    Add_Help_Button(*buttons, QStringLiteral("patchselwindow"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(search, &QLineEdit::textChanged, this, &frmPatchSelectionWin::Search);
    connect(list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);

    auto* column = new QVBoxLayout(this);
    column->addWidget(heading);
    column->addWidget(label);
    column->addWidget(search);
    column->addWidget(list, 1);
    column->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 30);
    search->setFocus();
}

void frmPatchSelectionWin::Search(const QString& text) {
    QListWidgetItem* first = nullptr;
    for (int row = 0; row < list->count(); ++row) {
        QListWidgetItem* item = list->item(row);
        const bool fits = item->text().contains(text.trimmed(), Qt::CaseInsensitive);
        item->setHidden(!fits);
        if (fits && first == nullptr)
            first = item;
    }
    QListWidgetItem* current = list->currentItem();
    if (current == nullptr || current->isHidden())
        list->setCurrentItem(first);
}

bool frmPatchSelectionWin::eventFilter(QObject* watched, QEvent* event) {
    if (watched == search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmPatchSelectionWin::accept() {
    const QListWidgetItem* item = list->currentItem();
    if (item == nullptr || item->isHidden())
        return;
    session.hub->Message(this, MSG_SET_PATCH, channelId, std::int32_t{item->data(Qt::UserRole).toInt()});
    QDialog::accept();
}

} // namespace tonvex
