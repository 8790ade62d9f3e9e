#include "app/function_key_runner.h"

#include "app/channel_commands.h"
#include "app/session.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr int PAN_STEP = 6;
constexpr int PAN_CENTRE = 64;
constexpr int MOST_PAN = 127;
constexpr int VOLUME_STEP = 10;
/// The keys raise a volume to here; a slider that stands higher is not pulled down by them.
constexpr int VOLUME_KEYS_MOST = 100;
constexpr std::int32_t BLEND = 0;
constexpr std::int32_t OVERWRITE = 1;

} // namespace

Function_Key_Runner::Function_Key_Runner(Session& owner) : session(owner) {
    Set_Channel_Actions();
}

void Function_Key_Runner::Stop_Timer() {
    if (GlobalKeyPressTimer)
        GlobalKeyPressTimer(false);
}

void Function_Key_Runner::Note_Key(int keyCode, int shiftMask) {
    PendingKey = keyCode;
    PendingShift = shiftMask;
    PendingFunction = -1;
    if (GlobalKeyPressTimer)
        GlobalKeyPressTimer(true);
}

void Function_Key_Runner::Global_Key_Tick(bool modal) {
    if (modal)
        return;
    Stop_Timer();
    if (PendingKey == KEYCODE_SHIFT || PendingKey == KEYCODE_CONTROL)
        return;
    if (session.doors.counter.Now_Ms() - KeysHoldTime < HOLD_MS)
        return;
    FunctionKey_Run(PendingKey, PendingShift, PendingFunction);
    PendingKey = 0;
    PendingShift = 0;
    PendingFunction = -1;
}

void Function_Key_Runner::HoldGlobalKeys() {
    Stop_Timer();
    KeysHoldTime = session.doors.counter.Now_Ms();
}

void Function_Key_Runner::FunctionKey_Run(int keyCode, int shiftMask, int row) {
    const Function_Key_Table& table = session.functionKeys;
    if (row == -1)
        row = table.Row_Of_Key(keyCode, shiftMask);
    if (row < 0 || row >= static_cast<int>(Function_Key_Table::ROWS))
        return;
    const FunctionKey& function = table.FunctionKeys[static_cast<std::size_t>(row)];
    const bool running = session.transport.Song_Runs() || session.recorder->IsRunning();
    if (running && function.WhileRunning == 0)
        return;
    Act(function.InternalName);
}

void Function_Key_Runner::Act(std::string_view internalName) {
    const auto found = actions.find(internalName);
    if (found == actions.end())
        return;
    // What it does may set actions anew.
    const std::function<void()> act = found->second;
    act();
}

void Function_Key_Runner::Set_Action(const std::string& internalName, std::function<void()> act) {
    if (act)
        actions[internalName] = std::move(act);
    else
        actions.erase(internalName);
}

bool Function_Key_Runner::Has_Action(std::string_view internalName) const {
    return actions.contains(internalName);
}

// ---- what needs no window ----

template <typename Change>
void Function_Key_Runner::With_Channel(const Change& change) {
    const std::int32_t channelId = selectedChannel ? selectedChannel() : NOT_GIVEN;
    const int row = session.channels->ChannelI(channelId);
    if (row >= 0)
        change(channelId, session.channels->Channels[static_cast<std::size_t>(row)]);
}

void Function_Key_Runner::Change_Pan(int delta) {
    With_Channel([this, delta](std::int32_t channelId, const GlobalChannel& channel) {
        session.hub->Message(this, MSG_SET_PAN, channelId,
                             std::int32_t{std::clamp(channel.Pan + delta, 0, MOST_PAN)});
    });
}

void Function_Key_Runner::Change_Volume(int delta) {
    With_Channel([this, delta](std::int32_t channelId, const GlobalChannel& channel) {
        const int before = channel.Volume;
        const int after = std::clamp(before + delta, 0, std::max(before, VOLUME_KEYS_MOST));
        if (after != before)
            session.hub->Message(this, MSG_SET_VOLUME, channelId, std::int32_t{after});
    });
}

void Function_Key_Runner::Set_Channel_Actions() {
    const auto send = [this](const char* name, int message, auto... value) {
        Set_Action(name, [this, message, value...] {
            With_Channel([this, message, value...](std::int32_t channelId, const GlobalChannel&) {
                session.hub->Message(this, message, channelId, value...);
            });
        });
    };
    const auto mode = [this](const char* name, std::int32_t value) {
        Set_Action(name, [this, value] { session.hub->Message(this, MSG_RECORD_MODE, value); });
    };
    Set_Action("Move channel Pan 10% Right", [this] { Change_Pan(PAN_STEP); });
    Set_Action("Move channel Pan 10% Left", [this] { Change_Pan(-PAN_STEP); });
    send("Center channel Pan", MSG_SET_PAN, std::int32_t{PAN_CENTRE});
    Set_Action("Increase channel volume 10%", [this] { Change_Volume(VOLUME_STEP); });
    Set_Action("Decrease channel volume 10%", [this] { Change_Volume(-VOLUME_STEP); });
    send("Mute Channel", MSG_SET_MUTE, true);
    send("Solo Channel", MSG_SET_SOLO, true);
    send("Toggle channel Mute on/off", MSG_TOGGLE_MUTE);
    send("Toggle channel Solo on/off", MSG_TOGGLE_SOLO);
    mode("Set record mode: blend", BLEND);
    mode("Set record mode: overwrite", OVERWRITE);
    Set_Action("Clear all channels mute/solo status", [this] { Clear_All_Status(session); });
    Set_Action("Align channel events", [this] {
        With_Channel([this](std::int32_t channelId, const GlobalChannel&) {
            Align_Channel_Events(session, channelId);
        });
    });
}

} // namespace tonvex
