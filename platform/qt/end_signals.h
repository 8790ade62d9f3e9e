#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace tonvex {

/// Turns the system's wish that the program end (SIGTERM, SIGINT, SIGHUP) into a call between two events. One
/// object, on the interface thread, after the application. Nothing happens when the system refuses.
class End_Signals final : public QObject {
    Q_OBJECT
public:
    /// Holds the signals back from now on. To be called before the application is made, whose threads would
    /// take them otherwise.
    static void Hold_Back();

    End_Signals();
    ~End_Signals() override;

    std::function<void()> onEnd; ///< empty: the application quits

private:
    void Take_Signal();

    int fd;
    QSocketNotifier notifier;
};

} // namespace tonvex
