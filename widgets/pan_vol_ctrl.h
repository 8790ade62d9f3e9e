#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "widgets/map_field.h"
#include "widgets/theme.h"

#include <QPixmap>
#include <QWidget>

#include <optional>
#include <vector>

namespace tonvex {

/// Draws and edits one map: the pan or the volume of an output slot or of an audio channel over the song.
/// A double click adds a point, a drag moves one (with Shift off the grid), Escape takes a drag back; the
/// menu of the right button adds and deletes. On the keyboard Page Up and Page Down, Home and End choose a
/// point, arrows move it (Shift fine), Insert adds one at the play position, Delete deletes. Each gesture
/// that changes something is one batch of change messages. The flags of the marks stand above. Interface
/// thread. Session and theme outlive it.
class PanVolCtrl final : public QWidget, public Transport_Observer {
    Q_OBJECT
public:
    PanVolCtrl(Session& session, Theme& theme, Map_Kind kind, QWidget* parent = nullptr);
    ~PanVolCtrl() override;

    /// slot 0 to 31.
    void Show_Slot(int slot);
    void Show_Audio_Channel(std::int32_t channelId);
    /// A hint in place of a map.
    void Show_None();

    const std::vector<Map_Dot>& Dots() const noexcept { return dots; }
    /// ID of the selected point; NOT_GIVEN when none is.
    std::int32_t Selected_Point() const noexcept { return selectedId; }
    void Select_Point(std::int32_t pointId);
    /// Where beats and values lie, in pixels of the widget.
    Map_Field Field() const;

    void On_Position(double beats, std::int64_t songMs) override;
    void On_Run_Ended() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// By keys: where the point stands that is chosen now, in pixels of the widget.
    void pointChosen(const QPoint& place);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Drag {
        Map_Dot from;
        QPointF pressed;
        double beat = 0.0;
        int value = 0;
    };
    PanVol_Class* Map() const;
    void Refresh();
    void Changed();
    void Heard(int msgId, const std::string& text);
    const Map_Dot* Dot_Of(std::int32_t pointId) const;
    void Draw_Picture();
    void Draw_Grid(QPainter& painter, const Map_Field& field);
    void Draw_Curve(QPainter& painter, const Map_Field& field);
    void Show_Figure(const QPointF& at, double beat, int value);
    void Hide_Figure();
    QRect Line_Place(double beats) const;
    void Move_Line(double beats);
    QString Value_Text(int value) const;
    void Describe();
    static bool Handles(int key) noexcept;

    void Add(double beat, int value);
    /// Where a point stands already, that one is selected.
    void Add_At_Line();
    /// Where the hand points; on the grid of sixteenths.
    void Add_At(const QPointF& point, bool onGrid);
    void Delete_Selected();
    /// One message for what changed of the point, and its closing message; none when nothing did.
    void Move(const Map_Dot& from, double beat, int value);
    void Cancel_Drag();
    void Step_Selection(int by);

    Session& session;
    Theme& theme;
    Map_Kind kind;
    Observer_Link link;
    bool audio = false;
    std::int32_t owner = NOT_GIVEN; ///< slot, or ChannelID of an audio channel
    std::vector<Map_Dot> dots;
    std::int32_t selectedId = NOT_GIVEN;
    std::optional<Drag> drag;
    bool sending = false; ///< the notices are about one's own message
    QPixmap picture;
    bool pictureValid = false;
    double shownBeats = 32.0;
    double line = 0.0;
    QString figure;
    QRect figurePlace;
    int subscription = 0;
};

} // namespace tonvex
