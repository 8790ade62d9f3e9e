#include "engine/windows/frm_metronome_setup.h"
#include "song/time_text.h"
#include "song/windows/frm_tempo.h"
#include "support/test_session.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

using namespace tonvex;

namespace {

template <typename Widget>
Widget* Find(const QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no %s", name);
    return found;
}

struct Song_Fixture {
    Test_Session test;
    Session& session = test.Load();
    Memory_Settings_Store store;
    Theme theme{*qApp, store};
};

QString Changes(const Session& session) {
    QStringList texts;
    for (const TempoChange& change : session.tempoChanges.In_Time_Order())
        texts << QStringLiteral("%1=%2").arg(QString::fromStdString(Format_Beats(change.BeatN))).arg(change.Tempo);
    return texts.join(' ');
}

} // namespace

class Song_Windows_Test : public QObject {
    Q_OBJECT
private slots:
    void A_Tempo_Change_Is_Added_data();
    void A_Tempo_Change_Is_Added();
    void A_Tempo_Change_Is_Edited();
    void The_Click_Is_Tested_And_Kept();
};

// The list holds 3:1.0=120 before each row.
void Song_Windows_Test::A_Tempo_Change_Is_Added_data() {
    QTest::addColumn<QString>("position");
    QTest::addColumn<int>("tempo");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("told");
    const QString before = QStringLiteral("3:1.0=120");
    QTest::newRow("at the start") << "1:1.0" << 90 << "1:1.0=90 3:1.0=120" << "";
    QTest::newRow("later, with blanks") << " 4:2.5 " << 60 << "3:1.0=120 4:2.5=60" << "";
    QTest::newRow("in beats") << "6" << 60 << "2:3.0=60 3:1.0=120" << "";
    QTest::newRow("no beat 5") << "1:5" << 60 << before << "Invalid Value";
    QTest::newRow("words") << "soon" << 60 << before << "Invalid Value";
    QTest::newRow("before the song") << "-2:1" << 60 << before << "Invalid Value";
    QTest::newRow("taken") << "3:1" << 60 << before
                           << "There is a tempo change at this position already. Select it in the list to change "
                              "its tempo.";
}

void Song_Windows_Test::A_Tempo_Change_Is_Added() {
    QFETCH(QString, position);
    QFETCH(int, tempo);
    QFETCH(QString, changes);
    QFETCH(QString, told);
    Song_Fixture s;
    s.session.hub->Message(nullptr, MSG_ADD_TEMPO_CHANGE, 8.0, std::int32_t{120});
    s.session.project.Modified = false;
    frmTempo window(s.session, s.theme);
    auto* field = Find<QLineEdit>(window, "Text1");
    QCOMPARE(field->text(), QStringLiteral("1:1.0"));
    field->setText(position);
    Find<QSpinBox>(window, "Text2")->setValue(tempo);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(Changes(s.session), changes);
    QCOMPARE(s.session.project.Modified, told.isEmpty());
    QCOMPARE(s.test.dialogs.messages.empty() ? QString() : QString::fromStdString(s.test.dialogs.messages.back()),
             told);
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
    Find<QPushButton>(window, "change")->click(); // nothing was touched
    QVERIFY(heard.isEmpty());
    Find<QSpinBox>(window, "Text2")->setValue(121);
    Find<QPushButton>(window, "change")->click();
    QCOMPARE(heard, QList<int>{MSG_SET_TEMPO_CHANGE});
    QCOMPARE(s.session.tempoChanges.In_Time_Order()[0].BeatN, 7.96); // not cut to the tenth shown
    field->setText(QStringLiteral("5:1")); // the other one's place
    Find<QPushButton>(window, "change")->click();
    QCOMPARE(Changes(s.session), QStringLiteral("2:4.9=121 5:1.0=60"));
    field->setText(QStringLiteral("6:1"));
    Find<QPushButton>(window, "change")->click();
    QCOMPARE(Changes(s.session), QStringLiteral("5:1.0=60 6:1.0=121"));
    QCOMPARE(list->currentItem()->text(0), QStringLiteral("6:1.0")); // still the selected one
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(Changes(s.session), QStringLiteral("5:1.0=60"));
    Find<QSpinBox>(window, "songTempo")->setValue(95);
    QCOMPARE(s.session.project.ProjectTempo, 95);
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
    QCOMPARE(int{clicks()[0].channel}, 9);
    QCOMPARE(int{clicks()[0].a}, 37);
    QCOMPARE(int{clicks()[0].b}, 64); // 50 * 1.27 = 63.5, to the even
    s.test.counter.Advance_Ms(200); // a beat of 300
    QTRY_COMPARE(clicks().size(), 2);
    test->click();
    QCOMPARE(test->text(), QStringLiteral("Test Metronome"));
    QCOMPARE(s.session.project.MetronomeNote, 44); // the test keeps nothing
    QVERIFY(!s.session.project.Modified);
    test->click();
    window.accept(); // not the button: Escape, the frame and Cancel end the test as well
    QCOMPARE(test->text(), QStringLiteral("Test Metronome"));

    Find<QPushButton>(window, "Command1")->click();
    QCOMPARE(s.session.project.MetronomeNote, 37);
    QCOMPARE(s.session.project.MetronomeVolume, 50);
    QVERIFY(s.session.project.Modified);
}

QTEST_MAIN(Song_Windows_Test)
#include "song_windows_test.moc"
