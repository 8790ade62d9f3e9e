#include "app/message_handlers.h"
#include "app/messages.h"
#include "app/msg_manager.h"
#include "app/session.h"

namespace tonvex {

namespace {

/// Whose maps a message is about.
enum class Map_Owner { Slot, Audio };

/// The map that P1 names: by slot, or by the ChannelID of an audio channel. Null when there is none.
template <Map_Owner owner, Map_Kind kind>
PanVol_Class* Map_Of(const Hub_Call& call) {
    Song_Maps& maps = call.session.channels->Maps;
    const auto named = call.Long(1);
    if (!named)
        return nullptr;
    if constexpr (owner == Map_Owner::Slot)
        return *named >= 0 && *named < Song_Maps::SLOTS ? &maps.Slot_Map(kind, *named) : nullptr;
    const int row = maps.Find_AudioMapRow(*named);
    return row < 0 ? nullptr : &maps.Audio_Row(row).Map(kind);
}

/// The map that P1 names, which is there, is about to change; the action is a verb and its object.
template <Map_Owner owner, Map_Kind kind>
void Keep(const Hub_Call& call, const char* verb) {
    const std::string label = std::string(verb) + (kind == Map_Kind::Pan ? " pan point" : " volume point");
    if constexpr (owner == Map_Owner::Slot)
        call.session.undo->Undo_SlotMap(kind, *call.Long(1), label);
    else
        call.session.undo->Undo_AudioMap(kind, call.session.channels->Maps.Find_AudioMapRow(*call.Long(1)),
                                         label);
}

/// The point of the map that P2 names: its ID, when it is there.
std::optional<std::int32_t> Point_Of(const Hub_Call& call, const PanVol_Class* map) {
    const auto id = call.Long(2);
    return map != nullptr && id && map->GetPoint_I(*id) >= 0 ? id : std::nullopt;
}

template <Map_Owner owner, Map_Kind kind>
bool Add_Point(Hub_Call& call) {
    PanVol_Class* map = Map_Of<owner, kind>(call);
    const auto time = call.Real(2);
    if (map == nullptr || !time)
        return false;
    Keep<owner, kind>(call, "Add");
    std::int32_t id = 0;
    const bool added = map->Add_Point(*time, call.Long(3).value_or(map->Play_GetValue_At_TimePos(*time)), id);
    call.noticeText = std::to_string(id);
    return added;
}

template <int msg, Map_Owner owner, Map_Kind kind>
bool Delete_Point(Hub_Call& call) {
    PanVol_Class* map = Map_Of<owner, kind>(call);
    const auto id = Point_Of(call, map);
    if (!id || !map->PointIs_Moveable(*id))
        return false;
    Keep<owner, kind>(call, "Delete");
    call.noticeText = std::to_string(*id);
    call.session.events.PassMsg(-msg, call.noticeParam, call.noticeText);
    return map->Delete_Point(*id);
}

template <Map_Owner owner, Map_Kind kind>
bool Move_Point(Hub_Call& call) {
    PanVol_Class* map = Map_Of<owner, kind>(call);
    const auto id = Point_Of(call, map);
    if (!id)
        return false;
    Keep<owner, kind>(call, "Move");
    std::int32_t newId = 0;
    if (!map->Set_Point_TimePos(*id, call.Real(3).value_or(NOT_GIVEN_TIME),
                                call.Real(4).value_or(NOT_GIVEN_TIME), newId))
        return false;
    if (const auto value = call.Long(5))
        map->Set_Point_Val(newId, *value);
    call.noticeText = std::to_string(newId);
    return true;
}

template <Map_Owner owner, Map_Kind kind>
bool Set_Point(Hub_Call& call) {
    PanVol_Class* map = Map_Of<owner, kind>(call);
    const auto id = Point_Of(call, map);
    if (!id)
        return false;
    Keep<owner, kind>(call, "Change");
    call.noticeText = std::to_string(*id);
    return map->Set_Point_Val(*id, call.Long(3).value_or(NOT_GIVEN), call.Long(4).value_or(NOT_GIVEN));
}

/// Between runs the slots stand at the start of their maps; in a run the next round follows the map.
bool End_Of_Slot_Edits(Hub_Call& call) {
    if (Map_Of<Map_Owner::Slot, Map_Kind::Volume>(call) == nullptr)
        return false;
    if (!call.session.transport.Song_Runs())
        call.session.gcm->GCM_ResetMaps();
    return true;
}

std::string Title(Map_Kind kind, const std::string& name) {
    return (kind == Map_Kind::Pan ? "Pan Map [" : "Volume Map [") + name + "]";
}

/// The window layer opens the window, under the title that the notice carries.
template <Map_Kind kind>
bool Open_Slot_Map(Hub_Call& call) {
    if (Map_Of<Map_Owner::Slot, kind>(call) == nullptr)
        return false;
    const GlobalChannelsManager& channels = *call.session.channels;
    const int slot = *call.Long(1);
    std::string name = channels.OutputSlots[static_cast<std::size_t>(slot)].SlotName;
    for (int row = GlobalChannelsManager::CHANNEL_ROWS - 1; row >= 0; --row) {
        const GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(row)];
        if (channels.Is_Live_Row(row) && channel.OutputChannel == slot)
            name = channel.ChannelName;
    }
    call.noticeText = Title(kind, name);
    return true;
}

template <Map_Kind kind>
bool Open_Audio_Map(Hub_Call& call) {
    const GlobalChannelsManager& channels = *call.session.channels;
    const int row = Map_Of<Map_Owner::Audio, kind>(call) == nullptr ? -1 : channels.ChannelI(*call.Long(1));
    if (row < 0)
        return false;
    call.noticeText = Title(kind, channels.Channels[static_cast<std::size_t>(row)].ChannelName);
    return true;
}

bool Open_Map_Windows(Hub_Call& call) {
    const auto channelId = call.Long(1);
    if (!channelId || call.session.channels->Maps.Find_AudioMapRow(*channelId) < 0)
        return false;
    const Msg_Sender sender = call.hub.Last_Sender();
    call.hub.Message(sender, MSG_OPEN_AUDIO_VOLUME_MAP, *channelId);
    call.hub.Message(sender, MSG_OPEN_AUDIO_PAN_MAP, *channelId);
    return true;
}

constexpr auto SLOT = Map_Owner::Slot;
constexpr auto AUDIO = Map_Owner::Audio;
constexpr auto PAN = Map_Kind::Pan;
constexpr auto VOLUME = Map_Kind::Volume;

constexpr Message_Handler HANDLERS[] = {
    {MSG_OPEN_PAN_MAP, Open_Slot_Map<PAN>, Message_Kind::View},
    {MSG_OPEN_VOLUME_MAP, Open_Slot_Map<VOLUME>, Message_Kind::View},
    {MSG_OPEN_AUDIO_PAN_MAP, Open_Audio_Map<PAN>, Message_Kind::View},
    {MSG_OPEN_AUDIO_VOLUME_MAP, Open_Audio_Map<VOLUME>, Message_Kind::View},
    {MSG_OPEN_AUDIO_MAPS, Open_Map_Windows, Message_Kind::View},
    {MSG_PAN_ADD_POINT, Add_Point<SLOT, PAN>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_PAN_ADD_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_PAN_DELETE_POINT, Delete_Point<MSG_PAN_DELETE_POINT, SLOT, PAN>, Message_Kind::Change,
     Undo_Join::Batch},
    {MSG_PAN_DELETE_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_PAN_MOVE_POINT, Move_Point<SLOT, PAN>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_PAN_MOVE_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_PAN_SET_POINT, Set_Point<SLOT, PAN>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_PAN_SET_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_VOLUME_ADD_POINT, Add_Point<SLOT, VOLUME>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_VOLUME_ADD_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_VOLUME_DELETE_POINT, Delete_Point<MSG_VOLUME_DELETE_POINT, SLOT, VOLUME>, Message_Kind::Change,
     Undo_Join::Batch},
    {MSG_VOLUME_DELETE_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_VOLUME_MOVE_POINT, Move_Point<SLOT, VOLUME>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_VOLUME_MOVE_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_VOLUME_SET_POINT, Set_Point<SLOT, VOLUME>, Message_Kind::Change, Undo_Join::Batch},
    {MSG_VOLUME_SET_END, End_Of_Slot_Edits, Message_Kind::View, Undo_Join::Closes},
    {MSG_AUDIO_PAN_ADD_POINT, Add_Point<AUDIO, PAN>, Message_Kind::Change},
    {MSG_AUDIO_PAN_DELETE_POINT, Delete_Point<MSG_AUDIO_PAN_DELETE_POINT, AUDIO, PAN>, Message_Kind::Change},
    {MSG_AUDIO_PAN_MOVE_POINT, Move_Point<AUDIO, PAN>, Message_Kind::Change},
    {MSG_AUDIO_PAN_SET_POINT, Set_Point<AUDIO, PAN>, Message_Kind::Change},
    {MSG_AUDIO_VOLUME_ADD_POINT, Add_Point<AUDIO, VOLUME>, Message_Kind::Change},
    {MSG_AUDIO_VOLUME_DELETE_POINT, Delete_Point<MSG_AUDIO_VOLUME_DELETE_POINT, AUDIO, VOLUME>,
     Message_Kind::Change},
    {MSG_AUDIO_VOLUME_MOVE_POINT, Move_Point<AUDIO, VOLUME>, Message_Kind::Change},
    {MSG_AUDIO_VOLUME_SET_POINT, Set_Point<AUDIO, VOLUME>, Message_Kind::Change},
};

} // namespace

std::span<const Message_Handler> Map_Messages() {
    return HANDLERS;
}

} // namespace tonvex
