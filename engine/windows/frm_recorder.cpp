#include "engine/windows/frm_recorder.h"

#include "engine/windows/master_volume.h"
#include "song/vget_tick_count.h"
#include "widgets/function_key_text.h"
#include "widgets/tool_button.h"
#include "widgets/transport_display.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr int LEAST_SPEED = 20;
constexpr int MOST_SPEED = 100;
constexpr int SPEED_STEP = 10;
constexpr int RETRY_MS = 5;

QString Cpu_Text(int percent) {
    return frmRecorder::tr("CPU Usage:%1%").arg(percent);
}

/// A line between two groups of the bar.
class Group_Rule final : public QWidget {
public:
    Group_Rule(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
        connect(&theme, &Theme::Changed, this, [this] { updateGeometry(); });
    }
    QSize sizeHint() const override { return {theme.Px(9), theme.Px(28)}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(QRect(width() / 2, 0, 1, height()), theme.Tokens().line);
    }

private:
    const Theme& theme;
};

} // namespace

frmRecorder::frmRecorder(Session& owner, Theme& look, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), practice(owner), link(session.observers, *this) {
    setAccessibleName(tr("Transport"));
    Make_Buttons();
    Lay_Out();
    connect(&practice, &Practice_Mode::keysChanged, this, [this](bool on) { keyboard->setChecked(on); });
    subscription = session.events.Subscribe([this](int msgId, std::int32_t param, const std::string&) {
        switch (msgId) {
        case MSG_RECORD_MODE:
            Set_Overwrite(param == 1);
            break;
        case MSG_SONG_POSITION:
        case MSG_SHOW_POSITION:
        case MSG_SET_TEMPO:
        case MSG_ADD_TEMPO_CHANGE:
        case MSG_DELETE_TEMPO_CHANGE:
        case MSG_SET_TEMPO_CHANGE:
        case MSG_MOVE_TEMPO_CHANGE:
        case MSG_GENERAL_UPDATE:
            UpdateTimeDisplay();
            break;
        default:
            break;
        }
    });
    Refresh_Options();
    Show_Keys();
    UpdateTimeDisplay();
}

frmRecorder::~frmRecorder() {
    session.events.Unsubscribe(subscription);
}

Tool_Button* frmRecorder::Add_Transport_Button(const QString& picture, void (frmRecorder::*act)()) {
    const bool great = picture == QLatin1String("record") || picture == QLatin1String("play") ||
                       picture == QLatin1String("stop");
    auto* button =
        new Tool_Button(theme, great ? Button_Kind::Transport : Button_Kind::Flat, picture, {}, {}, this);
    // A space bar among the keys that are played must not press a button.
    connect(button, &QToolButton::clicked, this, act, Qt::QueuedConnection);
    return button;
}

