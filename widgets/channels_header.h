#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QWidget>

class QLabel;

namespace tonvex {

class Tool_Button;

/// What stands over the list of channels: its name, "Clear Mute", "Clear Solo", a new channel. The two are
/// off while no channel is muted, or none is solo. Interface thread.
class Channels_Header final : public QWidget {
    Q_OBJECT
public:
    Channels_Header(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~Channels_Header() override;
    /// The last of its controls in the tab order.
    QWidget* Last_Control() const;
    void Set_Add_Enabled(bool on);
    /// The tip tells the key in force.
    void Show_Keys();

signals:
    void addAsked();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Refresh();
    void Clear(int message, const char* undoText);

    Session& session;
    QLabel* name;
    Tool_Button* clearMute;
    Tool_Button* clearSolo;
    Tool_Button* add;
    int subscription = 0;
};

} // namespace tonvex
