#include "app/windows/frm_main.h"

#include "app/song_key.h"
#include "app/windows/autosave_timer.h"
#include "app/windows/frm_help.h"
#include "app/windows/song_files.h"
#include "audio/windows/frm_inst_list.h"
#include "editors/windows/frm_events_editor.h"
#include "engine/windows/frm_recorder.h"
#include "engine/windows/master_volume.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "input/windows/frm_setup_midi_device.h"
#include "input/windows/layout_notice.h"
#include "platform/qt/core_words.h"
#include "song/windows/maps_view.h"
#include "song/windows/mark_selection.h"
#include "widgets/channels_header.h"
#include "widgets/channels_list.h"
#include "widgets/frm_channel_properties.h"
#include "widgets/frm_fx_config.h"
#include "widgets/scroll_part.h"
#include "widgets/song_overview.h"

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr const char* SECTION = "Window";
constexpr int PANES_VERSION = 1;
constexpr int DEVICE_CHECK_MS = 500; ///< while something sounds
constexpr int IDLE_CHECK_MS = 10'000;
constexpr int FIRST_CHECK_MS = 1000;
constexpr int PLUG_SETTLE_MS = 300;
constexpr int METER_MS = 33;
constexpr int METERS_WAIT_MS = 500;
constexpr float AUDIBLE = 0.001F;
constexpr int LEAST_LIST = 64;
constexpr int LEAST_PROPERTIES = 80;
constexpr int TITLE_WIDTH = 400;
constexpr int MENU_GAPS = 20;
constexpr int FIRST_WIDTH = 1440;
constexpr int FIRST_HEIGHT = 900;

QByteArray Stored(const Settings_Store& store, const char* key) {
    return QByteArray::fromBase64(QByteArray::fromStdString(store.Get(SECTION, key, {})));
}

/// The handle by which a pane without a title is moved: a column of dots at its left.
class Pane_Grip final : public QWidget {
public:
    explicit Pane_Grip(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
        setToolTip(QDockWidget::tr("Drag to move this pane; double click to float it"));
        setCursor(Qt::SizeAllCursor);
        connect(&theme, &Theme::Changed, this, [this] { update(); });
    }
    QSize sizeHint() const override { return {theme.Px(12), theme.Px(12)}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), theme.Tokens().panel);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.Tokens().line);
        for (int dot = -2; dot <= 2; ++dot)
            painter.drawEllipse(QPointF(width() / 2.0, height() / 2.0 + dot * theme.Px(6)), theme.Px(1.5),
                                theme.Px(1.5));
    }

private:
    const Theme& theme;
};

} // namespace

