#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace tonvex {

/// Turns the system's wish that the program end (SIGTERM, SIGINT, SIGHUP) into an orderly quit, as if the
/// user had closed the main window. One object, on the interface thread, after the application. Nothing
/// happens when the system refuses.
class End_Signals final : public QObject {
    Q_OBJECT
public:
    /// Holds the signals back from now on. To be called before the application is made, whose threads would
    /// take them otherwise.
    static void Hold_Back();

    End_Signals();
    ~End_Signals() override;

private:
    void Take_Signal();

    int fd;
    QSocketNotifier notifier;
};

} // namespace tonvex
