#include "platform/millisecond_counter.h"
#include "platform/qt/event_clock.h"
#include "platform/qt/key_signs.h"
#include "platform/qt/native_scan_codes.h"
#include "platform/qt/qt_key_state.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>
#include <string>

using namespace tonvex;

namespace {

constexpr int Z = 52; // window system key codes
constexpr int X = 53;
constexpr int CTRL = 37;

/// Keys that reach it, as "+52 -52".
class Listening_Widget : public QWidget {
public:
    std::string heard;

protected:
    void keyPressEvent(QKeyEvent* event) override { heard += " +" + std::to_string(event->nativeScanCode()); }
    void keyReleaseEvent(QKeyEvent* event) override {
        heard += " -" + std::to_string(event->nativeScanCode());
    }
};

class Key_State_Test : public QObject {
    Q_OBJECT

    Simulated_Counter counter;
    std::unique_ptr<Qt_Key_State> keys;
    std::unique_ptr<Listening_Widget> window;
    QLineEdit* line = nullptr;

    /// Whether it was accepted.
    bool Send(QWidget& to, QEvent::Type type, int code, Qt::KeyboardModifiers modifiers = {},
              bool repeat = false, unsigned long timeMs = 0) {
        QKeyEvent event(type, code == CTRL ? Qt::Key_Control : Qt::Key_Z, modifiers,
                        static_cast<quint32>(code), 0, 0, QStringLiteral("z"), repeat);
        event.setTimestamp(timeMs);
        event.setAccepted(type != QEvent::ShortcutOverride);
        QCoreApplication::sendEvent(&to, &event);
        return event.isAccepted();
    }
    void Press(int code, Qt::KeyboardModifiers modifiers = {}) {
        Send(*window, QEvent::KeyPress, code, modifiers);
    }
    void Let_Go(int code) { Send(*window, QEvent::KeyRelease, code); }
    /// All edges that reads show, as "+44@5 -44@7" with ms.
    std::string Edges() {
        std::string text;
        Key_State before = state;
        for (int i = 0; i < 100; ++i) {
            if (!keys->Read(state))
                return text + " lost";
            int changes = 0;
            for (std::size_t key = 0; key < state.down.size(); ++key)
                if (state.down[key] != before.down[key]) {
                    ++changes;
                    text += (state.down[key] != 0 ? " +" : " -") + std::to_string(key) + "@" +
                            std::to_string(state.changedAtNs[key] / 1'000'000);
                }
            if (changes > 1)
                text += " more than one a read";
            before = state;
        }
        return text;
    }
    Key_State state;

private slots:
    void init() {
        state = {};
        keys = std::make_unique<Qt_Key_State>(counter);
        window = std::make_unique<Listening_Widget>();
        auto* layout = new QVBoxLayout(window.get());
        line = new QLineEdit;
        layout->addWidget(line);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        window->setFocus();
        QVERIFY(keys->Open());
        QVERIFY(keys->Acquire());
        counter.Advance_Ms(1000 - counter.Now_Ms() % 1000);
    }
    void cleanup() {
        keys.reset();
        window.reset();
    }

