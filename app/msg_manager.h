#pragma once

#include "app/event_raiser_class.h"
#include "app/message_handlers.h"
#include "app/messages.h"
#include "song/change_hub.h"

#include <cstdint>
#include <unordered_map>

namespace tonvex {

class Session;

/// The hub: finds the row, changes the model, sets the modified flag, tells the views through the session's
/// event raiser. Interface thread. An unknown message or channel does nothing.
class MsgManager final : public Change_Hub {
public:
    /// session owns the hub.
    explicit MsgManager(Session& owner);
    void Send(Msg_Sender sender, int msg, const Args& args) override;
    void Hold_Update() override { ++batches; }
    void Release_Update() override;
    void Begin_Step(const std::string& label) override;
    void End_Step() override;
    void Keep_Events(int channelRow) override;

    /// Holds the general update (1200) back while it lives. At its end one is sent, if any was due, for many
    /// deletions in a row; or none, when a closing message is still to come. What is changed in it is one
    /// undo step.
    class Batch {
    public:
        enum Ending { Update_At_End, Closing_Message_Follows };
        explicit Batch(MsgManager& manager, Ending how = Update_At_End, const std::string& label = {})
            : hub(manager), ending(how) {
            ++hub.batches;
            hub.Begin_Step(label);
        }
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        MsgManager& hub;
        Ending ending;
    };

    Msg_Sender Last_Sender() const noexcept { return lastSender; }
    Msg_Sender Sender_Before() const noexcept { return senderBefore; }
    int Last_Msg() const noexcept { return lastMsg; }
    int Msg_Before() const noexcept { return msgBefore; }

    // what the handlers keep between messages
    double PositionValue = 0.0;        ///< of message 1101, beats
    std::int64_t RecordModeMs = NEVER; ///< when message 1403 was last heeded
    static constexpr std::int64_t NEVER = -1'000'000'000;

private:
    void Update_Due(Msg_Sender sender);

    Session& session;
    std::unordered_map<int, const Message_Handler*> handlers;
    Msg_Sender lastSender = nullptr;
    Msg_Sender senderBefore = nullptr;
    int lastMsg = 0;
    int msgBefore = 0;
    int batches = 0;
    bool updateHeldBack = false;
};

} // namespace tonvex
