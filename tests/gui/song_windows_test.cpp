#include "engine/windows/frm_metronome_setup.h"
#include "song/time_text.h"
#include "song/windows/frm_marks.h"
#include "song/windows/frm_set_speed.h"
#include "song/windows/frm_tempo.h"
#include "song/windows/mark_selection.h"
#include "support/window_world.h"
#include "widgets/mark_flags.h"
#include "widgets/song_overview.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

using namespace tonvex;

namespace {

struct Song_Fixture : World {
    Session& session = S();
};

/// Shown, with the focus on one of its controls: shortcuts need both.
void Show(QWidget& window, QWidget* focus) {
    window.show();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("the window is not active");
    focus->setFocus();
}

QString Changes(const Session& session) {
    QStringList texts;
    for (const TempoChange& change : session.tempoChanges.In_Time_Order())
        texts << QStringLiteral("%1=%2")
                     .arg(QString::fromStdString(Format_Beats(change.BeatN)))
                     .arg(change.Tempo);
    return texts.join(' ');
}

} // namespace

class Song_Windows_Test : public QObject {
    Q_OBJECT
private slots:
    void A_Tempo_Change_Is_Added();
    void A_Tempo_Change_Is_Edited();
    void The_Click_Is_Tested_And_Kept();
    void The_Song_Is_Made_Faster();
    void Marks_Are_Made_Named_And_Deleted();
    void A_Mark_Follows_The_Play_Position();
    void A_Full_Table_Is_Told();
    void Flags_Lie_On_The_Ruler();
    void A_Flag_Is_Read_On_Every_Colour();
    void A_Flag_Goes_To_Its_Mark();
};

// The list holds 3:1.0=120 before each row.
void Song_Windows_Test::A_Tempo_Change_Is_Added() {
    const struct {
        const char* name;
        const char* position;
        int tempo;
        QString changes;
        std::string told;
    } rows[] = {
        {"at the start", "1:1.0", 90, "1:1.0=90 3:1.0=120", ""},
        {"later, with blanks", " 4:2.5 ", 60, "3:1.0=120 4:2.5=60", ""},
        {"in beats", "6", 60, "2:3.0=60 3:1.0=120", ""},
        {"no beat 5", "1:5", 60, "3:1.0=120", "Invalid Value"},
        {"words", "soon", 60, "3:1.0=120", "Invalid Value"},
        {"before the song", "-2:1", 60, "3:1.0=120", "Invalid Value"},
        {"taken", "3:1", 60, "3:1.0=120",
         "There is a tempo change at this position already. Select it in the list to change its tempo."},
    };
    for (const auto& row : rows) {
        Song_Fixture s;
        s.session.hub->Message(nullptr, MSG_ADD_TEMPO_CHANGE, 8.0, std::int32_t{120});
        s.session.project.Modified = false;
        frmTempo window(s.session, s.theme);
        auto* field = Find<QLineEdit>(window, "Text1");
        QCOMPARE(field->text(), QStringLiteral("1:1.0"));
        field->setText(QLatin1String(row.position));
        Find<QSpinBox>(window, "Text2")->findChild<QLineEdit*>()->setText(QString::number(row.tempo));
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY2(Changes(s.session) == row.changes && s.Last_Text() == row.told, row.name);
        QVERIFY2(s.session.project.Modified == row.told.empty(), row.name);
    }
}

