#include "app/msg_manager.h"

#include "app/session.h"
#include "base/rounding.h"

#include <cmath>
#include <limits>
#include <utility>

namespace tonvex {

namespace {

const Msg_Arg& Argument(const Change_Hub::Args& args, int n) {
    return args[static_cast<std::size_t>(n - 1)];
}

} // namespace

bool Hub_Call::Given(int n) const {
    return !std::holds_alternative<std::monostate>(Argument(args, n));
}

std::optional<double> Hub_Call::Real(int n) const {
    const Msg_Arg& arg = Argument(args, n);
    double value = 0.0;
    if (const auto* real = std::get_if<double>(&arg))
        value = *real;
    else if (const auto* whole = std::get_if<std::int32_t>(&arg))
        value = *whole;
    else if (const auto* flag = std::get_if<bool>(&arg))
        value = *flag ? 1.0 : 0.0;
    else
        return std::nullopt;
    if (!std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<std::int32_t> Hub_Call::Long(int n) const {
    const auto value = Real(n);
    constexpr double LOWEST = std::numeric_limits<std::int32_t>::min();
    constexpr double HIGHEST = std::numeric_limits<std::int32_t>::max();
    if (!value || *value < LOWEST || *value > HIGHEST)
        return std::nullopt;
    return static_cast<std::int32_t>(RoundHalfEven(*value));
}

std::optional<bool> Hub_Call::Flag(int n) const {
    const auto value = Real(n);
    if (!value)
        return std::nullopt;
    return *value != 0.0;
}

std::optional<std::string> Hub_Call::Text(int n) const {
    const auto* text = std::get_if<std::string>(&Argument(args, n));
    if (text == nullptr)
        return std::nullopt;
    return *text;
}

const EventData* Hub_Call::Event(int n) const {
    return std::get_if<EventData>(&Argument(args, n));
}

MsgManager::MsgManager(Session& owner) : session(owner) {
    for (const auto family :
         {Channel_Messages(), Event_Messages(), Song_Messages(), Mark_Messages(), Map_Messages()})
        for (const Message_Handler& handler : family)
            handlers.emplace(handler.msg, &handler);
}

void MsgManager::Send(Msg_Sender sender, int msg, const Args& args) {
    msgBefore = std::exchange(lastMsg, msg);
    senderBefore = std::exchange(lastSender, sender);
    const auto found = handlers.find(msg);
    if (found == handlers.end())
        return;
    const Message_Handler& handler = *found->second;
    Hub_Call call{session, *this, args, 0, {}};
    call.noticeParam = call.Long(1).value_or(0);
    const std::int32_t about = handler.join == Undo_Join::Song_Gesture ? 0 : call.noticeParam;
    session.undo->Begin_Message({handler.join, msg, about, sender});
    if (handler.Carry_Out(call)) {
        const bool changes =
            handler.kind == Message_Kind::Change || handler.kind == Message_Kind::Change_And_End;
        if (changes && session.undo->Message_Changed())
            session.project.Modified = true;
        session.events.PassMsg(msg, call.noticeParam, call.noticeText);
        if (handler.kind == Message_Kind::Change_And_End || handler.kind == Message_Kind::End_Of_Batch)
            Update_Due(sender);
    }
    session.undo->End_Message();
}

void MsgManager::Update_Due(Msg_Sender sender) {
    if (batches > 0)
        updateHeldBack = true;
    else
        Message(sender, MSG_GENERAL_UPDATE);
}

void MsgManager::Begin_Step(const std::string& label) {
    session.undo->Begin_Step(label);
}

void MsgManager::End_Step() {
    session.undo->End_Step();
}

void MsgManager::Keep_Events(int channelRow) {
    session.undo->Undo_Channel({}, channelRow);
}

void MsgManager::Release_Update() {
    if (--batches == 0)
        updateHeldBack = false;
}

MsgManager::Batch::~Batch() {
    if (--hub.batches == 0 && std::exchange(hub.updateHeldBack, false) && ending == Update_At_End)
        hub.Message(hub.lastSender, MSG_GENERAL_UPDATE);
    hub.End_Step();
}

} // namespace tonvex
