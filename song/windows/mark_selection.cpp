#include "song/windows/mark_selection.h"

namespace tonvex {

Mark_Selection::Mark_Selection(Session& owner, QObject* parent) : QObject(parent), session(owner) {
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        // Another song, or a deletion, may have taken it away.
        if ((msgId == MSG_DELETE_MARK || msgId == MSG_GENERAL_UPDATE) && row >= 0 &&
            !session.marks.Is_Live(row))
            Select(-1);
    });
}

Mark_Selection::~Mark_Selection() {
    session.events.Unsubscribe(subscription);
}

void Mark_Selection::Select(int markRow) {
    const int wanted = session.marks.Is_Live(markRow) ? markRow : -1;
    if (wanted == row)
        return;
    row = wanted;
    emit changed(row);
}

bool Mark_Selection::Needs_Mark() {
    if (session.marks.Is_Live(row))
        return true;
    session.doors.dialogs.Show_Message(Box_Kind::Information, "You need to select a mark");
    return false;
}

bool Mark_Selection::Select_Or_Add_At_Play_Position() {
    for (const int live : session.marks.In_Time_Order()) {
        if (session.marks.Row(live).MarkStart == session.transport.PlayPosition) {
            Select(live);
            return true;
        }
    }
    return Add_At_Play_Position();
}

bool Mark_Selection::Add_At_Play_Position() {
    const double here = session.transport.PlayPosition;
    const int added = session.marks.Mark_Count();
    session.hub->Message(this, MSG_ADD_MARK, here, Msg_Arg(), std::string("New Mark"));
    if (!session.marks.Is_Live(added)) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Warning,
            tr("No more marks can be added to this song: all %1 places are used. Move one that is no longer "
               "needed.")
                .arg(Song_Marks::ROWS)
                .toStdString());
        return false;
    }
    Select(added);
    return true;
}

void Mark_Selection::Set_Start_At_Play_Position() {
    if (!Needs_Mark())
        return;
    const Mark mark = session.marks.Row(row);
    const double here = session.transport.PlayPosition;
    if (here == mark.MarkStart)
        return;
    // A span keeps its end; a plain mark goes there whole.
    if (mark.MarkEnd > mark.MarkStart)
        session.hub->Message(this, MSG_MOVE_MARK, std::int32_t{row}, here, mark.MarkEnd);
    else
        session.hub->Message(this, MSG_MOVE_MARK, std::int32_t{row}, here);
}

void Mark_Selection::Set_End_At_Play_Position() {
    if (!Needs_Mark())
        return;
    const Mark& mark = session.marks.Row(row);
    const double here = session.transport.PlayPosition;
    if (here < mark.MarkStart) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information,
            tr("The end of a mark lies behind its start. Go to a later position.").toStdString());
        return;
    }
    if (here != mark.MarkEnd)
        session.hub->Message(this, MSG_MOVE_MARK, std::int32_t{row}, Msg_Arg(), here);
}

void Mark_Selection::Delete() {
    if (Needs_Mark() && session.doors.dialogs.Ask_YesNo(
                            "Delete mark: " + session.marks.Row(row).MarkName + " ?", "Delete mark"))
        session.hub->Message(this, MSG_DELETE_MARK, std::int32_t{row});
}

void Mark_Selection::Go_To() {
    if (Needs_Mark())
        emit goTo(session.marks.Row(row).MarkStart);
}

} // namespace tonvex
