#pragma once

#include "app/session.h"
#include "editors/event_display.h"
#include "editors/event_texts.h"
#include "editors/roll_geometry.h"
#include "editors/roll_gesture.h"
#include "editors/windows/roll_layout.h"
#include "widgets/mark_flags.h"
#include "widgets/theme.h"

#include <QPainter>

#include <vector>

namespace tonvex {

/// What of the roll is in view.
struct Roll_Window {
    double ScrollX = 0.0; ///< pixels of the drawing surface at the left of the roll
    double ScrollY = 0.0;
    Roll_Geometry Geometry;
    Roll_Options Options;
    int PianoWidth = 60; ///< pixels of the column of keys
    bool Drums = false;  ///< the keys are drums, told by name
};

/// Draws the roll for what a window shows of it. Costs what is in view. Interface thread.
class Roll_Painter {
public:
    Roll_Painter(const Session& owner, const Theme& look, const Roll_Window& shown, const QSize& size)
        : session(owner), theme(look), window(shown), layout(look, size, shown.Options, shown.PianoWidth) {}

    /// All that stands still while the song plays and a gesture goes on.
    void Draw_Picture(QPainter& painter, Event_Display& display, std::vector<Mark_Flag>& flags,
                      std::vector<QRectF>& flagBoxes);
    /// What the gesture stands for, over the picture.
    void Draw_Gesture(QPainter& painter, Event_Display& display, const Roll_Gesture& gesture);
    void Draw_Cursor(QPainter& painter, double beat, int note, double length);
    /// What a take has so far: events in the channel's colour, without captions.
    void Draw_Rows(QPainter& painter, std::int32_t channelId, const std::vector<Ev_Display_Row>& rows);
    static QString Lane_Caption() { return QObject::tr("Volume"); }

    const Roll_Layout& Layout() const noexcept { return layout; }
    double X_Of(double beat) const {
        return layout.Roll.left() + window.Geometry.X_Of(beat) - window.ScrollX;
    }
    double Y_Of_Note(int note) const {
        return layout.Roll.top() + window.Geometry.Y_Of_Note(note) - window.ScrollY;
    }
    double Beat_At(double x) const {
        return window.Geometry.Beat_At(x - layout.Roll.left() + window.ScrollX);
    }
    /// Box of an event in the widget.
    QRectF Box_Of(const Ev_Display_Row& row) const { return In_Widget(window.Geometry.Box_Of(row)); }
    /// found(box) for the event's box, then for those of a chord's other notes.
    template <typename Found>
    void Visit_Boxes(const Ev_Display_Row& row, const Found& found) const {
        window.Geometry.Visit_Boxes(row, [&](const Roll_Box& box) { found(In_Widget(box)); });
    }
    double Lane_Y(int volume) const;
    /// How the channel's events are named.
    Event_Names Names(std::int32_t channelId) const;

private:
    QRectF In_Widget(const Roll_Box& box) const;
    bool In_View(const QRectF& box) const {
        return box.bottom() >= layout.Roll.top() && box.top() <= layout.Roll.bottom();
    }
    void Draw_Rows(QPainter& painter);
    void Draw_Piano(QPainter& painter);
    void Draw_Key(QPainter& painter, int note);
    void Draw_Drum(QPainter& painter, int note);
    void Draw_Reference(QPainter& painter, int note);
    void Draw_Grid(QPainter& painter, const QRect& area);
    void Draw_Header(QPainter& painter, std::vector<Mark_Flag>& flags, std::vector<QRectF>& flagBoxes);
    void Draw_Rule(QPainter& painter);
    void Draw_Chords(QPainter& painter);
    void Draw_Views(QPainter& painter, Event_Display& display);
    void Draw_Events(QPainter& painter, Event_Display& display);
    void Draw_Chord_Notes(QPainter& painter, const Ev_Display_Row& row, const QColor& colour);
    void Draw_Ghost(QPainter& painter, const Ev_Display_Row& row, const QColor& colour);
    void Draw_Event(QPainter& painter, const QRectF& box, const QColor& colour, bool selected);
    void Draw_Outline(QPainter& painter, const QRectF& box);
    void Draw_Lane(QPainter& painter, Event_Display& display);
    void Draw_Stick(QPainter& painter, const Ev_Display_Row& row, int volume, const QColor& colour);
    QColor Channel_Colour(std::int32_t channelId) const;
    int Bars_Per_Number() const;

    const Session& session;
    const Theme& theme;
    const Roll_Window& window;
    Roll_Layout layout;
};

} // namespace tonvex
