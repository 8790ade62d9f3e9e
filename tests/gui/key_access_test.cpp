#include "app/windows/frm_key_access.h"
#include "platform/qt/virtual_keys.h"
#include "project/windows/frm_properties.h"
#include "song/windows/frm_set_pitch.h"
#include "support/window_world.h"

#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>

using namespace tonvex;

namespace {

constexpr int ROW_PLAY = 22;
constexpr int ROW_STOP = 53;

struct Access_World : World {
    Access_World() {
        QObject::connect(&window, &frmKeyAccess::keysChanged, [this] { ++changes; });
        window.show();
    }
    QTreeWidget& List() const { return *Find<QTreeWidget>(window, "List1"); }
    void Select(int row) {
        Find<QLineEdit>(window, "Text2")->clear();
        List().setCurrentItem(List().topLevelItem(row)); // all 56 are shown
        QCOMPARE(window.Selected_Row(), row);
    }
    const Function_Key_Table& Table() { return S().functionKeys; }

    frmKeyAccess window{S(), theme};
    int changes = 0;
};

} // namespace

class Key_Access_Test : public QObject {
    Q_OBJECT
private slots:
    void Keys_Have_Their_Codes();
    void The_Search_Finds();
    void A_Key_Is_Assigned();
    void A_Function_Is_Renamed_And_Run();
    void A_Song_Changes_Its_Pitch();
    void A_Song_Has_Properties();
};

void Key_Access_Test::Keys_Have_Their_Codes() {
    constexpr auto PAD = Qt::KeypadModifier;
    const struct {
        const char* name;
        int key;
        Qt::KeyboardModifiers held;
        quint32 scan; // as the window system counts: 8 more than the keyboard
        int code;
        int mask;
    } rows[] = {{"letter", Qt::Key_R, Qt::ControlModifier, 27, 82, 2},
                {"Shift on a letter", Qt::Key_R, Qt::ShiftModifier | Qt::AltModifier, 27, 82, 5},
                {"Z on a German keyboard", Qt::Key_Z, {}, 29, 'Z', 0},
                {"Cyrillic key on R", Qt::Key_R + 0x400, {}, 27, 'R', 0},
                {"umlaut", Qt::Key_Odiaeresis, {}, 47, 0, 0},
                {"1 of a French keyboard", Qt::Key_Ampersand, {}, 10, '1', 0},
                {"0 without a place", Qt::Key_0, {}, 0, '0', 0},
                {"minus of the main block", Qt::Key_Minus, {}, 20, 0, 0},
                {"pad 4", Qt::Key_4, PAD, 83, 100, 0},
                {"pad 4 without Num Lock", Qt::Key_Left, PAD, 83, 100, 0},
                {"pad 5 without Num Lock", Qt::Key_Clear, PAD, 84, 101, 0},
                {"pad Enter", Qt::Key_Enter, PAD, 104, 13, 0},
                {"Enter", Qt::Key_Return, {}, 36, 13, 0},
                {"Shift+Tab", Qt::Key_Backtab, Qt::ShiftModifier, 23, 9, 1},
                {"F12", Qt::Key_F12, {}, 96, 123, 0},
                {"Shift itself", Qt::Key_Shift, Qt::ShiftModifier, 50, 16, 0},
                {"Control itself", Qt::Key_Control, Qt::ControlModifier, 37, 17, 0}};
    for (const auto& row : rows) {
        const QKeyEvent event(QEvent::KeyPress, row.key, row.held, row.scan, 0, 0);
        QVERIFY2(Virtual_Key_Of(event) == row.code && Shift_Mask_Of(event) == row.mask, row.name);
    }
    // Every key that a function can have is shown, and is read as itself.
    const Function_Key_Table table;
    for (int code = 1; code < 256; ++code) {
        if (table.KeyNames[static_cast<std::size_t>(code)].empty())
            continue;
        const QKeySequence shown = Shown_Key(code, 6);
        QVERIFY2(Is_Key_Of(shown, code, 6) && !Is_Key_Of(shown, code, 2), qPrintable(shown.toString()));
    }
}

void Key_Access_Test::The_Search_Finds() {
    Access_World w;
    auto* search = Find<QLineEdit>(w.window, "Text2");
    QCOMPARE(w.List().topLevelItemCount(), 56);
    search->setText("OCTAVE: 6");
    QCOMPARE(w.List().topLevelItemCount(), 2);
    QCOMPARE(w.window.Selected_Row(), 43);
    QCOMPARE(Find<QLineEdit>(w.window, "Text1")->text(), QStringLiteral("F6"));
    search->setText("pan 10% l"); // with its blanks
    QCOMPARE(Find<QLineEdit>(w.window, "Text3")->text(), QStringLiteral("Move channel Pan 10% Left"));
    search->setText("nothing like it");
    QCOMPARE(w.window.Selected_Row(), -1);
    for (const char* button : {"Command1", "Command2", "Command3"})
        QVERIFY(!Find<QPushButton>(w.window, button)->isEnabled());
    QVERIFY(Find<QPushButton>(w.window, "Command3")->isDefault());
}

