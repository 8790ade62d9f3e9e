#include "widgets/song_overview.h"

#include "widgets/function_key_text.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double LEAST_BARS = 8.0;
constexpr int MOST_BARS_A_LINE = 1 << 27; ///< twice what the longest song has

bool Changes_The_Picture(int msgId) {
    switch (msgId) {
    case MSG_SONG_POSITION:
    case MSG_SHOW_POSITION:
    case MSG_POSITION_VALUE:
    case MSG_SET_VOLUME:
    case MSG_SET_PAN:
    case MSG_SET_PATCH:
    case MSG_SET_OUTPUT:
    case MSG_SPEED_LABEL:
    case MSG_RECORD_MODE:
    case MSG_REC_EVENT:
    // Single events of a batch: the closing message follows.
    case MSG_EVENT_ADDED:
    case MSG_DELETE_EVENT:
    case MSG_MOVE_EVENT:
    case MSG_LENGTH_EVENT:
    case MSG_NOTE_EVENT:
    case MSG_PROPERTIES_EVENT:
    case MSG_VOLUME_EVENT:
        return false;
    default:
        return true;
    }
}

} // namespace

double Overview_Scale::Shown_Beats(double songLength, double position) noexcept {
    const double bars = std::ceil(std::max(songLength, position) / BEATS_PER_BAR) + 1.0;
    return std::max(LEAST_BARS, bars) * BEATS_PER_BAR;
}

double Overview_Scale::Beat_At(double x) const noexcept {
    if (width <= 0.0)
        return 0.0;
    return std::clamp((x - left) / width, 0.0, 1.0) * beats;
}

int Overview_Scale::Bars_Per_Line(double minPixels) const noexcept {
    const double barPixels = width / (beats / BEATS_PER_BAR);
    int bars = 1;
    while (bars < MOST_BARS_A_LINE && barPixels * bars < minPixels)
        bars *= 2;
    return bars;
}

Song_Overview::Song_Overview(Session& owner, Theme& look, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), link(session.observers, *this) {
    setAccessibleName(tr("Song overview"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    line = session.transport.PlayPosition;
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        if (Changes_The_Picture(msgId))
            Changed();
        else if (msgId == MSG_SONG_POSITION || msgId == MSG_SHOW_POSITION)
            Move_Line(session.transport.PlayPosition);
    });
    connect(&theme, &Theme::Changed, this, &Song_Overview::Changed);
    Changed();
}

Song_Overview::~Song_Overview() {
    session.events.Unsubscribe(subscription);
}

QSize Song_Overview::minimumSizeHint() const {
    return {theme.Px(240), theme.Px(120)};
}

int Song_Overview::Note_Count() const noexcept {
    std::size_t count = 0;
    for (const Strip& strip : strips)
        count += strip.bars.size();
    return static_cast<int>(count);
}

void Song_Overview::Select(std::int32_t channelId) {
    if (channelId == selectedId)
        return;
    selectedId = channelId;
    pictureValid = false;
    update();
}

void Song_Overview::Changed() {
    Prepare();
    pictureValid = false;
    update();
}

void Song_Overview::Prepare() {
    strips.clear();
    const GlobalChannelsManager& table = *session.channels;
    bool anySolo = false;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        anySolo =
            anySolo || (table.Is_Live_Row(row) && Is_On(table.Channels[static_cast<std::size_t>(row)].Solo));
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!table.Is_Live_Row(row))
            continue;
        const GlobalChannel& channel = table.Channels[static_cast<std::size_t>(row)];
        Strip strip{channel.ChannelID,
                    row,
                    Is_On(channel.Mute) || (anySolo && !Is_On(channel.Solo)),
                    QString::fromStdString(channel.ChannelName),
                    {}};
        const ChannelClass& store = table.Store(row);
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            if (!event)
                break;
            const auto add = [&](double length, std::uint8_t note) {
                strip.bars.push_back(
                    {static_cast<float>(event->StartTime), static_cast<float>(length), note});
            };
            if (event->Note != nullptr)
                add(event->Note->Length, event->Note->Note);
            else if (const QChordData* chord = event->QChord)
                for (std::size_t n = 0; n < std::min<std::size_t>(chord->Active, chord->ChordNotes.size());
                     ++n)
                    if (const std::uint8_t note = chord->ChordNotes[n]; n == 0 || (note > 0 && note <= 127))
                        add(chord->Length, note);
        }
        strips.push_back(std::move(strip));
    }
    shownBeats = Overview_Scale::Shown_Beats(session.project.SongLength, line);
}

Overview_Scale Song_Overview::Scale() const {
    const double left = theme.Px(16);
    return {shownBeats, left, std::max(1.0, width() - 2.0 * left)};
}

QString Song_Overview::Hint() const {
    const auto with = [this](const QString& sentence, const char* function, const QString& withoutKey) {
        const QString key = Function_Key_Text(session, function);
        return key.isEmpty() ? withoutKey : sentence.arg(key);
    };
    if (strips.empty())
        return with(tr("No channel yet. Press %1 to add one."), "Add new channel",
                    tr("No channel yet. The Edit menu adds one."));
    if (Note_Count() > 0)
        return {};
    if (recording)
        return with(tr("Recording. Press %1 to stop."), "Stop recording/playing", tr("Recording."));
    return with(tr("No events yet. Press %1 and play."), "Record", tr("No events yet. Record and play."));
}

