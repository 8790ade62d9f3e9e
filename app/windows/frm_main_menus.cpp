// The menus of the main window.

#include "app/windows/frm_main.h"

#include "base/rounding.h"
#include "editors/windows/frm_events_editor.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/layout_notice.h"
#include "widgets/frm_fx_config.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace tonvex {

namespace {

constexpr int TUNINGS = 12;
constexpr int NOTATIONS = 4;

} // namespace

QAction* frmMain::Add_Action(QMenu* menu, const QString& text, const Keys& keys,
                             const std::function<void()>& act) {
    auto* action = new QAction(text, this);
    if (!keys.isEmpty())
        fixedKeys.push_back({action, keys});
    connect(action, &QAction::triggered, this, act);
    menu->addAction(action);
    return action;
}

QAction* frmMain::Add_Check(QMenu* menu, const QString& text, const Keys& keys,
                            const std::function<void(bool)>& act) {
    auto* action = new QAction(text, this);
    action->setCheckable(true);
    if (!keys.isEmpty())
        fixedKeys.push_back({action, keys});
    connect(action, &QAction::triggered, this, act);
    menu->addAction(action);
    return action;
}

void frmMain::Make_Menus() {
    titleLabel = new QLabel(menuBar());
    titleLabel->setProperty("dim", true);
    titleLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    titleLabel->setAccessibleName(tr("Song key and song"));
    const auto place = [this] {
        titleLabel->setContentsMargins(0, 0, theme.Px(16), 0);
        Fit_Title(menuBar()->width());
    };
    connect(&theme, &Theme::Changed, titleLabel, place);
    place();
    menuBar()->setCornerWidget(titleLabel, Qt::TopRightCorner);

    Make_File_Menu();
    Make_Edit_Menu();
    Make_Channel_Menu();
    Make_Project_Menu();
    Make_Record_Menu();
    Make_Marks_Menu();
    Make_Options_Menu();
    Make_Metronome_Menu();
    Make_Windows_Menu();
    Make_Help_Menu();
}

void frmMain::Make_Windows_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Windows"));
    const QString shows = tr("Shows or hides this pane");
    menu->setToolTipsVisible(true);
    for (QDockWidget* dock : {channelsDock, pianoDock, videosDock})
        menu->addAction(dock->toggleViewAction());
    for (QToolBar* bar : findChildren<QToolBar*>())
        if (bar->toggleViewAction()->isVisible())
            menu->addAction(bar->toggleViewAction());
    for (QAction* action : menu->actions())
        action->setToolTip(shows);
    menu->addSeparator();
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget* page = tabs->widget(i);
        QAction* action = Add_Action(menu, tabs->tabText(i), {}, [this, page] {
            tabs->setCurrentWidget(page);
            page->setFocus();
        });
        // A tab may tell what it shows.
        connect(menu, &QMenu::aboutToShow, action,
                [this, page, action] { action->setText(tabs->tabText(tabs->indexOf(page))); });
    }
    menu->addSeparator();
    Add_Action(menu, tr("&Marks..."), {}, [this] { Open_Marks(false); });
    Add_Action(menu, tr("&Tempo changes..."), {}, [this] { Open_Tempo(); });
    Add_Action(menu, tr("Setup M&etronome..."), {}, [this] { Open_Metronome(); });
    Add_Action(menu, tr("&Keyboard Access..."), {}, [this] { Open_Key_Access(); });
}

void frmMain::Make_Channel_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Channel"));
    Add_Function(menu, tr("Set channel &patch..."), "Set channel Patch");
    Add_Function(menu, tr("Set &output channel"), "Set output channel");
    QMenu* effectMenu = menu->addMenu(tr("Set channel &FX"));
    for (const Effect_Kind kind : ALL_EFFECTS)
        Add_Function(effectMenu, QLatin1Char('&') + Effect_Caption(kind),
                     EFFECT_FUNCTIONS[static_cast<std::size_t>(kind)]);
    Make_Map_Entries(menu);
    Add_Function(menu, tr("&Align channel events"), "Align channel events", Function_Entry::Of_Channel);
    menu->addSeparator();
    Make_Mix_Entries(menu);
}

void frmMain::Make_Mix_Entries(QMenu* menu) {
    const auto add = [this, menu](const QString& text, const char* function) {
        Add_Function(menu, text, function, Function_Entry::Of_Channel);
    };
    add(tr("&Mute channel"), "Mute Channel");
    add(tr("&Solo channel"), "Solo Channel");
    add(tr("Toggle channel m&ute"), "Toggle channel Mute on/off");
    add(tr("Toggle channel so&lo"), "Toggle channel Solo on/off");
    menu->addSeparator();
    add(tr("&Increase channel volume 10%"), "Increase channel volume 10%");
    add(tr("&Decrease channel volume 10%"), "Decrease channel volume 10%");
    add(tr("Move channel pan 10% &right"), "Move channel Pan 10% Right");
    add(tr("Move channel pan 10% lef&t"), "Move channel Pan 10% Left");
    add(tr("&Center channel pan"), "Center channel Pan");
}

