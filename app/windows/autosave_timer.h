#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "project/autosave.h"

#include <QTimer>

namespace tonvex {

/// Drives the autosave of a session from the window: by a timer, which ticks while there is something to
/// keep, in runs too, at the end of takes, and when the song was saved or another one stands in its place.
/// Interface thread. The session outlives it and may shut down only after it has gone.
class Autosave_Timer final : public QObject, public Transport_Observer, public Project_Observer {
    Q_OBJECT
public:
    explicit Autosave_Timer(Session& session, QObject* parent = nullptr);
    ~Autosave_Timer() override;

    /// To be called now and then, and after changes: sees whether there is something to keep.
    void Look();
    /// See Autosave.
    bool Copy_Now() { return autosave.Copy_Now(); }

    void On_Run_Started(bool recording) override;
    void On_Run_Ended() override;
    void On_Song_Replaced() override;
    void On_Project_Saved() override;

signals:
    /// Told once until a copy succeeds again.
    void failed(const QString& error);

private:
    Session& session;
    Observer_Link link;
    Autosave autosave;
    QTimer timer;
    bool recorded = false;
};

} // namespace tonvex
