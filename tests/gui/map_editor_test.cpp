#include "song/windows/maps_view.h"
#include "support/test_session.h"
#include "widgets/map_field.h"
#include "widgets/pan_vol_ctrl.h"
#include "widgets/song_overview.h"
#include "widgets/value_slider.h"

#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace tonvex;

namespace {

struct Map_Fixture {
    Map_Fixture() {
        session.hub->Message(nullptr, MSG_ADD_MARK, 28.0); // the song's end
        session.hub->Message(nullptr, MSG_VOLUME_ADD_POINT, std::int32_t{0}, 8.0, std::int32_t{100});
        session.hub->Message(nullptr, MSG_VOLUME_ADD_POINT, std::int32_t{0}, 16.0, std::int32_t{20});
        session.project.Modified = false;
        // 20 pixels a beat, 2 a value.
        editor.resize(theme.Px(76) + 640, theme.Px(60) + 254);
        editor.Show_Slot(0);
        editor.show();
        if (!QTest::qWaitForWindowActive(&editor))
            qFatal("the editor is not active");
        editor.setFocus();
        session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
            if (msgId > 0)
                heard << msgId;
        });
    }
    QString Map() const {
        QStringList texts;
        for (const Map_Dot& dot : editor.Dots())
            texts << QStringLiteral("%1=%2").arg(dot.beat).arg(dot.value);
        return texts.join(' ');
    }
    QPoint At(double beat, int value) const {
        return QPointF(editor.Field().X_Of(beat), editor.Field().Y_Of(value)).toPoint();
    }
    void Move_To(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        QMouseEvent event(QEvent::MouseMove, point, editor.mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                          modifiers);
        QApplication::sendEvent(&editor, &event);
    }
    void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(&editor, Qt::LeftButton, {}, from);
        Move_To(to, modifiers);
        QTest::mouseRelease(&editor, Qt::LeftButton, modifiers, to);
    }

    Test_Session test;
    Session& session = test.Load();
    Memory_Settings_Store store;
    Theme theme{*qApp, store};
    PanVolCtrl editor{session, theme, Map_Kind::Volume};
    QList<int> heard;
};

const QString BEFORE = QStringLiteral("0=64 8=100 16=20 28=64");

} // namespace

class Map_Editor_Test : public QObject {
    Q_OBJECT
private slots:
    void The_Field_Maps_Beats_And_Values();
    void A_Dot_Is_Hit();
    void Dots_Keep_Their_Order();
    void A_Drag_Is_One_Batch();
    void Points_Come_And_Go_By_Hand();
    void Keys_Alone_Are_Enough();
    void Maps_Open_Under_Their_Titles();
    void An_Audio_Channel_Has_Maps_Of_Its_Own();
};

// 320 pixels for 32 beats from x 50; 254 for 127 values from y 10 down to 264.
void Map_Editor_Test::The_Field_Maps_Beats_And_Values() {
    const Map_Field field(QRectF(50, 10, 320, 254), 32.0);
    QCOMPARE(field.X_Of(4.0), 90.0);
    QCOMPARE(field.Beat_At(90.0), 4.0);
    QCOMPARE(field.Beat_At(0.0), 0.0);
    QCOMPARE(field.Beat_At(999.0), 32.0);
    QCOMPARE(field.Y_Of(0), 264.0);
    QCOMPARE(field.Y_Of(127), 10.0);
    QCOMPARE(field.Value_At(136.0), 64);
    QCOMPARE(field.Value_At(-50.0), 127);
    QCOMPARE(field.Value_At(900.0), 0);
    QCOMPARE(Snapped(1.13, 0.25), 1.25);
    QCOMPARE(Snapped(-0.4, 0.25), 0.0);
}

// The field above; dots at beat 4 value 64 (90, 136), twice, and at beat 5 value 64 (100, 136).
void Map_Editor_Test::A_Dot_Is_Hit() {
    const Map_Field field(QRectF(50, 10, 320, 254), 32.0);
    const std::vector<Map_Dot> dots{{1, 4.0, 64, true}, {2, 4.0, 64, true}, {3, 5.0, 64, true}};
    const struct {
        const char* name;
        QPointF point;
        int dot;
    } rows[] = {{"in the middle, the later of two", {90, 136}, 1},
                {"at the rim", {90, 144}, 1},
                {"beside", {90, 144.5}, -1},
                {"nearer to the next", {96, 136}, 2},
                {"far", {300, 20}, -1}};
    for (const auto& row : rows) {
        const auto hit = field.Hit(dots, row.point, 8.0);
        QVERIFY2((hit ? static_cast<int>(*hit) : -1) == row.dot, row.name);
    }
}