void frmMain::Make_Record_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Record"));
    Add_Function(menu, tr("&Record"), "Record");
    Add_Function(menu, tr("&Play song"), "Play song");
    Add_Function(menu, tr("&Stop recording/playing"), "Stop recording/playing");
    menu->addSeparator();
    Add_Function(menu, tr("Rewind to s&tart of song"), "Rewind to start of song");
    Add_Function(menu, tr("Rewind &5 seconds"), "Rewind 5 seconds");
    Add_Function(menu, tr("&Forward 5 seconds"), "Forward 5 seconds");
    Add_Function(menu, tr("&Go to end of song"), "Go to end of song");
    menu->addSeparator();

    auto* modes = new QActionGroup(this);
    blendAction =
        Add_Function(menu, tr("Record mode: &blend"), "Set record mode: blend", Function_Entry::Check);
    overwriteAction = Add_Function(menu, tr("Record mode: &overwrite"), "Set record mode: overwrite",
                                   Function_Entry::Check);
    waitAction =
        Add_Check(menu, tr("&Wait for key"), {}, [this](bool on) { recorder->Set_Wait_For_Key(on); });
    modes->addAction(blendAction);
    modes->addAction(overwriteAction);
    lockedInRun.push_back(waitAction);

    QMenu* speeds = menu->addMenu(tr("Record sp&eed"));
    lockedInRun.push_back(speeds->menuAction());
    for (int percent = 100; percent >= 20; percent -= 10)
        Add_Action(speeds, tr("%1 %").arg(percent), {},
                   [this, percent] { recorder->Set_Rec_Speed(percent); });
    speeds->addSeparator();
    Add_Function(speeds, tr("&Decrease Rec speed 10 %"), "Decrease Rec speed 10 %");
    Add_Function(speeds, tr("&Increase Rec speed 10 %"), "Increase Rec speed 10 %");
    Add_Function(speeds, tr("&Set Rec speed to 100%"), "Set Rec speed to 100%");
}

void frmMain::Make_Options_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Options"));
    midiInputAction = Add_Function(menu, tr("Use &Midi Keyboard as input"), "Use Midi Keyboard as input",
                                   Function_Entry::Check);
    keysAction = Add_Check(menu, tr("&Computer keys sound on the channel"),
                           {QKeySequence(Qt::CTRL | Qt::Key_K)}, [this](bool on) {
                               recorder->Practice().Set_Keys(on);
                               keysAction->setChecked(recorder->Practice().Keys());
                               if (on && !keysAction->isChecked())
                                   Tell_Why_Keys_Are_Refused();
                           });
    practiceAction =
        Add_Function(menu, tr("Start &Practice mode"), "Start Practice mode", Function_Entry::Check);
    lockedInRun.push_back(keysAction);
    Make_Layout_Menus(menu);
    Make_Note_Names_Menu(menu);
    pianoAction =
        Add_Check(menu, tr("Show p&iano layout"), {}, [this](bool on) { pianoDock->setVisible(on); });
    connect(pianoDock->toggleViewAction(), &QAction::toggled, pianoAction, &QAction::setChecked);
    pianoAction->setChecked(pianoDock->toggleViewAction()->isChecked());
    menu->addSeparator();
    QAction* atSpeed = Add_Check(menu, tr("&Use rec. speed"), {}, [this](bool on) {
        session.options.PlayAtRecSpeed = on;
        session.hub->Message(this, MSG_SPEED_LABEL);
        recorder->Refresh_Options();
    });
    atSpeed->setChecked(session.options.PlayAtRecSpeed);
    atSpeed->setToolTip(tr("Playing goes at the record speed too"));
    lockedInRun.push_back(atSpeed);
    Make_Scroll_Option(menu);
    Add_Function(menu, tr("C&lear all channels status (Solo/Muted)"), "Clear all channels mute/solo status");
    menu->addSeparator();
    lockedInRun.push_back(Add_Action(menu, tr("Output &Device setup..."), {}, [this] { Set_Up_Devices(); }));
    lockedInRun.push_back(Add_Action(menu, tr("Sound&Font list..."), {}, [this] { Edit_Sound_Fonts(); }));
    Add_Action(menu, tr("&Keyboard Access..."), {}, [this] { Open_Key_Access(); });
    menu->addSeparator();
    Make_Appearance_Menu(menu);
    Make_Help_Option(menu);
}

void frmMain::Make_Scroll_Option(QMenu* options) {
    EventsEditorCtrl& editor = eventsEditor->Editor();
    QAction* action = Add_Check(options, tr("Auto scr&oll events editor"), {}, [&editor](bool on) {
        Roll_Options shown = editor.View().Window().Options;
        shown.AutoScroll = on;
        editor.Set_Options(shown);
    });
    // The editor's own window sets it too.
    connect(options, &QMenu::aboutToShow, action,
            [&editor, action] { action->setChecked(editor.View().Window().Options.AutoScroll); });
}

