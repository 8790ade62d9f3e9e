#include "editors/windows/frm_ev_ed_set_vol.h"
#include "editors/windows/frm_ev_ed_time_pos_properties.h"
#include "editors/windows/frm_ev_ed_view.h"
#include "editors/windows/frm_events_editor.h"
#include "editors/windows/frm_sel_channels_view.h"
#include "editors/windows/frm_undo_list.h"
#include "support/window_program.h"
#include "support/window_world.h"
#include "widgets/frm_patch_selection_win.h"
#include "widgets/tool_button.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <map>

using namespace tonvex;

namespace {

/// An editor of the first channel: C5 at beat 1, E5 at 2, G5 at 4, a beat each, volume 100; 42 pixels a beat.
struct Editor : World {
    explicit Editor(bool notes = true) : host(S(), theme), editor(host.Editor()), view(editor.View()) {
        S().options.Global_UseThreadEngine = false;
        if (notes)
            for (const auto& [beat, note] : {std::pair{1.0, 72}, {2.0, 76}, {4.0, 79}})
                Store().AddNewEvent(beat, NoteData{static_cast<std::uint8_t>(note), 100, 1.0});
        S().hub->Message(nullptr, MSG_GENERAL_UPDATE);
        S().project.Modified = false;
        S().events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
            if (msgId >= MSG_EVENT_ADDED && msgId <= MSG_CHORD_TYPE_END)
                messages << msgId;
        });
        host.resize(1100, 640);
        host.show();
        if (!QTest::qWaitForWindowActive(&host))
            qFatal("the editor is not active");
        host.Show_Channel(FIRST_ID);
        editor.UpdateZoom(6);
        editor.Update_View();
        view.Scroll_To(0.0, view.Window().Geometry.Y_Of_Note(84));
        view.setFocus();
        messages.clear();
    }
    ChannelClass& Store() { return S().channels->Store(0); }
    QString Song() {
        QStringList events;
        for (std::int32_t i = Store().FirstEvent(); i >= 0; i = Store().Get_NextEventI(i)) {
            const auto event = Store().ReadEvent(i);
            const int volume = event->Note != nullptr ? event->Note->Vol : -1;
            events << QStringLiteral("%1/%2/%3/%4")
                          .arg(event->StartTime)
                          .arg(Store().Get_Event_BaseNote(i))
                          .arg(Store().GetEvent_Length(i))
                          .arg(volume);
        }
        return events.join(' ');
    }
    QPoint At(double beat, int note) const {
        const Roll_Painter painter = view.Painter();
        return QPointF(painter.X_Of(beat), painter.Y_Of_Note(note) + 9).toPoint();
    }
    void Move_To(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        QMouseEvent event(QEvent::MouseMove, point, view.mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                          modifiers);
        QApplication::sendEvent(&view, &event);
    }
    void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(&view, Qt::LeftButton, modifiers, from);
        Move_To((from * 3 + to) / 4, modifiers);
        Move_To(to, modifiers);
        QTest::mouseRelease(&view, Qt::LeftButton, modifiers, to);
    }
    /// One key after the other: "I" Insert, "D" Delete, arrows "<>^v", "T" Tab, "B" back tab, " " Space.
    void Type(const char* keys, Qt::KeyboardModifiers modifiers = {}) {
        static const std::map<char, Qt::Key> KEYS = {
            {'I', Qt::Key_Insert}, {'D', Qt::Key_Delete},  {'<', Qt::Key_Left},
            {'>', Qt::Key_Right},  {'^', Qt::Key_Up},      {'v', Qt::Key_Down},
            {'T', Qt::Key_Tab},    {'B', Qt::Key_Backtab}, {' ', Qt::Key_Space}};
        for (; *keys != 0; ++keys)
            QTest::keyClick(&view, KEYS.at(*keys), modifiers);
    }
    bool In_View(std::size_t row) {
        const QRectF box = view.Painter().Box_Of(editor.Display().Own().Rows()[row]);
        return QRectF(view.Painter().Layout().Roll).contains(box.center());
    }
    std::size_t Selected() { return editor.Display().Own().Selected_Count(); }
    template <typename Dialog>
    Dialog* Opened() {
        auto* found = editor.findChild<Dialog*>();
        if (found == nullptr)
            qFatal("the dialog is not open");
        return found;
    }

    frmEventsEditor host;
    EventsEditorCtrl& editor;
    Roll_View& view;
    QList<int> messages;
};

