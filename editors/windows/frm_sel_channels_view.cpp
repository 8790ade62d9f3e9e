#include "editors/windows/frm_sel_channels_view.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace tonvex {

frmSelChannelsView::frmSelChannelsView(const Session& session, const Theme& look,
                                       const Event_Display& display, QWidget* parent)
    : Ev_Ed_Dialog(look, tr("Select channels"), tr("Channels shown behind this one"), parent),
      List1(new QListWidget(this)) {
    setObjectName(QStringLiteral("frmSelChannelsView"));
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Channels"));
    List1->setMinimumSize(theme.Px(280), theme.Px(200));
    const GlobalChannelsManager& channels = *session.channels;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
        if (!channels.Is_Live_Row(row) || Is_On(channel.IsAudio) || channel.ChannelID == display.Channel())
            continue;
        auto* item = new QListWidgetItem(QString::fromStdString(channel.ChannelName), List1);
        item->setData(Qt::UserRole, channel.ChannelID);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(display.CView_Is_Shown(channel.ChannelID) ? Qt::Checked : Qt::Unchecked);
    }
    column->addWidget(List1, 1);
    if (List1->count() == 0) {
        auto* hint = new QLabel(tr("There is no other channel yet. Press Ctrl+Ins to add one."), this);
        hint->setProperty("dim", true);
        column->addWidget(hint);
    }
    Add_Buttons();
}

std::vector<std::pair<std::int32_t, bool>> frmSelChannelsView::Choice() const {
    std::vector<std::pair<std::int32_t, bool>> choice;
    for (int i = 0; i < List1->count(); ++i)
        choice.emplace_back(List1->item(i)->data(Qt::UserRole).toInt(),
                            List1->item(i)->checkState() == Qt::Checked);
    return choice;
}

} // namespace tonvex
