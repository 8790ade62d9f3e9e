// The main window and the functions of the table: what runs them, the entries and buttons that show their
// keys, and the road of a key from the window to its function.

#include "app/windows/frm_key_access.h"
#include "app/windows/frm_main.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "platform/qt/virtual_keys.h"
#include "song/windows/mark_selection.h"
#include "widgets/channel_row.h"
#include "widgets/channels_header.h"
#include "widgets/channels_list.h"
#include "widgets/frm_channel_properties.h"
#include "widgets/frm_fx_config.h"
#include "widgets/function_key_text.h"
#include "widgets/song_overview.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QDockWidget>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace tonvex {

namespace {

/// Long enough for the handler of the key to be over.
constexpr int KEY_PRESS_MS = 5;
constexpr int KEYCODE_TAB = 9;
constexpr int KEYCODE_ENTER = 13;
constexpr int OCTAVES = 6;
constexpr int REC_SPEED_STEP = 10;
constexpr int FULL_SPEED = 100;
constexpr int SECONDS_STEP = 5;
constexpr std::string_view TAG_RECORD = "Record";
constexpr std::string_view TAG_PLAY = "Play song";

/// What goes in steps goes on while its key is held; any other function runs once a press.
constexpr std::string_view IN_STEPS[] = {"Move channel Pan 10% Right",
                                         "Move channel Pan 10% Left",
                                         "Increase channel volume 10%",
                                         "Decrease channel volume 10%",
                                         "Undo last action",
                                         "Redo last action",
                                         "Rewind 5 seconds",
                                         "Forward 5 seconds",
                                         "Decrease Rec speed 10 %",
                                         "Increase Rec speed 10 %"};

bool Goes_On_While_Held(const Function_Key_Table& table, int keyCode, int shiftMask) {
    const int row = table.Row_Of_Key(keyCode, shiftMask);
    return row >= 0 && std::count(std::begin(IN_STEPS), std::end(IN_STEPS),
                                  table.FunctionKeys[static_cast<std::size_t>(row)].InternalName) > 0;
}

bool Window_In_Front() {
    return QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
}

} // namespace

// ---- what the functions do ----

void frmMain::Set_Function(const std::string& internalName, const std::function<void()>& act) {
    session.keyRunner.Set_Action(internalName, act);
    ownFunctions.push_back(internalName);
}

void frmMain::Make_Functions() {
    const auto channel = [this](const std::function<void()>& act) {
        return [this, act] {
            if (Needs_Channel())
                act();
        };
    };
    Set_Function("Undo last action", [this] { Undo_Or_Redo(&UndoModule::Do_Undo); });
    Set_Function("Redo last action", [this] { Undo_Or_Redo(&UndoModule::Do_Redo); });
    Set_Function("Select Channel", [this] {
        if (Channel_Row* row = channelsList->Row_Of(channelsList->Selected()))
            row->setFocus();
        else
            (void)Needs_Channel();
    });
    Set_Function("Add new channel", [this] { Add_Channel(); });
    Set_Function("Delete Channel", [this] { Delete_Channel(); });
    Set_Function("Clear Channel Events", [this] { Clear_Channel_Events(); });
    Set_Function("Set channel Patch", channel([this] { properties->Open_Patches(); }));
    Set_Function("Set output channel", channel([this] { properties->Open_Slots(); }));
    for (const Effect_Kind kind : ALL_EFFECTS)
        Set_Function(EFFECT_FUNCTIONS[static_cast<std::size_t>(kind)],
                     channel([this, kind] { Open_Effect(kind); }));
    Make_Transport_Functions();
    Set_Function("Enable/Disable Metronome", [this] { recorder->Set_Metronome(!session.options.Metronome); });
    Set_Function("Setup Metronome", [this] { Open_Metronome(); });
    Set_Function("Use Midi Keyboard as input",
                 [this] { Choose_Midi_Input(session.input->InputDevice != 1); });
    Set_Function("Start Practice mode", [this] { keyboard->Press_Practice(); });
    Set_Function("Select Mark", [this] { Open_Marks(false); });
    Set_Function("Set mark start at current play position", [this] { marks->Set_Start_At_Play_Position(); });
    Set_Function("Set mark end at current play position", [this] { marks->Set_End_At_Play_Position(); });
    Set_Function("Unselect mark (select none)", [this] { marks->Select(-1); });
    for (int octave = 0; octave < OCTAVES; ++octave) {
        const std::string number = std::to_string(octave + 1);
        Set_Function("Select Notes octave: " + number,
                     [this, octave] { piano->Select_Notes_Octave(octave); });
        Set_Function("Select Qchords octave: " + number,
                     [this, octave] { piano->Select_QChords_Octave(octave); });
    }
    // No row of the table has this name; one of a later version may.
    Set_Function("Keyboard Access", [this] { Open_Key_Access(); });
}

