// The main window and the files of songs: the File menu, files dropped on it, the ways in and out of the
// program.

#include "app/left_songs.h"
#include "app/windows/autosave_timer.h"
#include "app/windows/first_song.h"
#include "app/windows/frm_main.h"
#include "app/windows/song_files.h"
#include "engine/windows/frm_recorder.h"
#include "project/windows/frm_export_audio.h"
#include "project/windows/frm_new_file.h"
#include "project/windows/frm_properties.h"
#include "project/windows/frm_save_as_template.h"
#include "song/windows/frm_set_pitch.h"
#include "song/windows/frm_set_speed.h"
#include "widgets/channels_list.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScopedValueRollback>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

/// The song or MIDI file that is dragged; empty when it is anything else.
fs::path Dragged_File(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return {};
    fs::path file = urls.front().toLocalFile().toStdString();
    return Song_Files::Is_Song_File(file) || Song_Files::Is_Midi_File(file) ? file : fs::path();
}

/// False when the window is to stay, or when the changes of the layout could not be kept; the user has been
/// told.
bool Layout_May_Go(Session& session) {
    KeyboardLayout& layout = *session.layout;
    if (layout.KeyboardFileName.empty() || !layout.KeyboardModified)
        return true;
    const Answer answer =
        session.doors.dialogs.Ask_YesNoCancel("Keyboard setup was modified.\nSave changes ?");
    if (answer != Answer::Yes)
        return answer == Answer::No;
    // Files are untransposed.
    const int tuning = layout.AppliedTuning;
    layout.Transpose(-tuning);
    const fs::path folder = session.paths.Get_Folder("config") / "keyboard";
    layout.KeyboardModified = !layout.Write_Tables(folder / (layout.KeyboardFileName + ".dat"), true);
    layout.Transpose(tuning);
    return !layout.KeyboardModified;
}

} // namespace

// ---- the menu ----

void frmMain::Make_File_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    Add_Action(menu, tr("&New"), {QKeySequence::New}, [this] { songFiles->New(); });
    lockedInRun.push_back(Add_Action(menu, tr("New from &template..."),
                                     {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N)},
                                     [this] { New_From_Template(); }));
    // Ctrl+O is the output channel's.
    Add_Action(menu, tr("&Open..."), {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O)},
               [this] { songFiles->Open(); });
    recentMenu = menu->addMenu(tr("&Recent files"));
    recentMenu->setToolTipsVisible(true);
    menu->addSeparator();
    Add_Action(menu, tr("&Save"), {QKeySequence(Qt::CTRL | Qt::Key_S)}, [this] { songFiles->Save(); });
    Add_Action(menu, tr("Save &as..."), {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
               [this] { songFiles->Save_As(); });
    lockedInRun.push_back(Add_Action(menu, tr("Save as te&mplate..."), {}, [this] { Save_As_Template(); }));
    menu->addSeparator();
    Make_Song_Entries(menu);
    menu->addSeparator();
    Make_Midi_File_Entries(menu);
    menu->addSeparator();
    Make_Export_Entries(menu);
    menu->addSeparator();
    Add_Action(menu, tr("E&xit"), {QKeySequence(Qt::CTRL | Qt::Key_Q)}, [this] { close(); });
    Show_Recent_Files();
}

void frmMain::Make_Song_Entries(QMenu* menu) {
    Add_Action(menu, tr("Propert&ies..."), {}, [this] {
        Show_Window("frmProperties", [this] {
            auto* window = new frmProperties(session, theme, this);
            connect(window, &frmProperties::changed, this, &frmMain::Refresh_Title);
            return window;
        });
    });
    lockedInRun.push_back(Add_Action(menu, tr("Change Pitc&h..."), {}, [this] {
        Show_Window("frmSetPitch", [this] { return new frmSetPitch(session, theme, this); });
    }));
    lockedInRun.push_back(Add_Action(menu, tr("Change S&peed..."), {}, [this] {
        Show_Window("frmSetSpeed", [this] { return new frmSetSpeed(session, theme, this); });
    }));
}

