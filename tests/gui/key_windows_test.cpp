#include "engine/windows/practice_mode.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/frm_piano_layout.h"
#include "input/windows/frm_qchord_config.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "input/windows/keyboard_view.h"
#include "input/windows/piano_marks.h"
#include "input/windows/staff_view.h"
#include "project/channel_template.h"
#include "support/window_world.h"
#include "widgets/piano_view.h"
#include "widgets/segment_selector.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>

using namespace tonvex;

namespace {

constexpr int KEY_A = 30;
constexpr int KEY_Z = 44;

void Click_Slot(frmPianoLayout& window, int slot) {
    const QRectF key = window.Piano().Key_Rect(slot);
    QTest::mouseClick(&window.Piano(), Qt::LeftButton, {},
                      QPointF(key.center().x(), key.bottom() - 4).toPoint());
}

void Choose(const QWidget& window, const QString& caption) {
    for (auto* button : window.findChildren<QRadioButton*>())
        if (button->text().remove('&') == caption)
            return button->click();
    qFatal("no %s", qPrintable(caption));
}

QAction* Menu_Entry(const frmKeyboardSetup& window, int code) {
    for (QAction* action : Find<QMenu>(window, "keyMenu")->actions())
        if (action->data().isValid() && action->data().toInt() == code)
            return action;
    return nullptr;
}

/// The keyboard window with key A as a note of the active octave, shown so that it takes keys.
struct Keyboard_World : World {
    Keyboard_World() {
        S().layout->Set_Key_Note(KEY_A, {.Note = 128, .Vol = 100, .Length = 0.0});
        S().layout->KeyboardModified = false;
        window.resize(1000, 560);
        window.UpdateLayout();
        window.show();
    }
    KeyboardLayout& Layout() { return *S().layout; }
    Practice_Mode practice{S()};
    frmKeyboardSetup window{S(), theme, practice};
};

} // namespace

class Key_Windows_Test : public QObject {
    Q_OBJECT
private slots:
    void Piano_Marks_One_Note();
    void Piano_Marks_A_Chord();
    void Piano_Knows_The_Active_Octave();
    void Chord_Shows_Its_Record();
    void Chord_Reads_Picking_Back();
    void Chord_Is_Built_By_Choice();
    void Chord_Takes_Custom_Notes();
    void Chord_Is_Tested();
    void Keyboard_Shows_What_Keys_Do();
    void Keyboard_Is_Walked_By_Keys();
    void Key_Becomes_An_Arpeggio();
    void Key_Takes_A_Note();
    void Layouts_Are_Saved_Loaded_Tuned_And_Deleted();
    void A_Channel_Becomes_A_Template();
    void Practice_Sounds_On_A_Piano();
    void Staff_Shows_Notes_By_Name();
};

void Key_Windows_Test::Piano_Marks_One_Note() {
    World world;
    frmPianoLayout window(world.S(), world.theme, NOT_GIVEN);
    QCOMPARE(window.windowTitle(), QStringLiteral("Piano layout"));
    window.show();
    Click(window, "Command2");
    QCOMPARE(world.Last_Text(), std::string("You must select a note"));
    QVERIFY(window.isVisible());
    Click_Slot(window, 0);
    Click_Slot(window, 30);
    QCOMPARE(window.GetChord(), std::vector<int>{90});
    QTest::keyClick(&window.Piano(), Qt::Key_Left);
    QTest::keyClick(&window.Piano(), Qt::Key_Down);
    QTest::keyClick(&window.Piano(), Qt::Key_Space);
    QCOMPARE(window.GetChord(), std::vector<int>{77});
    Find<QSlider>(window, "HScroll1")->setValue(90);
    QCOMPARE(Find<QSpinBox>(window, "Text1")->value(), 90);
    Find<QSpinBox>(window, "Text1")->setValue(30);
    QCOMPARE(window.GetVolume(), 30);
    Click(window, "Command1");
    QCOMPARE(Count(world.test.sound.posted, Sound_Op::NoteOn, 0, 77), 1);
    QCOMPARE(int(world.test.sound.posted.back().b), 30);
    Click(window, "Command2");
    QCOMPARE(window.result(), int(QDialog::Accepted));
    QCOMPARE(Count(world.test.sound.posted, Sound_Op::NoteOff, 0, 77), 1);
}

