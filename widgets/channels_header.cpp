#include "widgets/channels_header.h"

#include "widgets/function_key_text.h"
#include "widgets/tool_button.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tonvex {

Channels_Header::Channels_Header(Session& owner, Theme& theme, QWidget* parent)
    : QWidget(parent), session(owner), name(new QLabel(tr("Channels"), this)),
      clearMute(
          new Tool_Button(theme, Button_Kind::Pill, {}, tr("Clear the mute of all channels"), {}, this)),
      clearSolo(
          new Tool_Button(theme, Button_Kind::Pill, {}, tr("Clear the solo of all channels"), {}, this)),
      add(new Tool_Button(theme, Button_Kind::Flat, QStringLiteral("plus"), {}, {}, this)) {
    setAutoFillBackground(true);
    clearMute->Set_Pill({}, tr("Clear Mute"));
    clearSolo->Set_Pill({}, tr("Clear Solo"));
    connect(clearMute, &QToolButton::clicked, this, [this] { Clear(MSG_CLEAR_MUTE, "Clear Mute"); });
    connect(clearSolo, &QToolButton::clicked, this, [this] { Clear(MSG_CLEAR_SOLO, "Clear Solo"); });
    connect(add, &QToolButton::clicked, this, &Channels_Header::addAsked);
    auto* row = new QHBoxLayout(this);
    name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(name, 1);
    row->addStretch(0); // in its place when it is hidden
    row->addWidget(clearMute);
    row->addWidget(clearSolo);
    row->addWidget(add);
    const auto takeTheme = [this, &theme, row] {
        name->setFont(theme.Font(Text_Size::Body, QFont::DemiBold));
        row->setContentsMargins(theme.Px(12), theme.Px(2), theme.Px(8), theme.Px(2));
        row->setSpacing(theme.Px(4));
    };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if ((msgId >= MSG_SET_PATCH && msgId <= MSG_ADD_CHANNEL) || msgId == MSG_GENERAL_UPDATE)
            Refresh();
    });
    Show_Keys();
    Refresh();
}

Channels_Header::~Channels_Header() {
    session.events.Unsubscribe(subscription);
}

/// A narrow pane does without its name rather than with half of it.
void Channels_Header::resizeEvent(QResizeEvent*) {
    const QMargins edges = layout()->contentsMargins();
    int room = width() - edges.left() - edges.right();
    for (const Tool_Button* button : {clearMute, clearSolo, add})
        room -= button->minimumSizeHint().width() + layout()->spacing();
    name->setVisible(room >= name->sizeHint().width());
}

QWidget* Channels_Header::Last_Control() const {
    return add;
}

void Channels_Header::Set_Add_Enabled(bool on) {
    add->setEnabled(on);
}

void Channels_Header::Show_Keys() {
    add->Set_Name(tr("Add new channel"), Function_Key_Text(session, "Add new channel"));
}

void Channels_Header::Refresh() {
    bool anyMute = false;
    bool anySolo = false;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        anyMute = anyMute || Is_On(channel.Mute);
        anySolo = anySolo || Is_On(channel.Solo);
    }
    clearMute->setEnabled(anyMute);
    clearSolo->setEnabled(anySolo);
}

void Channels_Header::Clear(int message, const char* undoText) {
    const MsgManager::Batch batch(*session.hub, MsgManager::Batch::Update_At_End, undoText);
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        if (session.channels->Is_Live_Row(row))
            session.hub->Message(this, message,
                                 session.channels->Channels[static_cast<std::size_t>(row)].ChannelID, false);
}

} // namespace tonvex