    void A_Press_And_Release_Between_Reads_Both_Show() {
        const std::int64_t t = counter.Now_Ms();
        Press(Z);
        counter.Advance_Ms(3);
        Let_Go(Z);
        QCOMPARE(Edges(), " +44@" + std::to_string(t) + " -44@" + std::to_string(t + 3));
        QCOMPARE(window->heard, std::string());
    }
    void Repeats_Make_No_Edges() {
        Press(Z);
        Press(Z); // unflagged, as the server sends it with detectable repeat
        Send(*window, QEvent::KeyRelease, Z, {}, true);
        Send(*window, QEvent::KeyPress, Z, {}, true);
        const std::string t = std::to_string(counter.Now_Ms());
        QCOMPARE(Edges(), " +44@" + t);
        Let_Go(Z);
        QCOMPARE(Edges(), " -44@" + t);
        QCOMPARE(window->heard, std::string());
    }
    void Losing_The_Window_Releases_All() {
        Press(Z);
        Press(X);
        Edges();
        counter.Advance_Ms(5);
        QEvent lost(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(window.get(), &lost);
        const std::string t = std::to_string(counter.Now_Ms());
        QCOMPARE(Edges(), " -44@" + t + " -45@" + t);
        Press(Z); // still held: a repeat, not a press
        QCOMPARE(Edges(), std::string());
        Let_Go(Z);
        Press(Z);
        QCOMPARE(Edges(), " +44@" + t);
    }
    void Another_Window_Of_Ours_Still_Plays_But_A_Modal_Dialog_Does_Not() {
        Press(Z);
        Edges();
        QDialog dialog(window.get());
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const std::string t = std::to_string(counter.Now_Ms());
        QCOMPARE(Edges(), " -44@" + t);
        Send(dialog, QEvent::KeyPress, X);
        QCOMPARE(Edges(), std::string());
        dialog.hide();
        dialog.setModal(false);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        Send(dialog, QEvent::KeyRelease, X);
        Send(dialog, QEvent::KeyPress, X);
        QCOMPARE(Edges(), " +45@" + t);
    }
    void A_Text_Field_Gets_Its_Keys() {
        line->setFocus();
        Send(*line, QEvent::KeyPress, Z);
        Send(*line, QEvent::KeyRelease, Z);
        QCOMPARE(line->text(), QStringLiteral("z"));
        QCOMPARE(Edges(), std::string());
        line->setReadOnly(true);
        Send(*line, QEvent::KeyPress, Z);
        QVERIFY(!Edges().empty());
        line->setReadOnly(false);
        Send(*line, QEvent::KeyRelease, Z); // played, so its release is ours in a text field too
        QVERIFY(!Edges().empty());
        QCOMPARE(line->text(), QStringLiteral("z"));
    }
    void An_Open_Menu_Gets_Its_Keys() {
        QMenu menu;
        menu.addAction(QStringLiteral("one"));
        menu.popup(QPoint(0, 0));
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        Send(menu, QEvent::KeyPress, X);
        QCOMPARE(Edges(), std::string());
        menu.close();
    }
    void Commands_Stay_Commands() {
        Press(Z, Qt::ControlModifier);
        Let_Go(Z);
        Press(X, Qt::AltModifier);
        QCOMPARE(Edges(), std::string());
        QCOMPARE(window->heard, std::string(" +52 -52 +53"));
        Press(CTRL, Qt::ControlModifier); // alone it is a key as any other
        QVERIFY(!Edges().empty());
    }
    void Accept_Chooses_The_Keys() {
        keys->accept = [](int scanCode) { return scanCode == 45; };
        Press(Z);
        Press(X);
        QCOMPARE(Edges(), " +45@" + std::to_string(counter.Now_Ms()));
        QCOMPARE(window->heard, std::string(" +52"));
    }
    void No_Shortcut_Takes_A_Key_That_Plays() {
        QVERIFY(Send(*window, QEvent::ShortcutOverride, Z));
        keys->Release();
        QVERIFY(!Send(*window, QEvent::ShortcutOverride, X));
    }
    void The_Shortcut_That_Starts_A_Run_Does_Not_Play() {
        keys->Release();
        Send(*window, QEvent::ShortcutOverride, Z, {}, false, 100); // taken by a shortcut, no press follows
        keys->Acquire();
        QCOMPARE(Edges(), std::string());
        Send(*window, QEvent::ShortcutOverride, Z, {}, false, 140);
        Send(*window, QEvent::KeyPress, Z, {}, false, 140); // its repeat
        Let_Go(Z);
        QCOMPARE(Edges(), std::string());
        Press(Z);
        QVERIFY(!Edges().empty());
    }
    void A_Key_Held_When_A_Run_Begins_Is_Down() {
        Press(Z);
        keys->Release();
        state = {};
        QCOMPARE(Edges(), std::string(" lost"));
        counter.Advance_Ms(50);
        keys->Acquire();
        QCOMPARE(Edges(), " +44@" + std::to_string(counter.Now_Ms()));
        Let_Go(Z);
        keys->Release();
        state = {};
        keys->Acquire();
        QCOMPARE(Edges(), std::string());
    }
    void Closed_It_Lets_All_Keys_Pass() {
        keys->Close();
        QVERIFY(!keys->Acquire());
        Press(Z);
        QCOMPARE(window->heard, std::string(" +52"));
    }

    void Scan_Codes() {
        // Escape 1 q a z Space F10 F11 F12, pad Enter, right Ctrl, pad /, right Alt, Home to Delete; no keys
        const std::pair<std::uint32_t, int> rows[] = {
            {9, 1},     {10, 2},    {24, 16},   {38, 30},   {52, 44},   {65, 57},   {76, 68},
            {94, 86},   {95, 87},   {96, 88},   {104, 156}, {105, 157}, {106, 181}, {108, 184},
            {110, 199}, {111, 200}, {112, 201}, {113, 203}, {114, 205}, {115, 207}, {116, 208},
            {117, 209}, {118, 210}, {119, 211}, {0, 0},     {8, 0},     {255, 0},   {70000, 0}};
        for (const auto& [native, scanCode] : rows)
            QVERIFY2(Scan_Code_Of_Native(native) == scanCode, qPrintable(QString::number(native)));
        QString signs; // y ß, dead circumflex, č, Cyrillic of the old codes, Escape, blank
        for (const unsigned long symbol : {0x79UL, 0xDFUL, 0xFE52UL, 0x100010DUL, 0x6C6UL, 0xFF1BUL, 0x20UL})
            signs += Sign_Of_Symbol(symbol);
        QCOMPARE(signs, QStringLiteral("Yß^Č"));
    }

    void A_Late_Event_Keeps_Its_Moment() {
        constexpr std::int64_t MS = 1'000'000;
        Event_Clock same; // the window system counts the ms of our own clock, cut to 32 bits
        const std::int64_t base = (std::int64_t{1} << 32) * 3 - 50; // ms; wraps within the test
        const auto wire = [&](std::int64_t ms) { return static_cast<std::uint32_t>(base + ms); };
        const auto late = [&](Event_Clock& clock, std::int64_t at, std::int64_t handled) {
            return clock.Moment_Of(wire(at), (base + handled) * MS) / MS - base;
        };
        QCOMPARE(late(same, 0, 1), 0);
        QCOMPARE(late(same, 20, 120), 20); // over the wrap
        QCOMPARE(late(same, 130, 130), 130);
        QCOMPARE(late(same, 200, 900), 400);           // never older than 500 ms
        QCOMPARE(late(same, 905, 902), 902);           // never later than now
        QCOMPARE(late(same, 1'000'000, 1000), 1000);   // nonsense
        QCOMPARE(same.Moment_Of(0, 77 * MS), 77 * MS); // unknown

        Event_Clock other; // a clock of its own, 1000000 ms behind
        const auto far = [&](std::int64_t at, std::int64_t handled) {
            return other.Moment_Of(static_cast<std::uint32_t>(at), (handled + 1'000'000) * MS) / MS -
                   1'000'000;
        };
        QCOMPARE(far(1000, 1040), 1040); // nothing known yet
        QCOMPARE(far(2000, 2001), 2001); // the least delay seen
        QCOMPARE(far(3000, 3100), 3001);
        QCOMPARE(far(90'000, 90'080), 90'001);    // remembered over a quiet minute
        QCOMPARE(far(190'000, 190'003), 190'003); // and forgotten after two spans
    }
};

} // namespace

QTEST_MAIN(Key_State_Test)
#include "qt_key_state_test.moc"
