#pragma once

#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <string>
#include <variant>

namespace tonvex {

/// An argument of a change message; monostate when it is not given.
using Msg_Arg = std::variant<std::monostate, bool, std::int32_t, double, std::string, EventData>;

/// Who sends: the address of the window or object, for telling one's own messages; null for the program.
using Msg_Sender = const void*;

/// The messages that the engine, the project files and the undo send, or whose notices they tell.
inline constexpr int HUB_SET_NAME = 1003;       ///< P1 ChannelID, P2 name
inline constexpr int HUB_DELETE_CHANNEL = 1004; ///< P1 ChannelID
inline constexpr int HUB_SET_OUTPUT = 1012;     ///< P1 ChannelID, P2 slot
inline constexpr int HUB_ADD_CHANNEL = 1013;    ///< P1 name, P2 audio flag, P3 slot or not given
inline constexpr int HUB_REC_EVENT = 1014;      ///< P1 channel row, P2 kind, P3 start in beats, P4 data
inline constexpr int HUB_DELETE_EVENT = 1017;   ///< P1 ChannelID, P2 event ID
inline constexpr int HUB_POSITION_FAMILY = 1100;
inline constexpr int HUB_POSITION_VALUE = 1101; ///< P1 position in beats
inline constexpr int HUB_SONG_POSITION = 1102;  ///< P1 position in beats
inline constexpr int HUB_GENERAL_UPDATE = 1200; ///< no parameters
inline constexpr int HUB_SET_TEMPO = 1302;      ///< P1 beats per minute
inline constexpr int HUB_RECORDER_VALUE = 1400; ///< P1 the song's HubValue1400

/// The door through which every change of the song passes. The engine knows the hub by this alone.
/// Interface thread.
class Change_Hub {
public:
    using Args = std::array<Msg_Arg, 7>; ///< P1 to P7
    virtual ~Change_Hub() = default;
    virtual void Send(Msg_Sender sender, int msg, const Args& args) = 0;
    /// Between the two, which nest, the general update (1200) is held back: for many changes in a row that
    /// the sender closes with a general update of its own.
    virtual void Hold_Update() {}
    virtual void Release_Update() {}
    /// Between the two, which nest, all changes are one undo step. label is that of the menu; empty: that of
    /// the first change.
    virtual void Begin_Step(const std::string& /*label*/) {}
    virtual void End_Step() {}
    /// Inside a step: the events in this channel row are about to be changed without a message.
    virtual void Keep_Events(int /*channelRow*/) {}
    /// Send with the leading arguments spelled out.
    template <typename... Arg>
    void Message(Msg_Sender sender, int msg, Arg&&... arg) {
        static_assert(sizeof...(arg) <= 7);
        Send(sender, msg, Args{Msg_Arg(std::forward<Arg>(arg))...});
    }
};

} // namespace tonvex