frmMain::frmMain(Session& owner, Theme& look) : session(owner), theme(look), link(session.observers, *this) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/tonvex.svg")));
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowNestedDocks);
    marks = new Mark_Selection(session, this);
    Make_Panes();
    songFiles = new Song_Files(session, *recorder, this);
    autosave = new Autosave_Timer(session, this);
    Make_Functions();
    Make_Menus();
    Make_Key_Timers();
    setAcceptDrops(true);

    // Many messages, one refresh.
    refreshTimer.setSingleShot(true);
    connect(&refreshTimer, &QTimer::timeout, this, [this] {
        Refresh_Title();
        Refresh_Actions();
        autosave->Look();
    });
    subscription =
        session.events.Subscribe([this](int, std::int32_t, const std::string&) { refreshTimer.start(0); });
    connect(channelsList, &ChannelsList::selectionChanged, this, &frmMain::Channel_Selected);
    connect(songFiles, &Song_Files::changed, this, [this] {
        Refresh_Title();
        Show_Recent_Files();
    });
    connect(songFiles, &Song_Files::replaced, this, &frmMain::Song_Replaced);
    connect(autosave, &Autosave_Timer::failed, this, [this](const QString& error) {
        Show_Banner(Banner::Subject::Recovery_Copy,
                    tr("No recovery copy of the song can be written, so save it soon (%1).").arg(error));
    });
    connect(recorder, &frmRecorder::uiLocked, this, &frmMain::Lock);
    connect(recorder, &frmRecorder::optionsChanged, this, &frmMain::Refresh_Actions);
    connect(recorder, &frmRecorder::channelMissing, this, [this] { (void)Needs_Channel(); });
    connect(recorder, &frmRecorder::keysRefused, this, &frmMain::Tell_Why_Keys_Are_Refused);
    connect(&recorder->Practice(), &Practice_Mode::keysChanged, this, [this](bool on) {
        keysAction->setChecked(on);
        piano->Set_Capture(on || recorder->Practice().Plain());
        if (on)
            Give_Keys_To_Piano();
    });
    connect(&recorder->Practice(), &Practice_Mode::plainChanged, this, [this](bool on) {
        practiceAction->setChecked(on);
        piano->Set_Capture(on || recorder->Practice().Keys());
        if (on)
            Give_Keys_To_Piano();
    });
    connect(keyboard, &frmKeyboardSetup::tuningChanged, this, [this] {
        Refresh_Title();
        Refresh_Actions();
    });
    connect(overview, &Song_Overview::goTo, recorder, &frmRecorder::Go_To);
    connect(overview, &Song_Overview::markClicked, this, [this](int markRow) {
        marks->Select(markRow);
        marks->Go_To();
    });
    connect(marks, &Mark_Selection::goTo, recorder, &frmRecorder::Go_To);
    connect(maps, &Maps_View::opened, this, [this] { tabs->setCurrentWidget(maps); });
    connect(piano, &frmREC_PianoLayout::soundBegan, this, &frmMain::Start_Meters);

    session.gcm->viewer = piano;
    Channel_Selected(channelsList->Selected());
    Restore_Panes();
    Refresh_Title();
    Refresh_Actions();
    Refresh_Keys();

    meterTimer.setInterval(METER_MS);
    connect(&meterTimer, &QTimer::timeout, this, [this] { Show_Meters(session.doors.sound.Status()); });
    deviceTimer.setTimerType(Qt::VeryCoarseTimer);
    deviceTimer.setInterval(IDLE_CHECK_MS);
    connect(&deviceTimer, &QTimer::timeout, this, &frmMain::Check_Devices);
    deviceTimer.start();
    QTimer::singleShot(FIRST_CHECK_MS, this, &frmMain::Check_Devices);
    // What is plugged in or pulled out is noticed at once, when its node has been set up.
    const QString nodes = QStringLiteral("/dev/snd");
    if (QFileInfo::exists(nodes) && plugWatch.addPath(nodes))
        connect(&plugWatch, &QFileSystemWatcher::directoryChanged, this,
                [this] { QTimer::singleShot(PLUG_SETTLE_MS, this, &frmMain::Check_Devices); });
}

frmMain::~frmMain() {
    Release_Functions();
    session.events.Unsubscribe(subscription);
}

// ---- panes ----

void frmMain::Make_Panes() {
    auto* bar = new QToolBar(tr("Transport"), this);
    bar->setObjectName(QStringLiteral("transport"));
    bar->setMovable(false);
    recorder = new frmRecorder(session, theme, bar);
    recorder->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(recorder);
    addToolBar(Qt::TopToolBarArea, bar);
    Make_Notices();

    auto* middle = new QWidget(this);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    tabs = new QTabWidget(middle);
    tabs->setDocumentMode(true);
    tabs->tabBar()->setExpanding(false);
    tabs->setAccessibleName(tr("Editors"));
    tabs->tabBar()->setAccessibleName(tr("Editors"));
    Make_Events_Editor();
    overview = new Song_Overview(session, theme, tabs);
    tabs->addTab(overview, tr("Song"));
    keyboard = new frmKeyboardSetup(session, theme, recorder->Practice(), tabs);
    tabs->addTab(keyboard, tr("Keyboard"));
    maps = new Maps_View(session, theme, tabs);
    tabs->addTab(maps, tr("Maps"));
    column->addWidget(tabs, 1);
    setCentralWidget(middle);
    // Nothing is in hand at the start; Tab begins at the transport.
    middle->setFocus();

    channelsDock = Make_Channels_Pane();
    pianoDock = Make_Piano_Pane();
    setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    addDockWidget(Qt::LeftDockWidgetArea, channelsDock);
    addDockWidget(Qt::BottomDockWidgetArea, pianoDock);
    Make_Video_Pane();
}

/// Below the transport, as wide as the window; there only while something is to be told.
void frmMain::Make_Notices() {
    auto* bar = new QToolBar(tr("Notices"), this);
    bar->setObjectName(QStringLiteral("notices"));
    bar->setMovable(false);
    bar->toggleViewAction()->setVisible(false);
    banner = new Banner(theme, bar);
    banner->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(banner);
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, bar);
    connect(banner, &Banner::anyShown, bar, &QToolBar::setVisible);
    bar->hide();
}