void Key_Windows_Test::Piano_Marks_A_Chord() {
    World world;
    frmPianoLayout window(world.S(), world.theme, NOT_GIVEN);
    window.SetMode(Piano_Selection::Mode::Chord);
    window.SetChord({60});
    window.show();
    QVERIFY(!Find<QCheckBox>(window, "Check1")->isVisible());
    Click(window, "Command2");
    QCOMPARE(world.Last_Text(), std::string("You must select two notes"));
    for (const int slot : {2, 4, 5, 7, 9, 11})
        Click_Slot(window, slot);
    Click(window, "Command2");
    QCOMPARE(world.Last_Text(), std::string("Chord must have less than 7 notes"));
    Click_Slot(window, 0);
    QCOMPARE(window.GetChord(), (std::vector<int>{62, 64, 65, 67, 69, 71}));
    Click(window, "Command2");
    QCOMPARE(window.result(), int(QDialog::Accepted));
}

void Key_Windows_Test::Piano_Knows_The_Active_Octave() {
    World world;
    world.S().layout->NotesOctave = 3; // begins at 48
    frmPianoLayout window(world.S(), world.theme, NOT_GIVEN);
    window.SetChord({128 + 4});
    auto* variable = Find<QCheckBox>(window, "Check1");
    QCOMPARE(window.Piano().accessibleDescription(), QStringLiteral("E+0, selected"));
    QCOMPARE(Find<QComboBox>(window, "octaves")->currentText(), QStringLiteral("+0"));
    variable->click();
    QCOMPARE(window.GetChord(), std::vector<int>{52});
    variable->click();
    QCOMPARE(window.GetChord(), std::vector<int>{132});
    window.Disable_VariableOctave();
    QCOMPARE(window.GetChord(), std::vector<int>{52});
}

void Key_Windows_Test::Chord_Shows_Its_Record() {
    World world;
    world.S().project.ProjectTempo = 120;
    frmQChordConfig window(world.S(), world.theme, NOT_GIVEN);
    QCOMPARE(window.windowTitle(), QStringLiteral("QChord Config"));
    QCOMPARE(Find<QListWidget>(window, "List2")->item(1)->text(), QStringLiteral("minor (m)"));
    QCOMPARE(Find<QComboBox>(window, "Combo1")->itemText(6), QStringLiteral("Octave 6"));
    QChordData chord;
    chord.Active = 3;
    chord.ChordName = "Dm!";
    chord.ChordFlagA = 2;
    chord.ChordTypeIndex = 1;
    chord.Octave = 4;
    chord.ChordNotes = {1, 2, 3};
    chord.ChordVol = 80;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {3, 2, 1};
    chord.StepMs = -1002;
    window.Load_WorkStruct(chord);
    QCOMPARE(Find<QListWidget>(window, "List1")->currentRow(), 2);
    QCOMPARE(Find<QComboBox>(window, "Combo1")->currentText(), QStringLiteral("Octave 4"));
    QCOMPARE(Find<QLineEdit>(window, "Text2")->text(), QStringLiteral("3 2 1"));
    QCOMPARE(Find<QListWidget>(window, "List3")->currentItem()->text(), QStringLiteral("1/4"));
    QCOMPARE(Find<QCheckBox>(window, "Check3")->text().remove('&'), QStringLiteral("Use beats (120 BPM)"));
    Click(window, "ok");
    QChordData read;
    window.Get_WorkStruct(read);
    QCOMPARE(read, chord); // showing a record and OK change nothing

    frmQChordConfig fixed(world.S(), world.theme, NOT_GIVEN);
    fixed.Disable_VariableOctave();
    fixed.Load_WorkStruct(chord);
    QCOMPARE(Find<QComboBox>(fixed, "Combo1")->count(), 6);
    QCOMPARE(Find<QComboBox>(fixed, "Combo1")->currentText(), QStringLiteral("Octave 4"));
    Find<QListWidget>(fixed, "List1")->setCurrentRow(0);
    fixed.Get_WorkStruct(read);
    QCOMPARE(int(read.Octave), 4);
    QCOMPARE(int(read.ChordNotes[0]), 60);
    chord.Octave = 0; // recorded in the lowest octave; tested as the event sounds, its third note first
    chord.ChordNotes = {14, 17, 21};
    fixed.Load_WorkStruct(chord);
    Click(fixed, "Command5");
    QCOMPARE(Count(world.test.sound.posted, Sound_Op::NoteOn, 0, 21), 1);
}