void Song_Windows_Test::A_Tempo_Change_Is_Edited() {
    Song_Fixture s;
    s.session.hub->Message(nullptr, MSG_ADD_TEMPO_CHANGE, 7.96, std::int32_t{120});
    s.session.hub->Message(nullptr, MSG_ADD_TEMPO_CHANGE, 16.0, std::int32_t{60});
    QList<int> heard;
    s.session.events.Subscribe([&](int msgId, std::int32_t, const std::string&) {
        if (msgId >= MSG_ADD_TEMPO_CHANGE)
            heard << msgId;
    });
    frmTempo window(s.session, s.theme);
    auto* list = Find<QTreeWidget>(window, "List1");
    auto* field = Find<QLineEdit>(window, "Text1");
    QVERIFY(!Find<QPushButton>(window, "change")->isEnabled());
    list->setCurrentItem(list->topLevelItem(0));
    QCOMPARE(field->text(), QStringLiteral("2:4.9"));
    Click(window, "change"); // nothing was touched
    QVERIFY(heard.isEmpty());
    Find<QSpinBox>(window, "Text2")->setValue(121);
    Click(window, "change");
    QCOMPARE(heard, QList<int>{MSG_SET_TEMPO_CHANGE});
    QCOMPARE(s.session.tempoChanges.In_Time_Order()[0].BeatN, 7.96); // not cut to the tenth shown
    field->setText(QStringLiteral("5:1"));                           // the other one's place
    Click(window, "change");
    QCOMPARE(Changes(s.session), QStringLiteral("2:4.9=121 5:1.0=60"));
    field->setText(QStringLiteral("6:1"));
    Click(window, "change");
    QCOMPARE(Changes(s.session), QStringLiteral("5:1.0=60 6:1.0=121"));
    QCOMPARE(list->currentItem()->text(0), QStringLiteral("6:1.0")); // still the selected one
    Show(window, list);
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(Changes(s.session), QStringLiteral("5:1.0=60"));
    Find<QSpinBox>(window, "songTempo")->setValue(95);
    QCOMPARE(s.session.project.ProjectTempo, 95);
    {
        frmTempo going(s.session, s.theme);
        Show(going, Find<QSpinBox>(going, "songTempo"));
        QTest::keyClicks(Find<QSpinBox>(going, "songTempo"), QStringLiteral("7"));
    }
    QCOMPARE(s.session.project.ProjectTempo, 95); // a window that goes sends nothing more
}

void Song_Windows_Test::The_Click_Is_Tested_And_Kept() {
    Song_Fixture s;
    const auto clicks = [&] {
        QList<Sound_Message> heard;
        for (const Sound_Message& message : s.test.sound.posted)
            if (message.op == Sound_Op::NoteOn)
                heard << message;
        return heard;
    };
    frmMetronomeSetup window(s.session, s.theme);
    QCOMPARE(Find<QLabel>(window, "speedLabel")->text(), QStringLiteral("(Project speed)"));
    Find<QSlider>(window, "HScroll1")->setValue(37);
    QCOMPARE(Find<QSpinBox>(window, "Text1")->value(), 37); // a pair shows one value
    Find<QSpinBox>(window, "Text2")->setValue(50);
    QCOMPARE(Find<QSlider>(window, "HScroll2")->value(), 50);
    Find<QSpinBox>(window, "Text3")->setValue(300);
    QVERIFY(Find<QLabel>(window, "speedLabel")->text().isEmpty());

    auto* test = Find<QPushButton>(window, "Command3");
    QCOMPARE(test->text(), QStringLiteral("Test Metronome"));
    test->click();
    QCOMPARE(test->text(), QStringLiteral("Stop"));
    QCOMPARE(clicks().size(), 1); // at once
    QCOMPARE(int{clicks()[0].slot}, 9);
    QCOMPARE(int{clicks()[0].a}, 37);
    QCOMPARE(int{clicks()[0].b}, 64); // 50 * 1.27 = 63.5, to the even
    s.test.counter.Advance_Ms(200);   // a beat of 300
    QTRY_COMPARE(clicks().size(), 2);
    test->click();
    QCOMPARE(test->text(), QStringLiteral("Test Metronome"));
    QCOMPARE(s.session.project.MetronomeNoteB, 44); // the test keeps nothing
    QVERIFY(!s.session.project.Modified);
    test->click();
    window.accept(); // not the button: Escape, the frame and Cancel end the test as well
    QCOMPARE(test->text(), QStringLiteral("Test Metronome"));

    Click(window, "Command1");
    QCOMPARE(s.session.project.MetronomeNoteB, 37);
    QCOMPARE(s.session.project.MetronomeNoteA, 50);
    QVERIFY(s.session.project.Modified);
    // What the song is given meanwhile shows.
    frmMetronomeSetup open(s.session, s.theme);
    s.session.project.MetronomeNoteB = 60;
    s.session.hub->Message(nullptr, MSG_SET_TEMPO, std::int32_t{500});
    QCOMPARE(Find<QSpinBox>(open, "Text1")->value(), 60);
    QCOMPARE(Find<QLabel>(open, "speedLabel")->text(), QStringLiteral("(Project speed)"));
}

