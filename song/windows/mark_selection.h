#pragma once

#include "app/session.h"

#include <QObject>

namespace tonvex {

/// The selected mark and what can be done with it: shared by the marks window and the menu. Changes go
/// through the hub. Interface thread. Session outlives it.
class Mark_Selection final : public QObject {
    Q_OBJECT
public:
    explicit Mark_Selection(Session& session, QObject* parent = nullptr);
    ~Mark_Selection() override;

    /// Row of the table of marks; -1 when none is selected.
    int Row() const noexcept { return row; }
    void Select(int markRow);
    /// A new mark at the play position, which is then the selected one; others may stand there. False, after
    /// telling, when the table has no room.
    bool Add_At_Play_Position();
    /// The mark that stands at the play position, or else a new one, is then the selected one.
    bool Select_Or_Add_At_Play_Position();
    /// The next four tell when no mark is selected.
    void Set_Start_At_Play_Position();
    void Set_End_At_Play_Position();
    /// Asks first.
    void Delete();
    void Go_To();

signals:
    void changed(int markRow);
    void goTo(double beats);

private:
    bool Needs_Mark();

    Session& session;
    int row = -1;
    int subscription = 0;
};

} // namespace tonvex
