#include "editors/windows/roll_painter.h"

#include "platform/qt/core_words.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
/// Other channels, on a dark and on a light ground.
constexpr float PALE = 0.25F;
constexpr float PALE_ON_LIGHT = 0.42F;
constexpr float GHOST = 0.55F;
/// The other notes of a chord, against its first, which bears its name.
constexpr float CHORD_NOTE = 0.45F;
/// Lines closer than this are left out, in design pixels.
constexpr double LEAST_BEAT_PIXELS = 7.0;
constexpr double LEAST_STEP_PIXELS = 16.0;

bool Is_Black(int note) {
    switch (note % 12) {
    case 1:
    case 3:
    case 6:
    case 8:
    case 10:
        return true;
    default:
        return false;
    }
}

QColor With_Alpha(QColor colour, float alpha) {
    colour.setAlphaF(alpha);
    return colour;
}

QString From(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

// ---- places ----

QRectF Roll_Painter::In_Widget(const Roll_Box& box) const {
    // A pixel of air between touching events.
    return {layout.Roll.left() + box.Left - window.ScrollX,
            layout.Roll.top() + box.Top - window.ScrollY + 1.0, std::max(box.Width - 1.0, 2.0),
            box.Height - 2.0};
}

double Roll_Painter::Lane_Y(int volume) const {
    const double room = layout.Lane.height() - theme.Px(12);
    return layout.Lane.bottom() - theme.Px(2) - room * volume / 127.0;
}

QColor Roll_Painter::Channel_Colour(std::int32_t channelId) const {
    return theme.Tokens().Channel(session.channels->ChannelI(channelId));
}

Event_Names Roll_Painter::Names(std::int32_t channelId) const {
    const int row = session.channels->ChannelI(channelId);
    const bool drums =
        row >= 0 &&
        Is_On(session.channels
                  ->OutputSlots[session.channels->Channels[static_cast<std::size_t>(row)].OutputChannel %
                                GlobalChannelsManager::SLOTS]
                  .SlotDrums);
    return {session.notes, *session.channels, drums, window.Options.NoteNumbers};
}

int Roll_Painter::Bars_Per_Number() const {
    const double barPixels = window.Geometry.X_Of(BEATS_PER_BAR);
    int bars = 1;
    while (bars < 1024 && barPixels * bars < theme.Px(36))
        bars *= 2;
    return bars;
}

// ---- the picture ----

void Roll_Painter::Draw_Picture(QPainter& painter, Event_Display& display, std::vector<Mark_Flag>& flags,
                                std::vector<QRectF>& flagBoxes) {
    painter.fillRect(painter.viewport(), theme.Tokens().panel);
    display.Update_View();
    painter.save();
    painter.setClipRect(layout.Roll);
    Draw_Rows(painter);
    Draw_Grid(painter, layout.Roll);
    Draw_Views(painter, display);
    Draw_Events(painter, display);
    painter.restore();
    Draw_Lane(painter, display);
    Draw_Piano(painter);
    Draw_Header(painter, flags, flagBoxes);
}

void Roll_Painter::Draw_Rows(QPainter& painter) {
    const Theme_Tokens& t = theme.Tokens();
    const double height = window.Geometry.RowHeight();
    const int first = std::max(0, window.Geometry.Row_At(window.ScrollY));
    const int last =
        std::min(Roll_Geometry::NOTE_ROWS - 1, window.Geometry.Row_At(window.ScrollY + layout.Roll.height()));
    const QColor shade = With_Alpha(t.window, 0.85F);
    for (int row = first; row <= last; ++row) {
        const int note = Roll_Geometry::NOTE_ROWS - 1 - row;
        const double y = Y_Of_Note(note);
        if (Is_Black(note))
            painter.fillRect(QRectF(layout.Roll.left(), y, layout.Roll.width(), height), shade);
        if (note % 12 == 0 || window.Options.ReferenceLines) {
            painter.setPen(note % 12 == 0 ? t.gridBar : t.gridBeat);
            painter.drawLine(QPointF(layout.Roll.left(), y + height - 0.5),
                             QPointF(layout.Roll.right() + 1, y + height - 0.5));
        }
    }
}

void Roll_Painter::Draw_Grid(QPainter& painter, const QRect& area) {
    const Theme_Tokens& t = theme.Tokens();
    const double beatPixels = window.Geometry.Pixels_Per_Beat();
    const int divisions = Grid_Divisions(session.editorSetup.AlignDiv);
    const bool beats = window.Options.Beats && beatPixels >= LEAST_BEAT_PIXELS * window.Geometry.Scale;
    const bool steps = beats && beatPixels / divisions >= LEAST_STEP_PIXELS * window.Geometry.Scale;
    const int bars = Bars_Per_Number();
    const double end = Beat_At(area.right() + 1);
    const QColor fine = With_Alpha(t.gridBeat, 0.6F);
    for (double beat = std::max(0.0, std::floor(Beat_At(area.left()))); beat < end; beat += 1.0) {
        const bool bar = std::fmod(beat, BEATS_PER_BAR) == 0.0;
        const double x = std::floor(X_Of(beat)) + 0.5;
        const bool dense = bar && static_cast<int>(beat / BEATS_PER_BAR) % bars != 0;
        if (bar ? window.Options.Bars && !dense : beats) {
            painter.setPen(bar ? t.gridBar : t.gridBeat);
            painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom() + 1));
        }
        for (int step = 1; steps && step < divisions; ++step) {
            const double at = std::floor(X_Of(beat + static_cast<double>(step) / divisions)) + 0.5;
            painter.setPen(fine);
            painter.drawLine(QPointF(at, area.top()), QPointF(at, area.bottom() + 1));
        }
    }
}