// What is drawn while a dot of 1@0 2@8 3@16 4@28 is dragged; the first and the last stay.
void Map_Editor_Test::Dots_Keep_Their_Order() {
    const struct {
        int id;
        double beat;
        QString order;
    } rows[] = {{2, 20.0, "1@0 3@16 2@20 4@28"}, {2, 16.0, "1@0 3@16 2@16 4@28"},
                {3, 40.0, "1@0 2@8 3@40 4@40"},  {3, -4.0, "1@0 3@0 2@8 4@28"},
                {1, 12.0, "1@0 2@8 3@16 4@28"},  {4, 2.0, "1@0 2@8 3@16 4@28"},
                {9, 2.0, "1@0 2@8 3@16 4@28"}};
    const std::vector<Map_Dot> dots{
        {1, 0, 64, false}, {2, 8, 64, true}, {3, 16, 64, true}, {4, 28, 64, false}};
    for (const auto& row : rows) {
        QStringList found;
        for (const Map_Dot& dot : Moved_Dots(dots, row.id, row.beat, 300)) {
            found << QStringLiteral("%1@%2").arg(dot.id).arg(dot.beat);
            QCOMPARE(dot.value, dot.id == row.id ? 127 : 64);
        }
        QCOMPARE(found.join(' '), row.order);
    }
}

void Map_Editor_Test::A_Drag_Is_One_Batch() {
    const QList<int> moved{MSG_VOLUME_MOVE_POINT, MSG_VOLUME_MOVE_END};
    const QList<int> set{MSG_VOLUME_SET_POINT, MSG_VOLUME_SET_END};
    const struct {
        const char* name;
        double fromBeat;
        int fromValue;
        double toBeat;
        int toValue;
        QString map;
        QList<int> messages;
    } rows[] = {{"in time and value", 8.0, 100, 12.05, 80, "0=64 12=80 16=20 28=64", moved},
                {"over its neighbour", 8.0, 100, 20.0, 100, "0=64 16=20 20=100 28=64", moved},
                {"onto its neighbour: behind it", 8.0, 100, 16.0, 50, "0=64 16=20 16=50 28=64", moved},
                {"before the start", 16.0, 20, -1.0, 50, "0=64 0=50 8=100 28=64", moved},
                {"in value", 16.0, 20, 16.05, 60, "0=64 8=100 16=60 28=64", set},
                {"the first only in value", 0.0, 64, 8.0, 127, "0=127 8=100 16=20 28=64", set},
                {"the last only in value", 28.0, 64, 4.0, 0, "0=64 8=100 16=20 28=0", set},
                {"nowhere", 8.0, 100, 8.0, 100, BEFORE, {}},
                {"no point there", 12.0, 120, 14.0, 100, BEFORE, {}}};
    for (const auto& row : rows) {
        Map_Fixture f;
        QCOMPARE(f.Map(), BEFORE);
        f.Drag(f.At(row.fromBeat, row.fromValue), f.At(row.toBeat, row.toValue));
        QVERIFY2(f.Map() == row.map, qPrintable(row.name + QStringLiteral(": ") + f.Map()));
        QVERIFY2(f.heard == row.messages, row.name);
        QVERIFY2(f.session.project.Modified == !row.messages.isEmpty(), row.name);
    }
}

