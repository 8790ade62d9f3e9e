#include "app/message_handlers.h"
#include "app/messages.h"
#include "app/session.h"

namespace tonvex {

namespace {

/// The row of a live mark that P1 names, which the notice then names too; -1 when there is none.
int Mark_Row_Of(const Hub_Call& call) {
    const auto row = call.Long(1);
    return row && call.session.marks.Is_Live(*row) ? *row : -1;
}

bool Add_Mark(Hub_Call& call) {
    Song_Marks& marks = call.session.marks;
    const auto start = call.Real(1);
    call.session.undo->Undo_Marks("Add mark");
    if (!start || !marks.Add_Mark(*start, call.Real(2).value_or(NOT_GIVEN_TIME), call.Text(3).value_or("")))
        return false;
    call.noticeParam = marks.Mark_Count() - 1;
    call.noticeText = marks.Row(call.noticeParam).MarkName;
    return true;
}

bool Delete_Mark(Hub_Call& call) {
    const int row = Mark_Row_Of(call);
    if (row < 0)
        return false;
    call.session.undo->Undo_Marks("Delete mark");
    call.noticeText = call.session.marks.Row(row).MarkName;
    call.session.events.PassMsg(-MSG_DELETE_MARK, row, call.noticeText);
    return call.session.marks.Delete_Mark(row);
}

bool Change_Mark(Hub_Call& call) {
    const int row = Mark_Row_Of(call);
    const auto name = call.Text(2);
    if (row < 0 || !name)
        return false;
    call.session.undo->Undo_Marks("Change mark name");
    call.noticeText = *name;
    return call.session.marks.Change_Mark(row, *name);
}

bool Move_Mark(Hub_Call& call) {
    Song_Marks& marks = call.session.marks;
    const int row = Mark_Row_Of(call);
    const double start = call.Real(2).value_or(NOT_GIVEN_TIME);
    const double end = call.Real(3).value_or(NOT_GIVEN_TIME);
    call.session.undo->Undo_Marks("Move mark");
    if (row < 0 || !marks.Move_Mark(row, start, end))
        return false;
    call.noticeText = marks.Row(row).MarkName;
    return true;
}

constexpr Message_Handler HANDLERS[] = {
    {MSG_ADD_MARK, Add_Mark, Message_Kind::Change_And_End},
    {MSG_DELETE_MARK, Delete_Mark, Message_Kind::Change_And_End},
    {MSG_CHANGE_MARK, Change_Mark, Message_Kind::Change_And_End},
    {MSG_MOVE_MARK, Move_Mark, Message_Kind::Change_And_End},
};

} // namespace

std::span<const Message_Handler> Mark_Messages() {
    return HANDLERS;
}

} // namespace tonvex