void Roll_Painter::Draw_Piano(QPainter& painter) {
    const Theme_Tokens& t = theme.Tokens();
    painter.save();
    painter.setClipRect(layout.Piano);
    const int first = std::max(0, window.Geometry.Row_At(window.ScrollY));
    const int last = std::min(Roll_Geometry::NOTE_ROWS - 1,
                              window.Geometry.Row_At(window.ScrollY + layout.Piano.height()));
    painter.setFont(theme.Font(Text_Size::Caption));
    for (int row = first; row <= last; ++row) {
        const int note = Roll_Geometry::NOTE_ROWS - 1 - row;
        window.Drums ? Draw_Drum(painter, note) : Draw_Key(painter, note);
    }
    painter.restore();
    painter.setPen(t.line);
    painter.drawLine(QPointF(layout.Left - 0.5, layout.Piano.top()),
                     QPointF(layout.Left - 0.5, layout.Piano.bottom() + 1));
}

void Roll_Painter::Draw_Key(QPainter& painter, int note) {
    const Theme_Tokens& t = theme.Tokens();
    const int black = theme.Px(38);
    const QRectF key(0, Y_Of_Note(note), layout.Left, window.Geometry.RowHeight());
    painter.fillRect(key, t.ivory);
    if (Is_Black(note))
        painter.fillRect(QRectF(0, key.top(), black, key.height()), t.ebony);
    // Black keys stand in the middle of the gap that their neighbours share.
    painter.setPen(t.keyLine);
    const double lineY = Is_Black(note) ? key.center().y() : key.bottom() - 0.5;
    if (Is_Black(note) || note % 12 == 0 || note % 12 == 5)
        painter.drawLine(QPointF(Is_Black(note) ? black : 0, lineY), QPointF(layout.Left, lineY));
    if (note % 12 == 0 || (window.Options.ReferenceLines && !Is_Black(note))) {
        painter.setPen(t.keyLabel);
        painter.drawText(key.adjusted(0, 0, -theme.Px(6), 0), Qt::AlignRight | Qt::AlignVCenter,
                         From(session.notes.NoteName(note)));
    }
}

void Roll_Painter::Draw_Drum(QPainter& painter, int note) {
    const Theme_Tokens& t = theme.Tokens();
    const QRectF pad(0, Y_Of_Note(note), layout.Left, window.Geometry.RowHeight());
    painter.setPen(t.gridBeat);
    painter.drawLine(QPointF(0, pad.bottom() - 0.5), QPointF(layout.Left, pad.bottom() - 0.5));
    const Event_Names named{session.notes, *session.channels, true, window.Options.NoteNumbers};
    const std::string name = Note_Text(note, named);
    const bool drum = name != Note_Text(note, {named.notes, named.channels, false, named.noteNumbers});
    painter.setPen(drum ? t.text : t.dim);
    const int side = drum ? Qt::AlignLeft : Qt::AlignRight;
    const QRectF room = pad.adjusted(theme.Px(8), 0, -theme.Px(4), 0);
    painter.drawText(
        room, side | Qt::AlignVCenter,
        QFontMetrics(painter.font()).elidedText(From(name), Qt::ElideRight, static_cast<int>(room.width())));
}

