// The menus of the main window for what belongs to the whole song: tempo, marks, maps, metronome, channels
// from templates.

#include "app/song_key.h"
#include "app/windows/frm_main.h"
#include "editors/windows/frm_events_editor.h"

#include "engine/windows/frm_metronome_setup.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/layout_notice.h"
#include "platform/qt/core_words.h"
#include "project/windows/frm_channel_wizard.h"
#include "song/windows/frm_marks.h"
#include "song/windows/frm_tempo.h"
#include "song/windows/mark_selection.h"
#include "widgets/channels_list.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>

namespace tonvex {

namespace {

constexpr int SONG_KEYS = 12;

} // namespace

void frmMain::Show_Window(const char* name, const std::function<QDialog*()>& make) {
    auto* window = findChild<QDialog*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    if (window == nullptr) {
        window = make();
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void frmMain::Make_Edit_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Edit"));
    menu->setToolTipsVisible(true);
    undoAction = Add_Function(menu, {}, "Undo last action");
    undoAction->setObjectName(QStringLiteral("undo"));
    undoAction->setToolTip(tr("Undo last action"));
    redoAction = Add_Function(menu, {}, "Redo last action");
    redoAction->setObjectName(QStringLiteral("redo"));
    redoAction->setToolTip(tr("Redo last action"));
    // The keys that most programs have, for whom the table leaves them.
    redoKeys = new QAction(this);
    connect(redoKeys, &QAction::triggered, redoAction, &QAction::trigger);
    addAction(redoKeys);
    fixedKeys.push_back(
        {redoKeys, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)}});
    QAction* steps =
        Add_Action(menu, tr("Undo &list..."), {}, [this] { eventsEditor->Editor().Open_Undo_List(); });
    menu->addSeparator();
    Add_Function(menu, tr("&Select channel"), "Select Channel");
    Add_Function(menu, tr("&Add new channel"), "Add new channel");
    QAction* fromTemplate = Add_Action(menu, tr("Add channel from a &template..."),
                                       {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Insert)},
                                       [this] { Add_Channel_From_Template(); });
    Add_Function(menu, tr("&Delete channel"), "Delete Channel");
    menu->addSeparator();
    Add_Action(menu, tr("&Edit channel properties..."), {}, [this] { Edit_Channel_Properties(); });
    QAction* rename = Add_Action(menu, tr("Re&name channel..."), {}, [this] { Rename_Channel(); });
    Add_Function(menu, tr("&Clear channel events"), "Clear Channel Events");
    for (QAction* action : {steps, fromTemplate, rename})
        lockedInRun.push_back(action);
}

/// The entries name the step that they would bring back.
void frmMain::Refresh_Undo() {
    const auto show = [this](QAction& action, const std::string& text, bool can) {
        action.setText(QLatin1Char('&') + Core_Words(text));
        action.setEnabled(can && !isLocked);
    };
    show(*undoAction, session.undo->Undo_Text(), session.undo->Can_Undo());
    show(*redoAction, session.undo->Redo_Text(), session.undo->Can_Redo());
}

void frmMain::Make_Project_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Project"));
    Add_Action(menu, tr("&Tempo changes..."), {}, [this] { Open_Tempo(); });
    menu->addSeparator();
    Make_Key_Menu(menu, tr("&Major key"), MAJOR);
    Make_Key_Menu(menu, tr("M&inor key"), MINOR);
}

void frmMain::Open_Tempo() {
    Show_Window("frmTempo", [this] { return new frmTempo(session, theme, this); });
}

void frmMain::Make_Key_Menu(QMenu* project, const QString& text, int mode) {
    QMenu* menu = project->addMenu(text);
    lockedInRun.push_back(menu->menuAction());
    for (int key = 0; key < SONG_KEYS; ++key)
        songKeys.push_back(Add_Check(menu, {}, {}, [this, key, mode](bool) { Set_Song_Key(key, mode); }));
}

void frmMain::Set_Song_Key(int key, int mode) {
    recorder->Practice().Hold();
    const bool changed = Update_Song_Key(session, key, mode);
    recorder->Practice().Let_Go();
    if (changed)
        Tell_Layout_Changed(session);
    else if (Song_Key_Is_Fixed(session))
        session.doors.dialogs.Show_Message(
            Box_Kind::Information,
            tr("The accompaniment of this song stands in its key, which stays.").toStdString());
    Show_Song_Key();
    Refresh_Actions();
}

void frmMain::Show_Song_Key() {
    for (std::size_t i = 0; i < songKeys.size(); ++i) {
        const int key = static_cast<int>(i) % SONG_KEYS;
        const int mode = static_cast<int>(i) / SONG_KEYS;
        songKeys[i]->setText(Core_Words(Song_Key_Name(session, key, mode)));
        songKeys[i]->setChecked(session.creator.SongKey == key &&
                                (session.creator.SongMode == MINOR) == (mode == MINOR));
    }
}

void frmMain::Make_Marks_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("M&arks"));
    Add_Function(menu, tr("&Select mark"), "Select Mark");
    Add_Action(menu, tr("&Add/save mark"), {}, [this] {
        if (marks->Select_Or_Add_At_Play_Position())
            Open_Marks(true);
    });
    Add_Action(menu, tr("&Delete mark"), {}, [this] { marks->Delete(); });
    menu->addSeparator();
    Add_Action(menu, tr("&Go to mark"), {}, [this] { marks->Go_To(); });
    Add_Function(menu, tr("Set mark s&tart at current play position"),
                 "Set mark start at current play position");
    Add_Function(menu, tr("Set mark &end at current play position"), "Set mark end at current play position");
    Add_Function(menu, tr("&Unselect mark (select none)"), "Unselect mark (select none)");
}

void frmMain::Open_Marks(bool editName) {
    Show_Window("frmMarks", [this] { return new frmMarks(session, theme, *marks, this); });
    if (editName)
        findChild<frmMarks*>()->Edit_Name();
}

void frmMain::Add_Channel_From_Template() {
    Show_Window("frmChannelWizard", [this] {
        auto* wizard = new frmChannelWizard(session, theme, recorder->Practice(), this);
        connect(wizard, &frmChannelWizard::channelAdded, this, &frmMain::Select_Channel);
        return wizard;
    });
}

void frmMain::Make_Map_Entries(QMenu* menu) {
    Add_Action(menu, tr("&Volume map"), {},
               [this] { Open_Map(MSG_OPEN_VOLUME_MAP, MSG_OPEN_AUDIO_VOLUME_MAP); });
    Add_Action(menu, tr("Pa&n map"), {}, [this] { Open_Map(MSG_OPEN_PAN_MAP, MSG_OPEN_AUDIO_PAN_MAP); });
}

void frmMain::Open_Map(int slotMessage, int audioMessage) {
    if (!Needs_Channel())
        return;
    const std::int32_t channelId = channelsList->Selected();
    const int row = session.channels->ChannelI(channelId);
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    if (Is_On(channel.IsAudio))
        session.hub->Message(this, audioMessage, channelId);
    else
        session.hub->Message(this, slotMessage, std::int32_t{channel.OutputChannel});
}

void frmMain::Make_Metronome_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Metronome"));
    metronomeAction = Add_Function(menu, tr("&Enable/Disable Metronome"), "Enable/Disable Metronome",
                                   Function_Entry::Check);
    Add_Function(menu, tr("&Setup Metronome..."), "Setup Metronome");
}

void frmMain::Open_Metronome() {
    Show_Window("frmMetronomeSetup", [this] { return new frmMetronomeSetup(session, theme, this); });
}

} // namespace tonvex