const QString BEFORE = QStringLiteral("1/72/1/100 2/76/1/100 4/79/1/100");

} // namespace

class Events_Editor_Test : public QObject {
    Q_OBJECT
private slots:
    void A_Drag_Is_One_Step_data();
    void A_Drag_Is_One_Step();
    void Grid_And_Held_Keys_Decide_A_Drag();
    void Escape_Takes_A_Drag_Back();
    void The_Wheel_Zooms_Around_The_Pointer();
    void A_Drag_At_The_Edge_Scrolls();
    void A_Clicked_Note_Stops_By_Itself();
    void A_Phrase_By_Keys_Alone();
    void Every_Event_In_View_Is_Told();
    void The_Play_Line_Repaints_Its_Strip();
    void Time_Properties();
    void Volume_And_Clipboard();
    void Other_Channels_Are_Shown_Pale();
    void The_View_Is_Remembered();
    void Rules_And_Their_Boxes();
    void The_Selection_Comes_Back_With_A_Step();
    void Another_Song_Begins_Unselected();
    void A_Take_Is_Shown_While_It_Grows();
    void Copy_Mode_Blinks();
    void A_Patch_Event_Takes_Another_Patch();
    void It_Is_The_First_Tab_Of_The_Window();
};

void Events_Editor_Test::A_Drag_Is_One_Step_data() {
    QTest::addColumn<int>("tool");
    QTest::addColumn<QPoint>("from"); // beats in hundredths, note
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QList<int>>("messages");
    QTest::addColumn<QString>("after");
    const auto row = [](const char* name, Roll_Tool tool, QPoint from, QPoint to, const QList<int>& messages,
                        const char* after) {
        QTest::newRow(name) << static_cast<int>(tool) << from << to << messages << QString(after);
    };
    row("to the right", Roll_Tool::Select, {150, 72}, {250, 72}, {1018, 1019},
        "2/72/1/100 2/76/1/100 4/79/1/100");
    row("up", Roll_Tool::Select, {250, 76}, {250, 77}, {1022, 1023}, "1/72/1/100 2/77/1/100 4/79/1/100");
    row("its edge", Roll_Tool::Select, {298, 76}, {348, 76}, {1020, 1021},
        "1/72/1/100 2/76/1.5/100 4/79/1/100");
    row("a note drawn", Roll_Tool::Draw, {602, 70}, {698, 70}, {1015, 1016},
        "1/72/1/100 2/76/1/100 4/79/1/100 6/70/1/100");
    row("erased", Roll_Tool::Erase, {150, 72}, {150, 72}, {1017}, "2/76/1/100 4/79/1/100");
    row("a click", Roll_Tool::Select, {150, 72}, {150, 72}, {}, "1/72/1/100 2/76/1/100 4/79/1/100");
}

void Events_Editor_Test::A_Drag_Is_One_Step() {
    QFETCH(int, tool);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(QList<int>, messages);
    QFETCH(QString, after);
    Editor e;
    e.view.Set_Tool(static_cast<Roll_Tool>(tool));
    e.Drag(e.At(from.x() / 100.0, from.y()), e.At(to.x() / 100.0, to.y()));
    QCOMPARE(e.messages, messages);
    QCOMPARE(e.Song(), after);
    QCOMPARE(e.S().undo->Undo_Count(), after == BEFORE ? 0U : 1U);
    e.S().undo->Do_Undo();
    QCOMPARE(e.Song(), BEFORE);
}

