#pragma once

#include "app/session.h"
#include "editors/event_display.h"
#include "editors/roll_gesture.h"
#include "editors/windows/roll_painter.h"
#include "widgets/theme.h"

#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include <vector>

namespace tonvex {

/// What a key or a menu asks of the editor.
enum class Roll_Command {
    Cut,
    Copy,
    Paste,
    Delete,
    Select_All,
    Invert_Selection,
    Properties,
    Time_Properties,
    Volume,
    Repeat_Align,
    Legato,
    Louder,
    Softer,
    Zoom_In,
    Zoom_Out,
    Menu
};

/// The picture of the roll and the hand in it: rows and piano, grid, rules, events, volume lane. It changes
/// the song through the gesture and the edits alone; commands go out as signals. The play line repaints only
/// its strip. Interface thread. All references outlive it.
class Roll_View final : public QWidget {
    Q_OBJECT
public:
    Roll_View(Session& session, Theme& theme, Event_Display& display, Event_Edits& edits,
              QWidget* parent = nullptr);
    ~Roll_View() override;

    Roll_Gesture& Gesture() noexcept { return gesture; }
    /// What edits and places snap to, with the song's divisions.
    Edit_Grid& Grid() noexcept {
        gesture.Grid.AlignDiv = session.editorSetup.AlignDiv;
        return gesture.Grid;
    }
    const Roll_Window& Window() const noexcept { return viewed; }
    Roll_Painter Painter() const { return {session, theme, viewed, size()}; }
    Event_Display& Display() noexcept { return display; }
    /// What an assistive tool is told of the event; empty when it is not there.
    QString Spoken(std::int32_t eventId) const;
    QString Hover_Text(const Ev_Display_Row& row) const;
    /// As it stands on the event: "E5", "Am7".
    QString Short_Name(const Ev_Display_Row& row) const;

    void Set_Options(const Roll_Options& options);
    /// once: back to Select behind the next use.
    void Set_Tool(Roll_Tool wanted, bool once = false);
    Roll_Tool Tool() const noexcept { return tool; }
    void Set_Copy_Mode(bool on) noexcept { copyMode = on; }
    bool Copy_Mode() const noexcept { return copyMode; }
    /// Row of the zoom table; what lies at x, a pixel of the widget, stays there.
    void Set_Zoom(int zoomIndex, double x);
    /// Pixels of the drawing surface, kept within it.
    void Scroll_To(double x, double y);
    double Scroll_Most_X() const;
    double Scroll_Most_Y() const;
    /// The notes of the channel come into view, or the middle of the piano.
    void Show_Notes();
    void Bring_Into_View(const Ev_Display_Row& row);
    /// The first selected event, unless one is in view.
    void Bring_Selection_Into_View();
    /// A take begins, or is over: what it has so far is drawn while it goes on.
    void Set_Recording(bool on);
    /// The take has grown. Repaints little, so that a run is not held up.
    void Show_Take();
    /// A take that is over comes into view, or its start if it is longer.
    void Bring_Take_Into_View();
    /// The channel of the pale event at that point; NOT_GIVEN for none.
    std::int32_t Channel_Behind(const QPoint& at) const;

    /// The song or the selection looks different.
    void Changed();
    double Line() const noexcept { return line; }
    /// beats; follow: the view scrolls with it.
    void Move_Line(double beats, bool follow);

    double Cursor_Beat() const noexcept { return cursorBeat; }
    int Cursor_Note() const noexcept { return cursorNote; }
    void Set_Cursor(double beat, int note);
    /// Where the cursor stands in the widget, or the nearest place in view.
    QPoint Cursor_Place() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void scrolled();
    void zoomed(int zoomIndex);
    void toolChanged();
    void selectionChanged();
    void command(tonvex::Roll_Command wanted);
    /// A place for a chord was clicked.
    void chordWanted(double beat, int note);
    void eventClicked(int eventId);
    void eventDoubleClicked(int eventId);
    void keyClicked(int note);
    void goTo(double beats);
    void ruleMenu(const QPoint& globalAt, double beat);
    void barMenu(const QPoint& globalAt, int bar);
    void markMenu(const QPoint& globalAt, double beat, int markRow);
    void eventMenu(const QPoint& globalAt);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    // roll_view.cpp
    void Draw_Picture();
    QRect Line_Place(double beats) const;
    void Follow_Keys(double beats);
    void Bring_Note_Into_View(int note);
    void Take_Scale();
    void Fit_Piano();
    // roll_view_mouse.cpp
    Roll_Point Surface(const QPointF& at) const;
    Roll_Modifiers Held(Qt::KeyboardModifiers modifiers) const;
    int Lane_Volume(double y) const;
    void Press_Header(const QPointF& at, Qt::MouseButton button);
    void Drag_To(const QPointF& at, Qt::KeyboardModifiers modifiers);
    void Scroll_At_Edge();
    void Hover(const QPointF& at);
    void Show_Figure(const QPointF& at, const QString& text);
    void Show_Gesture_Figure(const QPointF& at);
    void Hide_Figure();
    void End_Gesture();
    // roll_view_keys.cpp
    bool Handles(const QKeyEvent& event) const;
    bool Run_Command_Key(const QKeyEvent& event);
    bool Move_Cursor(const QKeyEvent& event);
    bool Edit_By_Key(const QKeyEvent& event);
    bool Step_Event(bool next);
    void Select_At_Cursor();
    void Insert_At_Cursor();
    void Tell_Focus();
    void Cursor_Into_View();

    Session& session;
    Theme& theme;
    Event_Display& display;
    Event_Edits& edits;
    Roll_Window viewed;
    Roll_Gesture gesture;
    Roll_Tool tool = Roll_Tool::Select;
    bool placed = false; ///< the notes were brought into view once it had its size
    bool toolOnce = false;
    bool recording = false;
    std::size_t takeShown = 0; ///< notes of the take that were drawn
    std::int32_t takenChannel = NOT_GIVEN;
    std::vector<Ev_Display_Row> growing; ///< notes that are held down and not in the take yet
    bool copyMode = false;
    QPixmap picture;
    bool pictureValid = false;
    std::vector<Mark_Flag> flags;
    std::vector<QRectF> flagBoxes;
    double line = 0.0;
    double cursorBeat = 0.0;
    int cursorNote = 60;
    QPointF wheelRest;        ///< of small turns, pixels
    int zoomRest = 0;         ///< the same, in parts of a notch
    bool cursorShown = false; ///< the keyboard was used last
    QTimer edgeTimer;
    QPointF dragAt;
    Qt::KeyboardModifiers dragModifiers;
    QString figure;
    QRect figurePlace;
};

} // namespace tonvex
