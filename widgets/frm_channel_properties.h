#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QWidget>

class QLabel;
class QMenu;

namespace tonvex {

class Tool_Button;
class Value_Slider;

/// The selected channel under the list: volume, pan, patch, output slot and effects.
class frmChannelProperties final : public QWidget {
    Q_OBJECT
public:
    frmChannelProperties(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~frmChannelProperties() override;
    /// NOT_GIVEN for none: the controls are then off.
    void Show_Channel(std::int32_t channelId);
    void Open_Patches();
    void Open_Slots();

signals:
    void effectAsked(tonvex::Effect_Kind kind);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Refresh();
    void Fill_Slots();
    void Fill_Effects();
    void Show_Heading();
    Tool_Button* Map_Button(const QString& caption, const QString& name, int slotMessage, int audioMessage);

    Session& session;
    Theme& theme;
    std::int32_t channelId = NOT_GIVEN;
    QString headingText;
    QLabel* heading; ///< the text as far as there is room
    Value_Slider* volume;
    Value_Slider* pan;
    Tool_Button* patch;
    Tool_Button* slot;
    Tool_Button* effects;
    Tool_Button* volumeMap;
    Tool_Button* panMap;
    QMenu* slotMenu;
    QMenu* effectMenu;
    int subscription = 0;
};

} // namespace tonvex