// Four bars and a beat at 80: 17 beats of 750 ms are 12.75 s. At 200 % half of it: 8.5 beats, 6.375 s.
void Song_Windows_Test::The_Song_Is_Made_Faster() {
    Song_Fixture s;
    s.session.channels->Store(0).AddNewEvent(16.0, NoteData{60, 100, 1.0});
    s.session.hub->Message(nullptr, MSG_GENERAL_UPDATE);
    frmSetSpeed window(s.session, s.theme);
    auto* label = Find<QLabel>(window, "Label1");
    QCOMPARE(label->text(), QStringLiteral("New length: 5:2.0 (bars:beats)   00:13 (mm:ss)"));
    Find<QSpinBox>(window, "Text1")->setValue(200);
    QCOMPARE(label->text(), QStringLiteral("New length: 3:1.5 (bars:beats)   00:06 (mm:ss)"));
    QCOMPARE(s.session.project.SongLength, 17.0); // nothing before OK
    window.accept();
    QCOMPARE(s.session.project.SongLength, 8.5);
}

void Song_Windows_Test::Marks_Are_Made_Named_And_Deleted() {
    Song_Fixture s;
    Mark_Selection selection(s.session);
    frmMarks window(s.session, s.theme, selection);
    auto* list = Find<QTreeWidget>(window, "list");
    auto* name = Find<QLineEdit>(window, "name");
    QSignalSpy goTo(&selection, &Mark_Selection::goTo);
    QCOMPARE(list->topLevelItemCount(), 1);
    QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("Start"));
    QVERIFY(!Find<QToolButton>(window, "delete")->isEnabled());
    Show(window, list);

    s.session.transport.PlayPosition = 9.5;
    Click(window, "add");
    QCOMPARE(name->text(), QStringLiteral("New Mark"));
    QCOMPARE(name->selectedText(), name->text()); // ready to be typed over
    QTest::keyClicks(name, "Verse");
    QTest::keyClick(name, Qt::Key_Return);
    QCOMPARE(s.session.marks.Row(1).MarkName, std::string("Verse"));
    QCOMPARE(list->currentItem()->text(1), QStringLiteral("3:2.5"));
    QVERIFY(selection.Select_Or_Add_At_Play_Position()); // the menu finds the one that is there
    QCOMPARE(s.session.marks.Mark_Count(), 2);

    list->setFocus();
    QTest::keyClick(list, Qt::Key_Up); // only looks
    QVERIFY(goTo.isEmpty());
    QTest::keyClick(list, Qt::Key_Return);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->topLevelItem(1)).center());
    QCOMPARE(goTo, (QList<QVariantList>{{0.0}, {9.5}}));

    QTest::keyClick(list, Qt::Key_Delete); // a no
    QVERIFY(s.session.marks.Is_Live(1));
    s.test.dialogs.answers["Delete mark: Verse ?"] = true;
    QTest::keyClick(list, Qt::Key_Delete);
    QVERIFY(!s.session.marks.Is_Live(1));
    QCOMPARE(selection.Row(), -1);
    QCOMPARE(list->topLevelItemCount(), 1);
    selection.Delete();
    QCOMPARE(s.test.dialogs.shown.back().text, std::string("You need to select a mark"));
    s.session.transport.PlayPosition = 0.0;
    QTest::keyClick(list, Qt::Key_Insert); // the window adds a second one beside "Start"
    QCOMPARE(list->topLevelItemCount(), 2);
    QCOMPARE(selection.Row(), 2);
}

// Before each row the selected mark spans beats 8 to 16, or is a plain one at 8.
void Song_Windows_Test::A_Mark_Follows_The_Play_Position() {
    const struct {
        const char* name;
        bool span;
        bool end;
        double position, startAfter, endAfter;
    } rows[] = {{"start of a plain mark", false, false, 4.0, 4.0, 4.0},
                {"start of a span", true, false, 12.0, 12.0, 16.0},
                {"end of a plain mark", false, true, 10.0, 8.0, 10.0},
                {"end of a span", true, true, 20.0, 8.0, 20.0},
                {"end before the start", true, true, 4.0, 8.0, 16.0}};
    for (const auto& row : rows) {
        Song_Fixture s;
        s.session.hub->Message(nullptr, MSG_ADD_MARK, 8.0, row.span ? Msg_Arg(16.0) : Msg_Arg(),
                               std::string("Verse"));
        Mark_Selection selection(s.session);
        selection.Select(1);
        s.session.transport.PlayPosition = row.position;
        row.end ? selection.Set_End_At_Play_Position() : selection.Set_Start_At_Play_Position();
        const Mark& mark = s.session.marks.Row(1);
        QVERIFY2(mark.MarkStart == row.startAfter, row.name);
        QVERIFY2(std::max(mark.MarkStart, mark.MarkEnd) == row.endAfter, row.name);
    }
}