void Events_Editor_Test::Grid_And_Held_Keys_Decide_A_Drag() {
    Editor e;
    e.editor.Set_Grid(1);
    e.Drag(e.At(1.5, 72), e.At(2.2, 72));
    QCOMPARE(e.Song(), QStringLiteral("2/72/1/100 2/76/1/100 4/79/1/100"));
    e.Drag(e.At(4.25, 79), e.At(4.25, 79) + QPoint(21, 0), Qt::AltModifier); // half a beat, off the grid
    QCOMPARE(e.Song(), QStringLiteral("2/72/1/100 2/76/1/100 4.5/79/1/100"));
    e.Drag(e.At(4.75, 79), e.At(6.75, 79), Qt::ControlModifier); // a copy; 6.5 goes up
    QCOMPARE(e.Song(), QStringLiteral("2/72/1/100 2/76/1/100 4.5/79/1/100 7/79/1/100"));
    e.editor.Set_Copy_Mode(true);
    e.Drag(e.At(7.5, 79), e.At(9.5, 79));
    QCOMPARE(e.editor.Display().Own().Rows().size(), std::size_t{5});
    e.editor.Add_Note_At_Next_Click();
    e.Drag(e.At(11.5, 75), e.At(11.5, 75));
    QCOMPARE(e.editor.Display().Own().Rows().back().StartTime, 11.0);
    QVERIFY(e.view.Tool() == Roll_Tool::Select); // one note, and the pencil is put down
}

void Events_Editor_Test::Escape_Takes_A_Drag_Back() {
    Editor e;
    QTest::mousePress(&e.view, Qt::LeftButton, {}, e.At(1.5, 72));
    e.Move_To(e.At(3.5, 72));
    QVERIFY(e.view.Gesture().Is_On());
    QTest::keyClick(&e.view, Qt::Key_Escape);
    QTest::mouseRelease(&e.view, Qt::LeftButton, {}, e.At(3.5, 72));
    QCOMPARE(e.messages, QList<int>());
    QCOMPARE(e.Song(), BEFORE);
}

void Events_Editor_Test::The_Wheel_Zooms_Around_The_Pointer() {
    Editor e;
    const QPoint pointer = e.At(9.0, 72);
    const auto turn = [&](int by, Qt::KeyboardModifiers modifiers) {
        QWheelEvent wheel(pointer, e.view.mapToGlobal(pointer), {}, {0, by}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&e.view, &wheel);
    };
    for (const int notch : {120, 120, -120}) {
        turn(notch, Qt::ControlModifier);
        QVERIFY(std::abs(e.view.Painter().Beat_At(pointer.x()) - 9.0) < 0.03); // a pixel
    }
    QCOMPARE(e.view.Window().Geometry.ZoomIndex, 5);
    const double before = e.view.Window().ScrollY;
    for (int i = 0; i < 20; ++i) { // a touchpad: two notches in all
        turn(12, Qt::ControlModifier);
        turn(i < 10 ? -1 : 1, {});
    }
    QCOMPARE(e.view.Window().Geometry.ZoomIndex, 3);
    QVERIFY(std::abs(e.view.Window().ScrollY - before) <= 1.0); // down and up again
}

void Events_Editor_Test::A_Drag_At_The_Edge_Scrolls() {
    Editor e;
    const QRect roll = e.view.Painter().Layout().Roll;
    QTest::mousePress(&e.view, Qt::LeftButton, {}, e.At(1.5, 72));
    e.Move_To({roll.right() + 60, e.At(1.5, 72).y()});
    QTRY_VERIFY(e.view.Window().ScrollX > 100.0);
    const QPoint end(roll.right() - 20, e.At(1.5, 72).y());
    e.Move_To(end);
    const double goal = Round_To_Grid(e.view.Painter().Beat_At(end.x()) - 0.5, 4);
    QTest::mouseRelease(&e.view, Qt::LeftButton, {}, end);
    const auto& moved = e.editor.Display().Own().Rows().back();
    QCOMPARE(int{moved.Note}, 72);
    QVERIFY(std::abs(moved.StartTime - goal) <= 0.25); // a pixel may lie on the other side of a step
    e.view.Set_Tool(Roll_Tool::Draw);
    const QPoint on = e.view.Painter().Box_Of(moved).center().toPoint();
    for (const int below : {0, 40}) {
        QTest::mouseMove(&e.view, on + QPoint(0, below));
        QCOMPARE(e.view.cursor().shape(), below == 0 ? Qt::PointingHandCursor : Qt::CrossCursor);
    }
}