void Key_Windows_Test::Chord_Reads_Picking_Back() {
    const struct {
        const char *delay, *pattern;
        int beatsRow;
        const char* warning;
        int step;
    } rows[] = {{"250", "1 2 3", -1, "", 250}, {"0", "1 7", -1, "Invalid value: 7", -1}};
    for (const auto& row : rows) {
        World world;
        frmQChordConfig window(world.S(), world.theme, NOT_GIVEN);
        window.show();
        Choose(window, "Piano chord");
        Find<QCheckBox>(window, "Check1")->setChecked(true);
        Find<QCheckBox>(window, "Check3")->setChecked(row.beatsRow >= 0);
        Find<QLineEdit>(window, "Text1")->setText(row.delay);
        Find<QLineEdit>(window, "Text2")->setText(row.pattern);
        Find<QListWidget>(window, "List3")->setCurrentRow(row.beatsRow);
        Click(window, "ok");
        QCOMPARE(world.Last_Text(), std::string(row.warning));
        QCOMPARE(window.isVisible(), *row.warning != '\0');
        QChordData chord;
        window.Get_WorkStruct(chord);
        QCOMPARE(int(chord.StepMs), row.step);
    }
}

void Key_Windows_Test::Chord_Is_Built_By_Choice() {
    World world;
    frmQChordConfig window(world.S(), world.theme, NOT_GIVEN);
    window.show();
    Click(window, "ok");
    QCOMPARE(world.Last_Text(), std::string("No chord selected"));
    Click(window, "Command5");
    QCOMPARE(world.test.dialogs.shown.size(), std::size_t{2});
    Choose(window, "Piano chord");
    Find<QListWidget>(window, "List1")->setCurrentRow(9);
    Find<QListWidget>(window, "List2")->setCurrentRow(1);
    QCOMPARE(Find<QLineEdit>(window, "Text3")->text(), QStringLiteral("Am"));
    Find<QComboBox>(window, "Combo1")->setCurrentIndex(3);
    QCOMPARE(Find<QLabel>(window, "Label7")->text(), QStringLiteral("Notes: A3 C4 E4"));
    Click(window, "Check1");
    QCOMPARE(Find<QLineEdit>(window, "Text2")->nextInFocusChain()->accessibleName(),
             QStringLiteral("Picking pattern 1 2 3 4 5 6"));
    Choose(window, "1 3 2 4");
    QCOMPARE(Find<QLineEdit>(window, "Text2")->text(), QStringLiteral("1 3 2 4"));
    Click(window, "Check1");
    Find<QLineEdit>(window, "Text3")->setText("mine");
    Find<QCheckBox>(window, "Check2")->setChecked(true);
    Find<QSlider>(window, "VScroll1")->setValue(77);
    Click(window, "ok");
    QChordData chord;
    window.Get_WorkStruct(chord);
    QCOMPARE(chord.ChordName, std::string("mine"));
    QCOMPARE(int(chord.Octave), 3);
    QCOMPARE(int(chord.ChordVol), 77);
    QCOMPARE(int(chord.ChordFlagB), 1);
    QCOMPARE(int(chord.StepMs), -1);
    Choose(window, "Guitar chord");
    window.Get_WorkStruct(chord);
    QVERIFY(Is_On(chord.VariableOctave));
    QVERIFY(chord.Active >= 3 && chord.ChordNotes[0] >= 40);
}

