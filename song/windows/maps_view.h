#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QWidget>

class QLabel;
class QScrollArea;

namespace tonvex {

class PanVolCtrl;
class Value_Slider;

/// The volume map and the pan map of one output slot or audio channel, one above the other, under the titles
/// "Volume Map [name]" and "Pan Map [name]". Follows the selected channel, to another slot too; a message
/// that opens a map shows that one. A point that is chosen by keys is scrolled into view. Interface thread.
/// Session and theme outlive it.
class Maps_View final : public QWidget {
    Q_OBJECT
public:
    Maps_View(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~Maps_View() override;

    /// The maps of the channel's slot, or its own; NOT_GIVEN for none.
    void Show_Channel(std::int32_t channelId);
    PanVolCtrl& Map(Map_Kind kind) { return kind == Map_Kind::Pan ? *pan : *volume; }

signals:
    /// A message asks for a map, which is shown and has the focus once the view is visible.
    void opened();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Show_Slot(int slot);
    void Show_Audio(std::int32_t channelId);
    void Heard(int msgId, std::int32_t param);
    bool Shows_Selected() const;
    void Show_Titles();
    void Take_Zoom();
    QString Name() const;

    Session& session;
    Theme& theme;
    bool audio = false;
    std::int32_t owner = NOT_GIVEN; ///< slot, or ChannelID of an audio channel
    std::int32_t selectedId = NOT_GIVEN;
    bool follows = true; ///< the selected channel, not a map that a message asked for
    QScrollArea* area = nullptr;
    Value_Slider* zoom = nullptr;
    QLabel* volumeTitle = nullptr;
    QLabel* panTitle = nullptr;
    PanVolCtrl* volume = nullptr;
    PanVolCtrl* pan = nullptr;
    int subscription = 0;
};

} // namespace tonvex
