#include "editors/windows/events_editor_ctrl.h"

#include "song/time_text.h"
#include "widgets/tool_button.h"
#include "widgets/zoom_scroll_bar.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tonvex {

namespace {

constexpr const char* SECTION = "EventsEditor";
/// A note that was clicked sounds this long.
constexpr int NOTE_MS = 300;
constexpr int CHORD_MS = 900;
/// The play line moves at most this often.
constexpr int LINE_MS = 40;
constexpr int MOST_STATUS_NAMES = 3;
constexpr int BLINK_MS = 500;

bool Stored_Flag(const Settings_Store& store, const char* key) {
    return store.Get(SECTION, key, "1") != "0";
}

} // namespace

EventsEditorCtrl::EventsEditorCtrl(Session& owner, Theme& look, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), display(*session.channels),
      edits({*session.hub, session.events, *session.channels, session.doors.dialogs}, this), sound(session),
      link(session.observers, *this) {
    setObjectName(QStringLiteral("eventsEditor"));
    Make_Bar();
    view = new Roll_View(session, theme, display, edits, this);
    across = new Zoom_Scroll_Bar(theme, Qt::Horizontal, tr("Time shown"), this);
    across->toText = [](double beats) { return QString::fromStdString(Format_Beats(beats)); };
    down = new Zoom_Scroll_Bar(theme, Qt::Vertical, tr("Notes shown"), this);
    down->Set_Zoomable(false);
    down->toText = [this](double row) {
        return QString::fromStdString(
            session.notes.NoteName(std::clamp(127 - static_cast<int>(row), 0, 127)));
    };
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addWidget(CoolToolBar1, 0, 0, 1, 2);
    grid->addWidget(view, 1, 0);
    grid->addWidget(down, 1, 1);
    grid->addWidget(across, 2, 0);

    connect(across, &Zoom_Scroll_Bar::windowAsked, this, &EventsEditorCtrl::Show_Beats);
    connect(down, &Zoom_Scroll_Bar::windowAsked, this, [this](double row, double) {
        const Roll_Window& shown = view->Window();
        view->Scroll_To(shown.ScrollX, row * shown.Geometry.RowHeight());
        Update_HScrollBar();
    });
    connect(view, &Roll_View::scrolled, this, &EventsEditorCtrl::Update_HScrollBar);
    connect(view, &Roll_View::zoomed, this, [this] {
        Show_Grid();
        Keep_Options();
    });
    connect(view, &Roll_View::toolChanged, this, &EventsEditorCtrl::Show_Tool);
    connect(view, &Roll_View::selectionChanged, this, &EventsEditorCtrl::Show_Status);
    connect(view, &Roll_View::command, this, &EventsEditorCtrl::Run);
    connect(view, &Roll_View::goTo, this, &EventsEditorCtrl::goTo);
    connect(view, &Roll_View::keyClicked, this,
            [this](int note) { Sound_Note(note, view->Gesture().NewVolume); });
    connect(view, &Roll_View::eventClicked, this, &EventsEditorCtrl::Sound_Event);
    connect(view, &Roll_View::eventDoubleClicked, this, [this](int) { Open_Properties(); });
    connect(view, &Roll_View::chordWanted, this, &EventsEditorCtrl::Open_Chord_At);
    connect(view, &Roll_View::eventMenu, this, &EventsEditorCtrl::Show_Event_Menu);
    connect(view, &Roll_View::ruleMenu, this, &EventsEditorCtrl::Show_Rule_Menu);
    connect(view, &Roll_View::barMenu, this, &EventsEditorCtrl::Show_Bar_Menu);
    connect(view, &Roll_View::markMenu, this, &EventsEditorCtrl::Show_Mark_Menu);

    // Many notices, one repaint.
    updateTimer.setSingleShot(true);
    connect(&updateTimer, &QTimer::timeout, this, &EventsEditorCtrl::Update_View);
    QchordOffTimer.setSingleShot(true);
    connect(&QchordOffTimer, &QTimer::timeout, &sound, &Test_Sound::Stop);
    undoTimer.setSingleShot(true);
    connect(&undoTimer, &QTimer::timeout, this, &EventsEditorCtrl::Show_Undo);
    // As the play line: a run is not held up by what is drawn.
    takeTimer.setSingleShot(true);
    takeTimer.setInterval(LINE_MS);
    connect(&takeTimer, &QTimer::timeout, view, &Roll_View::Show_Take);
    CopyModeTimer.setInterval(BLINK_MS);
    connect(&CopyModeTimer, &QTimer::timeout, this, [this] {
        Label4->setProperty("dim", !Label4->property("dim").toBool());
        Label4->style()->polish(Label4);
    });
    subscription = session.events.Subscribe(
        [this](int msgId, std::int32_t param, const std::string&) { Heard(msgId, param); });
    session.files->observers.push_back(this);
    session.undo->Take_Selection = [this] { return UNDO_Create_SelectedIDs_List(); };
    session.undo->Give_Selection = [this](const Undo_Selection& selection) {
        UNDO_Load_SelectedIDs_List(selection);
    };
    Load_Options();
    LoadMarks();
    Show_Tool();
    Show_Grid();
    Show_Status();
}