void frmMain::Make_Events_Editor() {
    eventsEditor = new frmEventsEditor(session, theme, tabs);
    tabs->addTab(eventsEditor, eventsEditor->windowTitle());
    connect(eventsEditor, &frmEventsEditor::titleChanged, this,
            [this](const QString& title) { tabs->setTabText(tabs->indexOf(eventsEditor), title); });
    EventsEditorCtrl& editor = eventsEditor->Editor();
    connect(&editor, &EventsEditorCtrl::goTo, recorder, &frmRecorder::Go_To);
    connect(&editor, &EventsEditorCtrl::playWanted, this, [this] { session.keyRunner.Act("Play song"); });
    connect(&editor, &EventsEditorCtrl::recordWanted, this, [this] { session.keyRunner.Act("Record"); });
    connect(&editor, &EventsEditorCtrl::stopWanted, recorder, &frmRecorder::Button_Stop);
    connect(&editor, &EventsEditorCtrl::helpWanted, this, &frmMain::Show_Help);
    connect(&editor, &EventsEditorCtrl::soundFontsWanted, this, &frmMain::Edit_Sound_Fonts);
    connect(&editor, &EventsEditorCtrl::noteNamesWanted, this, &frmMain::Set_Note_Names);
    connect(&editor, &EventsEditorCtrl::channelWanted, this, &frmMain::Select_Channel);
}

QDockWidget* frmMain::Make_Channels_Pane() {
    auto* dock = new QDockWidget(tr("Channels"), this);
    dock->setObjectName(QStringLiteral("channels"));
    channelsHeader = new Channels_Header(session, theme, dock);
    Channels_Header* title = channelsHeader;
    connect(title, &Channels_Header::addAsked, this, &frmMain::Add_Channel);
    connect(recorder, &frmRecorder::uiLocked, title,
            [title](bool locked) { title->Set_Add_Enabled(!locked); });
    dock->setTitleBarWidget(title);

    auto* body = new QWidget(dock);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    channelsList = new ChannelsList(session, theme, body);
    properties = new frmChannelProperties(session, theme, body);
    // Where height is scarce the list gives way first, down to a row.
    channelsList->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    const auto takeTheme = [this] { channelsList->setMinimumHeight(theme.Px(LEAST_LIST)); };
    connect(&theme, &Theme::Changed, channelsList, takeTheme);
    takeTheme();
    auto* lower = new Scroll_Part(theme, properties, {0, LEAST_PROPERTIES}, body);
    lower->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    column->addWidget(channelsList, 1);
    column->addWidget(lower);
    connect(properties, &frmChannelProperties::effectAsked, this, &frmMain::Open_Effect);
    dock->setWidget(body);
    channelsList->Set_Tab_Anchor(title->Last_Control());
    return dock;
}

QDockWidget* frmMain::Make_Piano_Pane() {
    auto* dock = new QDockWidget(tr("Piano"), this);
    dock->setObjectName(QStringLiteral("piano"));
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable |
                      QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetVerticalTitleBar);
    dock->setTitleBarWidget(new Pane_Grip(theme, dock));
    piano = new frmREC_PianoLayout(session, theme, dock);
    dock->setWidget(piano);
    return dock;
}

void frmMain::Restore_Panes() {
    // The window manager puts its frame around what is asked for here.
    const int border = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int title = style()->pixelMetric(QStyle::PM_TitleBarHeight) + border;
    const QRect room = screen()->availableGeometry().adjusted(border, title, -border, -border);
    resize(std::min(theme.Px(FIRST_WIDTH), room.width()), std::min(theme.Px(FIRST_HEIGHT), room.height()));
    resizeDocks({channelsDock}, {theme.Px(330)}, Qt::Horizontal);
    resizeDocks({pianoDock}, {theme.Px(124)}, Qt::Vertical);
    restoreGeometry(Stored(session.doors.store, "Geometry"));
    restoreState(Stored(session.doors.store, "Panes"), PANES_VERSION);
    findChild<QToolBar*>(QStringLiteral("notices"))->hide(); // what it told was of then
    videosDock->setVisible(anyVideos && session.settings.Global_ShowVideoList != 0);
}

void frmMain::Save_Panes() {
    session.doors.store.Set(SECTION, "Geometry", saveGeometry().toBase64().toStdString());
    session.doors.store.Set(SECTION, "Panes", saveState(PANES_VERSION).toBase64().toStdString());
}