void frmMain::Make_Export_Entries(QMenu* menu) {
    const auto add = [this, menu](const QString& text, const char* name, Audio_Export entry) {
        QAction* action = Add_Action(menu, text, {}, [this, entry] {
            recorder->Practice().Hold();
            Export_Audio(session, theme, entry, this);
            recorder->Practice().Let_Go();
        });
        action->setObjectName(QLatin1String(name));
        lockedInRun.push_back(action);
    };
    add(tr("Export to a&udio..."), "mnu_ExporttoWav", Audio_Export::Any);
    add(tr("Export to &WMA..."), "mnu_ExporttoWMA", Audio_Export::Wma);
}

void frmMain::New_From_Template() {
    const auto begin = [this](const fs::path& file) {
        // Questions about the song in hand stand behind this window.
        QTimer::singleShot(0, this, [this, file] {
            if (file.empty())
                songFiles->New();
            else
                songFiles->Start_From_Template(file);
        });
        return true;
    };
    Show_Window("frmNewFile", [this, begin] {
        return new frmNewFile(session.doors.dialogs, theme, session.paths.Get_Folder("templates"), begin,
                              this);
    });
}

void frmMain::Save_As_Template() {
    Show_Window("frmSaveAsTemplate", [this] {
        return new frmSaveAsTemplate(
            session.doors.dialogs, theme, session.paths.Get_Folder("templates"),
            [this](const fs::path& file) { return songFiles->Save_Template(file); }, this);
    });
}

void frmMain::Show_Recent_Files() {
    recentMenu->clear();
    const auto& files = session.settings.LRU;
    for (std::size_t row = 0; row < files.size(); ++row) {
        if (files[row].empty())
            continue;
        QString name = QString::fromStdString(fs::path(files[row]).filename().string());
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        // The menu is filled anew while one of its actions runs, so that goes on behind it.
        QAction* action =
            recentMenu->addAction(QStringLiteral("&%1 %2").arg(row + 1).arg(name), this, [this, row] {
                QTimer::singleShot(0, this, [this, row] { songFiles->Open_Recent(row); });
            });
        action->setToolTip(QString::fromStdString(files[row]));
    }
    recentMenu->setEnabled(!recentMenu->isEmpty());
}

void frmMain::Song_Replaced() {
    // What it shows is the former song's, and its OK would give that to this one.
    if (auto* window = findChild<frmProperties*>(QString(), Qt::FindDirectChildrenOnly))
        window->reject();
    // Channels of two songs may have the same IDs.
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (session.channels->Is_Live_Row(row)) {
            channelsList->Select(session.channels->Channels[static_cast<std::size_t>(row)].ChannelID);
            break;
        }
    }
    Channel_Selected(channelsList->Selected());
    Refresh_Title();
}

// ---- drag and drop ----

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (!Dragged_File(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
    const fs::path file = Dragged_File(*event->mimeData());
    if (file.empty())
        return;
    event->acceptProposedAction();
    // The program from which it was dragged waits for the end of this handler.
    QTimer::singleShot(0, this, [this, file] {
        if (Song_Files::Is_Midi_File(file))
            Import_Midi_File(file);
        else
            songFiles->Open_File(file);
    });
}

// ---- the ways in and out ----

void frmMain::Open_First_Song(const std::optional<fs::path>& named) {
    First_Song(session, *songFiles, *autosave, theme, this).Open(named);
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (session.transport.Song_Runs() || session.recorder->IsRunning()) {
        recorder->Stop_Then([this] { close(); });
        event->ignore();
        return;
    }
    // The keyboard's layout is lost with the program as the song is.
    if ((!endsForSystem && !songFiles->May_Leave()) || (!systemEnds && !Layout_May_Go(session))) {
        event->ignore();
        return;
    }
    recorder->Practice().Hold();
    deviceTimer.stop();
    meterTimer.stop();
    Save_Panes();
    event->accept();
}

void frmMain::Keep_Recovery_Copy() {
    autosave->Copy_Now();
}

void frmMain::End_For_System() {
    recorder->Stop_Then([this] {
        endsForSystem = session.project.Modified && autosave->Copy_Now() &&
                        Leave_Song(session.paths.Get_Folder("temp"), session.Temp_Folder());
        const QScopedValueRollback<bool> ending(systemEnds, true);
        QApplication::quit();
    });
}

} // namespace tonvex
