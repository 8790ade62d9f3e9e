#include "platform/qt/qt_run_loop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QScopedValueRollback>
#include <QThread>
#include <QTimer>

namespace tonvex {

namespace {
constexpr int RUN_OUT_MS = 2000;
}

void Qt_Run_Loop::Run(const std::function<bool()>& round) {
    if (running)
        return;
    const QScopedValueRollback<bool> inRun(running, true);
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(1);
    bool over = false;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (roundsHeld)
            return;
        const QScopedValueRollback<bool> inRound(roundsHeld, true);
        if (round())
            return;
        over = true;
        timer.stop();
        loop.quit();
    });
    timer.start();
    loop.exec();
    timer.stop();
    // The loop ends before the run only when the application quits.
    if (!over && onQuit) {
        onQuit();
        Run_Out(round);
    }
}

void Qt_Run_Loop::Run_Out(const std::function<bool()>& round) {
    // A quitting application starts no event loop any more, so messages are pumped by hand.
    QElapsedTimer sinceQuit;
    sinceQuit.start();
    do {
        QThread::msleep(1);
        Let_Messages_Run();
    } while (round() && sinceQuit.elapsed() < RUN_OUT_MS);
}

void Qt_Run_Loop::Let_Messages_Run() {
    const QScopedValueRollback<bool> hold(roundsHeld, true);
    QCoreApplication::processEvents();
}

} // namespace tonvex