void frmMain::Make_Note_Names_Menu(QMenu* options) {
    QMenu* menu = options->addMenu(tr("&Note names"));
    lockedInRun.push_back(menu->menuAction());
    auto* group = new QActionGroup(this);
    for (int notation = 0; notation < NOTATIONS; ++notation) {
        QString names;
        for (const auto& root : session.notes.NoteNames)
            names += QString::fromStdString(root[static_cast<std::size_t>(notation)]) + QLatin1Char(' ');
        QAction* action =
            Add_Check(menu, names.trimmed(), {}, [this, notation](bool) { Set_Note_Names(notation); });
        action->setChecked(session.notes.Global_Notation == notation);
        group->addAction(action);
        // The events editor's view window sets them too.
        connect(menu, &QMenu::aboutToShow, action,
                [this, action, notation] { action->setChecked(session.notes.Global_Notation == notation); });
    }
}

void frmMain::Set_Note_Names(int notation) {
    session.notes.Global_Notation = notation;
    for (std::size_t root = 0; root < tunings.size(); ++root)
        tunings[root]->setText(QString::fromStdString(session.notes.RootName(static_cast<int>(root))));
    Refresh_Title();
    keyboard->UpdateLayout();
    eventsEditor->Editor().Update_RefLabels_Captions();
    Tell_Layout_Changed(session);
    session.hub->Message(this, MSG_GENERAL_UPDATE);
}

void frmMain::Make_Layout_Menus(QMenu* options) {
    layoutMenu = options->addMenu(tr("Keyboard la&yout"));
    lockedInRun.push_back(layoutMenu->menuAction());
    // Files may come and go while the program runs.
    connect(layoutMenu, &QMenu::aboutToShow, this, [this] {
        layoutMenu->clear();
        for (const std::string& name : session.layout->Layout_Names()) {
            QAction* action = layoutMenu->addAction(QString::fromStdString(name), this, [this, name] {
                recorder->Practice().Hold();
                session.layout->LoadKeyboardSettings(name, session.project.ProjectTempo);
                recorder->Practice().Let_Go();
                Tell_Layout_Changed(session);
            });
            action->setCheckable(true);
            action->setChecked(name == session.layout->KeyboardFileName);
        }
    });

    QMenu* tuning = options->addMenu(tr("Keyboard &Tuning"));
    lockedInRun.push_back(tuning->menuAction());
    auto* group = new QActionGroup(this);
    for (int root = 0; root < TUNINGS; ++root) {
        QAction* action = Add_Check(tuning, QString::fromStdString(session.notes.RootName(root)), {},
                                    [this, root](bool) { Set_Tuning(root); });
        group->addAction(action);
        tunings.push_back(action);
    }
    tuning->addSeparator();
    QAction* match = Add_Check(tuning, tr("&Match song key"), {}, [this](bool on) {
        session.settings.Keyboard_Match_SongKey = on;
        Tell_Layout_Changed(session);
    });
    const auto show = [this, match] { match->setChecked(session.settings.Keyboard_Match_SongKey); };
    connect(tuning, &QMenu::aboutToShow, match, show); // the keyboard window sets it too
    show();
}

void frmMain::Make_Appearance_Menu(QMenu* options) {
    QMenu* menu = options->addMenu(tr("&Appearance"));
    auto* group = new QActionGroup(this);
    const std::pair<QString, Appearance> choices[] = {{tr("&Follow desktop"), Appearance::FollowDesktop},
                                                      {tr("&Light"), Appearance::Light},
                                                      {tr("&Dark"), Appearance::Dark}};
    for (const auto& [text, choice] : choices) {
        QAction* action =
            Add_Check(menu, text, {}, [this, wanted = choice](bool) { theme.Set_Appearance(wanted); });
        action->setChecked(theme.Current() == choice);
        group->addAction(action);
    }
    menu->addSeparator();
    auto* sizes = new QActionGroup(this);
    for (const int percent : {100, 125, 150, 200, 250, 300}) {
        QAction* action = Add_Check(menu, tr("Size %1 %").arg(percent), {},
                                    [this, percent](bool) { theme.Keep_Text_Percent(percent); });
        action->setChecked(RoundHalfUp(theme.Text_Scale() * 100.0) == percent);
        sizes->addAction(action);
    }
}

void frmMain::Refresh_Actions() {
    Refresh_Undo();
    metronomeAction->setChecked(session.options.Metronome);
    waitAction->setChecked(session.options.Global_Rec_WaitForKey);
    blendAction->setChecked(!session.options.Overwrite);
    overwriteAction->setChecked(session.options.Overwrite);
    midiInputAction->setChecked(session.input->InputDevice == 1);
    keysAction->setChecked(recorder->Practice().Keys());
    practiceAction->setChecked(recorder->Practice().Plain());
    const auto tuning = static_cast<std::size_t>(session.layout->KeyboardTuning);
    if (tuning < tunings.size())
        tunings[tuning]->setChecked(true);
}

} // namespace tonvex