EventsEditorCtrl::~EventsEditorCtrl() {
    session.undo->Take_Selection = nullptr;
    session.undo->Give_Selection = nullptr;
    std::erase(session.files->observers, this);
    session.events.Unsubscribe(subscription);
}

void EventsEditorCtrl::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), theme.Tokens().panel);
}

// ---- what is shown ----

bool EventsEditorCtrl::eventFilter(QObject* watched, QEvent* event) {
    // Its neighbours in the bar take and leave room too.
    if (watched == status && event->type() == QEvent::Resize)
        Fit_Status();
    return QWidget::eventFilter(watched, event);
}

void EventsEditorCtrl::Show_Channel(std::int32_t channelId) {
    wantedChannel = channelId;
    const int row = session.channels->ChannelI(channelId);
    const bool audio = row >= 0 && Is_On(session.channels->Channels[static_cast<std::size_t>(row)].IsAudio);
    const std::int32_t shown = row < 0 || audio ? NOT_GIVEN : channelId;
    if (shown == display.Channel())
        return;
    view->Gesture().Cancel();
    display.CView_RemoveChannel(shown);
    display.Show_Channel(shown);
    (void)display.Update_Take(); // who comes back to the channel of a take sees all of it
    edits.Channel = shown;
    view->Show_Notes();
    Update_View();
}

void EventsEditorCtrl::Heard(int msgId, std::int32_t param) {
    undoTimer.start(0);
    switch (msgId) {
    case MSG_REC_EVENT:
        if (param == display.Channel() && display.Update_Take() && !takeTimer.isActive())
            takeTimer.start();
        break;
    case MSG_EVENT_ADDED:
        AddEvent(param);
        break;
    case MSG_DELETE_EVENT:
        EventDeleted(param);
        break;
    case MSG_MOVE_EVENT:
        EventMoved(param);
        break;
    case MSG_LENGTH_EVENT:
        EventResized(param);
        break;
    case MSG_NOTE_EVENT:
        EventNoteChanged(param);
        break;
    case MSG_PROPERTIES_EVENT:
    case MSG_VOLUME_EVENT:
    case MSG_CHORD_TYPE_EVENT:
        EventPropertiesChanged(param);
        break;
    case MSG_DELETE_CHANNEL:
        if (session.channels->ChannelI(display.Channel()) < 0)
            Show_Channel(NOT_GIVEN);
        LoadData_From_ChannelClass();
        break;
    case MSG_GENERAL_UPDATE:
        LoadData_From_ChannelClass();
        LoadMarks();
        break;
    case MSG_ADD_MARK:
    case MSG_DELETE_MARK:
    case MSG_CHANGE_MARK:
    case MSG_MOVE_MARK:
        LoadMarks();
        UpdateTimeRule();
        break;
    case MSG_ADD_TEMPO_CHANGE:
    case MSG_DELETE_TEMPO_CHANGE:
    case MSG_SET_TEMPO_CHANGE:
    case MSG_MOVE_TEMPO_CHANGE:
        UpdateTimeRule();
        break;
    case MSG_SET_OUTPUT:
    case MSG_INSERT_BARS:
        UpdateMCNotesRule();
        break;
    case MSG_SONG_POSITION:
    case MSG_SHOW_POSITION:
        PlayPos_Set(session.transport.PlayPosition);
        break;
    default:
        break;
    }
}

void EventsEditorCtrl::Stale(std::int32_t channelId) {
    display.Changed(channelId);
    if (!updateTimer.isActive())
        updateTimer.start(0);
}

void EventsEditorCtrl::Update_View() {
    updateTimer.stop();
    // In another song the channel may come later than the notice of the song.
    if (display.Channel() != wantedChannel)
        Show_Channel(wantedChannel);
    display.Update_View();
    view->Changed();
    Update_HScrollBar();
    Show_Status();
}

