// The menus of the main window and the keys that stand on them.

#include "app/windows/frm_main.h"

#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "input/windows/layout_notice.h"
#include "widgets/channel_row.h"
#include "widgets/channels_list.h"
#include "widgets/frm_channel_properties.h"
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
constexpr int VOLUME_STEP = 10;
constexpr int PAN_STEP = 6;
constexpr int PAN_CENTRE = 64;
constexpr int OCTAVES = 6;

QKeySequence Numpad(Qt::Key key) {
    return QKeySequence(QKeyCombination(Qt::KeypadModifier, key));
}

} // namespace

QAction* frmMain::Add_Action(QMenu* menu, const QString& text, const Keys& keys,
                             const std::function<void()>& act) {
    auto* action = new QAction(text, this);
    action->setShortcuts(keys);
    connect(action, &QAction::triggered, this, act);
    menu->addAction(action);
    return action;
}

QAction* frmMain::Add_Check(QMenu* menu, const QString& text, const Keys& keys,
                            const std::function<void(bool)>& act) {
    auto* action = new QAction(text, this);
    action->setCheckable(true);
    action->setShortcuts(keys);
    connect(action, &QAction::triggered, this, act);
    menu->addAction(action);
    return action;
}

void frmMain::Make_Menus() {
    titleLabel = new QLabel(menuBar());
    titleLabel->setProperty("dim", true);
    titleLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // The menu bar gives its corner the size that it had first.
    const auto place = [this] {
        titleLabel->setContentsMargins(0, 0, theme.Px(16), 0);
        titleLabel->setMinimumSize(theme.Px(400), theme.Px(28));
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

    QMenu* windows = menuBar()->addMenu(tr("&Windows"));
    for (QDockWidget* dock : {channelsDock, pianoDock, videosDock})
        windows->addAction(dock->toggleViewAction());
    for (QToolBar* bar : findChildren<QToolBar*>())
        windows->addAction(bar->toggleViewAction());

    Make_Help_Menu();
    Make_Octave_Keys();
}

void frmMain::Make_Channel_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Channel"));
    lockedInRun.push_back(Add_Action(menu, tr("&Add new channel"), {QKeySequence(Qt::CTRL | Qt::Key_Insert)},
                                     [this] { Add_Channel(); }));
    lockedInRun.push_back(Add_Action(menu, tr("Add channel from a &template..."),
                                     {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Insert)},
                                     [this] { Add_Channel_From_Template(); }));
    lockedInRun.push_back(Add_Action(menu, tr("&Delete channel"), {QKeySequence(Qt::CTRL | Qt::Key_Delete)},
                                     [this] { Delete_Channel(); }));
    lockedInRun.push_back(Add_Action(menu, tr("&Rename channel..."), {}, [this] { Rename_Channel(); }));
    lockedInRun.push_back(
        Add_Action(menu, tr("&Clear channel events"), {}, [this] { Clear_Channel_Events(); }));
    menu->addSeparator();
    lockedInRun.push_back(Add_Action(menu, tr("&Select channel"), {QKeySequence(Qt::Key_S)}, [this] {
        if (Channel_Row* row = channelsList->Row_Of(channelsList->Selected()))
            row->setFocus();
    }));
    lockedInRun.push_back(Add_Action(menu, tr("Set channel &patch..."), {QKeySequence(Qt::Key_P)}, [this] {
        if (Needs_Channel())
            properties->Open_Patches();
    }));
    lockedInRun.push_back(
        Add_Action(menu, tr("Set &output channel"), {QKeySequence(Qt::CTRL | Qt::Key_O)}, [this] {
            if (Needs_Channel())
                properties->Open_Slots();
        }));
    Make_Map_Entries(menu);
    menu->addSeparator();
    Make_Effect_Entries(menu);
    menu->addSeparator();
    Make_Mix_Entries(menu);
}

