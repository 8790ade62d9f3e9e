#include "editors/windows/roll_view.h"

#include "base/rounding.h"
#include "editors/windows/roll_faces.h"
#include "platform/qt/core_words.h"
#include "widgets/tool_button.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
/// Bars that can be scrolled to behind the song's end.
constexpr double BARS_BEHIND = 8.0;
constexpr int EDGE_MS = 30;
constexpr int MIDDLE_NOTE = 66;
constexpr int MOST_PIANO = 150;

} // namespace

Roll_View::Roll_View(Session& owner, Theme& look, Event_Display& shown, Event_Edits& changes, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), display(shown), edits(changes),
      gesture(display, viewed.Geometry, edits) {
    Install_Roll_Faces();
    setObjectName(QStringLiteral("roll"));
    setAccessibleName(tr("Events"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWhatsThis(tr("Arrows: move the cursor. Tab: the next event. Space: select. Insert: add a note, with "
                    "Alt a chord. Delete: delete. "
                    "Alt with arrows: move the selection. Shift with left and right: change its length. "
                    "Ctrl with up and down: an octave."));
    edgeTimer.setInterval(EDGE_MS);
    connect(&edgeTimer, &QTimer::timeout, this, &Roll_View::Scroll_At_Edge);
    connect(&theme, &Theme::Changed, this, [this] {
        Take_Scale();
        Changed();
    });
    line = session.transport.PlayPosition;
    Take_Scale();
}

Roll_View::~Roll_View() = default;

void Roll_View::Take_Scale() {
    const double factor = theme.Scale() / viewed.Geometry.Scale;
    viewed.Geometry.Scale = theme.Scale();
    viewed.ScrollX *= factor;
    viewed.ScrollY *= factor;
    pictureValid = false;
}

/// Wide enough for what stands there: the keys, the lane's caption, the names of the drums.
void Roll_View::Fit_Piano() {
    const Event_Names names = Painter().Names(display.Channel());
    const QFontMetrics metrics(theme.Font(Text_Size::Caption));
    int width =
        std::max(theme.Px(60), metrics.horizontalAdvance(Roll_Painter::Lane_Caption()) + theme.Px(12));
    if (names.drums)
        for (const std::string& name : session.notes.DrumSoundNames)
            width = std::max(width, metrics.horizontalAdvance(QString::fromStdString(name)) + theme.Px(14));
    width = std::min(width, theme.Px(MOST_PIANO));
    viewed.Drums = names.drums;
    if (std::exchange(viewed.PianoWidth, width) != width)
        Scroll_To(viewed.ScrollX, viewed.ScrollY);
}

// ---- view ----

void Roll_View::Set_Options(const Roll_Options& options) {
    viewed.Options = options;
    Scroll_To(viewed.ScrollX, viewed.ScrollY);
    Changed();
}

void Roll_View::Set_Tool(Roll_Tool wanted, bool once) {
    toolOnce = once;
    if (tool == wanted)
        return;
    tool = wanted;
    setCursor(tool == Roll_Tool::Select ? Qt::ArrowCursor : Qt::CrossCursor);
    emit toolChanged();
}

double Roll_View::Scroll_Most_X() const {
    const double end = std::max({session.project.SongLength, line, cursorBeat}) + BARS_BEHIND * BEATS_PER_BAR;
    return std::max(0.0, viewed.Geometry.X_Of(end) - Painter().Layout().Roll.width());
}

double Roll_View::Scroll_Most_Y() const {
    return std::max(0.0, viewed.Geometry.Total_Height() - Painter().Layout().Roll.height());
}

void Roll_View::Scroll_To(double x, double y) {
    const double newX = std::floor(std::clamp(x, 0.0, Scroll_Most_X()));
    const double newY = std::floor(std::clamp(y, 0.0, Scroll_Most_Y()));
    if (newX == viewed.ScrollX && newY == viewed.ScrollY)
        return;
    viewed.ScrollX = newX;
    viewed.ScrollY = newY;
    pictureValid = false;
    update();
    emit scrolled();
}

void Roll_View::Set_Zoom(int zoomIndex, double x) {
    if (gesture.Is_On() || zoomIndex == viewed.Geometry.ZoomIndex)
        return;
    const Roll_Painter before = Painter();
    const double beat = before.Beat_At(x);
    viewed.Geometry.ZoomIndex = zoomIndex;
    pictureValid = false;
    Scroll_To(viewed.Geometry.X_Of(beat) - (x - before.Layout().Roll.left()), viewed.ScrollY);
    update();
    emit zoomed(zoomIndex);
    emit scrolled();
}

void Roll_View::Show_Notes() {
    std::vector<std::uint8_t> notes;
    for (const Ev_Display_Row& row : display.Own().Rows())
        if (Has_Length(row.Kind))
            notes.push_back(row.Note);
    // As many lie above it as below: one note far out does not take the others out of view.
    const auto half = notes.begin() + static_cast<std::ptrdiff_t>(notes.size() / 2);
    std::nth_element(notes.begin(), half, notes.end());
    const double middle = notes.empty() ? MIDDLE_NOTE : *half;
    const double y = (Roll_Geometry::NOTE_ROWS - 0.5 - middle) * viewed.Geometry.RowHeight();
    Scroll_To(viewed.ScrollX, y - Painter().Layout().Roll.height() / 2.0);
}

void Roll_View::Bring_Into_View(const Ev_Display_Row& row) {
    const QRect area = Painter().Layout().Roll;
    const Roll_Box box = viewed.Geometry.Box_Of(row);
    double x = viewed.ScrollX;
    double y = viewed.ScrollY;
    if (box.Left < x || box.Left + std::min<double>(box.Width, theme.Px(40)) > x + area.width())
        x = box.Left - area.width() / 4.0;
    if (box.Top < y || box.Bottom() > y + area.height())
        y = box.Top - area.height() / 2.0;
    Scroll_To(x, y);
}

void Roll_View::Bring_Selection_Into_View() {
    const Roll_Painter painter = Painter();
    const QRectF area(painter.Layout().Roll);
    const Ev_Display_Row* first = nullptr;
    for (const Ev_Display_Row& row : display.Own().Rows()) {
        if (!row.Selected)
            continue;
        if (painter.Box_Of(row).intersects(area))
            return;
        first = first == nullptr ? &row : first;
    }
    if (first != nullptr)
        Bring_Into_View(*first);
}

std::int32_t Roll_View::Channel_Behind(const QPoint& at) const {
    const Roll_Layout layout = Painter().Layout();
    const Roll_Point place = Surface(at);
    for (int n = display.CView_GetTotalChannels(); layout.Roll.contains(at) && n-- > 0;) {
        const CView& other = display.CView_GetData(n);
        if (other.Visible && viewed.Geometry.Hit(other.Events, place.X, place.Y) >= 0)
            return other.ChannelID;
    }
    return NOT_GIVEN;
}

void Roll_View::Changed() {
    Fit_Piano();
    pictureValid = false;
    update();
}

// ---- a take ----

void Roll_View::Set_Recording(bool on) {
    if (recording == on)
        return;
    recording = on;
    takeShown = 0;
    takenChannel = display.Channel();
    growing.clear();
    display.Clear_Take();
    Changed();
}

void Roll_View::Show_Take() {
    const std::vector<Ev_Display_Row>& take = display.Take();
    if (!recording || takeShown >= take.size())
        return;
    // The hint of the empty roll goes with the first note.
    if (takeShown == 0 && display.Last_Own().Rows().empty())
        Changed();
    const QRect area = Painter().Layout().Roll;
    for (std::size_t i = takeShown; i < take.size(); ++i) {
        Painter().Visit_Boxes(take[i], [&](const QRectF& box) { update(box.toAlignedRect() & area); });
        // Its key is down again already.
        for (Ev_Display_Row& row : growing)
            if (row.Note == take[i].Note)
                row.StartTime = std::max(row.StartTime, take[i].End());
    }
    Bring_Note_Into_View(take.back().Note);
    takeShown = take.size();
}

void Roll_View::Bring_Note_Into_View(int note) {
    const QRect area = Painter().Layout().Roll;
    const double y = viewed.Geometry.Y_Of_Note(note) - viewed.ScrollY;
    if (viewed.Options.AutoScroll && !gesture.Is_On() &&
        (y < 0.0 || y + viewed.Geometry.RowHeight() > area.height() + 1.0))
        Scroll_To(viewed.ScrollX, viewed.ScrollY + y - area.height() / 2.0);
}

/// A note whose key is down grows with the line, until the take has it.
void Roll_View::Follow_Keys(double beats) {
    const QRect area = Painter().Layout().Roll;
    const auto redraw = [&](const Ev_Display_Row& row) {
        update(Painter().Box_Of(row).toAlignedRect() & area);
    };
    const bool follows = recording && display.Channel() == takenChannel;
    for (int note = 0; note < 128; ++note) {
        const auto found = std::find_if(growing.begin(), growing.end(),
                                        [&](const Ev_Display_Row& row) { return row.Note == note; });
        const bool isDown = follows && session.transport.LiveNotes[static_cast<std::size_t>(note)] > 0;
        if (!isDown && found != growing.end()) {
            redraw(*found);
            growing.erase(found);
        } else if (isDown && found == growing.end()) {
            Ev_Display_Row row;
            row.Note = static_cast<std::uint8_t>(note);
            row.StartTime = beats;
            if (growing.empty() && display.Take().empty() && display.Last_Own().Rows().empty())
                Changed(); // the hint of the empty roll goes
            growing.push_back(row);
            Bring_Note_Into_View(note);
        }
    }
    for (Ev_Display_Row& row : growing) {
        row.Length = std::max(0.0, beats - row.StartTime);
        redraw(row);
    }
}

void Roll_View::Bring_Take_Into_View() {
    const std::vector<Ev_Display_Row>& take = display.Take();
    if (take.empty() || gesture.Is_On())
        return;
    double begin = take.front().StartTime;
    double end = begin;
    int low = 127;
    int high = 0;
    for (const Ev_Display_Row& row : take) {
        begin = std::min(begin, row.StartTime);
        end = std::max(end, row.End());
        low = std::min<int>(low, row.Note);
        high = std::max<int>(high, row.Note);
    }
    const QRect area = Painter().Layout().Roll;
    const Roll_Geometry& g = viewed.Geometry;
    double x = viewed.ScrollX;
    double y = viewed.ScrollY;
    if (g.X_Of(begin) < x || g.X_Of(end) > x + area.width())
        x = g.X_Of(begin) - theme.Px(40);
    if (g.Y_Of_Note(high) < y || g.Y_Of_Note(low) + g.RowHeight() > y + area.height())
        y = (g.Y_Of_Note(high) + g.Y_Of_Note(low) + g.RowHeight() - area.height()) / 2.0;
    Scroll_To(x, y);
}

void Roll_View::Set_Cursor(double beat, int note) {
    cursorBeat = std::clamp(Tidy_Beats(beat), 0.0, MAX_EVENT_BEATS);
    cursorNote = std::clamp(note, 1, 127);
    update();
}

QPoint Roll_View::Cursor_Place() const {
    const Roll_Painter painter = Painter();
    const QRect area = painter.Layout().Roll;
    return {static_cast<int>(std::clamp<double>(painter.X_Of(cursorBeat), area.left(), area.right())),
            static_cast<int>(std::clamp<double>(painter.Y_Of_Note(cursorNote), area.top(), area.bottom()))};
}

QString Roll_View::Spoken(std::int32_t eventId) const {
    const ChannelClass* store = display.Store();
    const auto read = store == nullptr ? std::nullopt : store->ReadEvent(store->GetEvent_I(eventId));
    if (!read)
        return {};
    return Core_Words(
        Spoken_Text(*read, store->GetEvent_Length(read->EventI), Painter().Names(display.Channel())));
}

// ---- play line ----

QRect Roll_View::Line_Place(double beats) const {
    const Roll_Painter painter = Painter();
    const int x = static_cast<int>(std::floor(painter.X_Of(beats)));
    return QRect(x - 1, painter.Layout().Rule.top(), theme.Px(2) + 2, height()) &
           QRect(painter.Layout().Left, 0, width(), height());
}

void Roll_View::Move_Line(double beats, bool follow) {
    Follow_Keys(beats);
    const QRect before = Line_Place(line);
    line = beats;
    const QRect area = Painter().Layout().Roll;
    const double x = viewed.Geometry.X_Of(beats) - viewed.ScrollX;
    // A line that runs turns the page a little early; one that is set stays where it was set.
    const double last = area.width() * (session.transport.Song_Runs() ? 0.9 : 1.0);
    if (follow && !gesture.Is_On() && (x < 0.0 || x > last)) {
        Scroll_To(viewed.Geometry.X_Of(beats) - area.width() * 0.1, viewed.ScrollY);
        return;
    }
    const QRect now = Line_Place(line);
    if (now == before)
        return;
    update(before);
    update(now);
}

// ---- painting ----

QSize Roll_View::sizeHint() const {
    return {theme.Px(800), theme.Px(480)};
}

QSize Roll_View::minimumSizeHint() const {
    return {theme.Px(320), theme.Px(108)};
}

void Roll_View::Draw_Picture() {
    const double ratio = devicePixelRatioF();
    if (picture.size() != size() * ratio) {
        picture = QPixmap(size() * ratio);
        picture.setDevicePixelRatio(ratio);
    }
    QPainter painter(&picture);
    Painter().Draw_Picture(painter, display, flags, flagBoxes);
    const ChannelClass* store = display.Store();
    const bool empty =
        store == nullptr || (store->GetTotalEvents() < 0 && display.Take().empty() && growing.empty());
    if (empty) {
        painter.setFont(theme.Font(Text_Size::Lead));
        painter.setPen(theme.Tokens().dim);
        painter.drawText(Painter().Layout().Roll, Qt::AlignCenter,
                         store == nullptr ? tr("Select a channel (S) to see its events.")
                         : recording      ? tr("Recording. What you play appears here.")
                                          : tr("No events yet. Press Ctrl+R and play."));
    }
    pictureValid = true;
}

void Roll_View::paintEvent(QPaintEvent* event) {
    if (!pictureValid)
        Draw_Picture();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.drawPixmap(0, 0, picture);
    Roll_Painter over = Painter();
    over.Draw_Rows(painter, display.Channel(), display.Take());
    over.Draw_Rows(painter, takenChannel, growing);
    if (gesture.Is_On())
        over.Draw_Gesture(painter, display, gesture);
    const QRect place = Line_Place(line);
    if (!place.isEmpty() && place.intersects(event->rect()))
        painter.fillRect(QRectF(std::max<double>(std::floor(over.X_Of(line)), over.Layout().Left),
                                over.Layout().Rule.top(), theme.Px(2), height()),
                         theme.Tokens().record);
    if (hasFocus() && cursorShown)
        over.Draw_Cursor(painter, cursorBeat, cursorNote,
                         Edit_Grid{true, session.editorSetup.AlignDiv}.Step());
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, QRectF(over.Layout().Roll), 0);
    if (!figure.isEmpty()) {
        const Theme_Tokens& t = theme.Tokens();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(t.line);
        painter.setBrush(t.control);
        painter.drawRoundedRect(QRectF(figurePlace).adjusted(0.5, 0.5, -0.5, -0.5), theme.Px(5), theme.Px(5));
        painter.setFont(theme.Font(Text_Size::Caption));
        painter.setPen(t.text);
        painter.drawText(figurePlace, Qt::AlignCenter, figure);
    }
}

void Roll_View::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!placed)
        Show_Notes();
    placed = true;
}

void Roll_View::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    pictureValid = false;
    Scroll_To(viewed.ScrollX, viewed.ScrollY);
    emit scrolled();
}

} // namespace tonvex