void EventsEditorCtrl::LoadMarks() {
    const QSignalBlocker quiet(Combo2);
    Combo2->clear();
    Combo2->addItem(tr("Marks"), -1);
    for (const int row : session.marks.In_Time_Order())
        Combo2->addItem(QString::fromStdString(session.marks.Row(row).MarkName), row);
    Combo2->view()->setMinimumWidth(Combo2->view()->sizeHintForColumn(0));
}

void EventsEditorCtrl::Show_Status() {
    const Event_List& events = display.Own();
    const std::size_t count = events.Selected_Count();
    for (Tool_Button* button : needSelection)
        button->setEnabled(count > 0);
    QString text;
    if (count > 0) {
        text = tr("%1 selected").arg(count);
        QStringList names;
        int volume = -1;
        bool same = true;
        for (const Ev_Display_Row& row : events.Rows()) {
            if (!row.Selected)
                continue;
            if (names.size() <= MOST_STATUS_NAMES)
                names << view->Short_Name(row);
            if (Has_Volume(row.Kind)) {
                same = same && (volume < 0 || volume == row.Vol);
                volume = row.Vol;
            }
        }
        if (names.size() > MOST_STATUS_NAMES)
            names.back() = QStringLiteral("…");
        text += QStringLiteral(" · ") + names.join(QLatin1Char(' '));
        if (volume >= 0)
            text += QStringLiteral(" · ") + (same ? tr("Vol %1").arg(volume) : tr("Vol mixed"));
    }
    statusText = text;
    Fit_Status();
    Show_Undo();
}

void EventsEditorCtrl::Show_Undo() {
    const bool runs = session.transport.Song_Runs();
    undoButton->setEnabled(session.undo->Can_Undo() && !runs);
    redoButton->setEnabled(session.undo->Can_Redo() && !runs);
}

void EventsEditorCtrl::Fit_Status() {
    status->setText(QFontMetrics(status->font()).elidedText(statusText, Qt::ElideRight, status->width()));
    status->setToolTip(statusText);
}

// ---- view ----

void EventsEditorCtrl::UpdateZoom(int zoomIndex) {
    // Around the cursor while it is in view, else around the middle.
    const Roll_Painter painter = view->Painter();
    const QRectF area(painter.Layout().Roll);
    const double x = painter.X_Of(view->Cursor_Beat());
    view->Set_Zoom(zoomIndex, x >= area.left() && x <= area.right() ? x : area.center().x());
}

void EventsEditorCtrl::Update_HScrollBar() {
    const Roll_Window& shown = view->Window();
    const Roll_Layout layout = view->Painter().Layout();
    const double pixels = shown.Geometry.Pixels_Per_Beat();
    Roll_Geometry nearest = shown.Geometry;
    nearest.ZoomIndex = 0;
    across->Set_Shortest(layout.Roll.width() / nearest.Pixels_Per_Beat());
    across->Show_Range(0.0, (view->Scroll_Most_X() + layout.Roll.width()) / pixels);
    across->Show_Window(shown.ScrollX / pixels, layout.Roll.width() / pixels);
    const double height = shown.Geometry.RowHeight();
    down->Show_Range(0.0, (view->Scroll_Most_Y() + layout.Roll.height()) / height);
    down->Show_Window(shown.ScrollY / height, layout.Roll.height() / height);
}

/// The zoom whose view comes nearest to the one asked for, from first on.
void EventsEditorCtrl::Show_Beats(double first, double length) {
    const double width = view->Painter().Layout().Roll.width();
    Roll_Geometry tried = view->Window().Geometry;
    int best = tried.ZoomIndex;
    double apart = std::abs(width / tried.Pixels_Per_Beat() - length);
    for (tried.ZoomIndex = 0; tried.ZoomIndex < ZOOM_ROWS; ++tried.ZoomIndex) {
        const double beats = width / tried.Pixels_Per_Beat();
        if (std::abs(beats - length) >= apart)
            continue;
        apart = std::abs(beats - length);
        best = tried.ZoomIndex;
    }
    UpdateZoom(best);
    view->Scroll_To(view->Window().Geometry.X_Of(first), view->Window().ScrollY);
    Update_HScrollBar();
}

void EventsEditorCtrl::Disable_H_Scrollbar() {
    across->setEnabled(false);
}

void EventsEditorCtrl::Enable_h_Scrollbar() {
    across->setEnabled(true);
}

void EventsEditorCtrl::Set_Options(const Roll_Options& options) {
    view->Set_Options(options);
    Keep_Options();
    Update_HScrollBar();
}

void EventsEditorCtrl::Set_Option(bool Roll_Options::*option, bool on) {
    Roll_Options options = view->Window().Options;
    options.*option = on;
    Set_Options(options);
}

