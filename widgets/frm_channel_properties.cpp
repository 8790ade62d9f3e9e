#include "widgets/frm_channel_properties.h"

#include "platform/qt/core_words.h"
#include "widgets/channel_texts.h"
#include "widgets/frm_fx_config.h"
#include "widgets/frm_patch_selection_win.h"
#include "widgets/tool_button.h"
#include "widgets/value_slider.h"

#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

namespace tonvex {

frmChannelProperties::frmChannelProperties(Session& owner, Theme& look, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), heading(new QLabel(this)),
      volume(new Value_Slider(theme, Slider_Kind::Dial, tr("Volume"), 0, 127, 80, 5, this)),
      pan(new Value_Slider(theme, Slider_Kind::Dial, tr("Pan"), 0, 127, 64, 6, this)),
      patch(new Tool_Button(theme, Button_Kind::Pill, {}, tr("Set channel patch"), tr("P"), this)),
      slot(new Tool_Button(theme, Button_Kind::Pill, {}, tr("Set output channel"), tr("Ctrl+O"), this)),
      effects(new Tool_Button(theme, Button_Kind::Pill, {}, tr("Effects of the channel"), {}, this)),
      volumeMap(Map_Button(tr("Volume map"), tr("Open the volume map"), MSG_OPEN_VOLUME_MAP,
                           MSG_OPEN_AUDIO_VOLUME_MAP)),
      panMap(Map_Button(tr("Pan map"), tr("Open the pan map"), MSG_OPEN_PAN_MAP, MSG_OPEN_AUDIO_PAN_MAP)),
      slotMenu(new QMenu(this)), effectMenu(new QMenu(this)) {
    setAccessibleName(tr("Properties of the selected channel"));
    pan->toText = Pan_Text;
    auto* grid = new QGridLayout(this);
    const auto caption = [this](const QString& text) {
        auto* label = new QLabel(text, this);
        label->setProperty("dim", true);
        label->setAlignment(Qt::AlignHCenter);
        return label;
    };
    grid->addWidget(heading, 0, 0, 1, 3);
    grid->addWidget(effects, 0, 3, Qt::AlignRight);
    grid->addWidget(volume, 1, 0, Qt::AlignHCenter);
    grid->addWidget(pan, 1, 1, Qt::AlignHCenter);
    auto* maps = new QVBoxLayout;
    maps->addWidget(volumeMap);
    maps->addWidget(panMap);
    grid->addLayout(maps, 1, 2, 2, 2, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(caption(tr("Volume")), 2, 0);
    grid->addWidget(caption(tr("Pan")), 2, 1);
    grid->addWidget(patch, 3, 0, 1, 3);
    grid->addWidget(slot, 3, 3);
    grid->setColumnStretch(2, 1);
    patch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    slot->Reserve_For(QStringLiteral("31"));
    QWidget* last = effects;
    for (QWidget* next : std::initializer_list<QWidget*>{volume, pan, volumeMap, panMap, patch, slot}) {
        setTabOrder(last, next);
        last = next;
    }
    heading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    heading->setTextFormat(Qt::PlainText);
    const auto takeTheme = [this, grid, maps] {
        maps->setSpacing(theme.Px(4));
        heading->setFont(theme.Font(Text_Size::Body, QFont::DemiBold));
        grid->setContentsMargins(theme.Px(12), theme.Px(12), theme.Px(12), theme.Px(12));
        grid->setHorizontalSpacing(theme.Px(8));
        grid->setVerticalSpacing(theme.Px(4));
        grid->setRowMinimumHeight(0, theme.Px(28));
        grid->setRowMinimumHeight(3, theme.Px(44));
        grid->setColumnMinimumWidth(0, theme.Px(56));
        grid->setColumnMinimumWidth(1, theme.Px(56));
    };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
    connect(volume, &Value_Slider::userChanged, this, [this](int value) {
        session.hub->Message(this, MSG_SET_VOLUME, channelId, std::int32_t{value});
    });
    connect(pan, &Value_Slider::userChanged, this,
            [this](int value) { session.hub->Message(this, MSG_SET_PAN, channelId, std::int32_t{value}); });
    connect(patch, &QToolButton::clicked, this, &frmChannelProperties::Open_Patches);
    slot->setMenu(slotMenu);
    slot->setPopupMode(QToolButton::InstantPopup);
    connect(slotMenu, &QMenu::aboutToShow, this, &frmChannelProperties::Fill_Slots);
    effects->Set_Pill({}, tr("Effects"));
    effects->setMenu(effectMenu);
    effects->setPopupMode(QToolButton::InstantPopup);
    connect(effectMenu, &QMenu::aboutToShow, this, &frmChannelProperties::Fill_Effects);
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if ((msgId >= MSG_SET_PATCH && msgId <= MSG_ADD_CHANNEL) || msgId == MSG_GENERAL_UPDATE)
            Refresh();
    });
    Refresh();
}