/// Where the hand is on the piano: its row, and its key with the name.
void Roll_Painter::Draw_Reference(QPainter& painter, int note) {
    const Theme_Tokens& t = theme.Tokens();
    const double height = window.Geometry.RowHeight();
    painter.save();
    painter.setClipRect(layout.Piano.united(layout.Roll));
    painter.fillRect(QRectF(layout.Roll.left(), Y_Of_Note(note), layout.Roll.width(), height),
                     With_Alpha(t.accent, 0.14F));
    const QRectF key(0, Y_Of_Note(note), layout.Left - 1, height);
    painter.fillRect(key, t.accent);
    painter.setPen(Text_On(t.accent));
    painter.setFont(theme.Font(Text_Size::Caption, QFont::DemiBold));
    const Event_Names named{session.notes, *session.channels, window.Drums, false};
    const int side = window.Drums ? Qt::AlignLeft : Qt::AlignRight;
    painter.drawText(key.adjusted(theme.Px(8), 0, -theme.Px(6), 0), side | Qt::AlignVCenter,
                     From(Note_Text(note, named)));
    painter.restore();
}

void Roll_Painter::Draw_Views(QPainter& painter, Event_Display& display) {
    painter.setPen(Qt::NoPen);
    painter.setRenderHint(QPainter::Antialiasing);
    const float alpha = theme.Tokens().panel.lightness() > 127 ? PALE_ON_LIGHT : PALE;
    for (int n = 0; n < display.CView_GetTotalChannels(); ++n) {
        const CView& view = display.CView_GetData(n);
        if (!view.Visible)
            continue;
        painter.setBrush(With_Alpha(Channel_Colour(view.ChannelID), alpha));
        view.Events.Visit(Beat_At(layout.Roll.left()), Beat_At(layout.Roll.right() + 1), [&](std::size_t i) {
            Visit_Boxes(view.Events.Rows()[i], [&](const QRectF& box) {
                if (In_View(box))
                    painter.drawRoundedRect(box, theme.Px(3), theme.Px(3));
            });
        });
    }
}

void Roll_Painter::Draw_Chord_Notes(QPainter& painter, const Ev_Display_Row& row, const QColor& colour) {
    bool own = true;
    Visit_Boxes(row, [&](const QRectF& box) {
        if (!std::exchange(own, false) && In_View(box))
            Draw_Event(painter, box, With_Alpha(colour, CHORD_NOTE), row.Selected);
    });
}

void Roll_Painter::Draw_Ghost(QPainter& painter, const Ev_Display_Row& row, const QColor& colour) {
    float alpha = GHOST;
    Visit_Boxes(row, [&](const QRectF& box) {
        Draw_Event(painter, box, With_Alpha(colour, alpha), true);
        alpha = GHOST * CHORD_NOTE;
    });
}

void Roll_Painter::Draw_Rows(QPainter& painter, std::int32_t channelId,
                             const std::vector<Ev_Display_Row>& rows) {
    if (rows.empty())
        return;
    painter.save();
    painter.setClipRect(layout.Roll, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = Channel_Colour(channelId);
    const QRectF shown = painter.clipBoundingRect();
    for (const Ev_Display_Row& row : rows) {
        if (!Box_Of(row).intersects(QRectF(shown.left(), -1e9, shown.width(), 2e9)))
            continue;
        Draw_Chord_Notes(painter, row, colour);
        Draw_Event(painter, Box_Of(row), colour, false);
    }
    painter.restore();
}

void Roll_Painter::Draw_Event(QPainter& painter, const QRectF& box, const QColor& colour, bool selected) {
    const double radius = std::min<double>(theme.Px(3), box.width() / 3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(box, radius, radius);
    if (selected)
        Draw_Outline(painter, box);
}

void Roll_Painter::Draw_Outline(QPainter& painter, const QRectF& box) {
    const double radius = std::min<double>(theme.Px(3), box.width() / 3);
    const double half = theme.Scale() * 0.45;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.Tokens().text, 4 * half));
    painter.drawRoundedRect(box.adjusted(half, half, -half, -half), radius, radius);
}

