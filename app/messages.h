#pragma once

#include "song/change_hub.h"

namespace tonvex {

/// Numbers of the change messages. P1 is the ChannelID unless said otherwise, and the parameters listed are
/// those behind it; a message that is not about a channel has no ChannelID. Times and lengths in beats. Where
/// a new value and a delta are listed, one of them is given.
enum Change_Message : int {
    MSG_SET_PATCH = 1001,        ///< patch row
    MSG_SET_VOLUME = 1002,       ///< volume 0 to 127
    MSG_SET_NAME = HUB_SET_NAME, ///< name
    MSG_DELETE_CHANNEL = HUB_DELETE_CHANNEL,
    MSG_SET_PAN = 1005,    ///< pan 0 to 127
    MSG_SET_SOLO = 1006,   ///< value
    MSG_CLEAR_SOLO = 1007, ///< value
    MSG_TOGGLE_SOLO = 1008,
    MSG_SET_MUTE = 1009,   ///< value
    MSG_CLEAR_MUTE = 1010, ///< value
    MSG_TOGGLE_MUTE = 1011,
    MSG_SET_OUTPUT = HUB_SET_OUTPUT,   ///< slot
    MSG_ADD_CHANNEL = HUB_ADD_CHANNEL, ///< P1 name, P2 audio flag, P3 slot or not given
    MSG_REC_EVENT = HUB_REC_EVENT,     ///< P1 channel row, P2 kind, P3 time, P4 data
    /// event ID of one that was added; or not given, start, data: the hub adds it. The notice's text is the
    /// ID.
    MSG_EVENT_ADDED = 1015,
    MSG_EVENTS_ADDED_END = 1016,
    MSG_DELETE_EVENT = HUB_DELETE_EVENT, ///< event ID
    MSG_MOVE_EVENT = 1018,               ///< event ID, new time, delta
    MSG_MOVE_END = 1019,
    MSG_LENGTH_EVENT = 1020, ///< event ID, new length, delta
    MSG_LENGTH_END = 1021,
    MSG_NOTE_EVENT = 1022, ///< event ID, new note, delta
    MSG_NOTE_END = 1023,
    MSG_PROPERTIES_EVENT = 1024, ///< event ID, data
    MSG_PROPERTIES_END = 1025,
    MSG_VOLUME_EVENT = 1026, ///< event ID, volume, delta
    MSG_VOLUME_END = 1027,
    /// effect 0 to 4 (Effect_Kind) or its name, on flag, record as hex digits; what is not given stays. Of
    /// the output that the channel is on; without an effect the output is set anew.
    MSG_SET_EFFECTS = 1030,
    MSG_CHORD_TYPE_EVENT = 1031, ///< event ID, chord type
    MSG_CHORD_TYPE_END = 1032,
    MSG_POSITION_FAMILY = HUB_POSITION_FAMILY,
    MSG_POSITION_VALUE = HUB_POSITION_VALUE, ///< P1 position
    MSG_SONG_POSITION = HUB_SONG_POSITION,   ///< P1 position
    MSG_GENERAL_UPDATE = HUB_GENERAL_UPDATE,
    MSG_SHOW_POSITION = 1201, ///< P1 position

    // Marks. The notice tells the mark's row and, as text, its name; the mark's going is told before, too.
    MSG_ADD_MARK = 1202,    ///< P1 start, P2 end or not given for a plain mark, P3 name or not given
    MSG_DELETE_MARK = 1203, ///< P1 row
    MSG_CHANGE_MARK = 1204, ///< P1 row, P2 name
    MSG_MOVE_MARK = 1225,   ///< P1 row, P2 start, P3 end; one of both may stay away: as Song_Marks::Move_Mark

    // Map windows. Nothing changes: the window layer hears the notice, whose text is the window's title.
    MSG_OPEN_PAN_MAP = 1205,          ///< P1 slot
    MSG_OPEN_VOLUME_MAP = 1206,       ///< P1 slot
    MSG_OPEN_AUDIO_PAN_MAP = 1207,    ///< of an audio channel
    MSG_OPEN_AUDIO_VOLUME_MAP = 1208, ///< of an audio channel
    MSG_OPEN_AUDIO_MAPS = 1238,       ///< of an audio channel: 1208 and 1207

    // Points of the maps of a slot; P1 slot. One message a point, then the closing message of the gesture,
    // which has the slot alone. The text of a notice is the point's ID: of an added and of a moved point the
    // new one. A point's going is told before, too.
    MSG_PAN_ADD_POINT = 1209, ///< P2 time, P3 value or not given for the value that the map has there
    MSG_PAN_ADD_END = 1210,
    MSG_PAN_DELETE_POINT = 1211, ///< P2 point ID
    MSG_PAN_DELETE_END = 1212,
    MSG_PAN_MOVE_POINT = 1213, ///< P2 point ID, P3 new time, P4 delta, P5 new value or not given
    MSG_PAN_MOVE_END = 1214,
    MSG_PAN_SET_POINT = 1215, ///< P2 point ID, P3 new value, P4 delta
    MSG_PAN_SET_END = 1216,
    // The same for the volume map.
    MSG_VOLUME_ADD_POINT = 1217,
    MSG_VOLUME_ADD_END = 1218,
    MSG_VOLUME_DELETE_POINT = 1219,
    MSG_VOLUME_DELETE_END = 1220,
    MSG_VOLUME_MOVE_POINT = 1221,
    MSG_VOLUME_MOVE_END = 1222,
    MSG_VOLUME_SET_POINT = 1223,
    MSG_VOLUME_SET_END = 1224,
    // The same for the maps of an audio channel, with the ChannelID for the slot and without closing
    // messages.
    MSG_AUDIO_PAN_ADD_POINT = 1230,
    MSG_AUDIO_PAN_DELETE_POINT = 1231,
    MSG_AUDIO_PAN_MOVE_POINT = 1232,
    MSG_AUDIO_PAN_SET_POINT = 1233,
    MSG_AUDIO_VOLUME_ADD_POINT = 1234,
    MSG_AUDIO_VOLUME_DELETE_POINT = 1235,
    MSG_AUDIO_VOLUME_MOVE_POINT = 1236,
    MSG_AUDIO_VOLUME_SET_POINT = 1237,

    /// P1 bar from 0, P2 number of bars: free bars come in before that bar. What is behind moves: all of the
    /// music creator and, with Global_MC_BarsOpMovesMidiData, the events of the other channels and the maps.
    MSG_INSERT_BARS = 1501,

    MSG_TRANSPOSE_SONG = 1300,     ///< P1 semitones
    MSG_CHANGE_SPEED = 1301,       ///< P1 factor
    MSG_SET_TEMPO = HUB_SET_TEMPO, ///< P1 tempo
    /// P1 value; nothing changes: the recorder's window hears the notice.
    MSG_RECORDER_VALUE = HUB_RECORDER_VALUE,
    MSG_SPEED_LABEL = 1402,
    MSG_RECORD_MODE = 1403,         ///< P1: 1 overwrite, 0 blend
    MSG_ADD_TEMPO_CHANGE = 1600,    ///< P1 position, P2 tempo
    MSG_DELETE_TEMPO_CHANGE = 1601, ///< P1 ID
    MSG_SET_TEMPO_CHANGE = 1602,    ///< P1 ID, P2 tempo
    MSG_MOVE_TEMPO_CHANGE = 1701    ///< P1 ID, P2 position
};

} // namespace tonvex
