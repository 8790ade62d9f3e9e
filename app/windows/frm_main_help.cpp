// The main window's help: its menu, the help pages and what their links start, the video tutorials.

#include "app/windows/frm_main.h"

#include "app/windows/frm_about.h"
#include "app/windows/frm_help.h"
#include "app/windows/song_files.h"
#include "app/windows/video_pane.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/test_sound.h"
#include "widgets/channels_list.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>

#include <algorithm>
#include <array>

namespace tonvex {

namespace {

constexpr const char* HELP_FOLDER = "help";
constexpr const char* VIDEO_FOLDER = "videos";
constexpr const char* INTRO = "intro";
constexpr int LINK_VELOCITY = 96;
constexpr int LINK_SOUND_MS = 1200;
constexpr QLatin1String SOUND("sound/");
constexpr std::size_t MOST_LINK_NOTES = 10;

/// The notes of "sound/60-64-67"; what is no MIDI note is left out.
std::vector<int> Notes_Of(const QString& action) {
    std::vector<int> notes;
    if (!action.startsWith(SOUND))
        return notes;
    for (const QString& word : action.mid(SOUND.size()).split(QLatin1Char('-'), Qt::SkipEmptyParts)) {
        bool number = false;
        const int note = word.toInt(&number);
        if (number && note >= 0 && note <= 127 && notes.size() < MOST_LINK_NOTES)
            notes.push_back(note);
    }
    return notes;
}

} // namespace

void frmMain::Make_Help_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Help"));
    Add_Action(menu, tr("&Contents"), {QKeySequence(Qt::SHIFT | Qt::Key_F1)}, [this] { Show_Help({}); });
    Add_Action(menu, tr("&First steps"), {}, [this] { Show_Help(QLatin1String(INTRO)); });
    Add_Action(menu, tr("&Keys"), {}, [this] { Show_Help(QStringLiteral("keys")); });
    menu->addSeparator();
    Add_Action(menu, tr("&About Tonvex"), {},
               [this] { Show_Window("frmAbout", [this] { return new frmAbout(theme, this); }); });
}

void frmMain::Make_Help_Option(QMenu* options) {
    showHelpAction = Add_Check(options, tr("Show &help on start up"), {}, [this](bool on) {
        session.settings.Global_ShowHelpOnStartUp = on ? 1 : 0;
        if (help)
            help->Set_Shown_On_Start(on);
    });
    showHelpAction->setObjectName(QStringLiteral("showHelpOnStartUp"));
    showHelpAction->setChecked(session.settings.Global_ShowHelpOnStartUp == 1);
}

void frmMain::Show_Help(const QString& page) {
    if (!help) {
        help = std::make_unique<frmHelp>(theme, session.dataFolder / HELP_FOLDER);
        help->Set_Shown_On_Start(session.settings.Global_ShowHelpOnStartUp == 1);
        connect(help.get(), &frmHelp::shownOnStartChanged, this, [this](bool on) {
            session.settings.Global_ShowHelpOnStartUp = on ? 1 : 0;
            showHelpAction->setChecked(on);
        });
        connect(help.get(), &frmHelp::actionAsked, this, &frmMain::Follow_Help_Link);
    }
    help->Show_Page(page);
}

void frmMain::Show_First_Help() {
    if (session.settings.Global_ShowHelpOnStartUp == 1)
        Show_Help(QLatin1String(INTRO));
    else if (session.settings.Global_FirstRun != 0)
        Show_Banner(Banner::Subject::First_Steps, tr("New here? The first steps take a minute."),
                    tr("First steps"), [this] { Show_Help(QLatin1String(INTRO)); });
}

struct frmMain::Help_Link {
    const char* verb;
    bool inRun; ///< also while a song runs
    void (*act)(frmMain& window);
};

const std::array<frmMain::Help_Link, 11>& frmMain::Help_Links() {
    static constexpr std::array<Help_Link, 11> LINKS = {{
        {"add-channel", false, [](frmMain& w) { w.Add_Channel(); }},
        {"add-channel-from-template", false, [](frmMain& w) { w.Add_Channel_From_Template(); }},
        {"keys-sound", false, [](frmMain& w) { w.recorder->Practice().Set_Keys(true); }},
        {"record", false, [](frmMain& w) { w.session.keyRunner.Act("Record"); }},
        {"play", false,
         [](frmMain& w) {
             w.recorder->To_Start();
             w.session.keyRunner.Act("Play song");
         }},
        {"stop", true, [](frmMain& w) { w.recorder->Button_Stop(); }},
        {"save", false, [](frmMain& w) { w.songFiles->Save(); }},
        {"keyboard", true, [](frmMain& w) { w.tabs->setCurrentWidget(w.keyboard); }},
        {"output-setup", false, [](frmMain& w) { w.Set_Up_Devices(); }},
        {"sound-fonts", false, [](frmMain& w) { w.Edit_Sound_Fonts(); }},
        {"new-from-template", false, [](frmMain& w) { w.New_From_Template(); }},
    }};
    return LINKS;
}

bool frmMain::Knows_Help_Link(const QString& action) const {
    const auto& links = Help_Links();
    return !Notes_Of(action).empty() ||
           std::any_of(links.begin(), links.end(),
                       [&action](const Help_Link& row) { return action == QLatin1String(row.verb); });
}

/// A page never starts more than a menu entry or a button would, and nothing while a dialog is open or, but
/// for the few that say so, while a song runs.
void frmMain::Follow_Help_Link(const QString& action) {
    if (QApplication::activeModalWidget() != nullptr)
        return;
    const bool runs = session.transport.Song_Runs() || session.recorder->IsRunning();
    const std::vector<int> notes = Notes_Of(action);
    if (!notes.empty()) {
        if (linkSound == nullptr)
            linkSound = new Test_Sound(session, this);
        if (!runs)
            linkSound->Start_Notes(linkSound->Slot_Of(channelsList->Selected()), notes, LINK_VELOCITY,
                                   LINK_SOUND_MS);
        return;
    }
    for (const Help_Link& row : Help_Links()) {
        if (action != QLatin1String(row.verb) || (runs && !row.inRun))
            continue;
        // Keys that are pressed next are meant for the song.
        raise();
        activateWindow();
        row.act(*this);
        return;
    }
}

void frmMain::Make_Video_Pane() {
    videosDock = new QDockWidget(tr("Video tutorials"), this);
    videosDock->setObjectName(QStringLiteral("videos"));
    std::vector<Video> found =
        Find_Videos({session.dataFolder / VIDEO_FOLDER, session.paths.Get_Folder("config") / VIDEO_FOLDER});
    anyVideos = !found.empty();
    auto* pane = new Video_Pane(theme, std::move(found), videosDock);
    connect(pane, &Video_Pane::failed, this,
            [this](const QString& text) { Show_Banner(Banner::Subject::Videos, text); });
    videosDock->setWidget(pane);
    addDockWidget(Qt::RightDockWidgetArea, videosDock);
    videosDock->toggleViewAction()->setVisible(anyVideos);
    connect(videosDock->toggleViewAction(), &QAction::triggered, this,
            [this](bool on) { session.settings.Global_ShowVideoList = on ? 1 : 0; });
}

} // namespace tonvex