// ---- runs ----

bool frmMain::Key_Plays(int scanCode) const {
    if (scanCode < 0 || scanCode > 255 ||
        session.layout->KeyMap[static_cast<std::size_t>(scanCode)].Enabled == 0)
        return false;
    const Practice_Mode& practice = recorder->Practice();
    return session.recorder->IsRunning() || (practice.Plays_Keys() && practice.Is_Running());
}

void frmMain::Lock(bool locked) {
    isLocked = locked;
    for (QAction* action : lockedInRun)
        action->setEnabled(!locked);
    Lock_Functions(locked);
    if (!locked) {
        Refresh_Actions();
        Refresh_Title();
    }
}

void frmMain::On_Run_Started(bool recording) {
    // What went over full scale is told for each run.
    channelsList->Clear_Clips();
    recorder->Master().Clear_Clips();
    piano->Clear_Clips();
    Start_Meters();
    focusBeforeRun = QApplication::focusWidget();
    if (recording) {
        piano->Set_Capture(true);
        Give_Keys_To_Piano();
    }
}

void frmMain::Give_Keys_To_Piano() {
    const bool pianoIsHere = piano->isVisible() && piano->window() == this;
    (pianoIsHere ? static_cast<QWidget*>(piano) : centralWidget())->setFocus();
    // The focus of a pane that floats is another window's.
    QWidget* const elsewhere = QApplication::focusWidget();
    if (elsewhere != nullptr && elsewhere->window() != this)
        elsewhere->clearFocus();
}

void frmMain::On_Run_Ended() {
    piano->Set_Capture(recorder->Practice().Keys() || recorder->Practice().Plain());
    if (focusBeforeRun != nullptr && (piano->hasFocus() || centralWidget()->hasFocus()))
        focusBeforeRun->setFocus();
    // The transport takes the viewed channel away at the end of a recording.
    session.gcm->View_Channel(session.channels->ChannelI(channelsList->Selected()));
}

void frmMain::Channel_Selected(std::int32_t channelId) {
    if (!session.transport.Recording)
        session.gcm->View_Channel(session.channels->ChannelI(channelId));
    recorder->Set_Channel(channelId);
    piano->Set_Channel(channelId);
    keyboard->Set_Channel(channelId);
    properties->Show_Channel(channelId);
    eventsEditor->Show_Channel(channelId);
    overview->Select(channelId);
    maps->Show_Channel(channelId);
    if (effects != nullptr)
        effects->Show_Channel(channelId);
}

std::int32_t frmMain::Selected_Channel() const {
    return channelsList->Selected();
}

void frmMain::Select_Channel(std::int32_t channelId) {
    channelsList->Select(channelId);
}

// ---- notices and devices ----

void frmMain::Show_Banner(Banner::Subject subject, const QString& text, const QString& actionText,
                          const std::function<void()>& action) {
    banner->Show_Notice(subject, text, actionText, action);
}

void frmMain::Hide_Banner(Banner::Subject subject) {
    banner->Hide_Notice(subject);
}

void frmMain::Reopen_Output() {
    recorder->Practice().Hold();
    lossShown = false;
    quietTold = false;
    session.Reopen_Output();
    recorder->Refresh_Options();
    recorder->Practice().Let_Go();
    Check_Devices();
}

void frmMain::Start_Meters() {
    if (meterTimer.isActive())
        return;
    quietMs = 0;
    meterClock.start();
    meterTimer.start();
    deviceTimer.start(DEVICE_CHECK_MS);
}

void frmMain::Show_Meters(const Sound_Status& status) {
    const int elapsed = meterClock.isValid() ? static_cast<int>(meterClock.restart()) : METER_MS;
    piano->Show_Levels(status.peakLeft, status.peakRight, elapsed);
    recorder->Master().Show_Levels(status.peakLeft, status.peakRight, elapsed);
    channelsList->Show_Levels(elapsed);
    const bool idle =
        !session.transport.Song_Runs() && status.peakLeft < AUDIBLE && status.peakRight < AUDIBLE;
    const bool still = idle && piano->Meters_Are_Still() && recorder->Master().Meters_Are_Still() &&
                       channelsList->Meters_Are_Still();
    quietMs = still ? quietMs + elapsed : 0;
    // What has just begun is not heard before the device's latency has passed.
    if (quietMs >= METERS_WAIT_MS) {
        meterTimer.stop();
        deviceTimer.start(IDLE_CHECK_MS);
    }
}

