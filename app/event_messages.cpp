#include "app/message_handlers.h"
#include "app/msg_manager.h"
#include "app/session.h"

namespace tonvex {

namespace {

/// The live row that P1 names; -1 when there is none.
int Row_Of(const Hub_Call& call) {
    const auto channelId = call.Long(1);
    return channelId ? call.session.channels->ChannelI(*channelId) : -1;
}

/// The store of the channel that P1 names; null when there is none.
ChannelClass* Store_Of(const Hub_Call& call) {
    const int row = Row_Of(call);
    return row < 0 ? nullptr : &call.session.channels->Store(row);
}

/// The event of that store that P2 names: its ID, when it lives.
std::optional<std::int32_t> Event_Of(const Hub_Call& call, const ChannelClass* store) {
    const auto eventId = call.Long(2);
    if (store == nullptr || !eventId || store->GetEvent_I(*eventId) < 0)
        return std::nullopt;
    return eventId;
}

void Keep(const Hub_Call& call, const char* label) {
    call.session.undo->Undo_Channel(label, Row_Of(call));
}

bool Record_Event(Hub_Call& call) {
    const auto row = call.Long(1);
    const auto kind = call.Long(2);
    const auto time = call.Real(3);
    const EventData* data = call.Event(4);
    if (!row || !call.session.channels->Is_Live_Row(*row) || !time || *time < 0.0 || data == nullptr ||
        kind != Kind_Of(*data))
        return false;
    ChannelClass& store = call.session.channels->Store(*row);
    store.AddNewEvent_RecMode(*time, *data);
    call.noticeParam = store.ChannelNumber;
    return true;
}

bool Event_Added(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    if (call.Given(2)) {
        const auto eventId = Event_Of(call, store);
        call.noticeText = eventId ? std::to_string(*eventId) : std::string();
        return eventId.has_value();
    }
    const auto start = call.Real(3);
    const EventData* data = call.Event(4);
    if (store == nullptr || !start || *start < 0.0 || data == nullptr)
        return false;
    Keep(call, "Add events");
    call.noticeText = std::to_string(store->AddNewEvent(*start, *data));
    return true;
}

bool Delete_Event(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    if (!eventId)
        return false;
    Keep(call, "Delete events");
    call.session.events.PassMsg(-MSG_DELETE_EVENT, call.noticeParam, std::to_string(*eventId));
    call.noticeText = std::to_string(*eventId);
    return store->DeleteEvent(*eventId);
}

/// Item messages whose P3 is the new value and P4 the change: at least one of them is given.
bool Move_Event(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    const double newTime = call.Real(3).value_or(NOT_GIVEN_TIME);
    const double delta = call.Real(4).value_or(NOT_GIVEN_TIME);
    if (!eventId || (newTime == NOT_GIVEN_TIME && delta == NOT_GIVEN_TIME))
        return false;
    // An event that falls out before the start is deleted from within, one by one in a long batch: the
    // closing message does the update.
    const MsgManager::Batch batch(call.hub, MsgManager::Batch::Closing_Message_Follows);
    Keep(call, "Move events");
    store->Set_Event_StartTime(*eventId, newTime, delta);
    return true;
}

bool Length_Event(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    const double newLength = call.Real(3).value_or(NOT_GIVEN_TIME);
    const double delta = call.Real(4).value_or(NOT_GIVEN_TIME);
    if (!eventId || (newLength == NOT_GIVEN_TIME && delta == NOT_GIVEN_TIME))
        return false;
    Keep(call, "Change length");
    store->Set_Event_Length(*eventId, newLength, delta);
    return true;
}

template <void (ChannelClass::*setter)(std::int32_t, std::int32_t, std::int32_t)>
bool Set_Number(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    const std::int32_t newValue = call.Long(3).value_or(NOT_GIVEN);
    const std::int32_t delta = call.Long(4).value_or(NOT_GIVEN);
    if (!eventId || (newValue == NOT_GIVEN && delta == NOT_GIVEN))
        return false;
    const MsgManager::Batch batch(call.hub, MsgManager::Batch::Closing_Message_Follows);
    const bool notes = setter == &ChannelClass::Set_Event_Note;
    Keep(call, notes ? "Change note" : "Change volume");
    (store->*setter)(*eventId, newValue, delta);
    return true;
}

bool Properties_Event(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    const EventData* data = call.Event(3);
    if (!eventId || data == nullptr)
        return false;
    const auto present = store->ReadEvent(store->GetEvent_I(*eventId));
    if (!present || present->Kind != Kind_Of(*data))
        return false;
    Keep(call, "Change properties");
    store->Set_Event_Properties(*eventId, *data);
    return true;
}

bool Chord_Type_Event(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    const auto eventId = Event_Of(call, store);
    const auto type = call.Long(3);
    if (!eventId || !type || *type < 0 || *type >= NotesStuff::CHORD_TYPES)
        return false;
    const auto present = store->ReadEvent(store->GetEvent_I(*eventId));
    if (!present || present->Kind != EV_QCHORD)
        return false;
    Keep(call, "Change chord type");
    store->Set_Event_ChordType(*eventId, static_cast<std::uint8_t>(*type));
    return true;
}

bool End_Of_Batch(Hub_Call& call) {
    return Store_Of(call) != nullptr;
}

bool End_Of_Moves(Hub_Call& call) {
    ChannelClass* store = Store_Of(call);
    if (store == nullptr)
        return false;
    store->ReSort_StartTime();
    return true;
}

constexpr Message_Handler HANDLERS[] = {
    {MSG_REC_EVENT, Record_Event, Message_Kind::Change},
    {MSG_EVENT_ADDED, Event_Added, Message_Kind::Change, Undo_Join::Batch},
    {MSG_EVENTS_ADDED_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_DELETE_EVENT, Delete_Event, Message_Kind::Change_And_End},
    {MSG_MOVE_EVENT, Move_Event, Message_Kind::Change, Undo_Join::Batch},
    {MSG_MOVE_END, End_Of_Moves, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_LENGTH_EVENT, Length_Event, Message_Kind::Change, Undo_Join::Batch},
    {MSG_LENGTH_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_NOTE_EVENT, Set_Number<&ChannelClass::Set_Event_Note>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_NOTE_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_PROPERTIES_EVENT, Properties_Event, Message_Kind::Change, Undo_Join::Batch},
    {MSG_PROPERTIES_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_VOLUME_EVENT, Set_Number<&ChannelClass::Set_Event_Volume>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_VOLUME_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
    {MSG_CHORD_TYPE_EVENT, Chord_Type_Event, Message_Kind::Change, Undo_Join::Batch},
    {MSG_CHORD_TYPE_END, End_Of_Batch, Message_Kind::End_Of_Batch, Undo_Join::Closes},
};

} // namespace

std::span<const Message_Handler> Event_Messages() {
    return HANDLERS;
}

} // namespace tonvex