void Key_Access_Test::A_Key_Is_Assigned() {
    constexpr Qt::KeyboardModifiers NONE;
    const struct {
        const char* name;
        Qt::Key key;
        Qt::KeyboardModifiers held;
        bool yes;
        const char* told;
        bool staysArmed;
        const char* keyAfter;
    } rows[] = {
        {"free", Qt::Key_B, NONE, false, "Key assigned", false, "B"},
        {"with Alt", Qt::Key_B, Qt::AltModifier, false, "Key assigned", false, "Alt + B"},
        {"its own", Qt::Key_Return, NONE, false, "Key assigned", false, "Enter"},
        {"moves the focus", Qt::Key_Tab, NONE, false, "Key assigned", false, "Tab"},
        {"used, no", Qt::Key_M, NONE, false, "", false, "Enter"},
        {"used, yes", Qt::Key_M, NONE, true, "Key assigned", false, "M"},
        {"used twice", Qt::Key_R, NONE, true, "Key assigned", false, "R"},
        {"reserved", Qt::Key_F3, NONE, true,
         "Can't set new key (key is reserved for a special function)\r\nPlease select another key", true,
         "Enter"},
        {"unnamed", Qt::Key_Space, NONE, true, "Key not supported, please select another key", true, "Enter"},
        {"Escape", Qt::Key_Escape, NONE, true, "Assign key canceled", false, "Enter"},
        {"Control alone", Qt::Key_Control, NONE, true, "", true, "Enter"},
    };
    for (const auto& row : rows) {
        Access_World w;
        w.test.dialogs.answers["Key already used, replace ?"] = row.yes;
        w.Select(ROW_PLAY);
        Click(w.window, "Command1");
        QTest::keyClick(Find<QLineEdit>(w.window, "Text2"), row.key, row.held);
        const bool taken = row.told == std::string("Key assigned");
        QVERIFY2(w.Last_Text() == row.told && w.window.Is_Armed() == row.staysArmed &&
                     Find<QLineEdit>(w.window, "Text1")->text() == row.keyAfter &&
                     w.Table().Key_Text(ROW_PLAY) == row.keyAfter && w.changes == (taken ? 1 : 0),
                 row.name);
        QVERIFY2(!taken || w.Table().FunctionKeys[31].KeyCode == (row.key == Qt::Key_R ? 0 : 'R'), row.name);
        // The key was swallowed: nothing typed, nothing closed, nothing run.
        QVERIFY2(w.window.isVisible() && Find<QLineEdit>(w.window, "Text2")->text().isEmpty(), row.name);
    }
    Access_World w;
    w.Select(ROW_STOP);
    Click(w.window, "Command1");
    QCOMPARE(w.Last_Text(), std::string("This function key is locked and can't be changed"));
    QVERIFY(!w.window.Is_Armed());
}

void Key_Access_Test::A_Function_Is_Renamed_And_Run() {
    Access_World w;
    int ran = 0;
    w.S().keyRunner.Set_Action("Play song", [&] {
        ++ran;
        QCOMPARE(w.S().keyRunner.PendingKey, 13);
        QCOMPARE(w.S().keyRunner.PendingFunction, ROW_PLAY);
    });
    w.Select(ROW_PLAY);
    Click(w.window, "Command2");
    auto* question = Find<QInputDialog>(w.window, "newName");
    QCOMPARE(question->windowTitle(), QStringLiteral("Change name"));
    QCOMPARE(question->labelText(), QStringLiteral("Type the new name for: Play song"));
    question->setTextValue("Listen");
    question->accept();
    QCOMPARE(w.List().currentItem()->text(0), QStringLiteral("Listen"));
    QCOMPARE(Find<QLineEdit>(w.window, "Text3")->text(), QStringLiteral("Play song"));
    Click(w.window, "Command3");
    QCOMPARE(ran, 1);
    QCOMPARE(w.S().keyRunner.PendingFunction, -1);
    w.S().transport.Recording = true;
    Click(w.window, "Command3");
    w.S().transport.Recording = false;
    QCOMPARE(ran, 1);
}

void Key_Access_Test::A_Song_Changes_Its_Pitch() {
    World w;
    ChannelClass& store = w.S().channels->Store(0);
    for (const std::uint8_t note : {std::uint8_t{0}, std::uint8_t{60}, std::uint8_t{120}})
        store.AddNewEvent(note, NoteData{.Note = note, .Vol = 90, .Length = 1.0});
    const auto change = [&](int semitones, const char* told, std::vector<int> expected) {
        frmSetPitch window(w.S(), w.theme);
        Find<QSpinBox>(window, "Text1")->setValue(semitones);
        QVERIFY(Find<QLabel>(window, "Label1")->text().contains(told));
        window.accept();
        std::vector<int> notes;
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
            notes.push_back(store.ReadEvent(i)->Note->Note);
        QCOMPARE(notes, expected);
    };
    change(7, "0 octaves and 7 semitones up.", {7, 67, 127});
    w.S().transport.PlayRequested = true;
    change(-7, "down", {7, 67, 127});
    w.S().transport.PlayRequested = false;
    change(-12, "1 note(s) leave", {55, 115});
}

void Key_Access_Test::A_Song_Has_Properties() {
    World w;
    Project_State& song = w.S().project;
    song.ProjectComments = "one\r\ntwo";
    song.Modified = false;
    frmProperties window(w.S(), w.theme);
    window.accept();
    QVERIFY(!song.Modified);
    Find<QLineEdit>(window, "Text1")->setText(" Lied ");
    Find<QLineEdit>(window, "Text2")->setText("Käte");
    Find<QPlainTextEdit>(window, "Text3")->appendPlainText("three");
    window.reject();
    QCOMPARE(song.ProjectTitle, std::string("Untitled"));
    window.accept();
    QCOMPARE(song.ProjectTitle + song.ProjectAuthor, std::string("LiedKäte"));
    QCOMPARE(song.ProjectComments, std::string("one\r\ntwo\r\nthree"));
    QVERIFY(song.Modified);
    Find<QPlainTextEdit>(window, "Text3")->setPlainText(QString(16001, 'x'));
    window.accept();
    QCOMPARE(song.ProjectComments, std::string("one\r\ntwo\r\nthree"));
    QVERIFY(w.Last_Text().find("too long") != std::string::npos);
}

QTEST_MAIN(Key_Access_Test)
#include "key_access_test.moc"