void Key_Windows_Test::Chord_Takes_Custom_Notes() {
    World world;
    world.S().layout->QChordsOctave = 4; // begins at 60
    frmQChordConfig window(world.S(), world.theme, NOT_GIVEN);
    window.show();
    Choose(window, "Piano chord");
    QVERIFY(!Find<QPushButton>(window, "edit")->isEnabled());
    Choose(window, "Custom chord");
    QCOMPARE(Find<QLabel>(window, "Label7")->text(), QStringLiteral("Notes: C4 E4 G4"));
    Click(window, "edit");
    Click_Slot(*window.Open_Piano(), 10);
    Find<QSlider>(*window.Open_Piano(), "HScroll1")->setValue(50);
    Click(*window.Open_Piano(), "Command2");
    QCOMPARE(Find<QLabel>(window, "Label7")->text(), QStringLiteral("Notes: C4 E4 G4 A#4"));
    QTRY_VERIFY(window.Open_Piano() == nullptr);
    Click(window, "edit");
    Click_Slot(*window.Open_Piano(), 0);
    Click(*window.Open_Piano(), "Command3");
    Click(window, "ok");
    QChordData chord;
    window.Get_WorkStruct(chord);
    QCOMPARE(int(chord.ChordTypeIndex), 255);
    QCOMPARE(int(chord.Active), 4);
    QCOMPARE(int(chord.ChordNotes[3]), 70);
    QCOMPARE(int(chord.ChordVol), 50);
}

void Key_Windows_Test::Chord_Is_Tested() {
    World world;
    const std::int32_t channel = world.S().channels->Channels[0].ChannelID;
    world.S().channels->Set_OutputChannel(channel, 5);
    world.S().layout->QChordsOctave = 4;
    auto& posted = world.test.sound.posted;
    frmQChordConfig window(world.S(), world.theme, channel);
    window.show();
    Choose(window, "Piano chord");
    Find<QSlider>(window, "VScroll1")->setValue(90); // a chord of no volume is silent
    Click(window, "Command5");
    for (const int note : {60, 64, 67})
        QCOMPARE(Count(posted, Sound_Op::NoteOn, 5, note), 1);
    QCOMPARE(Find<QPushButton>(window, "Command5")->text().remove('&'), QStringLiteral("Stop"));
    window.accept();
    QVERIFY2(window.isVisible(), "busy");
    Click(window, "Command5");
    QCOMPARE(Count(posted, Sound_Op::NoteOff, 5, 67), 1);
    QCOMPARE(int(posted.back().b), 100);
    QCOMPARE(Find<QPushButton>(window, "Command5")->text().remove('&'), QStringLiteral("Test chord"));

    posted.clear();
    Find<QCheckBox>(window, "Check1")->setChecked(true);
    Find<QLineEdit>(window, "Text1")->setText("200");
    Find<QLineEdit>(window, "Text2")->setText("1 3");
    Click(window, "Command5");
    QCOMPARE(posted.size(), std::size_t{1});
    world.test.counter.Advance_Ms(200);
    QTRY_COMPARE(Count(posted, Sound_Op::NoteOn, 5, 67), 1);
    QCOMPARE(Count(posted, Sound_Op::NoteOff, 5, 60), 1);
    window.reject();
    QCOMPARE(Count(posted, Sound_Op::NoteOff, 5, 67), 1);
}

void Key_Windows_Test::Keyboard_Shows_What_Keys_Do() {
    Keyboard_World world;
    Keyboard_View& keys = world.window.Keys();
    QCOMPARE(keys.Shown(KEY_A).label, QStringLiteral("C3"));
    QCOMPARE(int(keys.Shown(KEY_Z).face), int(Keyboard_View::Face::Off));
    QCOMPARE(int(keys.Shown(59).face), int(Keyboard_View::Face::Reserved));
    QCOMPARE(keys.Shown(88).label, QStringLiteral("Chords 6"));
    QCOMPARE(Find<QLabel>(world.window, "hint")->text(), QStringLiteral("Double click on a key to config."));
    QTest::mouseClick(Find<Segment_Selector>(world.window, "notesOctave"), Qt::LeftButton, {}, QPoint(4, 4));
    QCOMPARE(world.Layout().NotesOctave, 0);
    QCOMPARE(keys.Shown(KEY_A).label, QStringLiteral("C"));
    QVERIFY(keys.Convert_KeyN_to_LabelN(KEY_A) > 0);
    QCOMPARE(keys.Convert_KeyN_to_LabelN(200), 0);
    world.S().keyboard->SetKeyState(KEY_A, 1);
    (void)world.S().keyboard->GetNewMessage();
    QVERIFY(keys.Is_Pressed(KEY_A));
    world.window.On_All_Marks_Off();
    QVERIFY(!keys.Is_Pressed(KEY_A));
}