void frmMain::Make_Effect_Entries(QMenu* menu) {
    int digit = Qt::Key_1;
    for (const Effect_Kind kind : ALL_EFFECTS)
        Add_Action(menu, tr("Set Channel FX: %1").arg(Effect_Caption(kind)),
                   {QKeySequence(Qt::CTRL | static_cast<Qt::Key>(digit++))}, [this, kind] {
                       if (!Needs_Channel())
                           return;
                       if (effects == nullptr)
                           effects = new frmFX_Config(session, theme, this);
                       effects->Show_Effect(channelsList->Selected(), kind);
                   });
}

void frmMain::Make_Mix_Entries(QMenu* menu) {
    const auto send = [this](int message, bool value) {
        if (Needs_Channel())
            session.hub->Message(this, message, channelsList->Selected(), value);
    };
    Add_Action(menu, tr("&Mute channel"), {Numpad(Qt::Key_Slash)}, [send] { send(MSG_SET_MUTE, true); });
    Add_Action(menu, tr("So&lo channel"), {Numpad(Qt::Key_Asterisk)}, [send] { send(MSG_SET_SOLO, true); });
    Add_Action(menu, tr("Toggle channel m&ute"), {}, [send] { send(MSG_TOGGLE_MUTE, true); });
    Add_Action(menu, tr("Toggle channel solo"), {}, [send] { send(MSG_TOGGLE_SOLO, true); });
    menu->addSeparator();
    Add_Action(menu, tr("Increase channel volume"), {Numpad(Qt::Key_Plus)},
               [this] { Change_Volume(VOLUME_STEP); });
    Add_Action(menu, tr("Decrease channel volume"), {Numpad(Qt::Key_Minus)},
               [this] { Change_Volume(-VOLUME_STEP); });
    Add_Action(menu, tr("Move channel pan right"), {QKeySequence(Qt::Key_R)},
               [this] { Change_Pan(PAN_STEP); });
    Add_Action(menu, tr("Move channel pan left"), {QKeySequence(Qt::Key_L)},
               [this] { Change_Pan(-PAN_STEP); });
    Add_Action(menu, tr("C&entre channel pan"), {QKeySequence(Qt::Key_C)}, [this] {
        if (Needs_Channel())
            session.hub->Message(this, MSG_SET_PAN, channelsList->Selected(), std::int32_t{PAN_CENTRE});
    });
}

void frmMain::Make_Record_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Record"));
    lockedInRun.push_back(Add_Action(menu, tr("&Record"), {QKeySequence(Qt::CTRL | Qt::Key_R)},
                                     [this] { Run_From_Key([this] { recorder->Button_Rec(); }); }));
    lockedInRun.push_back(Add_Action(menu, tr("&Play song"),
                                     {QKeySequence(Qt::Key_Return), Numpad(Qt::Key_Enter)},
                                     [this] { Run_From_Key([this] { recorder->Button_Play(); }); }));
    Add_Action(menu, tr("&Stop recording/playing"), {QKeySequence(Qt::Key_Escape)},
               [this] { recorder->Button_Stop(); });
    menu->addSeparator();
    Add_Action(menu, tr("Rewind to start of song"), {QKeySequence(Qt::Key_Home)},
               [this] { recorder->To_Start(); });
    Add_Action(menu, tr("Rewind 5 seconds"), {Numpad(Qt::Key_4), Numpad(Qt::Key_Left)},
               [this] { recorder->Move_By_Seconds(-5); });
    Add_Action(menu, tr("Forward 5 seconds"), {Numpad(Qt::Key_6), Numpad(Qt::Key_Right)},
               [this] { recorder->Move_By_Seconds(5); });
    Add_Action(menu, tr("Go to end of song"), {QKeySequence(Qt::Key_End)}, [this] { recorder->To_End(); });
    menu->addSeparator();

    auto* modes = new QActionGroup(this);
    blendAction = Add_Check(menu, tr("&Blend"), {}, [this](bool) { recorder->Set_Overwrite(false); });
    overwriteAction = Add_Check(menu, tr("&Overwrite"), {}, [this](bool) { recorder->Set_Overwrite(true); });
    waitAction =
        Add_Check(menu, tr("&Wait for key"), {}, [this](bool on) { recorder->Set_Wait_For_Key(on); });
    modes->addAction(blendAction);
    modes->addAction(overwriteAction);
    for (QAction* action : {blendAction, overwriteAction, waitAction})
        lockedInRun.push_back(action);

    QMenu* speeds = menu->addMenu(tr("Record s&peed"));
    lockedInRun.push_back(speeds->menuAction());
    for (int percent = 100; percent >= 20; percent -= 10)
        Add_Action(speeds, tr("%1 %").arg(percent), {},
                   [this, percent] { recorder->Set_Rec_Speed(percent); });
    lockedInRun.push_back(Add_Action(menu, tr("Set Rec speed to 100%"), {QKeySequence(Qt::Key_N)},
                                     [this] { recorder->Set_Rec_Speed(100); }));
}

