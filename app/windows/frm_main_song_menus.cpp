// The menus of the main window for what belongs to the whole song: tempo, marks, maps, metronome, channels
// from templates.

#include "app/windows/frm_main.h"

#include "engine/windows/frm_metronome_setup.h"
#include "engine/windows/frm_recorder.h"
#include "platform/qt/core_words.h"
#include "project/windows/frm_channel_wizard.h"
#include "song/windows/frm_marks.h"
#include "song/windows/frm_tempo.h"
#include "song/windows/mark_selection.h"
#include "widgets/channels_list.h"

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>

namespace tonvex {

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
    undoAction =
        Add_Action(menu, {}, {QKeySequence(Qt::CTRL | Qt::Key_Z)}, [this] { (void)session.undo->Do_Undo(); });
    undoAction->setObjectName(QStringLiteral("undo"));
    undoAction->setToolTip(tr("Undo last action"));
    redoAction = Add_Action(
        menu, {}, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
        [this] { (void)session.undo->Do_Redo(); });
    redoAction->setObjectName(QStringLiteral("redo"));
    redoAction->setToolTip(tr("Redo last action"));
    lockedInRun.push_back(undoAction);
    lockedInRun.push_back(redoAction);
}

/// The entries name the step that they would bring back.
void frmMain::Refresh_Undo() {
    const auto show = [](QAction& action, const std::string& text, bool can) {
        action.setText(QLatin1Char('&') + Core_Words(text));
        action.setEnabled(can);
    };
    show(*undoAction, session.undo->Undo_Text(), session.undo->Can_Undo());
    show(*redoAction, session.undo->Redo_Text(), session.undo->Can_Redo());
}

void frmMain::Make_Project_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Project"));
    Add_Action(menu, tr("&Tempo changes..."), {},
               [this] { Show_Window("frmTempo", [this] { return new frmTempo(session, theme, this); }); });
}

void frmMain::Make_Marks_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("M&arks"));
    Add_Action(menu, tr("&Select mark"), {QKeySequence(Qt::Key_T)}, [this] { Open_Marks(false); });
    Add_Action(menu, tr("&Add/save mark"), {}, [this] {
        if (marks->Select_Or_Add_At_Play_Position())
            Open_Marks(true);
    });
    Add_Action(menu, tr("&Delete mark"), {}, [this] { marks->Delete(); });
    menu->addSeparator();
    Add_Action(menu, tr("&Go to mark"), {}, [this] { marks->Go_To(); });
    Add_Action(menu, tr("Set mark s&tart at current play position"), {},
               [this] { marks->Set_Start_At_Play_Position(); });
    Add_Action(menu, tr("Set mark &end at current play position"), {},
               [this] { marks->Set_End_At_Play_Position(); });
    Add_Action(menu, tr("&Unselect mark (select none)"), {QKeySequence(Qt::Key_Delete)},
               [this] { marks->Select(-1); });
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
    Add_Action(menu, tr("Pan &map"), {}, [this] { Open_Map(MSG_OPEN_PAN_MAP, MSG_OPEN_AUDIO_PAN_MAP); });
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
    metronomeAction = Add_Check(menu, tr("&Metronome on"), {QKeySequence(Qt::Key_M)},
                                [this](bool on) { recorder->Set_Metronome(on); });
    Add_Action(menu, tr("&Setup Metronome..."), {QKeySequence(Qt::CTRL | Qt::Key_M)}, [this] {
        Show_Window("frmMetronomeSetup", [this] { return new frmMetronomeSetup(session, theme, this); });
    });
}

} // namespace tonvex
