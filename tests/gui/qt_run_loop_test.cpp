#include "platform/qt/qt_run_loop.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace tonvex;

namespace {

class Run_Loop_Test : public QObject {
    Q_OBJECT

private slots:
    void Rounds_Come_About_Every_Ms_And_End_At_Once() {
        Qt_Run_Loop loop;
        int rounds = 0;
        QElapsedTimer time;
        time.start();
        loop.Run([&] { return ++rounds < 100; });
        QCOMPARE(rounds, 100);
        QVERIFY2(time.elapsed() >= 90, "a round must wait for its millisecond");
        QVERIFY(!loop.Is_Running());
        loop.Run([&] { return false; }); // and again
    }
    void Handlers_Run_Between_Rounds_Never_Inside() {
        Qt_Run_Loop loop;
        bool inRound = false;
        int handled = 0;
        QTimer other;
        connect(&other, &QTimer::timeout, this, [&] {
            QVERIFY(!inRound);
            ++handled;
        });
        other.start(1);
        int rounds = 0;
        loop.Run([&] {
            inRound = true;
            ++rounds;
            inRound = false;
            return handled < 10 && rounds < 10000;
        });
        QVERIFY(handled >= 10);
    }
    void Rounds_Go_On_Under_A_Modal_Dialog() {
        Qt_Run_Loop loop;
        QDialog dialog;
        int rounds = 0;
        int roundsUnderDialog = 0;
        QTimer::singleShot(5, this, [&] {
            QTimer::singleShot(60, &dialog, &QDialog::accept);
            dialog.exec();
        });
        loop.Run([&] {
            ++rounds;
            if (dialog.isVisible())
                ++roundsUnderDialog;
            return dialog.result() != QDialog::Accepted && rounds < 100000;
        });
        QVERIFY2(roundsUnderDialog > 10, qPrintable(QString::number(roundsUnderDialog)));
    }
    void A_Round_Is_Never_Entered_Again_And_A_Second_Run_Is_Refused() {
        Qt_Run_Loop loop;
        int depth = 0;
        int deepest = 0;
        int rounds = 0;
        int strayRounds = 0;
        loop.Run([&] {
            deepest = std::max(deepest, ++depth);
            QElapsedTimer wait;
            wait.start();
            while (wait.elapsed() < 5)
                loop.Let_Messages_Run(); // the timer is due all the while
            loop.Run([&] { return ++strayRounds < 3; });
            --depth;
            return ++rounds < 3;
        });
        QCOMPARE(deepest, 1);
        QCOMPARE(rounds, 3);
        QCOMPARE(strayRounds, 0);
    }
    void Letting_Messages_Run_Makes_No_Round() {
        Qt_Run_Loop loop;
        int rounds = 0;
        int roundsMeanwhile = -1;
        QTimer::singleShot(5, this, [&] {
            const int before = rounds;
            QElapsedTimer wait;
            wait.start();
            while (wait.elapsed() < 20)
                loop.Let_Messages_Run();
            roundsMeanwhile = rounds - before;
        });
        loop.Run([&] { return ++rounds < 100000 && roundsMeanwhile < 0; });
        QCOMPARE(roundsMeanwhile, 0);
    }
    void Quitting_Ends_The_Run_In_Order() {
        Qt_Run_Loop loop;
        bool stop = false;
        int roundsAfterQuit = 0;
        int asked = 0;
        loop.onQuit = [&] {
            ++asked;
            stop = true;
        };
        bool lastRoundSaidNo = false;
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(5, qApp, &QCoreApplication::quit);
            loop.Run([&] {
                if (asked > 0)
                    ++roundsAfterQuit;
                lastRoundSaidNo = stop;
                return !stop;
            });
        });
        QElapsedTimer time;
        time.start();
        QCoreApplication::exec();
        QCOMPARE(asked, 1);
        QCOMPARE(roundsAfterQuit, 1);
        QVERIFY(lastRoundSaidNo);
        QVERIFY(time.elapsed() < 1500);
    }
};

} // namespace

QTEST_MAIN(Run_Loop_Test)
#include "qt_run_loop_test.moc"