void Key_Windows_Test::Keyboard_Is_Walked_By_Keys() {
    Keyboard_World world;
    Keyboard_View& keys = world.window.Keys();
    struct Step {
        Qt::Key key;
        int reached;
    };
    keys.Select(KEY_Z);
    for (const Step& step :
         {Step{Qt::Key_Up, 30}, Step{Qt::Key_Up, 16}, Step{Qt::Key_Right, 17}, Step{Qt::Key_Up, 3},
          Step{Qt::Key_Left, 2}, Step{Qt::Key_Left, 41}, Step{Qt::Key_Left, 41}, Step{Qt::Key_Up, 1},
          Step{Qt::Key_Up, 1}, Step{Qt::Key_Right, 59}}) {
        QTest::keyClick(&keys, step.key);
        QCOMPARE(keys.Current(), step.reached);
    }
    QTest::keyClick(&keys, Qt::Key_Return);
    QVERIFY2(world.window.Editor() == nullptr, "F1 is reserved");
    keys.Select(KEY_A);
    QTest::keyClick(&keys, Qt::Key_Return);
    QVERIFY(world.window.Editor() != nullptr);
}

void Key_Windows_Test::Key_Becomes_An_Arpeggio() {
    Keyboard_World world;
    Keyboard_View& keys = world.window.Keys();
    keys.Select(KEY_Z);
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(&keys, &byKey);
    QVERIFY(Menu_Entry(world.window, 4)->isChecked());
    QVERIFY2(Menu_Entry(world.window, 2) == nullptr, "no style keys yet");
    Menu_Entry(world.window, 1)->trigger();
    QCOMPARE(keys.Shown(KEY_Z).label, QStringLiteral("C"));
    QVERIFY(world.Layout().KeyboardModified);
    QTest::mouseDClick(&keys, Qt::LeftButton, {}, keys.Key_Rect(KEY_Z).center().toPoint());
    QDialog& chord = *world.window.Editor();
    Find<QListWidget>(chord, "List1")->setCurrentRow(7);
    Find<QListWidget>(chord, "List2")->setCurrentRow(3);
    Find<QCheckBox>(chord, "Check1")->click();
    Find<QCheckBox>(chord, "Check3")->click();
    Choose(chord, "1 4 3 2");
    Find<QListWidget>(chord, "List3")->setCurrentRow(2);
    Find<QCheckBox>(chord, "Check2")->click();
    Click(chord, "ok");
    const QChordData expected{4,   "G7", 0, FLAG_OFF, 0.0,          7,    3, {7, 11, 14, 17}, 1,
                              127, 0,    0, 4,        {1, 4, 3, 2}, -1002};
    QCOMPARE(world.Layout().KeyQChordTable[KEY_Z], expected);
    QCOMPARE(world.Layout().KeyMap[KEY_Z], (KeyMapEntry{-1, KEY_Z, KEY_QCHORD}));
    QCOMPARE(keys.Shown(KEY_Z).label, QStringLiteral("G7"));
}

void Key_Windows_Test::Key_Takes_A_Note() {
    Keyboard_World world;
    world.window.Configure(KEY_A);
    auto* piano = qobject_cast<frmPianoLayout*>(world.window.Editor());
    QVERIFY(piano != nullptr);
    Click_Slot(*piano, 5);
    piano->SetVolume(64);
    piano->reject();
    QCOMPARE(int(world.Layout().KeyNoteTable[KEY_A].Note), 128);
    QTRY_VERIFY(world.window.Editor() == nullptr);
    world.window.Configure(KEY_A);
    piano = qobject_cast<frmPianoLayout*>(world.window.Editor());
    Click_Slot(*piano, 5);
    piano->SetVolume(64);
    piano->accept();
    QCOMPARE(int(world.Layout().KeyNoteTable[KEY_A].Note), 133);
    QCOMPARE(int(world.Layout().KeyNoteTable[KEY_A].Vol), 64);
    world.window.OurMsgClass_MsgReceived(KEY_A, 4);
    QCOMPARE(int(world.Layout().KeyMap[KEY_A].Enabled), 0);
    world.window.OurMsgClass_MsgReceived(1, 0);
    QCOMPARE(int(world.Layout().KeyMap[1].Kind), int(KEY_RESERVED));
}