void frmRecorder::Make_Buttons() {
    toStart = Add_Transport_Button("to-start", &frmRecorder::To_Start);
    back = Add_Transport_Button("back", &frmRecorder::Back_5_Seconds);
    record = Add_Transport_Button("record", &frmRecorder::Button_Rec);
    play = Add_Transport_Button("play", &frmRecorder::Button_Play);
    stop = Add_Transport_Button("stop", &frmRecorder::Button_Stop);
    forward = Add_Transport_Button("forward", &frmRecorder::Forward_5_Seconds);
    toEnd = Add_Transport_Button("to-end", &frmRecorder::To_End);
    record->Set_Tint(Icon_Tint::Record);
    play->Set_Tint(Icon_Tint::Play);

    display = new Transport_Display(theme, this);
    connect(display, &Transport_Display::tempoEntered, this,
            [this](int tempo) { session.hub->Message(this, MSG_SET_TEMPO, std::int32_t{tempo}); });

    speed = new Tool_Button(theme, Button_Kind::Pill, {}, {}, {}, this);
    speed->Reserve_For(tr("%1 %").arg(MOST_SPEED));
    speed->installEventFilter(this);
    speedMenu = new QMenu(this);
    for (int percent = MOST_SPEED; percent >= LEAST_SPEED; percent -= SPEED_STEP)
        speedMenu->addAction(tr("%1 %").arg(percent), this, [this, percent] { Set_Rec_Speed(percent); });
    speed->setMenu(speedMenu);
    speed->setPopupMode(QToolButton::InstantPopup);

    blend = new Tool_Button(theme, Button_Kind::Pill, {}, {}, {}, this);
    blend->Set_Pill({}, tr("Blend"));
    overwrite = new Tool_Button(theme, Button_Kind::Pill, {}, {}, {}, this);
    overwrite->Set_Pill({}, tr("Overwrite"));
    metronome = new Tool_Button(theme, Button_Kind::Boxed, "metronome", {}, {}, this);
    wait =
        new Tool_Button(theme, Button_Kind::Boxed, "wait", tr("Recording waits for the first key"), {}, this);
    keyboard = new Tool_Button(theme, Button_Kind::Boxed, "keyboard",
                               tr("Computer keys sound on the selected channel"), tr("Ctrl+K"), this);
    for (Tool_Button* button : {blend, overwrite, metronome, wait, keyboard})
        button->setCheckable(true);
    connect(blend, &QToolButton::clicked, this, [this] { Set_Overwrite(false); });
    connect(overwrite, &QToolButton::clicked, this, [this] { Set_Overwrite(true); });
    connect(metronome, &QToolButton::clicked, this, &frmRecorder::Set_Metronome);
    connect(wait, &QToolButton::clicked, this, &frmRecorder::Set_Wait_For_Key);
    connect(keyboard, &QToolButton::clicked, this, [this](bool on) {
        practice.Set_Keys(on);
        keyboard->setChecked(practice.Keys());
        if (on && !practice.Keys())
            emit keysRefused();
    });

    waiting = new QLabel(tr("Waiting for the first key…"), this);
    waiting->hide();
    master = new Master_Volume(session, theme, this);
    cpu = new QLabel(this);
    cpu->setProperty("dim", true);
    Show_Cpu(0.0);
}

void frmRecorder::Lay_Out() {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(theme.Px(12), theme.Px(4), theme.Px(16), theme.Px(4));
    row->setSpacing(theme.Px(8));
    const auto rule = [&] {
        auto* line = new Group_Rule(theme, this);
        row->addWidget(line, 0, Qt::AlignVCenter);
        return line;
    };
    for (Tool_Button* button : {toStart, back, record, play, stop, forward, toEnd})
        row->addWidget(button);
    row->addSpacing(theme.Px(8));
    row->addWidget(display);
    QWidget* beforeSpeed = rule();
    row->addWidget(speed);
    row->addWidget(blend);
    row->addWidget(overwrite);
    QWidget* beforeMetronome = rule();
    row->addWidget(metronome);
    row->addWidget(wait);
    row->addWidget(keyboard);
    row->addWidget(waiting);
    row->addStretch(1);
    row->addWidget(master);
    row->addWidget(cpu);
    // What menus and keys do as well goes before what they do not.
    dispensable = {cpu,      overwrite, blend,           wait,  speed,   beforeSpeed, master,
                   keyboard, metronome, beforeMetronome, toEnd, toStart, forward,     back};
    cpu->setMinimumWidth(cpu->fontMetrics().horizontalAdvance(Cpu_Text(100)));
    connect(&theme, &Theme::Changed, this, [this, row] {
        row->setContentsMargins(theme.Px(12), theme.Px(4), theme.Px(16), theme.Px(4));
        row->setSpacing(theme.Px(8));
        update();
    });
}

QSize frmRecorder::minimumSizeHint() const {
    QSize least = QWidget::minimumSizeHint();
    for (const QWidget* widget : dispensable)
        if (!widget->isHidden())
            least.rwidth() -= widget->minimumSizeHint().width() + layout()->spacing();
    return least;
}

void frmRecorder::resizeEvent(QResizeEvent*) {
    Fit_Into(width());
}

