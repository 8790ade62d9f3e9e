#include "audio/patch_tables.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "platform/qt/native_scan_codes.h"
#include "support/window_program.h"
#include "widgets/channel_row.h"
#include "widgets/channels_list.h"
#include "widgets/level_meter.h"
#include "widgets/overflow_bar.h"
#include "widgets/pan_vol_ctrl.h"
#include "widgets/piano_view.h"
#include "widgets/song_overview.h"
#include "widgets/tool_button.h"
#include "widgets/value_slider.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSpinBox>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace tonvex;

namespace {

// Scan codes as the layout files count them, and the key codes of the window system: 8 more.
constexpr int SCAN_Z = 44;
constexpr int SCAN_X = 45;
constexpr int SCAN_ESCAPE = 1;

int Notes_Posted(const Recorder_Sound_Door& sound, Sound_Op op) {
    return static_cast<int>(std::count_if(sound.posted.begin(), sound.posted.end(),
                                          [op](const Sound_Message& message) { return message.op == op; }));
}

} // namespace

class Main_Window_Test : public QObject {
    Q_OBJECT
private slots:
    void Channels_By_Keyboard_Alone();
    void Eight_Notes_Are_Recorded_And_Played_Back();
    void Practice_Sounds_And_Stores_Nothing();
    void An_Idle_Midi_Keyboard_Sounds();
    void Letters_Are_Shortcuts_Only_When_They_Do_Not_Play();
    void Sliders_And_Meters_Tell_Their_Values();
    void Song_Windows_Open_By_Keys();
    void The_Edit_Menu_Names_What_It_Brings_Back();
    void A_Lost_Device_Is_Told_And_Reopened();
    void A_Quiet_Driver_Is_Told_Once();
    void The_Piano_Finds_Its_Keys();
    void Panes_Remember_Their_Place();
    void Closing_Stops_The_Run_First();
    void What_Has_No_Room_In_A_Bar_Waits_In_Its_Menu();
};

