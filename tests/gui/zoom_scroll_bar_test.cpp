#include "platform/settings_store.h"
#include "support/test_session.h"
#include "widgets/zoom_scroll_bar.h"

#include <QAccessible>
#include <QTest>
#include <QWheelEvent>

#include <functional>
#include <vector>

using namespace tonvex;

namespace {

/// 100 beats on 200 pixels, the window from beat 20 to 40: the thumb lies at 40 to 80. Two pixels a beat.
struct Bar_World {
    Bar_World() {
        bar.resize(200, 16);
        bar.Set_Shortest(5.0);
        bar.Show_Range(0.0, 100.0);
        bar.Show_Window(20.0, 20.0);
        bar.show();
        QObject::connect(&bar, &Zoom_Scroll_Bar::windowAsked, &bar, [this](double first, double length) {
            ++asked;
            bar.Show_Window(first, length);
        });
    }
    void Drag(int from, int to) {
        QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(from, 8));
        QTest::mouseMove(&bar, QPoint((from + to) / 2, 8));
        QTest::mouseMove(&bar, QPoint(to, 8));
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(to, 8));
    }
    void Wheel(int notches, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QWheelEvent turn({50, 8}, {50, 8}, {}, {0, notches * 120}, Qt::NoButton, keys, Qt::NoScrollPhase,
                         false);
        QApplication::sendEvent(&bar, &turn);
    }
    Memory_Settings_Store store;
    Theme theme{*qApp, store};
    Zoom_Scroll_Bar bar{theme, Qt::Horizontal, QStringLiteral("Time shown")};
    int asked = 0;
};

} // namespace

class Zoom_Scroll_Bar_Test : public QObject {
    Q_OBJECT
private slots:
    void Gestures();
    void A_Small_Window_Can_Be_Taken_Hold_Of();
    void Assistive_Tools_Scroll_It();
};

void Zoom_Scroll_Bar_Test::Gestures() {
    struct Case {
        const char* name;
        std::function<void(Bar_World&)> act;
        double first;
        double length;
    };
    const std::vector<Case> cases{
        {"drag of the middle scrolls", [](auto& w) { w.Drag(60, 100); }, 40, 20},
        {"and stops at the end", [](auto& w) { w.Drag(60, 260); }, 80, 20},
        {"drag of the right end zooms out", [](auto& w) { w.Drag(78, 118); }, 20, 40},
        {"never beyond the range", [](auto& w) { w.Drag(78, 400); }, 20, 80},
        {"drag of the left end keeps the right one", [](auto& w) { w.Drag(41, 61); }, 30, 10},
        {"never shorter than the shortest", [](auto& w) { w.Drag(41, 79); }, 35, 5},
        {"a click beside it pages", [](auto& w) { w.Drag(150, 150); }, 38, 20},
        {"wheel scrolls a tenth", [](auto& w) { w.Wheel(-1); }, 22, 20},
        {"Ctrl and wheel zoom around the middle", [](auto& w) { w.Wheel(1, Qt::ControlModifier); }, 22, 16},
        {"right", [](auto& w) { QTest::keyClick(&w.bar, Qt::Key_Right); }, 22, 20},
        {"home", [](auto& w) { QTest::keyClick(&w.bar, Qt::Key_Home); }, 0, 20},
        {"end", [](auto& w) { QTest::keyClick(&w.bar, Qt::Key_End); }, 80, 20},
        {"minus", [](auto& w) { QTest::keyClick(&w.bar, Qt::Key_Minus); }, 17.5, 25},
        {"backspace shows all", [](auto& w) { QTest::keyClick(&w.bar, Qt::Key_Backspace); }, 0, 100},
        {"double click too",
         [](auto& w) {
             QTest::mouseDClick(&w.bar, Qt::LeftButton, {}, {60, 8});
         },
         0, 100},
    };
    for (const Case& c : cases) {
        Bar_World w;
        QCOMPARE(w.bar.Thumb(), QRect(40, 0, 40, 16));
        c.act(w);
        const QByteArray got = QStringLiteral("%1 %2").arg(w.bar.First()).arg(w.bar.Length()).toUtf8();
        const QByteArray wanted = QStringLiteral("%1 %2").arg(c.first).arg(c.length).toUtf8();
        QVERIFY2(got == wanted, (QByteArray(c.name) + ": " + got + " instead of " + wanted).constData());
        QVERIFY2(w.asked > 0, c.name);
    }
}

void Zoom_Scroll_Bar_Test::A_Small_Window_Can_Be_Taken_Hold_Of() {
    Bar_World w;
    w.bar.Set_Zoomable(false);
    w.bar.Show_Range(0.0, 100000.0);
    QTest::keyClick(&w.bar, Qt::Key_End);
    QCOMPARE(w.bar.First(), 99980.0);
    QVERIFY(w.bar.Thumb().width() >= 20 && w.bar.Thumb().right() == 199);
    w.Drag(w.bar.Thumb().center().x(), -50);
    QCOMPARE(w.bar.First(), 0.0);
    w.Wheel(3, Qt::ControlModifier); // no zoom
    QCOMPARE(w.bar.Length(), 20.0);
    w.bar.Show_Range(5.0, 5.0); // nothing there
    const int before = w.asked;
    w.Wheel(3);
    QVERIFY(w.bar.Thumb().isEmpty() && w.asked == before);
}

void Zoom_Scroll_Bar_Test::Assistive_Tools_Scroll_It() {
    Bar_World w;
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&w.bar);
    QCOMPARE(face->role(), QAccessible::ScrollBar);
    QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Time shown"));
    QCOMPARE(face->text(QAccessible::Value), QStringLiteral("20 to 40"));
    face->valueInterface()->setCurrentValue(60.0);
    QCOMPARE(w.bar.First(), 60.0);
}

QTEST_MAIN(Zoom_Scroll_Bar_Test)
#include "zoom_scroll_bar_test.moc"
