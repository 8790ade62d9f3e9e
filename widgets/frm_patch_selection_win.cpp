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

#include <utility>

namespace tonvex {

namespace {

constexpr int PREVIEW_NOTE = 60;
constexpr int PREVIEW_DRUM = 38; ///< the snare
constexpr int PREVIEW_VELOCITY = 100;
constexpr int PREVIEW_MS = 700;

} // namespace

frmPatchSelectionWin::frmPatchSelectionWin(Session& owner, std::int32_t channel, QWidget* parent)
    : QDialog(parent), session(owner), channelId(channel), search(new QLineEdit(this)),
      list(new QListWidget(this)), sound(session),
      patchBefore(session.gcm->Slot_Patch(session.channels->ChannelI(channelId))) {
    setAttribute(Qt::WA_DeleteOnClose);
    const int row = session.channels->ChannelI(channelId);
    const GlobalChannelsManager& table = *session.channels;
    const auto& current = table.Channels[static_cast<std::size_t>(row < 0 ? 0 : row)];
    const bool drums = current.OutputChannel == DRUM_SLOT;
    // The player library may have sent others, so while it runs the channel's own counts.
    if (patchBefore < 0 || session.transport.EngineRunning)
        patchBefore = current.PatchI;
    const QString name = QString::fromStdString(current.ChannelName);
    setWindowTitle(tr("Set patch"));

    auto* heading =
        new QLabel(drums ? tr("Drum kit of \"%1\"").arg(name) : tr("Patch of \"%1\"").arg(name), this);
    heading->setTextFormat(Qt::PlainText);
    auto* label = new QLabel(tr("&Search:"), this);
    label->setBuddy(search);
    search->setAccessibleName(tr("Search"));
    search->setPlaceholderText(tr("Name or number"));
    search->installEventFilter(this);
    search->setToolTip(tr("Part of a patch's name, or its number"));
    list->setAccessibleName(tr("Patches"));
    list->setToolTip(tr("A click sounds the patch, a double click takes it"));

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

    auto* preview = new QPushButton(tr("P&review"), this);
    preview->setObjectName(QStringLiteral("preview"));
    preview->setAutoDefault(false);
    preview->setToolTip(tr("Sounds a note on the selected patch"));
    connect(preview, &QPushButton::clicked, this, [this] { Preview(list->currentItem()); });
    connect(list, &QListWidget::itemClicked, this, &frmPatchSelectionWin::Preview);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    Add_Help_Button(*buttons, QStringLiteral("patchselwindow"));
    buttons->addButton(preview, QDialogButtonBox::ActionRole);
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

void frmPatchSelectionWin::Choose_For(int patchRow, std::function<void(int)> whoTakes) {
    taken = std::move(whoTakes);
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->data(Qt::UserRole).toInt() == patchRow)
            list->setCurrentRow(row);
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

void frmPatchSelectionWin::Preview(const QListWidgetItem* item) {
    const int row = session.channels->ChannelI(channelId);
    if (item == nullptr || item->isHidden() || row < 0)
        return;
    sound.Stop();
    previewed = true;
    session.gcm->GCM_SetChannelPatch(row, item->data(Qt::UserRole).toInt());
    const int slot = sound.Slot_Of(channelId);
    sound.Start_Notes(slot, {slot == DRUM_SLOT ? PREVIEW_DRUM : PREVIEW_NOTE}, PREVIEW_VELOCITY, PREVIEW_MS);
}

void frmPatchSelectionWin::Restore() {
    sound.Stop();
    if (std::exchange(previewed, false))
        session.gcm->GCM_SetChannelPatch(session.channels->ChannelI(channelId), patchBefore);
}

void frmPatchSelectionWin::done(int result) {
    Restore();
    QDialog::done(result);
}

void frmPatchSelectionWin::accept() {
    const QListWidgetItem* item = list->currentItem();
    if (item == nullptr || item->isHidden())
        return;
    Restore();
    const std::int32_t patch{item->data(Qt::UserRole).toInt()};
    if (taken)
        taken(patch);
    else
        session.hub->Message(this, MSG_SET_PATCH, channelId, patch);
    QDialog::accept();
}

} // namespace tonvex