void Main_Window_Test::Channels_By_Keyboard_Alone() {
    Program p;
    QCOMPARE(p.session->channels->Count_Channels(), 1);
    p.Key(Qt::Key_Insert, Qt::ControlModifier);
    p.Key(Qt::Key_Insert, Qt::ControlModifier);
    QCOMPARE(p.session->channels->Count_Channels(), 3);
    QCOMPARE(p.window->Selected_Channel(), p.Channel(2).ChannelID); // the new one is selected

    p.Key(Qt::Key_S); // to the selected row
    p.Key(Qt::Key_Up);
    QCOMPARE(p.window->Selected_Channel(), p.Channel(1).ChannelID);
    p.Key(Qt::Key_F2);
    QLineEdit* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, "Bass");
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(p.Channel(1).ChannelName, std::string("Bass"));
    QVERIFY(!p.session->transport.Song_Runs()); // Enter was the editor's

    // Tab walks the row: patch, mute, solo, record mark, volume, pan.
    p.Key(Qt::Key_Tab);
    p.Key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), QStringLiteral("Mute Bass"));
    p.Key(Qt::Key_Space);
    QVERIFY(Is_On(p.Channel(1).Mute));
    p.Key(Qt::Key_Space);
    QVERIFY(!Is_On(p.Channel(1).Mute));
    p.Key(Qt::Key_Tab);
    p.Key(Qt::Key_Space);
    QVERIFY(Is_On(p.Channel(1).Solo));
    p.Key(Qt::Key_Tab);
    p.Key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), QStringLiteral("Volume of Bass"));
    p.Key(Qt::Key_Right);
    QCOMPARE(int{p.Channel(1).Volume}, 85);
    p.Key(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(int{p.Channel(1).Volume}, 84);

    p.Key(Qt::Key_Delete, Qt::ControlModifier); // a no
    QCOMPARE(p.session->channels->Count_Channels(), 3);
    QCOMPARE(p.dialogs.asked.back(), std::string("Delete this channel ?"));
    p.dialogs.answers["Delete this channel ?"] = true;
    p.Key(Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(p.session->channels->Count_Channels(), 2);
    QCOMPARE(p.window->Selected_Channel(), p.Channel(2).ChannelID); // the neighbour takes over
}

void Main_Window_Test::Eight_Notes_Are_Recorded_And_Played_Back() {
    Program p;
    p.window->findChild<QDockWidget*>(QStringLiteral("piano"))->setFloating(true); // its focus is elsewhere
    p.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.window.get()));
    p.window->Recorder().findChild<QSpinBox*>()->setFocus();
    int step = 0;
    QTimer player;
    // The user: Z and X by turns, each held for some rounds, then Escape.
    connect(&player, &QTimer::timeout, this, [&] {
        if (!p.session->transport.Recording)
            return;
        const int note = step / 2;
        if (note < 8)
            p.Edge(step % 2 == 0 ? QEvent::KeyPress : QEvent::KeyRelease, note % 2 == 0 ? SCAN_Z : SCAN_X,
                   note % 2 == 0 ? Qt::Key_Z : Qt::Key_X);
        else
            p.Edge(step % 2 == 0 ? QEvent::KeyPress : QEvent::KeyRelease, SCAN_ESCAPE, Qt::Key_Escape);
        ++step;
    });
    player.start(20);
    p.Key(Qt::Key_R, Qt::ControlModifier);
    QVERIFY(!p.session->transport.Recording); // never inside the key handler
    QTRY_VERIFY(p.session->transport.TransportStopped);
    player.stop();
    p.window->centralWidget()->setFocus();
    QCOMPARE(p.Events(0), 8);
    // Z and X play C and D of octave 4, which begins at 12 * 3 + 12.
    std::vector<int> notes;
    const ChannelClass& store = p.session->channels->Store(0);
    for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
        notes.push_back(store.ReadEvent(i)->Note->Note);
    QCOMPARE(notes, (std::vector<int>{48, 50, 48, 50, 48, 50, 48, 50}));
    QCOMPARE(Notes_Posted(p.sound, Sound_Op::NoteOn), 8);
    QCOMPARE(p.window->findChild<Song_Overview*>()->Note_Count(), 8);
    QVERIFY(p.window->isWindowModified());

    p.sound.posted.clear();
    p.window->Recorder().To_Start();
    // What comes from the song shows on the piano too.
    std::vector<int> shown;
    connect(&p.window->Piano(), &frmREC_PianoLayout::soundBegan, this, [&] {
        for (const int note : {48, 50})
            if (p.window->Piano().Piano().Is_Lit(note))
                shown.push_back(note);
    });
    p.Key(Qt::Key_Return);
    QTRY_COMPARE(Notes_Posted(p.sound, Sound_Op::NoteOn), 8);
    QCOMPARE(shown, (std::vector<int>{48, 50, 48, 50, 48, 50, 48, 50}));
    QTRY_VERIFY(!p.session->transport.PlayRequested);
    QTRY_COMPARE(p.session->transport.PlayPosition, 0.0); // back where it was started
}

void Main_Window_Test::Practice_Sounds_And_Stores_Nothing() {
    Program p;
    p.Key(Qt::Key_K, Qt::ControlModifier);
    QVERIFY(p.window->Recorder().Practice().Is_Running());
    p.Edge(QEvent::KeyPress, SCAN_Z, Qt::Key_Z);
    QTRY_COMPARE(Notes_Posted(p.sound, Sound_Op::NoteOn), 1);
    QVERIFY(p.window->Piano().Piano().Is_Lit(48));
    p.Edge(QEvent::KeyRelease, SCAN_Z, Qt::Key_Z);
    QTRY_COMPARE(Notes_Posted(p.sound, Sound_Op::NoteOff), 1);
    QVERIFY(!p.window->Piano().Piano().Is_Lit(48));
    QCOMPARE(p.Events(0), 0);

    // A recording makes it stand aside and lets it come back.
    QTimer::singleShot(50, this, [&] { p.window->Recorder().Button_Stop(); });
    p.window->Recorder().Button_Rec();
    QVERIFY(p.window->Recorder().Practice().Is_Running());
    QTest::qWait(20); // some rounds: the keyboard is taken again
    p.Edge(QEvent::KeyPress, SCAN_ESCAPE, Qt::Key_Escape);
    QTRY_VERIFY(!p.window->Recorder().Practice().Keys());
}

