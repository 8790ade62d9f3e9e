#pragma once

#include "project/undo_module.h"
#include "song/change_hub.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tonvex {

class MsgManager;
class Session;

/// One message on its way through the hub.
struct Hub_Call {
    Session& session;
    MsgManager& hub;
    const Change_Hub::Args& args;
    std::int32_t noticeParam; ///< goes out with the notice: P1, when it is an integer
    std::string noticeText;

    bool Given(int n) const;
    /// Arguments by number, 1 to 7. Numbers convert into each other (a fraction rounds half to even);
    /// nothing when the argument is missing, of another type, not finite or out of range.
    std::optional<std::int32_t> Long(int n) const;
    std::optional<double> Real(int n) const;
    std::optional<bool> Flag(int n) const;
    std::optional<std::string> Text(int n) const;
    const EventData* Event(int n) const;
};

enum class Message_Kind {
    View,           ///< tells, changes nothing of the song
    Change,         ///< sets the modified flag
    Change_And_End, ///< a change by itself: the song's length and the views follow at once
    End_Of_Batch    ///< the song's length and the views follow
};

struct Message_Handler {
    int msg;
    /// False when the message has nothing to act on (unknown channel, event or absurd value): then nothing
    /// is changed and nobody is told. What it is about to change it tells to the session's undo first.
    bool (*Carry_Out)(Hub_Call& call);
    Message_Kind kind;
    Undo_Join join = Undo_Join::Alone;
};

std::span<const Message_Handler> Channel_Messages();
std::span<const Message_Handler> Event_Messages();
std::span<const Message_Handler> Song_Messages();
std::span<const Message_Handler> Mark_Messages();
std::span<const Message_Handler> Map_Messages();

} // namespace tonvex