frmChannelProperties::~frmChannelProperties() {
    session.events.Unsubscribe(subscription);
}

Tool_Button* frmChannelProperties::Map_Button(const QString& caption, const QString& name, int slotMessage,
                                              int audioMessage) {
    auto* button = new Tool_Button(theme, Button_Kind::Pill, {}, name, {}, this);
    button->Set_Pill({}, caption);
    button->Reserve_For(tr("Volume map"));
    connect(button, &QToolButton::clicked, this, [this, slotMessage, audioMessage] {
        const int row = session.channels->ChannelI(channelId);
        if (row < 0)
            return;
        const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        if (Is_On(channel.IsAudio))
            session.hub->Message(this, audioMessage, channelId);
        else
            session.hub->Message(this, slotMessage, std::int32_t{channel.OutputChannel});
    });
    return button;
}

void frmChannelProperties::Show_Channel(std::int32_t newId) {
    channelId = newId;
    Refresh();
}

void frmChannelProperties::Open_Slots() {
    if (slot->isEnabled())
        slot->showMenu();
}

void frmChannelProperties::Open_Patches() {
    const int row = session.channels->ChannelI(channelId);
    if (row < 0 || Is_On(session.channels->Channels[static_cast<std::size_t>(row)].IsAudio))
        return;
    (new frmPatchSelectionWin(session, channelId, window()))->open();
}

void frmChannelProperties::Fill_Slots() {
    slotMenu->clear();
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return;
    const std::uint8_t current = session.channels->Channels[static_cast<std::size_t>(row)].OutputChannel;
    for (int n = 0; n < GlobalChannelsManager::SLOTS; ++n) {
        const OutputSlot& offer = session.channels->OutputSlots[static_cast<std::size_t>(n)];
        QAction* action = slotMenu->addAction(Core_Words(offer.SlotName), this, [this, n] {
            session.hub->Message(this, MSG_SET_OUTPUT, channelId, std::int32_t{n});
        });
        action->setCheckable(true);
        action->setChecked(n == current);
    }
}

void frmChannelProperties::Fill_Effects() {
    effectMenu->clear();
    const int row = session.channels->Effect_Row(session.channels->ChannelI(channelId));
    if (row < 0)
        return;
    for (const Effect_Kind kind : ALL_EFFECTS) {
        QAction* action =
            effectMenu->addAction(Effect_Caption(kind), this, [this, kind] { emit effectAsked(kind); });
        action->setCheckable(true);
        action->setChecked(session.channels->Effects.Is_On(row, kind));
    }
}

/// A long name takes no room from the effects beside it.
void frmChannelProperties::Show_Heading() {
    heading->setText(heading->fontMetrics().elidedText(headingText, Qt::ElideRight, heading->width()));
    heading->setToolTip(headingText);
}

void frmChannelProperties::resizeEvent(QResizeEvent*) {
    layout()->activate();
    Show_Heading();
}

void frmChannelProperties::Refresh() {
    const int row = session.channels->ChannelI(channelId);
    const bool live = row >= 0;
    const bool midi = live && !Is_On(session.channels->Channels[static_cast<std::size_t>(row)].IsAudio);
    volume->setEnabled(live);
    pan->setEnabled(live);
    patch->setEnabled(midi);
    slot->setEnabled(midi);
    effects->setEnabled(live);
    volumeMap->setEnabled(live);
    panMap->setEnabled(live);
    if (!live) {
        headingText = tr("No channel selected");
        Show_Heading();
        patch->Set_Pill(tr("Patch"), {});
        slot->Set_Pill(tr("Out"), {});
        return;
    }
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    headingText = QString::fromStdString(channel.ChannelName);
    Show_Heading();
    volume->Show_Value(channel.Volume);
    pan->Show_Value(channel.Pan);
    patch->Set_Pill(tr("Patch"),
                    midi ? QStringLiteral("%1 %2").arg(channel.PatchByte0 + 1).arg(Patch_Name(session, row))
                         : tr("Audio"));
    slot->Set_Pill(tr("Out"), midi ? QString::number(channel.OutputChannel) : QString());
}

void frmChannelProperties::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme.Tokens().panel);
    painter.fillRect(QRect(0, 0, width(), 1), theme.Tokens().line);
}

} // namespace tonvex