void Main_Window_Test::An_Idle_Midi_Keyboard_Sounds() {
    Program p;
    p.Key(Qt::Key_I, Qt::ControlModifier); // no device is chosen: told, and the keyboard alone goes on
    QCOMPARE(p.session->input->InputDevice, 0);
    QVERIFY(p.dialogs.shown.empty());

    p.midi.inputs = {{"Keys", 4}};
    p.session->settings.Global_MidiSetup_InDevice = 4;
    p.Key(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(p.session->input->InputDevice, 1);
    QVERIFY(p.window->Recorder().Practice().Is_Running());
    p.midi.incoming.push_back({p.counter.Now_Ns(), 0x90, 65, 99});
    QTRY_COMPARE(Notes_Posted(p.sound, Sound_Op::NoteOn), 1);
    QCOMPARE(int{p.sound.posted.back().a}, 65);
    QVERIFY(!p.window->Key_Plays(SCAN_Z)); // the computer keys stay shortcuts
    p.midi.incoming.push_back({p.counter.Now_Ns(), 0x80, 65, 0});
    QTRY_COMPARE(Notes_Posted(p.sound, Sound_Op::NoteOff), 1);

    p.midi.inputs.clear(); // unplugged
    p.midi.portsChanged = true;
    p.window->Check_Devices();
    QTRY_VERIFY(!p.window->Recorder().Practice().Is_Running());
    QVERIFY(p.dialogs.shown.empty()); // no box interrupts
    p.Key(Qt::Key_K, Qt::ControlModifier);
    const auto labels = p.window->findChildren<QLabel*>(); // but why no key sounds is told
    QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text().startsWith(QLatin1String("No MIDI keyboard can be opened"));
    }));
    p.midi.inputs = {{"Keys", 4}};
    p.midi.portsChanged = true;
    p.window->Check_Devices();
    QTRY_VERIFY(p.window->Recorder().Practice().Is_Running());
}

void Main_Window_Test::Letters_Are_Shortcuts_Only_When_They_Do_Not_Play() {
    Program p;
    QVERIFY(!p.window->Key_Plays(SCAN_Z));
    p.Key(Qt::Key_M);
    QVERIFY(p.session->options.Metronome);
    p.Key(Qt::Key_M);
    QVERIFY(!p.session->options.Metronome);
    p.Key(Qt::Key_F2);
    QCOMPARE(p.session->layout->NotesOctave, 1);
    p.Key(Qt::Key_F12);
    QCOMPARE(p.session->layout->QChordsOctave, 5);
    p.Key(Qt::Key_K, Qt::ControlModifier);
    QVERIFY(p.window->Key_Plays(SCAN_Z));
    QVERIFY(!p.window->Key_Plays(57)); // the space bar has no meaning in the layout
    QVERIFY(!p.window->Key_Plays(-1) && !p.window->Key_Plays(256));
}

void Main_Window_Test::Sliders_And_Meters_Tell_Their_Values() {
    Program p;
    auto* volume = p.window->Channels().findChild<Value_Slider*>();
    QAccessibleValueInterface* value = QAccessible::queryAccessibleInterface(volume)->valueInterface();
    QVERIFY(value != nullptr);
    QCOMPARE(value->maximumValue().toInt(), 127);
    auto* meter = p.window->findChild<Level_Meter*>();
    QAccessibleValueInterface* level = QAccessible::queryAccessibleInterface(meter)->valueInterface();
    QVERIFY(level != nullptr);
    QCOMPARE(level->currentValue().toInt(), -48);
    meter->Show_Peaks(0.5F, 0.25F, 0);
    QCOMPARE(level->currentValue().toInt(), -6);
}

void Main_Window_Test::Song_Windows_Open_By_Keys() {
    Program p;
    const auto dialog = [&](const char* name) { return p.window->findChild<QDialog*>(QLatin1String(name)); };
    p.Key(Qt::Key_M, Qt::ControlModifier);
    p.Key(Qt::Key_M, Qt::ControlModifier); // the same one again
    QVERIFY(dialog("frmMetronomeSetup") != nullptr && dialog("frmMetronomeSetup")->isVisible());
    QCOMPARE(p.window->findChildren<QDialog*>().size(), 1);
    dialog("frmMetronomeSetup")->reject();
    p.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.window.get()));

    // One setting, shown in two places.
    auto* box = p.window->findChild<QCheckBox*>(QStringLiteral("matchSongKey"));
    for (QAction* action : p.window->findChildren<QAction*>()) {
        if (!action->text().contains(QLatin1String("Match song key")))
            continue;
        action->trigger();
        QVERIFY(!box->isChecked());
        box->click();
        emit qobject_cast<QMenu*>(action->associatedObjects().front())->aboutToShow();
        QVERIFY(action->isChecked());
    }

    p.session->hub->Message(nullptr, MSG_SONG_POSITION, 6.0);
    p.session->hub->Message(nullptr, MSG_OPEN_PAN_MAP, std::int32_t{0});
    auto* map = qobject_cast<PanVolCtrl*>(QApplication::focusWidget());
    QVERIFY(map != nullptr && map->isVisible());
    // Insert, Delete and Home are the map's while it has the focus, not the window's.
    p.Key(Qt::Key_Insert);
    QCOMPARE(map->Dots().size(), std::size_t{3});
    p.Key(Qt::Key_Home);
    QCOMPARE(p.session->transport.PlayPosition, 6.0);
    p.Key(Qt::Key_PageDown);
    p.Key(Qt::Key_Delete);
    QCOMPARE(map->Dots().size(), std::size_t{2});
}

