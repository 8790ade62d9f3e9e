#include "editors/windows/frm_undo_list.h"

#include "platform/qt/core_words.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

frmUndoList::frmUndoList(Session& owner, const Theme& look, QWidget* parent)
    : Plain_Dialog(look, tr("Undo list"), tr("What was done, the oldest on top"), parent), session(owner),
      List1(new QListWidget(this)), go(new QPushButton(tr("&Go to this step"), this)) {
    setObjectName(QStringLiteral("frmUndoList"));
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Steps"));
    List1->setMinimumSize(theme.Px(320), theme.Px(280));
    column->addWidget(List1, 1);
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    auto* close = new QPushButton(tr("&Close"), this);
    close->setAutoDefault(false);
    go->setObjectName(QStringLiteral("go"));
    go->setDefault(true);
    row->addStretch(1);
    row->addWidget(close);
    row->addWidget(go);
    column->addLayout(row);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(go, &QPushButton::clicked, this, &frmUndoList::Go_To_Selected);
    connect(List1, &QListWidget::itemActivated, this, &frmUndoList::Go_To_Selected);
    updateTimer.setSingleShot(true);
    connect(&updateTimer, &QTimer::timeout, this, &frmUndoList::Update_View);
    subscription =
        session.events.Subscribe([this](int, std::int32_t, const std::string&) { updateTimer.start(0); });
    // Rows take the height that the style gives them, not the one before it.
    List1->ensurePolished();
    Update_View();
}

frmUndoList::~frmUndoList() {
    session.events.Unsubscribe(subscription);
}

void frmUndoList::Update_View() {
    List1->clear();
    const std::vector<std::string> done = session.undo->Undo_Labels();
    const std::vector<std::string> undone = session.undo->Redo_Labels();
    // A row's data: how many steps are undone when it is the last one done.
    const auto add = [&](const QString& text, int steps) {
        auto* item = new QListWidgetItem(text, List1);
        item->setData(Qt::UserRole, steps);
        return item;
    };
    add(tr("Start"), static_cast<int>(done.size()));
    for (std::size_t i = done.size(); i-- > 0;)
        add(Core_Words(done[i]), static_cast<int>(i));
    List1->setCurrentRow(List1->count() - 1);
    List1->scrollToItem(List1->currentItem());
    for (std::size_t i = 0; i < undone.size(); ++i) {
        QListWidgetItem* item = add(tr("%1 (undone)").arg(Core_Words(undone[i])), -static_cast<int>(i) - 1);
        item->setForeground(theme.Tokens().dim);
    }
    go->setEnabled(!session.transport.Song_Runs() && (session.undo->Can_Undo() || session.undo->Can_Redo()));
}

void frmUndoList::Go_To_Selected() {
    const QListWidgetItem* item = List1->currentItem();
    if (item == nullptr)
        return;
    int steps = item->data(Qt::UserRole).toInt();
    for (; steps > 0 && session.undo->Do_Undo(); --steps) {
    }
    for (; steps < 0 && session.undo->Do_Redo(); ++steps) {
    }
    Update_View();
}

} // namespace tonvex