void Events_Editor_Test::A_Clicked_Note_Stops_By_Itself() {
    Editor e;
    e.test.sound.posted.clear();
    e.Drag(e.At(1.5, 72), e.At(1.5, 72));
    QCOMPARE(Count(e.test.sound.posted, Sound_Op::NoteOn, 0, 72), 1);
    QTRY_COMPARE(Count(e.test.sound.posted, Sound_Op::NoteOff, 0, 72), 1);
    QTest::mouseClick(&e.view, Qt::LeftButton, {}, QPoint(10, e.At(0, 74).y())); // the piano
    QTRY_COMPARE(Count(e.test.sound.posted, Sound_Op::NoteOff, 0, 74), 1);
}

void Events_Editor_Test::A_Phrase_By_Keys_Alone() {
    Editor e(false);
    e.view.Set_Cursor(0.0, 72);
    e.Type("I^^I"); // a beat each, one behind the other
    QCOMPARE(e.Song(), QStringLiteral("0/72/1/100 1/74/1/100"));
    e.Type(">>>>vvvvI");
    QCOMPARE(e.Song(), QStringLiteral("0/72/1/100 1/74/1/100 3/70/1/100"));
    e.Type("<", Qt::AltModifier);
    e.Type(">>", Qt::ShiftModifier);
    e.Type("v", Qt::ControlModifier);
    QCOMPARE(e.Song(), QStringLiteral("0/72/1/100 1/74/1/100 2.75/58/1.5/100"));
    e.Type("BB"); // back to the first
    QCOMPARE(e.Selected(), std::size_t{1});
    QTest::keyClick(&e.view, Qt::Key_Minus, Qt::AltModifier);
    e.Type("^", Qt::AltModifier);
    QCOMPARE(e.Song(), QStringLiteral("0/73/1/95 1/74/1/100 2.75/58/1.5/100"));
    e.Type("TD");
    QCOMPARE(e.Song(), QStringLiteral("0/73/1/95 2.75/58/1.5/100"));
    QTest::keyClick(&e.view, Qt::Key_A, Qt::ControlModifier);
    e.Type("D");
    QCOMPARE(e.Song(), QString());
    while (e.S().undo->Can_Undo())
        e.S().undo->Do_Undo();
    QCOMPARE(e.Song(), QString());
}

void Events_Editor_Test::Every_Event_In_View_Is_Told() {
    Editor e;
    e.Store().AddNewEvent(400.0, NoteData{72, 100, 1.0}); // far outside
    e.editor.LoadData_From_ChannelClass();
    QAccessibleInterface* roll = QAccessible::queryAccessibleInterface(&e.view);
    QVERIFY(roll != nullptr);
    QCOMPARE(roll->childCount(), 3);
    e.Type("T"); // the first from the cursor on
    QStringList told;
    for (int i = 0; i < roll->childCount(); ++i) {
        QAccessibleInterface* event = roll->child(i);
        QCOMPARE(roll->indexOfChild(event), i);
        QCOMPARE(roll->childAt(event->rect().center().x(), event->rect().center().y()), event);
        told << event->text(QAccessible::Name) + (event->state().selected ? " selected" : "");
    }
    QCOMPARE(told, QStringList({QStringLiteral("C5, position 1:2.0, length 1 beat, volume 100 selected"),
                                QStringLiteral("E5, position 1:3.0, length 1 beat, volume 100"),
                                QStringLiteral("G5, position 2:1.0, length 1 beat, volume 100")}));
    QAccessibleInterface* first = roll->child(0);
    e.Type("D");
    QVERIFY(!first->isValid());
    QCOMPARE(roll->childCount(), 2);
}

