#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// Bits of a shift mask, as keys carry them.
inline constexpr int SHIFT_KEY = 1;
inline constexpr int CONTROL_KEY = 2;
inline constexpr int ALT_KEY = 4;

/// Virtual key codes that are no keys of functions.
inline constexpr int KEYCODE_SHIFT = 16;
inline constexpr int KEYCODE_CONTROL = 17;
inline constexpr int KEYCODE_ESCAPE = 27;

/// One function that a key can run.
struct FunctionKey {
    std::uint8_t KeyCode = 0;      ///< virtual key code, 0 for no key
    std::string Name;              ///< what the user reads, who may change it
    std::string InternalName;      ///< what the dispatcher compares; never changes
    std::int16_t Locked = 0;       ///< -1: nobody else takes its key, and it takes no other
    std::uint8_t Modifier = 0;     ///< shift mask
    std::int16_t WhileRunning = 0; ///< -1: works while the transport records or plays too
    bool operator==(const FunctionKey&) const = default;
};

/// The functions and their keys, a value. Rows FILLED and up are spare. Two rows may hold one key: the first
/// has it. Interface thread.
class Function_Key_Table {
public:
    static constexpr std::size_t ROWS = 81;
    static constexpr std::size_t FILLED = 56;
    static constexpr std::size_t KEY_CODES = 256;

    Function_Key_Table() { FunctionKeys_Init(); }

    std::array<FunctionKey, ROWS> FunctionKeys;
    std::array<std::string, KEY_CODES> KeyNames; ///< by virtual key code; empty: no function can have it

    /// The table as it ships.
    void FunctionKeys_Init();
    /// Key, modifier and name of every row whose record is there and has a name; the rest of a file that is
    /// missing, cut off or no such file leaves the rows as they are.
    void FunctionKeys_Load(const std::filesystem::path& file);
    void FunctionKeys_Read(std::span<const std::uint8_t> bytes);
    /// Replaces the file in one step; false with the reason when that fails.
    bool FunctionKeys_Save(const std::filesystem::path& file, std::string& error) const;
    std::vector<std::uint8_t> FunctionKeys_Bytes() const;

    /// First row with this key, -1 when there is none. No row has key code 0.
    int Row_Of_Key(int keyCode, int shiftMask) const noexcept;
    /// -1 when there is none.
    int Row_Of_Function(std::string_view internalName) const noexcept;
    /// Modifier and key as "Ctrl + R"; empty without a key.
    std::string Key_Text(int row) const;

    enum class Key_Use {
        Free,
        Used,        ///< another function has the key, and would lose it
        Reserved,    ///< a locked function has it
        Unsupported, ///< no function can have it
        Row_Locked   ///< the row's own key cannot be changed
    };
    /// What stands against this key for the row.
    Key_Use Use_Of_Key(int row, int keyCode, int shiftMask) const;
    /// Gives the row the key; every other row that has it goes without. False, with nothing changed, when
    /// Use_Of_Key is neither Free nor Used.
    bool Assign_Key(int row, int keyCode, int shiftMask);
    /// False when the text is blank or the row is none.
    bool Rename(int row, const std::string& name);

private:
    bool Is_Function(int row) const noexcept;
};

} // namespace tonvex