void Roll_Painter::Draw_Events(QPainter& painter, Event_Display& display) {
    const ChannelClass* store = display.Store();
    if (store == nullptr)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = Channel_Colour(display.Channel());
    const QColor ink = Text_On(colour);
    const Event_Names names = Names(display.Channel());
    painter.setFont(theme.Font(Text_Size::Caption, QFont::DemiBold));
    const QFontMetrics metrics(painter.font());
    const int air = theme.Px(6);
    const int seam = theme.Px(1);
    const int least = metrics.horizontalAdvance(QLatin1Char('A')) + 2 * air;
    const Event_List& events = display.Own();
    const auto draw = [&](std::size_t i) {
        const Ev_Display_Row& row = events.Rows()[i];
        QRectF box = Box_Of(row);
        if (!In_View(box))
            return;
        // A seam, so that a note that touches or covers another of its height is seen to begin.
        if (box.width() > air)
            painter.fillRect(QRectF(box.left() - seam, box.top(), seam, box.height()), theme.Tokens().panel);
        Draw_Event(painter, box, colour, row.Selected);
        // What began left of the view bears its name all the same.
        box.setLeft(std::max<double>(box.left(), layout.Roll.left()));
        if (box.width() < least)
            return;
        const auto event = store->ReadEvent(store->GetEvent_I(row.EventID));
        if (!event)
            return;
        // The whole text where there is room, else the name, else nothing.
        QString text = Core_Words(Event_Text(*event, names));
        if (metrics.horizontalAdvance(text) > box.width() - 2 * air)
            text = From(Short_Text(*event, names));
        if (event->Note != nullptr && !names.drums && metrics.horizontalAdvance(text) > box.width() - air)
            return;
        painter.setPen(ink);
        painter.drawText(box.adjusted(air, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(text, Qt::ElideRight, static_cast<int>(box.width()) - air));
    };
    const double from = Beat_At(layout.Roll.left()) - window.Geometry.Beat_At(Roll_Geometry::LEAST_WIDTH);
    const double to = Beat_At(layout.Roll.right() + 1);
    events.Visit(from, to, [&](std::size_t i) {
        if (events.Rows()[i].ChordCount > 1)
            Draw_Chord_Notes(painter, events.Rows()[i], colour);
    });
    events.Visit(from, to, draw);
}

// ---- the volume lane ----

void Roll_Painter::Draw_Stick(QPainter& painter, const Ev_Display_Row& row, int volume,
                              const QColor& colour) {
    const double x = std::floor(X_Of(row.StartTime)) + theme.Px(3) / 2.0 + 1.0;
    const double y = Lane_Y(volume);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRect(QRectF(x - theme.Px(3) / 2.0, y, theme.Px(3), layout.Lane.bottom() - y));
    const double radius = theme.Px(4);
    painter.setPen(row.Selected ? QPen(theme.Tokens().text, theme.Scale() * 1.8) : QPen(Qt::NoPen));
    painter.drawEllipse(QPointF(x, y), radius, radius);
}

void Roll_Painter::Draw_Lane(QPainter& painter, Event_Display& display) {
    if (layout.Lane.isEmpty())
        return;
    const Theme_Tokens& t = theme.Tokens();
    painter.save();
    painter.setClipRect(layout.Lane);
    Draw_Grid(painter, layout.Lane);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = Channel_Colour(display.Channel());
    const Event_List& events = display.Own();
    const double reach = window.Geometry.Beat_At(theme.Px(6));
    const double end = Beat_At(layout.Lane.right() + 1) + reach;
    for (std::size_t i = events.First_From(Beat_At(layout.Lane.left()) - reach); i < events.Rows().size();
         ++i) {
        const Ev_Display_Row& row = events.Rows()[i];
        if (row.StartTime > end)
            break;
        if (Has_Volume(row.Kind))
            Draw_Stick(painter, row, row.Vol, colour);
    }
    painter.restore();
    painter.setPen(t.line);
    painter.drawLine(QPointF(0, layout.Lane.top() + 0.5),
                     QPointF(layout.Lane.right() + 1, layout.Lane.top() + 0.5));
    painter.setFont(theme.Font(Text_Size::Caption));
    painter.setPen(t.dim);
    painter.drawText(
        QRectF(theme.Px(8), layout.Lane.top() + theme.Px(6), layout.Left - theme.Px(8), theme.Px(16)),
        Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(painter.font()).elidedText(Lane_Caption(), Qt::ElideRight, layout.Left - theme.Px(10)));
}

// ---- the header ----

void Roll_Painter::Draw_Header(QPainter& painter, std::vector<Mark_Flag>& flags,
                               std::vector<QRectF>& flagBoxes) {
    const Theme_Tokens& t = theme.Tokens();
    painter.save();
    painter.setClipRect(QRect(layout.Left, 0, layout.Roll.width(), layout.Roll.top()));
    Draw_Mark_Flags(
        painter, theme, session.marks, layout.Marks.top() + theme.Px(4),
        [this](double beat) { return X_Of(beat); }, flags, flagBoxes);
    Draw_Rule(painter);
    if (!layout.Chords.isEmpty())
        Draw_Chords(painter);
    painter.restore();
    painter.setPen(t.line);
    for (const QRect& strip : {layout.Marks, layout.Rule, layout.Chords})
        painter.drawLine(QPointF(layout.Left, strip.bottom() + 0.5),
                         QPointF(layout.Roll.right() + 1, strip.bottom() + 0.5));
    painter.drawLine(QPointF(0, layout.Roll.top() - 0.5), QPointF(layout.Left, layout.Roll.top() - 0.5));
}

void Roll_Painter::Draw_Rule(QPainter& painter) {
    const Theme_Tokens& t = theme.Tokens();
    painter.setFont(theme.Font(Text_Size::Caption));
    const QFontMetrics metrics(painter.font());
    const double end = Beat_At(layout.Rule.right() + 1);
    // Tempo changes first; a bar's number gives way to them.
    std::vector<QRectF> taken;
    for (const TempoChange& change : session.tempoChanges.In_Time_Order()) {
        const QString text = QStringLiteral("BPM: %1").arg(change.Tempo);
        const double x = X_Of(change.BeatN);
        const QRectF box(x + theme.Px(4), layout.Rule.top(), metrics.horizontalAdvance(text),
                         layout.Rule.height());
        if (change.BeatN > end || box.right() < layout.Rule.left())
            continue;
        painter.fillRect(QRectF(std::floor(x), layout.Rule.top() + theme.Px(3), theme.Px(2), theme.Px(14)),
                         t.accent);
        painter.setPen(t.accent);
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, text);
        taken.push_back(box.adjusted(-theme.Px(6), 0, theme.Px(4), 0));
    }
    const int step = Bars_Per_Number();
    const int firstBar =
        std::max(0, static_cast<int>(Beat_At(layout.Rule.left()) / BEATS_PER_BAR) / step * step);
    for (int bar = firstBar; bar * BEATS_PER_BAR < end; bar += step) {
        const QString text = QString::number(bar + 1);
        const double x = X_Of(bar * BEATS_PER_BAR);
        const QRectF box(x + theme.Px(4), layout.Rule.top(), metrics.horizontalAdvance(text),
                         layout.Rule.height());
        if (std::any_of(taken.begin(), taken.end(),
                        [&](const QRectF& other) { return other.intersects(box); }))
            continue;
        painter.setPen(t.dim);
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, text);
    }
}

