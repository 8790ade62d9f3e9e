#include "app/message_handlers.h"
#include "app/msg_manager.h"
#include "app/session.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace tonvex {

namespace {

/// Two changes of the record mode closer than this are one key press.
constexpr std::int64_t RECORD_MODE_PAUSE_MS = 50;
/// Lengths closer than this differ by rounding alone.
constexpr double SAME_LENGTH_BEATS = 1e-3;

bool Tell_Only(Hub_Call&) {
    return true;
}

bool Position_Value(Hub_Call& call) {
    const auto position = call.Real(1);
    if (!position)
        return false;
    call.hub.PositionValue = *position;
    return true;
}

bool Song_Position(Hub_Call& call) {
    const auto position = call.Real(1);
    if (!position || *position < 0.0)
        return false;
    call.session.transport.PlayPosition = *position;
    return true;
}

/// A song that an edit made shorter takes the map points behind its new end along. A take does not: it may
/// wipe the end before it brings a new one. Whoever puts another song or an earlier state in place tells its
/// length in SongLength first.
bool General_Update(Hub_Call& call) {
    Session& session = call.session;
    const double before = session.project.SongLength;
    session.project.SongLength =
        std::max(session.channels->Longest_Channel_Beats(), session.marks.Last_Beat());
    const bool shorter = session.project.SongLength < before - SAME_LENGTH_BEATS;
    if (shorter && !session.transport.Recording) {
        session.undo->Undo_AllMaps("Shorten song");
        session.channels->Maps.SongLength_Changed(session.project.SongLength);
    }
    return true;
}

bool Transpose_Song(Hub_Call& call) {
    const auto semitones = call.Long(1);
    if (!semitones || *semitones < -127 || *semitones > 127)
        return false;
    call.session.undo->Undo_AllChannels("Transpose song");
    GlobalChannelsManager& channels = *call.session.channels;
    // One update behind all the notes that leave the range and go.
    const MsgManager::Batch batch(call.hub, MsgManager::Batch::Closing_Message_Follows);
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!channels.Is_Live_Row(row))
            continue;
        ChannelClass& store = channels.Store(row);
        std::vector<std::int32_t> eventIds;
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            if (event)
                eventIds.push_back(event->EventID);
        }
        for (const std::int32_t eventId : eventIds)
            store.Set_Event_Note(eventId, NOT_GIVEN, *semitones);
    }
    return true;
}

bool Change_Speed(Hub_Call& call) {
    const auto factor = call.Real(1);
    // A run plays the song as it is: nobody would tell it where everything has gone.
    if (!factor || *factor < 0.001 || *factor > 1000.0 || call.session.transport.Song_Runs())
        return false;
    call.session.undo->Undo_AllChannels("change speed");
    GlobalChannelsManager& channels = *call.session.channels;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (channels.Is_Live_Row(row))
            channels.Store(row).Project_ChangeSpeed(static_cast<float>(*factor));
    }
    channels.Maps.Project_ChangeSpeed(static_cast<float>(*factor));
    // The same song at another pace: its points are still inside.
    call.session.project.SongLength = 0.0;
    return true;
}

bool Insert_Bars(Hub_Call& call) {
    Session& session = call.session;
    const auto bar = call.Long(1);
    const auto count = call.Long(2);
    if (!bar || !count || session.transport.Song_Runs())
        return false;
    session.undo->Undo_AllChannels_MC(*count == 1 ? "add free bar" : "add bars");
    if (!session.creator.Bars_AddFreeBars(*bar, *count))
        return false;
    if (session.settings.Global_MC_BarsOpMovesMidiData == 0)
        return true;
    GlobalChannelsManager& channels = *session.channels;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const std::int32_t channelId = channels.Channels[static_cast<std::size_t>(row)].ChannelID;
        const bool creators = std::any_of(
            session.creator.MC_Tracks.begin(), session.creator.MC_Tracks.end(),
            [&](const MCTrack& track) { return Is_On(track.InUse) && track.ChannelID == channelId; });
        if (channels.Is_Live_Row(row) && !creators)
            channels.Store(row).MC_MoveBarEvents(*bar, *count);
    }
    channels.Maps.MC_MoveBarEvents(*bar, *count);
    return true;
}

/// A run that goes on re-anchors its clock in its next round, so the position does not jump.
void Tempo_Has_Changed(const Hub_Call& call) {
    if (call.session.transport.Song_Runs())
        call.session.transport.TempoChangedRequest = true;
}

std::optional<std::int16_t> Tempo_Of(const Hub_Call& call, int n) {
    const auto tempo = call.Long(n);
    if (!tempo || *tempo < 1 || *tempo > std::numeric_limits<std::int16_t>::max())
        return std::nullopt;
    return static_cast<std::int16_t>(*tempo);
}

std::optional<double> Beat_Of(const Hub_Call& call, int n) {
    const auto beat = call.Real(n);
    return beat && *beat >= 0.0 && *beat < VGetTickCount::NO_CHANGE_BEAT ? beat : std::nullopt;
}

