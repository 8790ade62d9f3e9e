#include "platform/qt/end_signals.h"

#include <QCoreApplication>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tonvex {

namespace {

sigset_t End_Set() {
    sigset_t ends;
    sigemptyset(&ends);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ends, number);
    return ends;
}

/// A descriptor that tells the signals; -1 when it cannot be had, and the signals then do what they always
/// do.
int Open_Signals() {
    const sigset_t ends = End_Set();
    const int opened = ::signalfd(-1, &ends, SFD_NONBLOCK | SFD_CLOEXEC);
    if (opened < 0)
        pthread_sigmask(SIG_UNBLOCK, &ends, nullptr);
    return opened;
}

} // namespace

void End_Signals::Hold_Back() {
    const sigset_t ends = End_Set();
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);
}

End_Signals::End_Signals() : fd(Open_Signals()), notifier(fd, QSocketNotifier::Read) {
    notifier.setEnabled(fd >= 0);
    connect(&notifier, &QSocketNotifier::activated, this, &End_Signals::Take_Signal);
}

End_Signals::~End_Signals() {
    notifier.setEnabled(false);
    if (fd >= 0)
        ::close(fd);
}

void End_Signals::Take_Signal() {
    signalfd_siginfo info{};
    if (::read(fd, &info, sizeof info) != static_cast<ssize_t>(sizeof info))
        return;
    if (onEnd)
        onEnd();
    else
        QCoreApplication::quit();
}

} // namespace tonvex