void frmMain::Make_Options_Menu() {
    QMenu* menu = menuBar()->addMenu(tr("&Options"));
    midiInputAction = Add_Check(menu, tr("Use &Midi Keyboard as input"), {QKeySequence(Qt::CTRL | Qt::Key_I)},
                                [this](bool on) { Choose_Midi_Input(on); });
    keysAction =
        Add_Check(menu, tr("&Computer keys sound"), {QKeySequence(Qt::CTRL | Qt::Key_P)}, [this](bool on) {
            recorder->Practice().Set_Keys(on);
            keysAction->setChecked(recorder->Practice().Keys());
        });
    lockedInRun.push_back(keysAction);
    Make_Layout_Menus(menu);
    menu->addSeparator();
    QAction* atSpeed = Add_Check(menu, tr("Use rec. &speed"), {}, [this](bool on) {
        session.options.PlayAtRecSpeed = on;
        recorder->Refresh_Options();
    });
    atSpeed->setChecked(session.options.PlayAtRecSpeed);
    lockedInRun.push_back(atSpeed);
    Add_Action(menu, tr("C&lear all channels status (Solo/Muted)"), {}, [this] { Clear_All_Status(); });
    menu->addSeparator();
    lockedInRun.push_back(Add_Action(menu, tr("Output &Device setup..."), {}, [this] { Set_Up_Devices(); }));
    lockedInRun.push_back(Add_Action(menu, tr("Sound&Font list..."), {}, [this] { Edit_Sound_Fonts(); }));
    menu->addSeparator();
    Make_Appearance_Menu(menu);
    Make_Help_Option(menu);
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
        action->setChecked(static_cast<int>(theme.Text_Scale() * 100.0 + 0.5) == percent);
        sizes->addAction(action);
    }
}

void frmMain::Make_Octave_Keys() {
    for (int octave = 0; octave < OCTAVES; ++octave) {
        auto* notes = new QAction(tr("Select Notes octave: %1").arg(octave + 1), this);
        notes->setShortcut(QKeySequence(static_cast<Qt::Key>(Qt::Key_F1 + octave)));
        connect(notes, &QAction::triggered, this, [this, octave] { piano->Select_Notes_Octave(octave); });
        auto* chords = new QAction(tr("Select Qchords octave: %1").arg(octave + 1), this);
        chords->setShortcut(QKeySequence(static_cast<Qt::Key>(Qt::Key_F7 + octave)));
        connect(chords, &QAction::triggered, this, [this, octave] { piano->Select_QChords_Octave(octave); });
        addAction(notes);
        addAction(chords);
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
    const auto tuning = static_cast<std::size_t>(session.layout->KeyboardTuning);
    if (tuning < tunings.size())
        tunings[tuning]->setChecked(true);
}

} // namespace tonvex
