#include "widgets/channels_list.h"

#include "widgets/channel_row.h"

#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace tonvex {

ChannelsList::ChannelsList(Session& owner, Theme& look, QWidget* parent)
    : QScrollArea(parent), session(owner), theme(look) {
    setAccessibleName(tr("Channels"));
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    auto* content = new QWidget(this);
    column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addStretch(1);
    setWidget(content);
    subscription = session.events.Subscribe(
        [this](int msgId, std::int32_t param, const std::string&) { On_Message(msgId, param); });
    Rebuild();
}

ChannelsList::~ChannelsList() {
    session.events.Unsubscribe(subscription);
}

Channel_Row* ChannelsList::Row_Of(std::int32_t channelId) const {
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [channelId](Channel_Row* row) { return row->Channel_ID() == channelId; });
    return found == rows.end() ? nullptr : *found;
}

void ChannelsList::Select(std::int32_t channelId) {
    if (channelId == selectedId)
        return;
    Channel_Row* now = Row_Of(channelId);
    if (now == nullptr && !rows.empty())
        return;
    Channel_Row* before = Row_Of(selectedId);
    selectedId = now == nullptr ? NOT_GIVEN : channelId;
    if (now != nullptr) {
        now->Set_Selected(true);
        ensureWidgetVisible(now, 0, 0);
    }
    if (before != nullptr) {
        if (before->Has_Focus_Within() && now != nullptr)
            now->setFocus();
        before->Set_Selected(false);
    }
    emit selectionChanged(selectedId);
}

void ChannelsList::Rename(std::int32_t channelId) {
    if (Channel_Row* row = Row_Of(channelId))
        row->Start_Rename();
}

void ChannelsList::Step(int byRows) {
    const auto at = std::find_if(rows.begin(), rows.end(),
                                 [this](Channel_Row* row) { return row->Channel_ID() == selectedId; });
    if (at == rows.end())
        return;
    const auto last = static_cast<int>(rows.size()) - 1;
    const int next = std::clamp(static_cast<int>(at - rows.begin()) + byRows, 0, last);
    Select(rows[static_cast<std::size_t>(next)]->Channel_ID());
    rows[static_cast<std::size_t>(next)]->setFocus();
}

void ChannelsList::On_Message(int msgId, std::int32_t param) {
    switch (msgId) {
    case MSG_ADD_CHANNEL:
        Rebuild();
        Select(param);
        break;
    case MSG_DELETE_CHANNEL:
    case MSG_GENERAL_UPDATE:
        Rebuild();
        break;
    case MSG_SET_PATCH:
    case MSG_SET_PAN:
    case MSG_SET_OUTPUT:
        // A slot's patch and pan show on every row of the slot.
        for (Channel_Row* row : rows)
            row->Refresh();
        break;
    case MSG_SET_VOLUME:
    case MSG_SET_NAME:
    case MSG_SET_SOLO:
    case MSG_CLEAR_SOLO:
    case MSG_TOGGLE_SOLO:
    case MSG_SET_MUTE:
    case MSG_CLEAR_MUTE:
    case MSG_TOGGLE_MUTE:
        if (Channel_Row* row = Row_Of(param))
            row->Refresh();
        break;
    default:
        break;
    }
}

void ChannelsList::Rebuild() {
    std::vector<Channel_Row*> kept;
    std::size_t before = 0;
    int place = 0;
    for (std::size_t at = 0; at < rows.size(); ++at)
        if (rows[at]->Channel_ID() == selectedId)
            before = at;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const std::int32_t id = session.channels->Channels[static_cast<std::size_t>(row)].ChannelID;
        Channel_Row* shown = Row_Of(id);
        if (shown == nullptr) {
            shown = new Channel_Row(session, theme, id, widget());
            connect(shown, &Channel_Row::selectAsked, this, &ChannelsList::Select);
            connect(shown, &Channel_Row::stepAsked, this, &ChannelsList::Step);
        }
        if (column->indexOf(shown) != place) {
            column->insertWidget(place, shown);
            shown->show(); // now, so that it can take the focus at once
        }
        ++place;
        shown->Refresh();
        kept.push_back(shown);
    }
    bool focusWasIn = false;
    for (Channel_Row* row : rows) {
        if (std::find(kept.begin(), kept.end(), row) != kept.end())
            continue;
        focusWasIn = focusWasIn || row->Has_Focus_Within();
        column->removeWidget(row);
        row->hide();
        // It may be the row whose own button is being handled now.
        row->deleteLater();
    }
    rows = std::move(kept);
    Order_Tabs();
    if (Row_Of(selectedId) == nullptr) {
        // The neighbour takes the selection of a row that has gone.
        selectedId = NOT_GIVEN;
        if (rows.empty()) {
            emit selectionChanged(NOT_GIVEN);
        } else {
            Channel_Row* next = rows[std::min(before, rows.size() - 1)];
            Select(next->Channel_ID());
            if (focusWasIn)
                next->setFocus();
        }
    }
}

void ChannelsList::Set_Tab_Anchor(QWidget* before) {
    tabAnchor = before;
    Order_Tabs();
}

void ChannelsList::Order_Tabs() {
    // A new row stands at the end of the window's chain; its place is between its neighbours.
    QWidget* last = tabAnchor;
    for (Channel_Row* row : rows) {
        if (last != nullptr)
            setTabOrder(last, row);
        last = row->Order_Tabs();
    }
}

void ChannelsList::Show_Levels(int elapsedMs) {
    std::array<float, OUTPUT_SLOTS> peaks{};
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        peaks[static_cast<std::size_t>(slot)] =
            session.output->UsingSynth() ? session.doors.sound.Slot_Peak(slot) : 0.0F;
    for (Channel_Row* row : rows) {
        const int at = session.channels->ChannelI(row->Channel_ID());
        if (at < 0)
            continue;
        const std::uint8_t slot = session.channels->Channels[static_cast<std::size_t>(at)].OutputChannel;
        row->Show_Level(slot < OUTPUT_SLOTS ? peaks[slot] : 0.0F, elapsedMs);
    }
}

bool ChannelsList::Meters_Are_Still() const {
    return std::all_of(rows.begin(), rows.end(), [](Channel_Row* row) { return row->Meter_Is_Still(); });
}

void ChannelsList::Clear_Clips() {
    for (Channel_Row* row : rows)
        row->Clear_Clip();
}

} // namespace tonvex