void frmMain::Make_Transport_Functions() {
    Set_Function("Record", [this] { Run_From_Key(TAG_RECORD); });
    Set_Function("Play song", [this] { Run_From_Key(TAG_PLAY); });
    Set_Function("Stop recording/playing", [this] { recorder->Button_Stop(); });
    Set_Function("Rewind 5 seconds", [this] { recorder->Move_By_Seconds(-SECONDS_STEP); });
    Set_Function("Forward 5 seconds", [this] { recorder->Move_By_Seconds(SECONDS_STEP); });
    Set_Function("Rewind to start of song", [this] { recorder->To_Start(); });
    Set_Function("Go to end of song", [this] { recorder->To_End(); });
    const auto speed = [this](int change) {
        recorder->Set_Rec_Speed(session.options.RecSpeedPercent + change);
    };
    Set_Function("Decrease Rec speed 10 %", [speed] { speed(-REC_SPEED_STEP); });
    Set_Function("Increase Rec speed 10 %", [speed] { speed(REC_SPEED_STEP); });
    Set_Function("Set Rec speed to 100%", [this] { recorder->Set_Rec_Speed(FULL_SPEED); });
}

void frmMain::Undo_Or_Redo(bool (UndoModule::*bringBack)()) {
    // A key that is down belongs to the song as it stands.
    recorder->Practice().Hold();
    (void)(session.undo.get()->*bringBack)();
    recorder->Practice().Let_Go();
}

void frmMain::Open_Effect(Effect_Kind kind) {
    if (effects == nullptr)
        effects = new frmFX_Config(session, theme, this);
    effects->Show_Effect(channelsList->Selected(), kind);
}

void frmMain::Open_Key_Access() {
    Show_Window("frmKeyAccess", [this] {
        auto* window = new frmKeyAccess(session, theme, this);
        connect(window, &frmKeyAccess::keysChanged, this, &frmMain::Refresh_Keys);
        connect(window, &frmKeyAccess::helpAsked, this, &frmMain::Show_Help);
        return window;
    });
}

void frmMain::Run_From_Key(std::string_view tag) {
    keyPressTag = tag;
    KeyPressRunFuncTimer.start(0);
}

void frmMain::Make_Key_Timers() {
    GlobalKeyPressTimer.setInterval(KEY_PRESS_MS);
    connect(&GlobalKeyPressTimer, &QTimer::timeout, this,
            [this] { session.keyRunner.Global_Key_Tick(Window_In_Front()); });
    session.keyRunner.GlobalKeyPressTimer = [this](bool on) {
        if (on)
            GlobalKeyPressTimer.start();
        else
            GlobalKeyPressTimer.stop();
    };
    session.keyRunner.selectedChannel = [this] { return channelsList->Selected(); };
    KeyPressRunFuncTimer.setSingleShot(true);
    connect(&KeyPressRunFuncTimer, &QTimer::timeout, this, [this] {
        if (keyPressTag == TAG_RECORD)
            recorder->Button_Rec();
        else
            recorder->Button_Play();
    });
    qApp->installEventFilter(this);
}

void frmMain::Release_Functions() {
    qApp->removeEventFilter(this);
    session.keyRunner.GlobalKeyPressTimer = nullptr;
    session.keyRunner.selectedChannel = nullptr;
    for (const std::string& name : ownFunctions)
        session.keyRunner.Set_Action(name, nullptr);
}

// ---- entries and buttons show the keys in force ----

QAction* frmMain::Add_Function(QMenu* menu, const QString& text, const char* function, Function_Entry kind) {
    auto* action = new QAction(text, this);
    action->setCheckable(kind == Function_Entry::Check);
    action->setData(QLatin1String(function));
    // Shown beside the entry; it is the table that runs the function.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, function, kind] {
        if (kind != Function_Entry::Of_Channel || Needs_Channel())
            session.keyRunner.Act(function);
        Refresh_Actions();
    });
    menu->addAction(action);
    functionEntries.push_back({action, function});
    return action;
}