void EventsEditorCtrl::Load_Options() {
    const Settings_Store& store = session.doors.store;
    Roll_Options options;
    options.Bars = Stored_Flag(store, "ViewBars");
    options.Beats = session.settings.Global_EVEd_ViewBeats;
    options.CreatorBars = Stored_Flag(store, "ViewCreatorBars");
    options.NoteNumbers = session.settings.Global_EVEd_View_NoteNumbers != 0;
    options.ReferenceLines = session.settings.Global_EVEd_View_Always_NoteReference != 0;
    options.VolumeLane = Stored_Flag(store, "VolumeLane");
    options.AutoScroll = Stored_Flag(store, "AutoScroll");
    view->Set_Options(options);
    const std::string zoom = store.Get(SECTION, "Zoom", {});
    int row = Default_Zoom();
    std::from_chars(zoom.data(), zoom.data() + zoom.size(), row);
    view->Set_Zoom(std::clamp(row, 0, ZOOM_ROWS - 1), 0.0);
}

void EventsEditorCtrl::Keep_Options() const {
    const Roll_Options& options = view->Window().Options;
    Settings_Store& store = session.doors.store;
    const auto keep = [&](const char* key, bool on) { store.Set(SECTION, key, on ? "1" : "0"); };
    keep("ViewBars", options.Bars);
    keep("ViewCreatorBars", options.CreatorBars);
    keep("VolumeLane", options.VolumeLane);
    keep("AutoScroll", options.AutoScroll);
    store.Set(SECTION, "Zoom", std::to_string(view->Window().Geometry.ZoomIndex));
    session.settings.Global_EVEd_ViewBeats = options.Beats;
    session.settings.Global_EVEd_View_NoteNumbers = options.NoteNumbers ? 1 : 0;
    session.settings.Global_EVEd_View_Always_NoteReference = options.ReferenceLines ? 1 : 0;
}

// ---- the run ----

bool EventsEditorCtrl::TimePos_SetStartTime(double beats) {
    PlayPos_Set(beats);
    return view->Window().Options.AutoScroll;
}

void EventsEditorCtrl::TimePos_SetCurTime(double beats) {
    if (lineClock.isValid() && lineClock.elapsed() < LINE_MS)
        return;
    lineClock.start();
    if (isVisible())
        view->Move_Line(beats, view->Window().Options.AutoScroll);
}

void EventsEditorCtrl::TimePos_End() {
    Enable_h_Scrollbar();
    lineClock.invalidate();
    PlayPos_Set(session.transport.PlayPosition);
    takeTimer.stop();
    view->Bring_Take_Into_View();
    view->Set_Recording(false);
    LoadData_From_ChannelClass();
}

void EventsEditorCtrl::PlayPos_Set(double beats) {
    view->Move_Line(beats, view->Window().Options.AutoScroll);
    Update_HScrollBar();
}

void EventsEditorCtrl::On_Run_Started(bool recording) {
    sound.Stop();
    view->Set_Recording(recording);
    Show_Undo();
    if (TimePos_SetStartTime(session.transport.PlayPosition))
        Disable_H_Scrollbar();
}

void EventsEditorCtrl::On_Position(double beats, std::int64_t) {
    TimePos_SetCurTime(beats);
}

void EventsEditorCtrl::On_Run_Ended() {
    TimePos_End();
}

void EventsEditorCtrl::On_Song_Replaced() {
    view->Gesture().Cancel();
    while (display.CView_GetTotalChannels() > 0)
        display.CView_RemoveChannel(display.CView_GetData(0).ChannelID);
    // Another song's events may bear the same IDs: nothing of the selection goes over.
    display.Show_Channel(NOT_GIVEN);
    edits.Channel = NOT_GIVEN;
    view->Scroll_To(0.0, view->Window().ScrollY);
    LoadMarks();
    Show_Grid();
    LoadData_From_ChannelClass();
}

// ---- undo ----

Undo_Selection EventsEditorCtrl::UNDO_Create_SelectedIDs_List() const {
    // As it was before the step: what the step changed has not been loaded yet.
    return {display.Channel(), display.Last_Own().Selected_IDs()};
}

void EventsEditorCtrl::UNDO_Load_SelectedIDs_List(const Undo_Selection& selection) {
    if (selection.ChannelID != display.Channel())
        return;
    view->Gesture().Cancel(); // what the hand held is not what it was
    display.Own().Select(selection.EventIDs);
    Update_View();
    view->Bring_Selection_Into_View();
}

// ---- settings of the song ----

bool EventsEditorCtrl::Settings_Load(Byte_Cursor& cursor) {
    const bool read = session.editorSetup.Settings_Load(cursor);
    Show_Grid();
    view->Changed();
    return read;
}

