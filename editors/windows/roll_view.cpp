#include "editors/windows/roll_view.h"

#include "base/rounding.h"
#include "editors/windows/roll_faces.h"
#include "platform/qt/core_words.h"
#include "widgets/tool_button.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
/// Bars that can be scrolled to behind the song's end.
constexpr double BARS_BEHIND = 8.0;
constexpr int EDGE_MS = 30;
constexpr int MIDDLE_NOTE = 66;

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
    setWhatsThis(
        tr("Arrows: move the cursor. Tab: the next event. Space: select. Insert: add a note. Delete: delete. "
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
    int low = 127;
    int high = 0;
    for (const Ev_Display_Row& row : display.Own().Rows()) {
        if (!Has_Length(row.Kind))
            continue;
        low = std::min<int>(low, row.Note);
        high = std::max<int>(high, row.Note);
    }
    const double middle = low > high ? MIDDLE_NOTE : (low + high) / 2.0;
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

void Roll_View::Changed() {
    pictureValid = false;
    update();
}

void Roll_View::Set_Cursor(double beat, int note) {
    cursorBeat = std::clamp(beat, 0.0, MAX_EVENT_BEATS);
    cursorNote = std::clamp(note, 1, 127);
    update();
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
    const QRect before = Line_Place(line);
    line = beats;
    const QRect area = Painter().Layout().Roll;
    const double x = viewed.Geometry.X_Of(beats) - viewed.ScrollX;
    if (follow && !gesture.Is_On() && (x < 0.0 || x > area.width() * 0.9)) {
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
    return {theme.Px(320), theme.Px(200)};
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
    if (store == nullptr || store->GetTotalEvents() < 0) {
        painter.setFont(theme.Font(Text_Size::Lead));
        painter.setPen(theme.Tokens().dim);
        painter.drawText(Painter().Layout().Roll, Qt::AlignCenter,
                         store == nullptr ? tr("Select a channel (S) to see its events.")
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
