#pragma once

#include "editors/windows/events_editor_ctrl.h"

namespace tonvex {

/// "Events Editor": the host of the piano roll. Interface thread. Session and theme outlive it.
class frmEventsEditor final : public QWidget {
    Q_OBJECT
public:
    frmEventsEditor(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~frmEventsEditor() override;

    EventsEditorCtrl& Editor() { return *editor; }
    /// NOT_GIVEN for none.
    void Show_Channel(std::int32_t channelId);

signals:
    /// "Events Editor", with the channel's name behind it.
    void titleChanged(const QString& title);

private:
    void Show_Title();

    Session& session;
    EventsEditorCtrl* editor = nullptr;
    std::int32_t shown = NOT_GIVEN;
    int subscription = 0;
};

} // namespace tonvex