void EventsEditorCtrl::Set_Grid(int div) {
    if (session.editorSetup.AlignDiv != div)
        session.project.Modified = true;
    session.editorSetup.AlignDiv = div;
    Set_Align(true);
}

void EventsEditorCtrl::Set_Align(bool on) {
    view->Gesture().Grid.AlignOn = on;
    Show_Grid();
    view->Changed();
}

// ---- sound ----

std::int32_t EventsEditorCtrl::Slot() const {
    return sound.Slot_Of(display.Channel());
}

void EventsEditorCtrl::Sound_Note(int note, int volume) {
    // A song that plays tells by itself.
    if (display.Store() == nullptr || session.transport.Song_Runs())
        return;
    QchordOffTimer.stop();
    sound.Start_Notes(Slot(), {note}, volume, NOTE_MS);
}

void EventsEditorCtrl::Sound_Event(std::int32_t eventId) {
    const ChannelClass* store = display.Store();
    const auto read = store == nullptr ? std::nullopt : store->ReadEvent(store->GetEvent_I(eventId));
    if (!read || session.transport.Song_Runs())
        return;
    if (read->Note != nullptr) {
        Sound_Note(read->Note->Note, read->Note->Vol);
    } else if (read->QChord != nullptr) {
        sound.Start_Stored_Chord(Slot(), *read->QChord);
        QchordOffTimer.start(CHORD_MS);
    }
}

// ---- commands ----

void EventsEditorCtrl::Run(Roll_Command wanted) {
    switch (wanted) {
    case Roll_Command::Cut:
        Cut();
        break;
    case Roll_Command::Copy:
        Copy_SelectedEvents_To_Clipboard();
        break;
    case Roll_Command::Paste:
        Paste_Events_From_Clipboard();
        break;
    case Roll_Command::Delete:
        Delete_Selected();
        break;
    case Roll_Command::Select_All:
        display.Own().Select_All();
        break;
    case Roll_Command::Invert_Selection:
        display.Own().Invert_Selection();
        break;
    case Roll_Command::Properties:
        Open_Properties();
        break;
    case Roll_Command::Time_Properties:
        Open_Time_Properties();
        break;
    case Roll_Command::Volume:
        Open_Volume();
        break;
    case Roll_Command::Repeat_Align:
        Align_To_Beats(lastAlign);
        break;
    case Roll_Command::Legato:
        if (display.Own().Selected_Count() > 1)
            edits.Legato(Selected());
        break;
    case Roll_Command::Louder:
        Change_Volume(5);
        break;
    case Roll_Command::Softer:
        Change_Volume(-5);
        break;
    case Roll_Command::Zoom_In:
        UpdateZoom(view->Window().Geometry.Zoomed(1));
        break;
    case Roll_Command::Zoom_Out:
        UpdateZoom(view->Window().Geometry.Zoomed(-1));
        break;
    case Roll_Command::Menu:
        Show_Event_Menu(view->mapToGlobal(view->Cursor_Place()));
        break;
    }
    view->Changed();
    Show_Status();
}

void EventsEditorCtrl::Copy_SelectedEvents_To_Clipboard() {
    if (const ChannelClass* store = display.Store())
        clipboard.Copy(*store, Selected());
}

void EventsEditorCtrl::Cut() {
    Copy_SelectedEvents_To_Clipboard();
    edits.Delete(Selected(), "Cut events");
}

void EventsEditorCtrl::Delete_Selected() {
    edits.Delete(Selected());
}

void EventsEditorCtrl::Paste_Events_From_Clipboard() {
    if (display.Store() == nullptr || clipboard.Is_Empty())
        return;
    const Event_Edits::IDs added =
        edits.Add(clipboard.Placed_At(session.transport.PlayPosition), "Paste events");
    display.Own().Select(added);
    const int first = added.empty() ? -1 : display.Own().Row_Of(added.front());
    if (first >= 0)
        view->Bring_Into_View(display.Own().Rows()[static_cast<std::size_t>(first)]);
    Update_View();
}

void EventsEditorCtrl::Align_To_Beats(int div) {
    lastAlign = div;
    if (display.Own().Selected_Count() > 0)
        edits.Align(Selected(), div, alignStrength);
}

void EventsEditorCtrl::Transpose(int semitones) {
    if (display.Own().Selected_Count() > 0)
        (void)edits.Move_Rows(Selected(), -semitones);
}

void EventsEditorCtrl::Change_Volume(int delta) {
    if (display.Own().Selected_Count() > 0)
        edits.Change_Volume(Selected(), delta);
}

} // namespace tonvex