void Map_Editor_Test::Points_Come_And_Go_By_Hand() {
    Map_Fixture f;
    QTest::mouseDClick(&f.editor, Qt::LeftButton, {}, f.At(4.0, 90));
    QCOMPARE(f.Map(), QStringLiteral("0=64 4=90 8=100 16=20 28=64"));
    QCOMPARE(f.heard, (QList<int>{MSG_VOLUME_ADD_POINT, MSG_VOLUME_ADD_END}));
    QCOMPARE(f.editor.Selected_Point(), f.editor.Dots()[1].id);
    QTest::mouseRelease(&f.editor, Qt::LeftButton, {}, f.At(4.0, 90));
    f.heard.clear();
    QTest::keyClick(&f.editor, Qt::Key_Delete);
    QCOMPARE(f.heard, (QList<int>{MSG_VOLUME_DELETE_POINT, MSG_VOLUME_DELETE_END}));
    QCOMPARE(f.Map(), BEFORE);
    QCOMPARE(f.editor.Selected_Point(), f.editor.Dots()[0].id); // the neighbour takes over
    f.heard.clear();
    QTest::keyClick(&f.editor, Qt::Key_Delete); // the first stays
    // Escape takes a drag back, and the release behind it does nothing.
    QTest::mousePress(&f.editor, Qt::LeftButton, {}, f.At(8.0, 100));
    f.Move_To(f.At(12.0, 10));
    QTest::keyClick(&f.editor, Qt::Key_Escape);
    QTest::mouseRelease(&f.editor, Qt::LeftButton, {}, f.At(12.0, 10));
    QCOMPARE(f.Map(), BEFORE);
    QVERIFY(f.heard.isEmpty());
    // With Shift the grid of sixteenths lets go.
    f.Drag(f.At(8.0, 100), f.At(11.1, 100), Qt::ShiftModifier);
    const double beat = f.editor.Dots()[1].beat;
    QVERIFY(std::abs(beat - 11.1) < 0.1 && beat != 11.0 && beat != 11.25);
    for (const auto& [action, expected] : {std::pair{0, "4=90 "}, {1, ""}}) {
        const QPoint at = f.At(4.0, 90);
        QContextMenuEvent asked(QContextMenuEvent::Mouse, at, f.editor.mapToGlobal(at));
        QApplication::sendEvent(&f.editor, &asked);
        f.editor.findChildren<QMenu*>().back()->actions()[action]->trigger();
        QCOMPARE(f.Map().section(' ', 1), expected + QStringLiteral("%1=100 16=20 28=64").arg(beat));
    }
}

void Map_Editor_Test::Keys_Alone_Are_Enough() {
    using enum Qt::Key;
    const struct {
        const char* name;
        QList<int> keys; ///< the first point is chosen; keys with Shift below 0
        QString map;
        int batches;
    } rows[] = {
        {"later by a beat", {Key_PageDown, Key_Right}, "0=64 9=100 16=20 28=64", 1},
        {"earlier by a sixteenth", {Key_PageDown, -Key_Left}, "0=64 7.75=100 16=20 28=64", 1},
        {"louder, softer by one", {Key_PageDown, Key_Up, -Key_Down}, "0=64 8=104 16=20 28=64", 2},
        {"no higher than 127", QList<int>(14, Key_Up), "0=127 8=100 16=20 28=64", 13},
        {"the first does not move", {Key_Right, Key_Left}, BEFORE, 0},
        {"a new one on the line", {Key_Insert}, "0=64 8=100 12=60 16=20 28=64", 1},
        {"only one there", {Key_Insert, Key_Insert}, "0=64 8=100 12=60 16=20 28=64", 1},
        {"the last but one goes", {Key_End, Key_PageUp, Key_Delete}, "0=64 8=100 28=64", 1},
    };
    for (const auto& row : rows) {
        Map_Fixture f;
        f.session.hub->Message(nullptr, MSG_SONG_POSITION, 12.0);
        f.editor.Select_Point(f.editor.Dots()[0].id);
        f.heard.clear();
        for (const int key : row.keys)
            QTest::keyClick(&f.editor, static_cast<Qt::Key>(std::abs(key)),
                            key < 0 ? Qt::ShiftModifier : Qt::NoModifier);
        QVERIFY2(f.Map() == row.map, qPrintable(row.name + QStringLiteral(": ") + f.Map()));
        QVERIFY2(f.heard.size() == 2 * row.batches, row.name); // each the change and its end
        QVERIFY2(!f.editor.accessibleDescription().isEmpty(), row.name);
    }
}

