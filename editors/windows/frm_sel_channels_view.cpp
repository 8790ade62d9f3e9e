#include "editors/windows/frm_sel_channels_view.h"

#include <QCheckBox>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tonvex {

frmSelChannelsView::frmSelChannelsView(const Session& session, const Theme& look,
                                       const Event_Display& display, QWidget* parent)
    : Plain_Dialog(look, tr("Select channels"), tr("Channels shown behind this one"), parent) {
    setObjectName(QStringLiteral("frmSelChannelsView"));
    auto* area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setMinimumSize(theme.Px(280), theme.Px(200));
    auto* list = new QWidget(area);
    auto* rows = new QVBoxLayout(list);
    const GlobalChannelsManager& channels = *session.channels;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
        if (!channels.Is_Live_Row(row) || Is_On(channel.IsAudio) || channel.ChannelID == display.Channel())
            continue;
        QString name = QString::fromStdString(channel.ChannelName);
        // An ampersand of a name is no mnemonic.
        auto* check = new QCheckBox(name.replace(QLatin1Char('&'), QLatin1String("&&")), list);
        check->setChecked(display.CView_Is_Shown(channel.ChannelID));
        rows->addWidget(check);
        checks.emplace_back(channel.ChannelID, check);
    }
    if (checks.empty()) {
        auto* hint = new QLabel(tr("There is no other channel yet. Press Ctrl+Ins to add one."), list);
        hint->setProperty("dim", true);
        rows->addWidget(hint);
    }
    rows->addStretch(1);
    area->setWidget(list);
    column->addWidget(area, 1);
    Add_Buttons();
}

std::vector<std::pair<std::int32_t, bool>> frmSelChannelsView::Choice() const {
    std::vector<std::pair<std::int32_t, bool>> choice;
    for (const auto& [channelId, check] : checks)
        choice.emplace_back(channelId, check->isChecked());
    return choice;
}

} // namespace tonvex
