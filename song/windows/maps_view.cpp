#include "song/windows/maps_view.h"

#include "platform/qt/core_words.h"
#include "widgets/pan_vol_ctrl.h"
#include "widgets/value_slider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int LEAST_ZOOM = 100;
constexpr int MOST_ZOOM = 1600;
constexpr int ZOOM_STEP = 50;

} // namespace

Maps_View::Maps_View(Session& owningSession, Theme& look, QWidget* parent)
    : QWidget(parent), session(owningSession), theme(look), area(new QScrollArea(this)) {
    auto* all = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    auto* hint =
        new QLabel(tr("Double click adds a point, drag or arrow keys move it, Del deletes it"), this);
    hint->setProperty("dim", true);
    hint->setWordWrap(true); // in two lines where the window is narrow
    auto* zoomLabel = new QLabel(tr("Zoom"), this);
    zoomLabel->setProperty("dim", true);
    zoom = new Value_Slider(theme, Slider_Kind::Fill, tr("Zoom of the maps"), LEAST_ZOOM, MOST_ZOOM,
                            LEAST_ZOOM, ZOOM_STEP, this);
    zoom->toText = [](int percent) { return tr("%1 %").arg(percent); };
    zoom->setValue(LEAST_ZOOM);
    bar->addWidget(hint, 1);
    bar->addWidget(zoomLabel);
    bar->addWidget(zoom);
    all->addLayout(bar);

    auto* content = new QWidget(area);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    volumeTitle = new QLabel(content);
    volume = new PanVolCtrl(session, theme, Map_Kind::Volume, content);
    panTitle = new QLabel(content);
    pan = new PanVolCtrl(session, theme, Map_Kind::Pan, content);
    for (QLabel* title : {volumeTitle, panTitle})
        title->setTextFormat(Qt::PlainText);
    column->addWidget(volumeTitle);
    column->addWidget(volume, 1);
    column->addWidget(panTitle);
    column->addWidget(pan, 1);
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    all->addWidget(area, 1);

    const auto takeTheme = [this, all, bar, column] {
        all->setContentsMargins(theme.Px(12), theme.Px(8), theme.Px(12), theme.Px(8));
        all->setSpacing(theme.Px(8));
        bar->setSpacing(theme.Px(8));
        column->setSpacing(theme.Px(4));
        for (QLabel* title : {volumeTitle, panTitle})
            title->setFont(theme.Font(Text_Size::Body, QFont::DemiBold));
        Take_Zoom();
    };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
    connect(zoom, &Value_Slider::valueChanged, this, &Maps_View::Take_Zoom);
    for (PanVolCtrl* map : {volume, pan})
        connect(map, &PanVolCtrl::pointChosen, this, [this, map](const QPoint& place) {
            const QPoint inside = map->mapTo(area->widget(), place);
            area->ensureVisible(inside.x(), inside.y(), theme.Px(60), theme.Px(60));
        });
    subscription = session.events.Subscribe(
        [this](int msgId, std::int32_t param, const std::string&) { Heard(msgId, param); });
    Show_Channel(NOT_GIVEN);
}

Maps_View::~Maps_View() {
    session.events.Unsubscribe(subscription);
}

void Maps_View::Show_Channel(std::int32_t channelId) {
    selectedId = channelId;
    follows = true;
    const int row = session.channels->ChannelI(channelId);
    if (row < 0) {
        owner = NOT_GIVEN;
        volume->Show_None();
        pan->Show_None();
        Show_Titles();
        return;
    }
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    if (Is_On(channel.IsAudio))
        Show_Audio(channelId);
    else
        Show_Slot(channel.OutputChannel);
}

void Maps_View::Show_Slot(int slot) {
    audio = false;
    owner = slot;
    volume->Show_Slot(slot);
    pan->Show_Slot(slot);
    Show_Titles();
}

void Maps_View::Show_Audio(std::int32_t channelId) {
    audio = true;
    owner = channelId;
    volume->Show_Audio_Channel(channelId);
    pan->Show_Audio_Channel(channelId);
    Show_Titles();
}

void Maps_View::Heard(int msgId, std::int32_t param) {
    switch (msgId) {
    case MSG_OPEN_PAN_MAP:
    case MSG_OPEN_VOLUME_MAP:
        Show_Slot(param);
        break;
    case MSG_OPEN_AUDIO_PAN_MAP:
    case MSG_OPEN_AUDIO_VOLUME_MAP:
        Show_Audio(param);
        break;
    case MSG_SET_NAME:
        Show_Titles();
        return;
    case MSG_SET_OUTPUT:
    case MSG_DELETE_CHANNEL:
    case MSG_GENERAL_UPDATE: // undo may have brought back a name or a slot
        follows ? Show_Channel(selectedId) : Show_Titles();
        return;
    default:
        return;
    }
    follows = Shows_Selected();
    emit opened();
    Map(msgId == MSG_OPEN_PAN_MAP || msgId == MSG_OPEN_AUDIO_PAN_MAP ? Map_Kind::Pan : Map_Kind::Volume)
        .setFocus();
}

bool Maps_View::Shows_Selected() const {
    const int row = session.channels->ChannelI(selectedId);
    if (row < 0)
        return false;
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    return audio == Is_On(channel.IsAudio) && owner == (audio ? selectedId : channel.OutputChannel);
}

QString Maps_View::Name() const {
    const GlobalChannelsManager& channels = *session.channels;
    const auto nameOf = [&](int row) {
        return QString::fromStdString(channels.Channels[static_cast<std::size_t>(row)].ChannelName);
    };
    if (audio) {
        const int row = channels.ChannelI(owner);
        return row < 0 ? QString() : nameOf(row);
    }
    if (Shows_Selected()) // of several on the slot
        return nameOf(channels.ChannelI(selectedId));
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        if (channels.Is_Live_Row(row) &&
            channels.Channels[static_cast<std::size_t>(row)].OutputChannel == owner)
            return nameOf(row);
    return Core_Words(channels.OutputSlots[static_cast<std::size_t>(owner)].SlotName);
}

void Maps_View::Show_Titles() {
    const bool any = owner != NOT_GIVEN;
    const QString name = any ? Name() : QString();
    volumeTitle->setText(any ? tr("Volume Map [%1]").arg(name) : tr("Volume Map"));
    panTitle->setText(any ? tr("Pan Map [%1]").arg(name) : tr("Pan Map"));
    volume->setAccessibleName(volumeTitle->text());
    pan->setAccessibleName(panTitle->text());
}

void Maps_View::Take_Zoom() {
    const int width = area->viewport()->width() * zoom->value() / LEAST_ZOOM;
    area->widget()->setMinimumWidth(zoom->value() == LEAST_ZOOM ? 0 : width);
}

void Maps_View::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Take_Zoom();
}

void Maps_View::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), theme.Tokens().panel);
}

} // namespace tonvex