void Roll_Painter::Draw_Chords(QPainter& painter) {
    const Theme_Tokens& t = theme.Tokens();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(theme.Font(Text_Size::Caption, QFont::DemiBold));
    const QFontMetrics metrics(painter.font());
    const std::vector<MCBar>& bars = session.creator.MC_Bars;
    const double end = Beat_At(layout.Chords.right() + 1);
    const double barPixels = window.Geometry.X_Of(BEATS_PER_BAR);
    for (int bar = std::max(0, static_cast<int>(Beat_At(layout.Chords.left()) / BEATS_PER_BAR));
         bar * BEATS_PER_BAR < end; ++bar) {
        const auto i = static_cast<std::size_t>(bar);
        const bool has = i < bars.size() && bar <= session.creator.LastBar && Is_On(bars[i].HasChord);
        const std::size_t type = has ? bars[i].ChordType % NotesStuff::CHORD_TYPES : 0;
        const QString text =
            has ? From(session.notes.RootName(bars[i].Root) + session.notes.ChordTypeTable[type].Suffix)
                : QStringLiteral("--");
        const QRectF box(X_Of(bar * BEATS_PER_BAR) + 1, layout.Chords.top() + theme.Px(3), barPixels - 2,
                         layout.Chords.height() - theme.Px(6));
        painter.setPen(Qt::NoPen);
        painter.setBrush(t.control);
        if (has || barPixels > theme.Px(30))
            painter.drawRoundedRect(box, theme.Px(4), theme.Px(4));
        painter.setPen(has ? t.text : t.dim);
        const int room = static_cast<int>(box.width()) - theme.Px(6);
        if (metrics.horizontalAdvance(text) <= room)
            painter.drawText(box.adjusted(theme.Px(6), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
    }
}

// ---- over the picture ----

void Roll_Painter::Draw_Gesture(QPainter& painter, Event_Display& display, const Roll_Gesture& gesture) {
    const Theme_Tokens& t = theme.Tokens();
    const Event_List& events = display.Own();
    const QColor colour = Channel_Colour(display.Channel());
    if (const auto note = gesture.Note())
        Draw_Reference(painter, *note);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(gesture.What() == Roll_Gesture::Kind::Volume ? layout.Lane : layout.Roll);
    const double from = Beat_At(layout.Roll.left());
    const double to = Beat_At(layout.Roll.right() + 1);
    switch (gesture.What()) {
    case Roll_Gesture::Kind::Move_Time:
    case Roll_Gesture::Kind::Move_Pitch:
    case Roll_Gesture::Kind::Resize: {
        const bool resize = gesture.What() == Roll_Gesture::Kind::Resize;
        const double shift = resize ? 0.0 : gesture.Beats();
        const double drop = gesture.Rows() * window.Geometry.RowHeight();
        events.Visit(
            from - shift - (resize ? std::abs(gesture.Beats()) : 0.0), to - shift, [&](std::size_t i) {
                Ev_Display_Row row = events.Rows()[i];
                if (!row.Selected)
                    return;
                row.StartTime += shift;
                if (resize && Has_Length(row.Kind))
                    row.Length = std::max(Event_Edits::LEAST_LENGTH, row.Length + gesture.Beats());
                // What stays behind fades.
                if (!gesture.Copies() && !resize)
                    Visit_Boxes(events.Rows()[i],
                                [&](const QRectF& box) { painter.fillRect(box, With_Alpha(t.panel, 0.6F)); });
                painter.translate(0, drop);
                Draw_Ghost(painter, row, colour);
                painter.translate(0, -drop);
            });
        break;
    }
    case Roll_Gesture::Kind::Draw:
        Draw_Ghost(painter, gesture.Drawn(), colour);
        break;
    case Roll_Gesture::Kind::Erase:
    case Roll_Gesture::Kind::Band:
        events.Visit(from, to, [&](std::size_t i) {
            const Ev_Display_Row& row = events.Rows()[i];
            if (gesture.What() == Roll_Gesture::Kind::Erase && gesture.Will_Be_Erased(row.EventID))
                Visit_Boxes(row, [&](const QRectF& box) {
                    painter.fillRect(box.adjusted(-1, -1, 1, 1), With_Alpha(t.panel, 0.8F));
                });
            else if (gesture.What() == Roll_Gesture::Kind::Band && gesture.Will_Be_Selected(row))
                Visit_Boxes(row, [&](const QRectF& box) { Draw_Outline(painter, box); });
        });
        if (gesture.What() == Roll_Gesture::Kind::Band) {
            const Roll_Box band = gesture.Box();
            painter.setPen(QPen(t.accent, 1));
            painter.setBrush(With_Alpha(t.accent, 0.12F));
            painter.drawRect(QRectF(layout.Roll.left() + band.Left - window.ScrollX + 0.5,
                                    layout.Roll.top() + band.Top - window.ScrollY + 0.5, band.Width,
                                    band.Height));
        }
        break;
    case Roll_Gesture::Kind::Volume:
        for (std::size_t i = events.First_From(from); i < events.Rows().size(); ++i) {
            const Ev_Display_Row& row = events.Rows()[i];
            if (row.StartTime > to)
                break;
            if (const auto volume = gesture.New_Volume(row)) {
                painter.fillRect(QRectF(X_Of(row.StartTime) - theme.Px(4), layout.Lane.top() + 1,
                                        theme.Px(11), layout.Lane.height() - 1),
                                 t.panel);
                Draw_Stick(painter, row, *volume, colour);
            }
        }
        break;
    default:
        break;
    }
    painter.restore();
}

void Roll_Painter::Draw_Cursor(QPainter& painter, double beat, int note, double length) {
    painter.save();
    painter.setClipRect(layout.Roll);
    painter.setPen(QPen(theme.Tokens().accent, theme.Px(2)));
    painter.setBrush(Qt::NoBrush);
    const double width = std::max<double>(window.Geometry.X_Of(length), theme.Px(4));
    painter.drawRect(QRectF(X_Of(beat), Y_Of_Note(note), width, window.Geometry.RowHeight()));
    painter.restore();
}

} // namespace tonvex