void Main_Window_Test::The_Edit_Menu_Names_What_It_Brings_Back() {
    Program p;
    const auto* undo = p.window->findChild<QAction*>(QStringLiteral("undo"));
    const auto* redo = p.window->findChild<QAction*>(QStringLiteral("redo"));
    QCOMPARE(undo->text(), QStringLiteral("&Undo"));
    QVERIFY(!undo->isEnabled() && !redo->isEnabled());
    p.session->hub->Message(nullptr, MSG_SET_NAME, p.window->Selected_Channel(), std::string("Lead"));
    QTRY_COMPARE(undo->text(), QStringLiteral("&Undo change name"));
    p.Key(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(redo->text(), QStringLiteral("&Redo change name"));
    QVERIFY(!undo->isEnabled() && p.session->channels->Channels[0].ChannelName != "Lead");
    p.Key(Qt::Key_Y, Qt::ControlModifier);
    QTRY_VERIFY(undo->isEnabled());
    p.Key(Qt::Key_Z, Qt::ControlModifier);
    QTRY_VERIFY(redo->isEnabled());
    p.Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_VERIFY(!redo->isEnabled());
    QCOMPARE(p.session->channels->Channels[0].ChannelName, std::string("Lead"));
    p.session->transport.PlayRequested = true;
    p.session->hub->Message(nullptr, MSG_GENERAL_UPDATE);
    QTRY_VERIFY(!undo->isEnabled());
    p.session->transport.PlayRequested = false;
}

void Main_Window_Test::A_Lost_Device_Is_Told_And_Reopened() {
    Program p;
    const auto before = p.sound.opened.size();
    p.sound.status.deviceLost = true;
    p.window->Check_Devices();
    const auto reopen = [&]() -> QAbstractButton* {
        for (QAbstractButton* button : p.window->findChildren<QAbstractButton*>())
            if (button->text() == QLatin1String("Reopen"))
                return button;
        return nullptr;
    };
    QAbstractButton* button = nullptr;
    QTRY_VERIFY((button = reopen()) != nullptr && button->isVisible());
    p.sound.status.deviceLost = false;
    button->click();
    QCOMPARE(p.sound.opened.size(), before + 1);
    QVERIFY(!button->isVisible());
}

void Main_Window_Test::A_Quiet_Driver_Is_Told_Once() {
    Program p;
    p.sound.status.quiet = true;
    const auto shown = [&p](const char* text) {
        const auto buttons = p.window->findChildren<QAbstractButton*>();
        return std::any_of(buttons.begin(), buttons.end(), [text](const QAbstractButton* button) {
            return button->text() == QLatin1String(text) && button->isVisible();
        });
    };
    // A first start offers the first steps all the same; a low window tells one thing after the other.
    p.session->settings.Global_FirstRun = 1;
    p.window->Show_First_Help();
    QTRY_VERIFY(shown("Try again") && shown("First steps"));
    p.window->resize(p.window->width(), 500);
    QVERIFY(shown("Try again") && !shown("First steps"));
    p.window->Hide_Banner(Banner::Subject::Sound);
    QVERIFY(shown("First steps"));
    QTest::qWait(1100); // two looks at the devices
    QVERIFY(!shown("Try again"));
}

void Main_Window_Test::The_Piano_Finds_Its_Keys() {
    // One octave and a C: eight white keys of 10 by 100; black ones 6.8 wide, 60 high, over the joints.
    const Piano_Geometry keys(60, 72, QSizeF(80, 100));
    QCOMPARE(keys.White_Count(), 8);
    const struct {
        const char* name;
        QPointF point;
        int note;
    } rows[] = {{"C at the bottom", {1, 99}, 60},
                {"C sharp", {10, 10}, 61},
                {"below C sharp lies C", {9, 70}, 60},
                {"below C sharp lies D", {11, 70}, 62},
                {"E to F has none", {30.5, 10}, 65},
                {"B", {69, 90}, 71},
                {"upper C", {79, 5}, 72},
                {"outside", {81, 5}, -1},
                {"below", {40, 101}, -1}};
    for (const auto& row : rows)
        QVERIFY2(keys.Note_At(row.point) == row.note, row.name);
    QCOMPARE(Level_Meter::Height_Of(0.0), 0.0);
    QCOMPARE(Level_Meter::Height_Of(1.0), 1.0);
    QVERIFY(qAbs(Level_Meter::Height_Of(0.0630957) - 0.5) < 1e-4); // -24 of 48 dB
}

void Main_Window_Test::Panes_Remember_Their_Place() {
    Program p;
    const auto docks = p.window->findChildren<QDockWidget*>();
    QVERIFY(docks.size() >= 2);
    docks[0]->hide();
    docks[1]->setFloating(true);
    p.window->close();
    p.window = std::make_unique<frmMain>(*p.session, p.theme);
    p.window->show();
    const auto again = p.window->findChildren<QDockWidget*>();
    QVERIFY(!again[0]->isVisible());
    QVERIFY(again[1]->isFloating());
}

void Main_Window_Test::Closing_Stops_The_Run_First() {
    Program p;
    const auto layout = p.home / "config/keyboard/Tonvex default.dat";
    std::filesystem::remove(layout);
    std::filesystem::create_directories(layout / "in the way");
    p.session->layout->Set_Key_Function(SCAN_Z, 4);
    p.dialogs.answers["Keyboard setup was modified.\nSave changes ?"] = true;
    QVERIFY(!p.window->close()); // what is to be kept is not thrown away
    std::filesystem::remove_all(layout);
    bool refused = false;
    QTimer::singleShot(40, this, [&] { refused = !p.window->close(); });
    p.window->Recorder().Button_Rec();
    QVERIFY(refused);
    QTRY_VERIFY(!p.window->isVisible());
    QVERIFY(!p.session->recorder->IsRunning() && std::filesystem::is_regular_file(layout));
}

void Main_Window_Test::What_Has_No_Room_In_A_Bar_Waits_In_Its_Menu() {
    Memory_Settings_Store store;
    Theme theme(*qApp, store);
    Overflow_Bar bar(theme);
    QString clicked;
    QList<Tool_Button*> buttons;
    for (const char* name : {"first", "second", "third", "fourth"}) {
        auto* button = new Tool_Button(theme, Button_Kind::Flat, QStringLiteral("undo"), name, {}, &bar);
        connect(button, &QToolButton::clicked, this, [&clicked, name] { clicked += name; });
        bar.Row()->addWidget(button);
        buttons << button;
    }
    for (const int place : {2, 0, 1})
        bar.Let_Go(buttons[place]);
    auto* more = bar.findChild<QToolButton*>(QStringLiteral("more"));
    bar.show();
    const auto shown = [&](int width) {
        bar.resize(width, 40);
        QString text;
        for (const Tool_Button* button : buttons)
            text += button->isVisible() ? button->accessibleName().left(2) : QString();
        return text + (more->isVisible() ? "+" : "");
    };
    QCOMPARE(shown(600), QStringLiteral("fisethfo"));
    const int least = bar.minimumSizeHint().width();
    QCOMPARE(shown(least), QStringLiteral("fo+"));
    emit more->menu()->aboutToShow();
    QCOMPARE(more->menu()->actions().size(), 3); // in the order of the bar
    more->menu()->actions()[1]->trigger();
    QCOMPARE(clicked, QStringLiteral("second"));
    QCOMPARE(shown(least + buttons[0]->sizeHint().width()),
             QStringLiteral("fo+")); // the gap beside it is missing
    QCOMPARE(shown(least + 2 * buttons[0]->sizeHint().width()), QStringLiteral("sefo+"));
    QCOMPARE(shown(600), QStringLiteral("fisethfo"));
}

QTEST_MAIN(Main_Window_Test)
#include "main_window_test.moc"