void frmMain::Lock_Functions(bool locked) {
    const Function_Key_Table& table = session.functionKeys;
    for (const auto& [action, function] : functionEntries) {
        const int row = table.Row_Of_Function(function);
        if (row >= 0 && table.FunctionKeys[static_cast<std::size_t>(row)].WhileRunning == 0)
            action->setEnabled(!locked);
    }
}

void frmMain::Refresh_Keys() {
    const Function_Key_Table& table = session.functionKeys;
    for (const auto& [action, function] : functionEntries)
        action->setShortcut(Key_Of_Function(session, function));
    // A key of the table is no other entry's.
    for (const auto& [action, keys] : fixedKeys) {
        Keys free;
        std::copy_if(keys.begin(), keys.end(), std::back_inserter(free), [&table](const QKeySequence& key) {
            return std::none_of(
                table.FunctionKeys.begin(), table.FunctionKeys.end(),
                [&key](const FunctionKey& row) { return Is_Key_Of(key, row.KeyCode, row.Modifier); });
        });
        action->setShortcuts(free);
    }
    // Redo ships without a key of its own; the usual ones stand in.
    if (redoAction->shortcut().isEmpty() && !redoKeys->shortcuts().isEmpty())
        redoAction->setShortcut(redoKeys->shortcuts().back());
    recorder->Show_Keys();
    channelsHeader->Show_Keys();
    overview->update();
}

// ---- the road of a key ----

bool frmMain::Take_Key(QKeyEvent& event) {
    // A widget that wants a key for itself takes it when it is offered.
    if (event.type() == QEvent::ShortcutOverride) {
        offeredKey = event.keyCombination();
        return false;
    }
    const bool offered = std::exchange(offeredKey, {}) == event.keyCombination();
    const int code = Virtual_Key_Of(event);
    if (!offered || code == 0)
        return false;
    const int mask = Shift_Mask_Of(event);
    // Enter ends what is written in a field, and is no function's there.
    if (code == KEYCODE_ENTER && mask == 0 &&
        qobject_cast<QAbstractSpinBox*>(QApplication::focusWidget()) != nullptr)
        return false;
    // The window system may repeat a held key without saying so.
    const bool repeats = event.isAutoRepeat() || code == std::exchange(heldKey, code);
    if (!repeats || Goes_On_While_Held(session.functionKeys, code, mask))
        session.keyRunner.Note_Key(code, mask);
    event.accept();
    return true;
}

bool frmMain::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto& key = static_cast<QKeyEvent&>(*event);
        (void)Take_Key(key);
        // A function that was given Alt and a letter goes before the mnemonic that it is.
        const int mask = Shift_Mask_Of(key);
        if ((mask & ALT_KEY) != 0 && session.functionKeys.Row_Of_Key(Virtual_Key_Of(key), mask) >= 0) {
            event->accept();
            return true;
        }
    }
    return QMainWindow::event(event);
}

void frmMain::keyPressEvent(QKeyEvent* event) {
    if (!Take_Key(*event))
        QMainWindow::keyPressEvent(event);
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    banner->Fit();
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Resize:
        // Before the menu bar places what is in it.
        if (watched == menuBar() && titleLabel != nullptr)
            Fit_Title(static_cast<QResizeEvent*>(event)->size().width());
        break;
    case QEvent::Show:
    case QEvent::Hide:
        // A dialog takes over the keyboard, or gives it back.
        if (!event->spontaneous() && qobject_cast<QDialog*>(watched) != nullptr)
            session.keyRunner.HoldGlobalKeys();
        break;
    case QEvent::KeyRelease:
        if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
            heldKey = 0;
        break;
    case QEvent::WindowDeactivate: // the release may never be told
        heldKey = 0;
        break;
    case QEvent::ShortcutOverride:
        // The menu bar has the focus while its menus are open: the keys that entries show would run them,
        // but a letter is the mnemonic of another.
        if (QApplication::activePopupWidget() != nullptr || menuBar()->hasFocus()) {
            event->accept();
            return true;
        }
        [[fallthrough]];
    case QEvent::KeyPress: {
        auto& key = static_cast<QKeyEvent&>(*event);
        // A pane that floats is a window of its own, where keys end.
        const auto* dock = qobject_cast<QDockWidget*>(watched);
        if (dock != nullptr && dock->isFloating() && dock->parent() == this)
            return Take_Key(key);
        // Given to a function, Tab moves the focus no longer.
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::KeyPress && (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) &&
            widget != nullptr && widget->window() == this &&
            session.functionKeys.Row_Of_Key(KEYCODE_TAB, Shift_Mask_Of(key)) >= 0)
            return Take_Key(key);
        break;
    }
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace tonvex