void frmMain::Check_Devices() {
    autosave->Look();
    const Sound_Status status = session.doors.sound.Status();
    // The peaks of this moment are taken by asking, so they are shown here too.
    if (meterTimer.isActive())
        Show_Meters(status);
    else if (status.peakLeft >= AUDIBLE || status.peakRight >= AUDIBLE)
        Start_Meters();
    recorder->Show_Cpu(session.output->UsingSynth() ? status.cpuPercent : 0.0);
    if (session.output->UsingSynth())
        Check_Sound(status);
    Check_Midi();
}

void frmMain::Check_Sound(const Sound_Status& status) {
    if (status.deviceLost) {
        if (!lossShown)
            Show_Banner(Banner::Subject::Sound,
                        tr("The sound device has gone. The program runs on in silence."), tr("Reopen"),
                        [this] { Reopen_Output(); });
        lossShown = true;
        return;
    }
    if (lossShown)
        Hide_Banner(Banner::Subject::Sound);
    lossShown = false;
    if (status.quiet && !quietTold) {
        quietTold = true;
        Show_Banner(Banner::Subject::Sound,
                    tr("No sound device was found, so nothing can be heard. Recording and playing work all "
                       "the same."),
                    tr("Try again"), [this] { Reopen_Output(); });
    }
}

void frmMain::Check_Midi() {
    if (session.doors.midi.Ports_Changed())
        recorder->Practice().Renew();
    const bool gone = session.midiIn->Is_Open() && !session.doors.midi.Input_Alive();
    if (gone && !midiGoneShown)
        Show_Banner(Banner::Subject::Midi,
                    tr("The MIDI keyboard has gone. Plug it in again, or choose another one in the output "
                       "device setup."));
    else if (!gone && midiGoneShown)
        Hide_Banner(Banner::Subject::Midi);
    midiGoneShown = gone;
}

// ---- commands ----

bool frmMain::Needs_Channel() {
    if (session.channels->ChannelI(channelsList->Selected()) >= 0)
        return true;
    session.doors.dialogs.Show_Message(Box_Kind::Information, "You need to select a channel");
    return false;
}

void frmMain::Add_Channel() {
    const int number = session.channels->Count_Channels() + 1;
    session.hub->Message(this, MSG_ADD_CHANNEL, tr("Channel %1").arg(number).toStdString(), false);
}

void frmMain::Delete_Channel() {
    if (!Needs_Channel())
        return;
    const std::int32_t channelId = channelsList->Selected();
    const auto& tracks = session.creator.MC_Tracks;
    if (std::any_of(tracks.begin(), tracks.end(), [channelId](const MCTrack& track) {
            return Is_On(track.InUse) && track.ChannelID == channelId;
        })) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information, "You can only delete this channel \r\nthrough the Music creator window");
        return;
    }
    if (session.doors.dialogs.Ask_YesNo("Delete this channel ?", "Delete channel"))
        session.hub->Message(this, MSG_DELETE_CHANNEL, channelId);
}

void frmMain::Edit_Channel_Properties() {
    if (session.channels->ChannelI(channelsList->Selected()) < 0) {
        session.doors.dialogs.Show_Message(Box_Kind::Information, "Please select a channel");
        return;
    }
    channelsDock->show();
    channelsDock->raise();
    properties->setFocus();
    // To the first of its controls.
    if (!properties->hasFocus() || properties->focusPolicy() == Qt::NoFocus)
        for (QWidget* control : properties->findChildren<QWidget*>())
            if ((control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled()) {
                control->setFocus(Qt::ShortcutFocusReason);
                break;
            }
}

void frmMain::Rename_Channel() {
    if (!Needs_Channel())
        return;
    const std::int32_t channelId = channelsList->Selected();
    const int row = session.channels->ChannelI(channelId);
    const QString name =
        QString::fromStdString(session.channels->Channels[static_cast<std::size_t>(row)].ChannelName);
    auto* question = new QInputDialog(this);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("Rename channel"));
    question->setLabelText(tr("Please type the new name for: ") + name);
    question->setTextValue(name);
    connect(question, &QInputDialog::textValueSelected, this, [this, channelId](const QString& typed) {
        if (!typed.trimmed().isEmpty())
            session.hub->Message(this, MSG_SET_NAME, channelId, typed.trimmed().toStdString());
    });
    question->open();
}

