#include "app/message_handlers.h"
#include "app/msg_manager.h"
#include "app/session.h"

#include <algorithm>

namespace tonvex {

namespace {

/// The live row that P1 names; -1 when there is none.
int Row_Of(const Hub_Call& call) {
    const auto channelId = call.Long(1);
    return channelId ? call.session.channels->ChannelI(*channelId) : -1;
}

GlobalChannel& Channel_At(const Hub_Call& call, int row) {
    return call.session.channels->Channels[static_cast<std::size_t>(row)];
}

bool Is_Midi(const GlobalChannel& channel) {
    return !Is_On(channel.IsAudio) && channel.OutputChannel < OUTPUT_SLOTS;
}

std::uint8_t To_Midi_Value(std::int32_t value) {
    return static_cast<std::uint8_t>(std::clamp<std::int32_t>(value, 0, 127));
}

/// The slot of a channel sounds with the channel's patch and pan from now on.
void Send_Patch_And_Pan(const Hub_Call& call, int row) {
    const GlobalChannel& channel = Channel_At(call, row);
    call.session.gcm->GCM_SetChannelPatch(row, channel.PatchI);
    call.session.gcm->GCM_SetChannelPan(row);
}

/// A channel leaves the slot while the song runs. Its stored notes are ended by who plays them; those that
/// the performer holds there nobody would end.
void End_Live_Notes(const Hub_Call& call, int slot) {
    if (call.session.transport.LiveSlot == slot)
        call.session.output->Midi_ChannelNotesOff(slot);
}

bool Set_Patch(Hub_Call& call) {
    const int row = Row_Of(call);
    const auto patchRow = call.Long(2);
    if (row < 0 || !patchRow || !Is_Midi(Channel_At(call, row)))
        return false;
    const bool drums = Channel_At(call, row).OutputChannel == DRUM_SLOT;
    const int rows = drums ? GlobalChannelsManager::DRUM_PATCH_ROWS : GlobalChannelsManager::PATCH_ROWS;
    if (*patchRow < 0 || *patchRow >= rows)
        return false;
    call.session.undo->Undo_Row(row, "Change patch");
    call.session.channels->Set_Patch(*call.Long(1), static_cast<std::int16_t>(*patchRow));
    call.session.gcm->GCM_SetChannelPatch(row, *patchRow);
    return true;
}

bool Set_Volume(Hub_Call& call) {
    const auto volume = call.Long(2);
    if (Row_Of(call) < 0 || !volume)
        return false;
    call.session.undo->Undo_Row(Row_Of(call), "Change volume channel");
    call.session.channels->Set_Volume(*call.Long(1), To_Midi_Value(*volume),
                                      call.session.transport.PlayPosition);
    return true;
}

bool Set_Name(Hub_Call& call) {
    const auto name = call.Text(2);
    const int row = Row_Of(call);
    if (row < 0 || !name)
        return false;
    call.session.undo->Undo_Name(row);
    call.session.channels->Set_Name(*call.Long(1), *name);
    call.noticeText = Channel_At(call, row).ChannelName;
    return true;
}

bool Delete_Channel(Hub_Call& call) {
    const int row = Row_Of(call);
    if (row < 0)
        return false;
    const std::int32_t channelId = *call.Long(1);
    const GlobalChannel gone = Channel_At(call, row);
    call.session.undo->Undo_DeleteChannel(row, "Delete channel");
    call.session.events.PassMsg(-MSG_DELETE_CHANNEL, channelId, gone.ChannelName);
    if (Is_Midi(gone))
        End_Live_Notes(call, gone.OutputChannel);
    call.session.channels->Delete_Channel(channelId);
    call.noticeText = gone.ChannelName;
    return true;
}

bool Set_Pan(Hub_Call& call) {
    const int row = Row_Of(call);
    const auto value = call.Long(2);
    if (row < 0 || !value)
        return false;
    call.session.undo->Undo_Row(row, "Change pan channel");
    call.session.channels->Set_Pan(*call.Long(1), To_Midi_Value(*value));
    call.session.gcm->GCM_SetChannelPan(row);
    return true;
}

constexpr auto MUTE = &GlobalChannelsManager::Set_Mute;
constexpr auto SOLO = &GlobalChannelsManager::Set_Solo;

template <bool (GlobalChannelsManager::*setter)(std::int32_t, bool, bool)>
void Keep_State(const Hub_Call& call) {
    call.session.undo->Undo_Row(Row_Of(call), setter == MUTE ? "Change mute channel" : "Change solo channel");
}

template <bool (GlobalChannelsManager::*setter)(std::int32_t, bool, bool)>
bool Set_State(Hub_Call& call) {
    const auto value = call.Flag(2);
    if (Row_Of(call) < 0 || !value)
        return false;
    Keep_State<setter>(call);
    ((*call.session.channels).*setter)(*call.Long(1), *value, false);
    return true;
}

template <bool (GlobalChannelsManager::*setter)(std::int32_t, bool, bool)>
bool Toggle_State(Hub_Call& call) {
    if (Row_Of(call) < 0)
        return false;
    Keep_State<setter>(call);
    ((*call.session.channels).*setter)(*call.Long(1), false, true);
    return true;
}

bool Set_Output(Hub_Call& call) {
    const int row = Row_Of(call);
    const auto slot = call.Long(2);
    if (row < 0 || !slot || *slot < 0 || *slot >= OUTPUT_SLOTS || !Is_Midi(Channel_At(call, row)))
        return false;
    const std::uint8_t before = Channel_At(call, row).OutputChannel;
    call.session.undo->Undo_Row(row, "Change output channel");
    if (before == *slot)
        return true;
    call.session.undo->Undo_SlotMap(Map_Kind::Pan, *slot, "Change output channel");
    End_Live_Notes(call, before);
    call.session.channels->Set_OutputChannel(*call.Long(1), static_cast<std::uint8_t>(*slot));
    Send_Patch_And_Pan(call, row);
    return true;
}

bool Add_Channel(Hub_Call& call) {
    Session& session = call.session;
    const auto slot = call.Long(3);
    const bool slotGiven = slot && *slot != NOT_GIVEN;
    if (slotGiven && (*slot < 0 || *slot >= OUTPUT_SLOTS))
        return false;
    if (!session.channels->Has_Free_Row()) {
        session.doors.dialogs.Show_Message(Box_Kind::Warning,
                                           "Can't create new channel (Max Channels reached)");
        return false;
    }
    const int slotToBe = slotGiven ? *slot : session.channels->Next_Free_Slot();
    session.undo->Undo_FreeRow(session.channels->First_Free_Row(), slotToBe, "Add channel");
    const std::int32_t channelId = session.channels->New_ChannelID();
    const int row = session.channels->Add_Channel(channelId, call.Flag(2).value_or(false), slotToBe,
                                                  call.Text(1).value_or(std::string()));
    if (row < 0)
        return false;
    session.undo->Undo_AddChannel(row, "Add channel");
    if (Is_Midi(Channel_At(call, row)))
        Send_Patch_And_Pan(call, row);
    call.noticeParam = channelId;
    call.noticeText = Channel_At(call, row).ChannelName;
    return true;
}

std::optional<Effect_Kind> Effect_Asked(const Hub_Call& call) {
    if (const auto name = call.Text(2))
        return Effect_Of_Name(*name);
    const auto number = call.Long(2);
    if (!number || *number < 0 || *number >= static_cast<std::int32_t>(EFFECT_KINDS))
        return std::nullopt;
    return static_cast<Effect_Kind>(*number);
}

bool Set_Effects(Hub_Call& call) {
    GlobalChannelsManager& channels = *call.session.channels;
    const int row = Row_Of(call);
    const int effectRow = channels.Effect_Row(row);
    if (effectRow < 0)
        return false;
    call.session.undo->Undo_Effects(effectRow, "Change effects");
    if (call.Given(2)) {
        const auto effect = Effect_Asked(call);
        const auto on = call.Flag(3);
        const auto record = call.Text(4);
        if (!effect || (call.Given(3) && !on))
            return false;
        const auto values = record ? Effect_Of_Text(*effect, *record) : std::nullopt;
        if (call.Given(4) && !values)
            return false;
        if (on)
            channels.Effects.Set_On(effectRow, *effect, *on);
        if (values)
            channels.Effects.Set_Values(effectRow, *effect, *values);
    }
    call.session.gcm->GCM_SetChannelEffects(row);
    return true;
}

constexpr Message_Handler HANDLERS[] = {
    {MSG_SET_PATCH, Set_Patch, Message_Kind::Change},
    {MSG_SET_VOLUME, Set_Volume, Message_Kind::Change, Undo_Join::Gesture},
    {MSG_SET_NAME, Set_Name, Message_Kind::Change},
    {MSG_DELETE_CHANNEL, Delete_Channel, Message_Kind::Change_And_End},
    {MSG_SET_PAN, Set_Pan, Message_Kind::Change, Undo_Join::Gesture},
    {MSG_SET_SOLO, Set_State<SOLO>, Message_Kind::Change},
    {MSG_CLEAR_SOLO, Set_State<SOLO>, Message_Kind::Change},
    {MSG_TOGGLE_SOLO, Toggle_State<SOLO>, Message_Kind::Change},
    {MSG_SET_MUTE, Set_State<MUTE>, Message_Kind::Change},
    {MSG_CLEAR_MUTE, Set_State<MUTE>, Message_Kind::Change},
    {MSG_TOGGLE_MUTE, Toggle_State<MUTE>, Message_Kind::Change},
    {MSG_SET_OUTPUT, Set_Output, Message_Kind::Change},
    {MSG_SET_EFFECTS, Set_Effects, Message_Kind::Change},
    {MSG_ADD_CHANNEL, Add_Channel, Message_Kind::Change_And_End},
};

} // namespace

std::span<const Message_Handler> Channel_Messages() {
    return HANDLERS;
}

} // namespace tonvex