void frmRecorder::Fit_Into(int barWidth) {
    int needed = minimumSizeHint().width();
    // The last to go is the first to come back.
    bool room = true;
    for (auto widget = dispensable.rbegin(); widget != dispensable.rend(); ++widget) {
        needed += (*widget)->minimumSizeHint().width() + layout()->spacing();
        room = room && needed <= barWidth;
        if ((*widget)->isHidden() == room)
            (*widget)->setVisible(room);
    }
}

void frmRecorder::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme.Tokens().panel);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.Tokens().line);
}

bool frmRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == speed && event->type() == QEvent::Wheel) {
        auto* wheel = static_cast<QWheelEvent*>(event);
        const bool fine = (wheel->modifiers() & Qt::ShiftModifier) != 0;
        const bool up = wheel->angleDelta().y() + wheel->angleDelta().x() > 0;
        if (speed->isEnabled())
            Set_Rec_Speed(session.options.RecSpeedPercent + (up ? 1 : -1) * (fine ? 1 : SPEED_STEP));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmRecorder::Button_Rec() {
    if (session.transport.Song_Runs() || session.recorder->IsRunning())
        return;
    if (practice.Is_Starting()) {
        QTimer::singleShot(RETRY_MS, this, &frmRecorder::Button_Rec);
        return;
    }
    if (practice.Plain()) {
        session.doors.dialogs.Show_Message(Box_Kind::Information,
                                           "You need to close the Practice window to start recording");
        return;
    }
    if (session.channels->ChannelI(channelId) < 0) {
        emit channelMissing();
        return;
    }
    // The practice of the channel itself makes room and comes back.
    practice.Hold();
    Transport_LockUI();
    session.recorder->StartRecording(session.transport.PlayPosition,
                                     static_cast<float>(session.options.RecSpeedPercent) / 100.0F, channelId,
                                     session.options.Overwrite, true, false);
    Transport_UnlockUI();
    practice.Let_Go();
}

void frmRecorder::Button_Play() {
    if (session.transport.Song_Runs() || session.recorder->IsRunning())
        return;
    if (practice.Is_Starting()) {
        QTimer::singleShot(RETRY_MS, this, &frmRecorder::Button_Play);
        return;
    }
    practice.Hold();
    Transport_LockUI();
    const double start = session.transport.PlayPosition;
    const float factor =
        session.options.PlayAtRecSpeed ? static_cast<float>(session.options.RecSpeedPercent) / 100.0F : 1.0F;
    const bool endedByItself = session.player->Transport_Play(start, true, factor);
    // Played to its end, the song stands where it was started, ready to be heard again.
    if (endedByItself)
        session.hub->Message(this, MSG_SONG_POSITION, start);
    Transport_UnlockUI();
    practice.Let_Go();
}

void frmRecorder::Button_Stop() {
    if (session.transport.Recording || session.recorder->IsRunning())
        session.transport.StopTransportRequest = true;
    session.transport.PlayRequested = false;
}

void frmRecorder::Stop_Then(const std::function<void()>& act) {
    if (!session.transport.Song_Runs() && !session.recorder->IsRunning()) {
        act();
        return;
    }
    afterRun = act;
    Button_Stop();
}

void frmRecorder::Go_To(double beats) {
    beats = std::max(0.0, beats);
    if (session.transport.PlayRequested)
        session.transport.SeekRequest = beats;
    else if (!session.transport.Recording)
        session.hub->Message(this, MSG_SONG_POSITION, beats);
}

void frmRecorder::To_Start() {
    Go_To(0.0);
}

void frmRecorder::To_End() {
    Go_To(session.project.SongLength);
}

void frmRecorder::Move_By_Seconds(int seconds) {
    const double pending = session.transport.SeekRequest;
    const double from = pending >= 0.0 ? pending : session.transport.PlayPosition;
    const double ms = Beats_To_MS(from, session.tempoChanges, session.project) + seconds * 1000.0;
    Go_To(MS_To_Beats(std::max(0.0, ms), session.tempoChanges, session.project));
}

void frmRecorder::Set_Rec_Speed(int percent) {
    session.options.RecSpeedPercent = std::clamp(percent, LEAST_SPEED, MOST_SPEED);
    Refresh_Options();
    emit optionsChanged();
}

void frmRecorder::Set_Overwrite(bool on) {
    session.options.Overwrite = on;
    Refresh_Options();
    emit optionsChanged();
}

void frmRecorder::Set_Metronome(bool on) {
    session.options.Metronome = on;
    Refresh_Options();
    emit optionsChanged();
}

void frmRecorder::Set_Wait_For_Key(bool on) {
    session.options.Global_Rec_WaitForKey = on;
    Refresh_Options();
    emit optionsChanged();
}

void frmRecorder::Refresh_Options() {
    const QString caption = session.options.PlayAtRecSpeed ? tr("Rec/Play Speed:") : tr("Rec Speed:");
    speed->Set_Pill(caption, tr("%1 %").arg(session.options.RecSpeedPercent));
    blend->setChecked(!session.options.Overwrite);
    overwrite->setChecked(session.options.Overwrite);
    metronome->setChecked(session.options.Metronome);
    wait->setChecked(session.options.Global_Rec_WaitForKey);
    master->Refresh();
}

void frmRecorder::Show_Keys() {
    const auto show = [this](Tool_Button* button, const QString& name, const char* function) {
        button->Set_Name(name, Function_Key_Text(session, function));
    };
    show(toStart, tr("Rewind to start of song"), "Rewind to start of song");
    show(back, tr("Rewind 5 seconds"), "Rewind 5 seconds");
    show(record, tr("Record"), "Record");
    show(play, tr("Play song"), "Play song");
    show(stop, tr("Stop recording/playing"), "Stop recording/playing");
    show(forward, tr("Forward 5 seconds"), "Forward 5 seconds");
    show(toEnd, tr("Go to end of song"), "Go to end of song");
    show(blend, tr("Record mode: blend with what is there"), "Set record mode: blend");
    show(overwrite, tr("Record mode: overwrite what is there"), "Set record mode: overwrite");
    show(metronome, tr("Metronome"), "Enable/Disable Metronome");
    const QString full = Function_Key_Text(session, "Set Rec speed to 100%");
    speed->Set_Name(tr("Record speed"),
                    full.isEmpty() ? tr("wheel") : tr("wheel, or %1 for 100 %").arg(full));
}

void frmRecorder::Set_Channel(std::int32_t newId) {
    channelId = newId;
    practice.Set_Channel(newId);
}

void frmRecorder::UpdateTimeDisplay() {
    const double beats = session.transport.PlayPosition;
    const double ms = Beats_To_MS(beats, session.tempoChanges, session.project);
    display->Show_Position(beats, static_cast<std::int64_t>(ms));
    display->Show_Tempo(session.project.ProjectTempo);
}

void frmRecorder::Show_Cpu(double percent) {
    const QString text = Cpu_Text(static_cast<int>(std::clamp(percent, 0.0, 100.0)));
    if (text != cpu->text())
        cpu->setText(text);
}

void frmRecorder::Transport_LockUI() {
    for (Tool_Button* button : {record, play, speed, blend, overwrite, wait})
        button->setEnabled(false);
    emit uiLocked(true);
}

void frmRecorder::Transport_UnlockUI() {
    for (Tool_Button* button : {record, play, speed, blend, overwrite, wait, toStart, back, forward, toEnd})
        button->setEnabled(true);
    record->setChecked(false);
    play->setChecked(false);
    waiting->hide();
    UpdateTimeDisplay();
    emit uiLocked(false);
}

void frmRecorder::On_Run_Started(bool recording) {
    Tool_Button* running = recording ? record : play;
    running->setCheckable(true);
    running->setChecked(true);
    for (Tool_Button* button : {toStart, back, forward, toEnd})
        button->setEnabled(!recording);
}

void frmRecorder::On_Position(double beats, std::int64_t songMs) {
    display->Show_Position(beats, songMs);
}

void frmRecorder::On_Waiting_For_Key(bool isWaiting) {
    waiting->setVisible(isWaiting);
}

void frmRecorder::On_Run_Ended() {
    waiting->hide();
    if (afterRun)
        QTimer::singleShot(0, this, std::exchange(afterRun, nullptr));
}

} // namespace tonvex