void Key_Windows_Test::Layouts_Are_Saved_Loaded_Tuned_And_Deleted() {
    Keyboard_World world;
    world.Layout().Set_Key_Note(KEY_A, {.Note = 60, .Vol = 100, .Length = 0.0});
    auto* tuning = Find<QComboBox>(world.window, "mnuKeyboardTuning");
    tuning->setCurrentIndex(3);
    emit tuning->activated(3);
    tuning->setFocus();
    tuning->showPopup();
    QCOMPARE(tuning->view()->verticalScrollBar()->maximum(), 0); // all twelve in sight
    tuning->hidePopup();
    QCOMPARE(int(world.Layout().KeyNoteTable[KEY_A].Note), 63);
    QVERIFY(world.S().project.Modified);
    const auto save = [&world](const QString& name) {
        Click(world.window, "wbButton2");
        auto* question = Find<QInputDialog>(world.window, "newName");
        question->setTextValue(name);
        question->accept();
        QTRY_VERIFY(world.window.findChild<QInputDialog*>("newName") == nullptr);
    };
    save("  Mine ");
    save(" ");
    auto* layouts = Find<QComboBox>(world.window, "Combo1");
    QCOMPARE(layouts->currentText(), QStringLiteral("Mine"));
    QCOMPARE(layouts->count(), 2);
    QVERIFY(!world.Layout().KeyboardModified);
    world.Layout().Set_Key_Note(KEY_A, {.Note = 70, .Vol = 100, .Length = 0.0});
    layouts->setCurrentText("Tonvex default");
    emit layouts->textActivated("Tonvex default");
    QCOMPARE(world.test.dialogs.asked.back(), std::string("Keyboard setup was modified.\nSave changes ?"));
    QCOMPARE(int(world.Layout().KeyMap[KEY_A].Enabled), 0);
    emit tuning->activated(0);
    emit layouts->textActivated("Mine");
    QCOMPARE(int(world.Layout().KeyNoteTable[KEY_A].Note), 60); // files are in C
    Click(world.window, "wbButton3");
    QCOMPARE(world.test.dialogs.asked.back(), std::string("Mine\nDelete  ?"));
    QCOMPARE(world.Layout().Layout_Names().size(), std::size_t{2});
    world.test.dialogs.answers["Mine\nDelete  ?"] = true;
    Click(world.window, "wbButton3");
    QCOMPARE(world.Layout().Layout_Names(), std::vector<std::string>{"Tonvex default"});
}

void Key_Windows_Test::A_Channel_Becomes_A_Template() {
    Keyboard_World world;
    Click(world.window, "Command3");
    QCOMPARE(world.Last_Text(), std::string("You need to select a channel"));
    GlobalChannel& channel = world.S().channels->Channels[0];
    channel.Pan = 20;
    channel.PatchByte0 = 33;
    channel.Style = 3;
    channel.StyleInts[4] = -2;
    channel.StyleCustomInts[1] = 70000;
    world.window.Set_Channel(channel.ChannelID);
    const auto save = [&world](const QString& name) {
        Click(world.window, "Command3");
        auto* question = Find<QInputDialog>(world.window, "templateName");
        question->setTextValue(name);
        question->accept();
        QTRY_VERIFY(world.window.findChild<QInputDialog*>("templateName") == nullptr);
    };
    const auto folder = world.test.folder / "templates" / "channels";
    save(" ../Deep bass.TXT ");
    ChannelTemplate read;
    QVERIFY(Read_Template(folder / "Deep bass.txt", read, true));
    QCOMPARE(read.InfoFile, std::string("Deep bassinfo.html"));
    QCOMPARE(read.KeyboardSetupFile, std::string("Tonvex default"));
    QCOMPARE((std::vector<int>{read.TemplatePan, read.TemplateVol, read.TemplatePatch0, read.TemplateStyle,
                               read.StyleInts[4], read.CustomInts[1], read.TemplateOutput}),
             (std::vector<int>{20, 80, 33, 3, -2, 70000, -1}));
    channel.Pan = 90;
    channel.OutputChannel = 9;
    save("Deep bass");
    QCOMPARE(world.test.dialogs.asked.back(), std::string("Overwrite file ? \r\nDeep bass"));
    world.test.dialogs.answers[world.test.dialogs.asked.back()] = true;
    QVERIFY(Read_Template(folder / "Deep bass.txt", read, true) && read.TemplatePan == 20);
    save("Deep bass");
    QVERIFY(Read_Template(folder / "Deep bass.txt", read, true));
    QVERIFY(read.TemplatePan == 90 && read.TemplateOutput == 9);
    save("..");
    QCOMPARE(world.Last_Text(), std::string("Please type the filename"));
}

