#pragma once

#include "app/function_keys.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tonvex {

class Session;

/// Runs the functions of the table: by a key that a window notes down and a timer carries out, or by row.
/// Who can do what a function asks for says so with Set_Action. Interface thread.
class Function_Key_Runner {
public:
    static constexpr std::int64_t HOLD_MS = 1000; ///< a key this soon after a dialog is lost

    /// session owns the runner. What works on the channels alone is set here.
    explicit Function_Key_Runner(Session& session);

    /// Starts (true) and stops the timer whose ticks come to Global_Key_Tick.
    std::function<void(bool on)> GlobalKeyPressTimer;
    /// ChannelID of the selected channel; NOT_GIVEN when none is, as without a window.
    std::function<std::int32_t()> selectedChannel;

    // the key that was pressed last and has not been run
    int PendingKey = 0;
    int PendingShift = 0;
    int PendingFunction = -1;             ///< row, -1 for none
    std::int64_t KeysHoldTime = LONG_AGO; ///< ms of the session's counter when keys were last held off

    /// A key went down in a window that passes its keys on. The one before it that has not run is replaced.
    void Note_Key(int keyCode, int shiftMask);
    /// One tick. modal: a window stands in front of all others, or a menu is open.
    void Global_Key_Tick(bool modal);
    /// A window takes over the keyboard, or gives it back.
    void HoldGlobalKeys();
    /// The row, or with -1 the first one that has the key. Silent when there is none, or when the transport
    /// runs and the row does not work then.
    void FunctionKey_Run(int keyCode, int shiftMask, int row);
    /// The function itself, whatever runs: for menus and buttons. Silent when nobody does it.
    void Act(std::string_view internalName);
    void Set_Action(const std::string& internalName, std::function<void()> act);
    bool Has_Action(std::string_view internalName) const;

private:
    static constexpr std::int64_t LONG_AGO = -1'000'000'000;

    void Set_Channel_Actions();
    void Change_Pan(int delta);
    void Change_Volume(int delta);
    void Stop_Timer();
    template <typename Change>
    void With_Channel(const Change& change);

    Session& session;
    std::map<std::string, std::function<void()>, std::less<>> actions;
};

} // namespace tonvex