void Song_Windows_Test::A_Full_Table_Is_Told() {
    Song_Fixture s;
    for (int i = 1; i < Song_Marks::ROWS; ++i)
        s.session.hub->Message(nullptr, MSG_ADD_MARK, double{1.0} * i, Msg_Arg(), std::string("Mark"));
    Mark_Selection selection(s.session);
    s.session.transport.PlayPosition = 500.0;
    QVERIFY(!selection.Add_At_Play_Position());
    QVERIFY(s.test.dialogs.shown.back().text.find("100") != std::string::npos);
}

// Boxes by hand: the text and 5 of air on both sides, cut 1 before the next flag, 8 at least.
void Song_Windows_Test::Flags_Lie_On_The_Ruler() {
    const struct {
        const char* name;
        std::vector<double> starts, widths;
    } rows[] = {{"one", {10}, {40}},
                {"room", {10, 60}, {40, 40}},
                {"close", {10, 35}, {24, 40}},
                {"at one place", {10, 10}, {8, 40}},
                {"none", {}, {}}};
    for (const auto& row : rows) {
        std::vector<Mark_Flag> flags;
        std::vector<QRectF> expected;
        for (std::size_t i = 0; i < row.starts.size(); ++i) {
            flags.push_back({0, row.starts[i], 30.0});
            expected.emplace_back(row.starts[i], 2.0, row.widths[i], 16.0);
        }
        const std::vector<QRectF> boxes = Flag_Boxes(flags, 2.0, 16.0, 5.0, 8.0);
        QVERIFY2(boxes == expected, row.name);
        const int last = static_cast<int>(boxes.size()) - 1;
        QVERIFY2(Flag_At(boxes, last < 0 ? QPointF(10, 10) : QPointF(row.starts.back() + 1, 10)) == last,
                 row.name);
        QVERIFY2(Flag_At(boxes, {300, 10}) == -1, row.name);
    }
}

// White on red has 4.0 to 1 and black on it 5.25; the grey of 118 has 4.54 with white, 4.62 with black.
void Song_Windows_Test::A_Flag_Is_Read_On_Every_Colour() {
    for (const Theme_Tokens* tokens : {&Theme_Tokens::Dark(), &Theme_Tokens::Light()})
        for (int row = 0; row < 8; ++row)
            QVERIFY(Contrast_Ratio(Text_On(Mark_Colour(*tokens, Mark(), row)),
                                   Mark_Colour(*tokens, Mark(), row)) >= 4.5);
    for (int red = 0; red < 256; red += 15)
        for (int green = 0; green < 256; green += 5)
            for (int blue = 0; blue < 256; blue += 15) {
                const QColor ground(red, green, blue);
                QVERIFY2(Contrast_Ratio(Text_On(ground), ground) >= 4.5, qPrintable(ground.name()));
            }
}

void Song_Windows_Test::A_Flag_Goes_To_Its_Mark() {
    Song_Fixture s;
    s.session.hub->Message(nullptr, MSG_ADD_MARK, 13.0, Msg_Arg(), std::string("Chorus"));
    Song_Overview overview(s.session, s.theme);
    overview.resize(800, 300);
    QSignalSpy clicked(&overview, &Song_Overview::markClicked);
    (void)overview.grab(); // places the flags
    QCOMPARE(overview.Flags().size(), std::size_t{2});
    QTest::mouseClick(&overview, Qt::LeftButton, {}, overview.Flag_Places()[1].center().toPoint());
    QCOMPARE(clicked, (QList<QVariantList>{{1}}));
    s.session.hub->Message(nullptr, MSG_DELETE_MARK, std::int32_t{1});
    (void)overview.grab();
    QCOMPARE(overview.Flags().size(), std::size_t{1});
}

QTEST_MAIN(Song_Windows_Test)
#include "song_windows_test.moc"