void Key_Windows_Test::Practice_Sounds_On_A_Piano() {
    Keyboard_World world;
    world.S().channels->Set_OutputChannel(world.S().channels->Channels[0].ChannelID, 7);
    auto* button = Find<QPushButton>(world.window, "wbButton4");
    button->click();
    QVERIFY(button->isChecked() && world.practice.Is_Running());
    QCOMPARE(button->text().remove('&'), QStringLiteral("Stop practice"));
    world.S().keyboard->SetKeyState(KEY_A, 1);
    QTRY_COMPARE(Count(world.test.sound.posted, Sound_Op::NoteOn, 0, 48), 1);
    button->click();
    QVERIFY(!world.practice.Is_Running());
    QCOMPARE(button->text().remove('&'), QStringLiteral("Practice"));
    QCOMPARE(Count(world.test.sound.posted, Sound_Op::NoteOff, 0, 48), 1);
}

void Key_Windows_Test::Staff_Shows_Notes_By_Name() {
    const struct {
        const char* name;
        Staff_Place place;
    } rows[] = {{"C4", {28, 0}}, {"C#4", {28, '#'}}, {"Db4", {29, 'b'}}, {"B1", {13, 0}},
                {"G9", {67, 0}}, {"Cb5", {35, 'b'}}, {"A", {5, 0}}};
    for (const auto& row : rows)
        QVERIFY2(Place_Of_Name(row.name) == row.place, row.name);
    const std::array steps{21, 21, 22, 23, 25}; // C C# D E G
    QCOMPARE(Staff_Columns(steps, 2), (std::vector<int>{0, 1, 2, 0, 0}));
    World world;
    frmREC_PianoLayout piano(world.S(), world.theme);
    QVERIFY(!Find<QCheckBox>(piano, "Check1")->isChecked());
    piano.ShowNote(61);
    QVERIFY(!piano.Staff().Shows(61));
    Click(piano, "Check1");
    QVERIFY2(piano.Staff().Shows(61), "what sounds already");
    QCOMPARE(world.S().settings.Global_PianoLayout_ShowStaff, 1);
    QVERIFY(piano.Staff().Place(61) == (Staff_Place{28, '#'}));
    piano.ShowNote(61);
    piano.HideNote(61);
    QVERIFY2(piano.Staff().Shows(61) && piano.Piano().Is_Lit(61), "two keys");
    piano.ShowNote(64);
    QCOMPARE(QAccessible::queryAccessibleInterface(&piano.Piano())->text(QAccessible::Value),
             QStringLiteral("C#4 E4"));
    piano.HideNote(61);
    QVERIFY(!piano.Staff().Shows(61));
    piano.HideNote(61);
    piano.ShowNote(23);
    QVERIFY(!piano.Staff().Shows(23));
    piano.Set_Channel(world.S().channels->Channels[0].ChannelID);
    emit piano.Piano().notePressed(61, 90);
    QVERIFY2(piano.Staff().Shows(61) && piano.Piano().Is_Lit(61), "a click; an off too many does no harm");
}

QTEST_MAIN(Key_Windows_Test)
#include "key_windows_test.moc"