void frmMain::Clear_Channel_Events() {
    if (!Needs_Channel() ||
        !session.doors.dialogs.Ask_YesNo("Clear this channel events ?", "Clear channel events"))
        return;
    const std::int32_t channelId = channelsList->Selected();
    const int row = session.channels->ChannelI(channelId);
    if (row < 0)
        return;
    const ChannelClass& store = session.channels->Store(row);
    std::vector<std::int32_t> eventIds;
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
        eventIds.push_back(store.GetEvent_ID(i));
    const MsgManager::Batch batch(*session.hub, MsgManager::Batch::Update_At_End, "Clear channel events");
    for (const std::int32_t eventId : eventIds)
        session.hub->Message(this, MSG_DELETE_EVENT, channelId, eventId);
}

void frmMain::Set_Tuning(int tuning) {
    if (tuning == session.layout->KeyboardTuning)
        return;
    recorder->Practice().Hold();
    session.layout->KeyboardTuning = tuning;
    session.layout->KeyboardTuning_Changed();
    session.project.Modified = true;
    recorder->Practice().Let_Go();
    Tell_Layout_Changed(session);
    Refresh_Title();
}

void frmMain::Choose_Midi_Input(bool on) {
    recorder->Practice().Hold();
    const bool opened = session.Select_Input(on ? 1 : 0);
    if (on && !opened) {
        (void)session.Select_Input(0);
        Tell_Midi_Missing();
    }
    recorder->Practice().Let_Go();
    Refresh_Actions();
}

void frmMain::Tell_Why_Keys_Are_Refused() {
    if (Needs_Channel() && session.input->InputDevice == 1)
        Tell_Midi_Missing();
}

void frmMain::Tell_Midi_Missing() {
    Show_Banner(
        Banner::Subject::Midi,
        tr("No MIDI keyboard can be opened. Choose one as Midi In Device in the output device setup."),
        tr("Output Device setup..."), [this] { Set_Up_Devices(); });
}

void frmMain::Set_Up_Devices() {
    Open_Device_Window(new frmSetUpMidiDevice(session, theme, this));
}

void frmMain::Edit_Sound_Fonts() {
    Open_Device_Window(new frmInstList(session, theme, this));
}

void frmMain::Open_Device_Window(QDialog* dialog) {
    // The tests of the window need the devices for themselves.
    recorder->Practice().Hold();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::finished, this, [this] {
        lossShown = false;
        quietTold = false;
        midiGoneShown = false;
        Hide_Banner(Banner::Subject::Sound);
        Hide_Banner(Banner::Subject::Midi);
        recorder->Refresh_Options();
        recorder->Practice().Let_Go();
        // The sounds of other fonts have other names.
        session.hub->Message(this, MSG_GENERAL_UPDATE);
        Refresh_Actions();
        Check_Devices();
    });
    dialog->open();
}

void frmMain::Refresh_Title() {
    const std::filesystem::path& file = session.project.Path;
    const QString title =
        QString::fromStdString(file.empty() ? session.project.ProjectTitle : file.filename().string());
    setWindowTitle(tr("%1[*] - Tonvex").arg(title));
    setWindowModified(session.project.Modified);
    Show_Song_Key();
    const QString key = Core_Words(Song_Key_Name(session, session.creator.SongKey, session.creator.SongMode));
    titleLabel->setToolTip(session.project.Modified ? tr("%1   %2 • — Tonvex").arg(key, title)
                                                    : tr("%1   %2 — Tonvex").arg(key, title));
    Fit_Title(menuBar()->width());
}

/// The menus go before the title. The menu bar gives its corner the size that it has.
void frmMain::Fit_Title(int barWidth) {
    int room = barWidth;
    for (const QAction* menu : menuBar()->actions())
        room -= menuBar()->fontMetrics().horizontalAdvance(menu->text()) + theme.Px(MENU_GAPS);
    titleLabel->setFixedSize(std::clamp(room, 0, theme.Px(TITLE_WIDTH)), theme.Px(28));
    const QMargins edges = titleLabel->contentsMargins();
    titleLabel->setText(titleLabel->fontMetrics().elidedText(
        titleLabel->toolTip(), Qt::ElideRight, titleLabel->width() - edges.left() - edges.right()));
}

} // namespace tonvex
