#include "editors/windows/frm_events_editor.h"

#include <QVBoxLayout>

namespace tonvex {

frmEventsEditor::frmEventsEditor(Session& owner, Theme& theme, QWidget* parent)
    : QWidget(parent), session(owner), editor(new EventsEditorCtrl(session, theme, this)) {
    setObjectName(QStringLiteral("frmEventsEditor"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(editor);
    setFocusProxy(&editor->View());
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if (msgId == MSG_SET_NAME || msgId == MSG_GENERAL_UPDATE)
            Show_Title();
    });
    Show_Title();
}

frmEventsEditor::~frmEventsEditor() {
    session.events.Unsubscribe(subscription);
}

void frmEventsEditor::Show_Channel(std::int32_t channelId) {
    shown = channelId;
    editor->Show_Channel(channelId);
    Show_Title();
}

void frmEventsEditor::Show_Title() {
    const int row = session.channels->ChannelI(shown);
    const bool has = row >= 0 && editor->Display().Channel() == shown;
    const QString title = has ? tr("Events Editor") + QStringLiteral(" · ") +
                                    QString::fromStdString(
                                        session.channels->Channels[static_cast<std::size_t>(row)].ChannelName)
                              : tr("Events Editor");
    if (title == windowTitle())
        return;
    setWindowTitle(title);
    emit titleChanged(title);
}

} // namespace tonvex