void Song_Overview::Draw_Picture() {
    const double ratio = devicePixelRatioF();
    picture = QPixmap(size() * ratio);
    picture.setDevicePixelRatio(ratio);
    const Theme_Tokens& t = theme.Tokens();
    picture.fill(t.panel);
    QPainter painter(&picture);
    const Overview_Scale scale = Scale();
    const int flagRow = theme.Px(22);
    const int ruler = flagRow + theme.Px(26);
    const double bottom = height();

    Draw_Mark_Flags(
        painter, theme, session.marks, theme.Px(3), [&scale](double beat) { return scale.X_Of(beat); }, flags,
        flagBoxes);

    const double room = bottom - ruler - theme.Px(8);
    const double each =
        strips.empty() ? room
                       : std::clamp(room / static_cast<double>(strips.size()),
                                    static_cast<double>(theme.Px(12)), static_cast<double>(theme.Px(96)));
    const double top = ruler + theme.Px(4);
    for (std::size_t at = 0; at < strips.size(); ++at)
        if (strips[at].channelId == selectedId)
            painter.fillRect(QRectF(0, top + static_cast<double>(at) * each, width(), each), t.window);

    painter.setFont(theme.Font(Text_Size::Caption));
    const int step = scale.Bars_Per_Line(theme.Px(48));
    const int bars = static_cast<int>(shownBeats / Overview_Scale::BEATS_PER_BAR);
    for (int bar = 0; bar <= bars; bar += step) {
        const double x = std::floor(scale.X_Of(bar * Overview_Scale::BEATS_PER_BAR)) + 0.5;
        painter.setPen(t.gridBeat);
        painter.drawLine(QPointF(x, ruler), QPointF(x, bottom));
        painter.setPen(t.dim);
        if (bar < bars)
            painter.drawText(QPointF(x + theme.Px(4), flagRow + theme.Px(17)), QString::number(bar + 1));
    }
    painter.setPen(t.line);
    painter.drawLine(QPointF(0, ruler - 0.5), QPointF(width(), ruler - 0.5));

    double y = top;
    for (const Strip& strip : strips) {
        Draw_Strip(painter, strip, QRectF(0, y, width(), each), scale);
        y += each;
    }
    const QString hint = Hint();
    if (!hint.isEmpty()) {
        painter.setFont(theme.Font(Text_Size::Lead));
        painter.setPen(t.dim);
        painter.drawText(QRectF(0, ruler, width(), bottom - ruler), Qt::AlignCenter, hint);
    }
    pictureValid = true;
}

void Song_Overview::Draw_Strip(QPainter& painter, const Strip& strip, const QRectF& box,
                               const Overview_Scale& scale) {
    const Theme_Tokens& t = theme.Tokens();
    painter.setPen(t.gridBeat);
    painter.drawLine(QPointF(0, box.bottom() - 0.5), QPointF(width(), box.bottom() - 0.5));
    painter.fillRect(QRectF(0, box.top(), theme.Px(4), box.height() - 1), t.Channel(strip.tableRow));
    if (strip.bars.empty())
        return;
    const auto [low, high] = std::minmax_element(strip.bars.begin(), strip.bars.end(),
                                                 [](const Bar& a, const Bar& b) { return a.note < b.note; });
    const double span = std::max(12.0, static_cast<double>(high->note - low->note) + 1.0);
    const double middle = (low->note + high->note) / 2.0;
    const double inner = box.height() - theme.Px(8);
    const double thick = std::clamp(inner / span, 2.0, static_cast<double>(theme.Px(8)));
    QColor colour = t.Channel(strip.tableRow);
    if (strip.silent)
        colour.setAlphaF(0.3F);
    for (const Bar& bar : strip.bars) {
        const double left = scale.X_Of(bar.startBeat);
        const double right = std::max(left + 2.0, scale.X_Of(bar.startBeat + bar.length) - 1.0);
        const double centre = box.center().y() - (bar.note - middle) / span * (inner - thick);
        painter.fillRect(QRectF(left, centre - thick / 2, right - left, thick), colour);
    }
}

QRect Song_Overview::Line_Place(double beats) const {
    const int x = static_cast<int>(std::floor(Scale().X_Of(beats)));
    return {x - 2, 0, theme.Px(2) + 4, height()};
}

void Song_Overview::Move_Line(double beats) {
    if (beats > shownBeats) {
        line = beats;
        shownBeats = Overview_Scale::Shown_Beats(session.project.SongLength, beats);
        pictureValid = false;
        update();
        return;
    }
    const QRect before = Line_Place(line);
    line = beats;
    const QRect now = Line_Place(line);
    if (now == before)
        return;
    update(before);
    update(now);
}

void Song_Overview::On_Run_Started(bool isRecording) {
    recording = isRecording;
    if (Note_Count() == 0) {
        pictureValid = false;
        update();
    }
}

void Song_Overview::On_Position(double beats, std::int64_t) {
    Move_Line(beats);
}

void Song_Overview::On_Run_Ended() {
    recording = false;
    Changed();
}

void Song_Overview::paintEvent(QPaintEvent* event) {
    if (!pictureValid)
        Draw_Picture();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.drawPixmap(0, 0, picture);
    if (strips.empty())
        return;
    const double x = std::floor(Scale().X_Of(line));
    painter.fillRect(QRectF(x, 0, theme.Px(2), height()), theme.Tokens().record);
}

void Song_Overview::resizeEvent(QResizeEvent*) {
    pictureValid = false;
}

void Song_Overview::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const int flag = Flag_At(flagBoxes, event->position());
    if (flag >= 0)
        emit markClicked(flags[static_cast<std::size_t>(flag)].row);
    else if (!strips.empty())
        emit goTo(Scale().Beat_At(event->position().x()));
}

} // namespace tonvex
