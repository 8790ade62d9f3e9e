// The menus of the main window for what belongs to the whole song: tempo, metronome.

#include "app/windows/frm_main.h"

#include "engine/windows/frm_metronome_setup.h"
#include "engine/windows/frm_recorder.h"
#include "song/windows/frm_tempo.h"

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

void frmMain::Make_Project_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Project"));
    Add_Action(menu, tr("&Tempo changes..."), {},
               [this] { Show_Window("frmTempo", [this] { return new frmTempo(session, theme, this); }); });
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