void Map_Editor_Test::Maps_Open_Under_Their_Titles() {
    Test_Session test;
    Session& session = test.Load();
    Memory_Settings_Store store;
    Theme theme{*qApp, store};
    Maps_View view(session, theme);
    QSignalSpy opened(&view, &Maps_View::opened);
    view.resize(800, 500);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QVERIFY(view.Map(Map_Kind::Pan).Dots().empty());
    const std::int32_t channelId = session.channels->Channels[0].ChannelID;
    session.hub->Message(nullptr, MSG_SET_NAME, channelId, std::string("Lead"));
    session.hub->Message(nullptr, MSG_OPEN_PAN_MAP, std::int32_t{0});
    QCOMPARE(opened.size(), 1);
    QCOMPARE(view.Map(Map_Kind::Pan).accessibleName(), QStringLiteral("Pan Map [Lead]"));
    QVERIFY(view.Map(Map_Kind::Pan).hasFocus());
    session.hub->Message(nullptr, MSG_OPEN_VOLUME_MAP, std::int32_t{0});
    QCOMPARE(view.Map(Map_Kind::Volume).accessibleName(), QStringLiteral("Volume Map [Lead]"));
    QVERIFY(view.Map(Map_Kind::Volume).hasFocus());
    view.Show_Channel(channelId);
    session.hub->Message(nullptr, MSG_SET_PAN, channelId, std::int32_t{90}); // an undrawn map follows
    QCOMPARE(view.Map(Map_Kind::Pan).Dots()[0].value, 90);
    session.hub->Message(nullptr, MSG_SET_OUTPUT, channelId, std::int32_t{5});
    session.hub->Message(nullptr, MSG_PAN_ADD_POINT, std::int32_t{5}, 2.0, std::int32_t{10});
    QCOMPARE(view.Map(Map_Kind::Pan).Dots().size(), std::size_t{3});
    QVERIFY(session.undo->Do_Undo() && session.undo->Do_Undo()); // the point, the slot
    QCOMPARE(view.Map(Map_Kind::Pan).Dots()[0].value, 90);
    QVERIFY(session.undo->Do_Undo() && session.undo->Do_Undo()); // the pan, the name
    QCOMPARE(view.Map(Map_Kind::Pan).accessibleName(), QStringLiteral("Pan Map [Channel 1]"));
    session.hub->Message(nullptr, MSG_ADD_MARK, 28.0);
    view.findChild<Value_Slider*>()->setValue(800); // a point that is chosen comes into view
    QCoreApplication::processEvents();
    QTest::keyClick(&view.Map(Map_Kind::Pan), Qt::Key_End);
    QVERIFY(view.findChild<QScrollArea*>()->horizontalScrollBar()->value() > 0);
    session.hub->Message(nullptr, MSG_DELETE_CHANNEL, channelId);
    QVERIFY(view.Map(Map_Kind::Pan).Dots().empty());
}

void Map_Editor_Test::An_Audio_Channel_Has_Maps_Of_Its_Own() {
    Map_Fixture f;
    f.session.hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Vocals"), true);
    const std::int32_t channelId = f.session.channels->Channels[1].ChannelID;
    f.editor.Show_Audio_Channel(channelId);
    f.heard.clear();
    QTest::mouseDClick(&f.editor, Qt::LeftButton, {}, f.At(4.0, 90));
    QCOMPARE(f.heard, QList<int>{MSG_AUDIO_VOLUME_ADD_POINT});
    QCOMPARE(f.editor.Dots().size(), std::size_t{3});
    f.editor.Show_Slot(0);
    QCOMPARE(f.Map(), BEFORE);
    // A far end is drawn at once: a second is a hundred times what it takes.
    f.session.hub->Message(nullptr, MSG_ADD_MARK, MAX_EVENT_BEATS);
    const QDeadlineTimer second(1000);
    (void)f.editor.grab();
    QVERIFY(!second.hasExpired());
    const Overview_Scale scale(MAX_EVENT_BEATS, 0.0, 640.0);
    QVERIFY(scale.X_Of(scale.Bars_Per_Line(48.0) * Overview_Scale::BEATS_PER_BAR) >= 48.0);
}

QTEST_MAIN(Map_Editor_Test)
#include "map_editor_test.moc"