void Events_Editor_Test::The_Play_Line_Repaints_Its_Strip() {
    Editor e;
    struct Painted : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint)
                widest = std::max(widest, static_cast<QPaintEvent*>(event)->rect().width());
            return false;
        }
        int widest = 0;
    } painted;
    QTest::qWait(20);
    e.view.installEventFilter(&painted);
    for (int step = 1; step <= 20; ++step) {
        e.view.Move_Line(step * 0.1, true);
        QTest::qWait(1);
    }
    QVERIFY(painted.widest > 0);
    QVERIFY2(painted.widest < 20, qPrintable(QString::number(painted.widest)));
    e.view.Move_Line(200.0, true); // out of view: the view follows
    QVERIFY(e.view.Painter().X_Of(200.0) < e.view.width());
    e.view.Move_Line(4.0, true); // back again
    QVERIFY(e.view.Painter().X_Of(4.0) >= e.view.Painter().Layout().Left);
    const double scrolled = e.view.Window().ScrollX;
    e.view.Move_Line(e.view.Painter().Beat_At(e.view.Painter().Layout().Roll.right() - 9), true);
    QCOMPARE(e.view.Window().ScrollX, scrolled); // set within the view, nothing runs
    e.view.Move_Line(200.0, false);
    QVERIFY(e.view.Painter().X_Of(200.0) > e.view.width());
}

void Events_Editor_Test::Time_Properties() {
    Editor e;
    e.editor.Open_Time_Properties();
    QCOMPARE(e.Last_Text(),
             std::string("You need to select one or more events to access the time properties"));
    QVERIFY(e.editor.findChild<frmEvEd_TimePosProperties*>() == nullptr);
    QTest::keyClick(&e.view, Qt::Key_A, Qt::ControlModifier);
    e.editor.Open_Time_Properties();
    auto* window = e.Opened<frmEvEd_TimePosProperties>();
    QCOMPARE(window->windowTitle(), QStringLiteral("Time Properties"));
    QCOMPARE(Find<QLineEdit>(*window, "Text1")->text(), QString()); // several differ
    Find<QLineEdit>(*window, "Text1")->setText(QStringLiteral("0:x"));
    Click(*window, "ok");
    QCOMPARE(e.Last_Text(), std::string("Invalid value: 0:x"));
    QVERIFY(window->isVisible());
    Click(*window, "Check1");
    Find<QLineEdit>(*window, "Text1")->setText(QStringLiteral("1:0.5"));
    Find<QLineEdit>(*window, "Text2")->setText(QStringLiteral("-0.5"));
    Click(*window, "ok");
    QCOMPARE(e.Song(), QStringLiteral("5.5/72/0.5/100 6.5/76/0.5/100 8.5/79/0.5/100"));
    QCOMPARE(e.S().undo->Undo_Text(), std::string("Undo change events time properties"));
    QTRY_VERIFY(e.editor.findChild<frmEvEd_TimePosProperties*>() == nullptr);
    e.editor.Display().Own().Select({e.Store().GetEvent_ID(e.Store().FirstEvent())});
    e.editor.Open_Time_Properties();
    window = e.Opened<frmEvEd_TimePosProperties>();
    QCOMPARE(Find<QLineEdit>(*window, "Text1")->text(), QStringLiteral("2:2.5"));
    Click(*window, "beats");
    QCOMPARE(Find<QLineEdit>(*window, "Text1")->text(), QStringLiteral("5.5"));
    Find<QLineEdit>(*window, "Text1")->setText(QStringLiteral("5"));
    Click(*window, "barBeat"); // what was typed is kept
    QCOMPARE(Find<QLineEdit>(*window, "Text1")->text(), QStringLiteral("2:2"));
    window->Show_Times(1.23456, 0.5);
    Find<QLineEdit>(*window, "Text2")->setText(QStringLiteral("0:2"));
    Click(*window, "ok"); // the start was not touched
    QCOMPARE(e.Song(), QStringLiteral("1.23456/72/2/100 6.5/76/0.5/100 8.5/79/0.5/100"));
}

