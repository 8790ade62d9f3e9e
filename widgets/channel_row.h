#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QWidget>

class QLineEdit;

namespace tonvex {

class Level_Meter;
class Tool_Button;
class Value_Slider;

/// One channel in the list: colour, name, patch, mute, solo, record mark, volume, pan, level.
/// Only the selected row's controls are in the tab order; the arrow keys walk the rows.
class Channel_Row final : public QWidget {
    Q_OBJECT
public:
    Channel_Row(Session& session, Theme& theme, std::int32_t channelId, QWidget* parent);

    std::int32_t Channel_ID() const noexcept { return channelId; }
    /// Reads the row of the table anew.
    void Refresh();
    void Set_Selected(bool selected);
    bool Is_Selected() const noexcept { return isSelected; }
    void Start_Rename();
    void Show_Level(float peak, int elapsedMs);
    bool Meter_Is_Still() const;
    void Clear_Clip();
    bool Has_Focus_Within() const;
    /// Puts the controls behind the row in the tab order; the last of them.
    QWidget* Order_Tabs();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void selectAsked(std::int32_t channelId);
    void stepAsked(int rows); ///< the selection moves by so many rows

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QRect Name_Place() const;
    QRect Patch_Place() const;
    void Finish_Rename(bool take);
    void Open_Patches();

    Session& session;
    Theme& theme;
    std::int32_t channelId;
    int tableRow = -1;
    bool isSelected = false;
    QString name;
    QString patchLine;
    Tool_Button* patch;
    Tool_Button* mute;
    Tool_Button* solo;
    Tool_Button* armed;
    Value_Slider* volume;
    Value_Slider* pan;
    Level_Meter* meter;
    QLineEdit* editor = nullptr;
};

} // namespace tonvex