/// The tempo change that P1 names.
std::optional<std::int32_t> Tempo_Change_Of(const Hub_Call& call) {
    const auto id = call.Long(1);
    double beat = 0.0;
    std::int16_t tempo = 0;
    return id && call.session.tempoChanges.GetTempoChange_byID(*id, beat, tempo) ? id : std::nullopt;
}

bool Set_Song_Tempo(Hub_Call& call) {
    const auto tempo = Tempo_Of(call, 1);
    if (!tempo)
        return false;
    call.session.undo->Undo_Song_Tempo("Change tempo");
    call.session.project.ProjectTempo = *tempo;
    Tempo_Has_Changed(call);
    return true;
}

bool Add_Tempo_Change(Hub_Call& call) {
    const auto beat = Beat_Of(call, 1);
    const auto tempo = Tempo_Of(call, 2);
    if (!beat || !tempo || call.session.tempoChanges.ValidTempoBeatN(*beat) != -1)
        return false;
    call.session.undo->Undo_Tempo("Add tempo change");
    call.session.tempoChanges.AddTempoChange(*beat, *tempo);
    Tempo_Has_Changed(call);
    return true;
}

bool Delete_Tempo_Change(Hub_Call& call) {
    const auto id = Tempo_Change_Of(call);
    if (!id)
        return false;
    call.session.undo->Undo_Tempo("Delete tempo change");
    call.session.tempoChanges.DeleteTempoChange(*id);
    Tempo_Has_Changed(call);
    return true;
}

bool Set_Tempo_Change(Hub_Call& call) {
    const auto id = Tempo_Change_Of(call);
    const auto tempo = Tempo_Of(call, 2);
    if (!id || !tempo)
        return false;
    call.session.undo->Undo_Tempo("Modify tempo change BPM");
    call.session.tempoChanges.SetTempoChange(*id, -1.0, *tempo);
    Tempo_Has_Changed(call);
    return true;
}

bool Move_Tempo_Change(Hub_Call& call) {
    const auto id = Tempo_Change_Of(call);
    const auto beat = Beat_Of(call, 2);
    // Two changes never stand at one position.
    if (!id || !beat || call.session.tempoChanges.ValidTempoBeatN(*beat) != -1)
        return false;
    call.session.undo->Undo_Tempo("Modify tempo change position");
    call.session.tempoChanges.SetTempoChange(*id, *beat, -1);
    Tempo_Has_Changed(call);
    return true;
}

bool Speed_Label(Hub_Call& call) {
    call.noticeText = call.session.options.PlayAtRecSpeed ? "Rec/Play Speed:" : "Rec Speed:";
    return true;
}

bool Record_Mode(Hub_Call& call) {
    const auto mode = call.Long(1);
    const std::int64_t nowMs = call.session.doors.counter.Now_Ms();
    if (!mode || nowMs - call.hub.RecordModeMs < RECORD_MODE_PAUSE_MS)
        return false;
    call.hub.RecordModeMs = nowMs;
    call.session.options.Overwrite = *mode == 1;
    return true;
}

constexpr Message_Handler HANDLERS[] = {
    {MSG_POSITION_FAMILY, Tell_Only, Message_Kind::View},
    {MSG_POSITION_VALUE, Position_Value, Message_Kind::View},
    {MSG_SONG_POSITION, Song_Position, Message_Kind::View},
    {MSG_GENERAL_UPDATE, General_Update, Message_Kind::View, Undo_Join::Follows},
    {MSG_SHOW_POSITION, Tell_Only, Message_Kind::View},
    {MSG_INSERT_BARS, Insert_Bars, Message_Kind::Change_And_End},
    {MSG_TRANSPOSE_SONG, Transpose_Song, Message_Kind::Change_And_End},
    {MSG_CHANGE_SPEED, Change_Speed, Message_Kind::Change_And_End},
    {MSG_SET_TEMPO, Set_Song_Tempo, Message_Kind::Change_And_End, Undo_Join::Song_Gesture},
    {MSG_RECORDER_VALUE, Tell_Only, Message_Kind::View},
    {MSG_SPEED_LABEL, Speed_Label, Message_Kind::View},
    {MSG_RECORD_MODE, Record_Mode, Message_Kind::View},
    {MSG_ADD_TEMPO_CHANGE, Add_Tempo_Change, Message_Kind::Change_And_End},
    {MSG_DELETE_TEMPO_CHANGE, Delete_Tempo_Change, Message_Kind::Change_And_End},
    {MSG_SET_TEMPO_CHANGE, Set_Tempo_Change, Message_Kind::Change_And_End},
    {MSG_MOVE_TEMPO_CHANGE, Move_Tempo_Change, Message_Kind::Change_And_End},
};

} // namespace

std::span<const Message_Handler> Song_Messages() {
    return HANDLERS;
}

} // namespace tonvex