void Events_Editor_Test::Volume_And_Clipboard() {
    Editor e;
    e.editor.Open_Volume(); // nothing selected
    QVERIFY(e.editor.findChild<frmEvEd_SetVol*>() == nullptr);
    QTest::mouseClick(Find<Tool_Button>(e.editor, "paste"), Qt::LeftButton);
    QVERIFY(e.view.hasFocus());           // the keys stay with the roll
    e.Drag(e.At(0.5, 70), e.At(3.5, 78)); // a band around two
    QCOMPARE(e.Selected(), std::size_t{2});
    e.editor.Open_Volume();
    auto* window = e.Opened<frmEvEd_SetVol>();
    Find<QSpinBox>(*window, "Text1")->setValue(20);
    Click(*window, "ok");
    QCOMPARE(e.Song(), QStringLiteral("1/72/1/20 2/76/1/20 4/79/1/100"));
    e.S().transport.PlayPosition = 10.0;
    QTest::keyClick(&e.view, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(e.Song(), QStringLiteral("4/79/1/100"));
    QCOMPARE(e.S().undo->Undo_Text(), std::string("Undo cut events"));
    QTest::keyClick(&e.view, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(e.Song(), QStringLiteral("4/79/1/100 10/72/1/20 11/76/1/20"));
    QCOMPARE(e.Selected(), std::size_t{2}); // what was pasted
    QTest::keyClick(&e.view, Qt::Key_J, Qt::ControlModifier);
    QCOMPARE(e.messages.mid(e.messages.size() - 2), QList<int>({1020, 1021}));
}

void Events_Editor_Test::Other_Channels_Are_Shown_Pale() {
    Editor e;
    e.S().hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Bass"), false);
    const std::int32_t bass = e.S().channels->Channels[1].ChannelID;
    e.S().channels->Store(1).AddNewEvent(1.0, NoteData{70, 90, 1.0});
    e.editor.CView_ShowSelChannels();
    auto* window = e.Opened<frmSelChannelsView>();
    const auto checks = window->findChildren<QCheckBox*>();
    QCOMPARE(checks.size(), 1); // not the one in hand
    checks.front()->click();
    Click(*window, "ok");
    QVERIFY(e.editor.Display().CView_Is_Shown(bass));
    e.editor.Update_View();
    QCOMPARE(e.editor.Display().CView_GetData(0).Events.Rows().size(), std::size_t{1});
    e.Drag(e.At(1.5, 70), e.At(2.5, 70)); // for reading
    QCOMPARE(e.messages, QList<int>());
    e.S().hub->Message(nullptr, MSG_DELETE_CHANNEL, bass);
    e.editor.Update_View();
    QCOMPARE(e.editor.Display().CView_GetTotalChannels(), 0);
}

void Events_Editor_Test::The_View_Is_Remembered() {
    Editor e;
    e.editor.Open_View();
    auto* window = e.Opened<frmEvEd_View>();
    for (auto* check : window->findChildren<QCheckBox*>())
        if (check->text() == QStringLiteral("View &Midi notes number on note events.") ||
            check->text() == QStringLiteral("View &Bars"))
            check->click();
    Click(*window, "ok");
    QCOMPARE(e.S().settings.Global_EVEd_View_NoteNumbers, 1);
    QVERIFY(e.view.Spoken(e.Store().GetEvent_ID(0)).startsWith(QStringLiteral("C5 (72)")));
    EventsEditorCtrl second(e.S(), e.theme);
    QVERIFY(second.View().Window().Options.NoteNumbers);
    QVERIFY(!second.View().Window().Options.Bars);
    QCOMPARE(second.View().Window().Geometry.ZoomIndex, 6);
    second.Align_SetAlignForDrums();
    Byte_Writer writer;
    second.Settings_Save(writer);
    QCOMPARE(writer.Bytes().size(), std::size_t{56});
}

void Events_Editor_Test::Rules_And_Their_Boxes() {
    Editor e;
    e.editor.Add_Tempo_Change(8.0);
    auto* box = e.Opened<QInputDialog>();
    QCOMPARE(box->windowTitle() + box->labelText() + box->textValue(),
             QStringLiteral("Add new tempo changeBPM:100"));
    box->setTextValue(QStringLiteral("0"));
    box->accept();
    QCOMPARE(e.Last_Text(), std::string("Invalid value: 0"));
    QTRY_VERIFY(e.editor.findChild<QInputDialog*>() == nullptr);
    e.editor.Add_Tempo_Change(8.0);
    e.Opened<QInputDialog>()->accept();
    QCOMPARE(Tempo_At(8.0, e.S().tempoChanges, 80), 100);
    QTRY_VERIFY(e.editor.findChild<QInputDialog*>() == nullptr);
    e.editor.Add_Tempo_Change(8.0); // one stands there: it gets the tempo
    e.Opened<QInputDialog>()->setTextValue(QStringLiteral("90"));
    e.Opened<QInputDialog>()->accept();
    QCOMPARE(Tempo_At(8.0, e.S().tempoChanges, 80), 90);
    QTRY_VERIFY(e.editor.findChild<QInputDialog*>() == nullptr);
    e.editor.Insert_Multiple_Bars(1);
    box = e.Opened<QInputDialog>();
    QCOMPARE(box->windowTitle() + box->labelText(), QStringLiteral("Insert multiple barsNumber of bars: "));
    box->setTextValue(QStringLiteral("2"));
    box->accept();
    QCOMPARE(e.Song(), QStringLiteral("1/72/1/100 2/76/1/100 12/79/1/100"));
    QSignalSpy went(&e.editor, &EventsEditorCtrl::goTo);
    e.S().hub->Message(nullptr, MSG_ADD_MARK, 12.0, std::monostate{}, std::string("Verse"));
    auto* marks = Find<QComboBox>(e.editor, "Combo2");
    QCOMPARE(marks->itemText(0), QStringLiteral("Marks"));
    emit marks->activated(marks->findText(QStringLiteral("Verse")));
    QCOMPARE(went.takeFirst().first().toDouble(), 12.0);
    e.editor.Set_Grid(1);
    QTest::mouseClick(&e.view, Qt::LeftButton, {},
                      {e.At(3.4, 72).x(), e.view.Painter().Layout().Rule.center().y()});
    QCOMPARE(went.takeFirst().first().toDouble(), 3.0);
}

void Events_Editor_Test::The_Selection_Comes_Back_With_A_Step() {
    Editor e;
    QTest::keyClick(&e.view, Qt::Key_A, Qt::ControlModifier);
    e.Type("D");
    QCOMPARE(e.Selected(), std::size_t{0});
    e.view.Scroll_To(1e9, 0.0);
    e.S().undo->Do_Undo();
    QCOMPARE(e.Selected(), std::size_t{3});
    QVERIFY(e.In_View(0)); // and is seen
    e.editor.Open_Undo_List();
    auto* list = Find<QListWidget>(*e.Opened<frmUndoList>(), "List1");
    QCOMPARE(list->item(1)->text(), QStringLiteral("Delete events (undone)"));
    list->setCurrentRow(1);
    Click(*e.Opened<frmUndoList>(), "go");
    QCOMPARE(e.Song(), QString());
    QCOMPARE(list->item(1)->text(), QStringLiteral("Delete events"));
}

void Events_Editor_Test::Another_Song_Begins_Unselected() {
    Editor e;
    QTest::keyClick(&e.view, Qt::Key_A, Qt::ControlModifier);
    e.S().New_Project();
    e.Store().AddNewEvent(0.0, NoteData{60, 90, 1.0}); // with the ID of one that was selected
    e.editor.Update_View();
    QCOMPARE(e.Selected(), std::size_t{0});
    QCOMPARE(e.editor.Display().Own().Rows().size(), std::size_t{1});
    e.host.Show_Channel(NOT_GIVEN);
    e.Type("I"); // nowhere to go
    QCOMPARE(e.Store().GetTotalEvents(), 0);
}

void Events_Editor_Test::A_Take_Is_Shown_While_It_Grows() {
    Editor e(false);
    e.editor.On_Run_Started(true);
    const auto record = [&](double beat, int note) {
        e.S().hub->Message(nullptr, MSG_REC_EVENT, std::int32_t{0}, std::int32_t{EV_NOTE}, beat,
                           EventData(NoteData{static_cast<std::uint8_t>(note), 90, 0.5}));
    };
    record(300.0, 36);
    record(301.0, 30);
    QCOMPARE(e.editor.Display().Take().size(), std::size_t{2});
    QTRY_VERIFY(QRectF(e.view.Painter().Layout().Roll).bottom() > e.view.Painter().Y_Of_Note(30));
    QCOMPARE(e.editor.Display().Own().Rows().size(), std::size_t{0});
    // A note that is held down grows with the line and goes with its key.
    e.S().transport.LiveNotes[33] = 1;
    for (const double beat : {303.0, 305.0})
        e.view.Move_Line(beat, true);
    const auto held = [&e] {
        const Roll_Painter painter = e.view.Painter();
        const QPointF at(painter.X_Of(304.0),
                         painter.Y_Of_Note(33) + e.view.Window().Geometry.RowHeight() / 2);
        return e.view.grab().toImage().pixelColor((at * e.view.devicePixelRatioF()).toPoint());
    };
    const QColor down = held();
    e.S().transport.LiveNotes[33] = 0;
    e.view.Move_Line(305.1, true);
    QVERIFY(down != held());
    e.Store().CopyRecEvents();
    e.S().hub->Message(nullptr, MSG_GENERAL_UPDATE);
    e.editor.On_Run_Ended();
    e.editor.Update_View();
    QVERIFY(e.editor.Display().Take().empty());
    QVERIFY(e.In_View(0) && e.In_View(1));
}

void Events_Editor_Test::Copy_Mode_Blinks() {
    Editor e;
    e.editor.Set_Copy_Mode(true);
    auto* label = Find<QLabel>(e.editor, "Label4");
    QVERIFY(label->isVisible());
    auto* status = Find<QLabel>(e.editor, "status"); // cut to the room that its neighbours leave
    QTest::keyClick(&e.view, Qt::Key_A, Qt::ControlModifier);
    e.host.resize(940, 640);
    QTRY_VERIFY(status->fontMetrics().horizontalAdvance(status->text()) <= status->width());
    e.editor.Set_Grid(24);
    QTRY_VERIFY(status->fontMetrics().horizontalAdvance(status->text()) <= status->width());
    for (const bool dim : {true, false, true})
        QTRY_COMPARE(label->property("dim").toBool(), dim);
    e.editor.Set_Copy_Mode(false);
    QVERIFY(!label->isVisible());
}

void Events_Editor_Test::A_Patch_Event_Takes_Another_Patch() {
    Editor e(false);
    const std::int32_t id = e.Store().AddNewEvent(1.0, PatchData{4});
    e.editor.LoadData_From_ChannelClass();
    e.editor.Update_View();
    e.editor.Display().Own().Select({id});
    e.editor.Open_Properties();
    auto* window = e.Opened<frmPatchSelectionWin>();
    auto* list = window->findChild<QListWidget*>();
    QCOMPARE(list->currentItem()->data(Qt::UserRole).toInt(), 4);
    list->setCurrentRow(list->currentRow() + 3);
    window->accept();
    QCOMPARE(e.Store().ReadEvent(0)->DataRef, 7);
    QCOMPARE(e.messages, QList<int>({1024, 1025}));
    QVERIFY(e.S().channels->Channels[0].PatchI != 7);
}

void Events_Editor_Test::It_Is_The_First_Tab_Of_The_Window() {
    Program p;
    auto* tabs = p.window->findChild<QTabWidget*>();
    QCOMPARE(tabs->widget(0), &p.window->Events_Editor());
    QCOMPARE(tabs->tabText(0),
             QStringLiteral("Events Editor · ") + QString::fromStdString(p.Channel(0).ChannelName));
    p.Key(Qt::Key_Insert, Qt::ControlModifier); // a channel, which is then the selected one
    QTRY_COMPARE(p.window->Events_Editor().Editor().Display().Channel(), p.Channel(1).ChannelID);
    p.window->Events_Editor().setFocus();
    p.Key(Qt::Key_Insert);
    QCOMPARE(p.Events(1), 1);
    p.Key(Qt::Key_Delete);
    QCOMPARE(p.Events(1), 0);
    const int pan = p.Channel(1).Pan;
    p.Key(Qt::Key_R); // letters are the window's
    QVERIFY(p.Channel(1).Pan != pan);
    p.session->New_Project();
    QTRY_COMPARE(p.window->Events_Editor().Editor().Display().Channel(), p.Channel(0).ChannelID);
}

QTEST_MAIN(Events_Editor_Test)
#include "events_editor_test.moc"
