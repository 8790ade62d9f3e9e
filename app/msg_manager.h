#pragma once

#include "app/event_raiser_class.h"
#include "app/messages.h"
#include "song/change_hub.h"

#include <cstdint>

namespace tonvex {

class Session;

/// The hub: finds the row, changes the model, sets the modified flag, tells the views. Interface thread.
/// An unknown message or channel does nothing.
class MsgManager final : public Change_Hub {
public:
    explicit MsgManager(Session& session);
    void Send(Msg_Sender sender, int msg, const Args& args) override;

    Msg_Sender Last_Sender() const noexcept { return lastSender; }
    Msg_Sender Sender_Before() const noexcept { return senderBefore; }
    int Last_Msg() const noexcept { return lastMsg; }
    int Msg_Before() const noexcept { return msgBefore; }

private:
    Session& session;
    Msg_Sender lastSender = nullptr;
    Msg_Sender senderBefore = nullptr;
    int lastMsg = 0;
    int msgBefore = 0;
};

} // namespace tonvex
