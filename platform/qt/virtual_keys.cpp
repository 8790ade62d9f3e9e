#include "platform/qt/virtual_keys.h"

#include "platform/qt/native_scan_codes.h"

#include <QKeyEvent>

#include <array>

namespace tonvex {

namespace {

constexpr int SHIFT = 1;
constexpr int CONTROL = 2;
constexpr int ALT = 4;
constexpr int NUMPAD_0 = 96;
constexpr int F1_CODE = 112;
constexpr int LAST_F_KEY = 24;
constexpr int FIRST_DIGIT_SCAN = 2; ///< 1 to 9, then 0
constexpr int LAST_DIGIT_SCAN = 11;

struct Key_Pair {
    int key; ///< Qt::Key
    int code;
};

constexpr Key_Pair PLAIN[] = {
    {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},      {Qt::Key_Enter, 13},
    {Qt::Key_Return, 13},   {Qt::Key_Shift, 16},    {Qt::Key_Control, 17},     {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},      {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},         {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},     {Qt::Key_Up, 38},       {Qt::Key_Right, 39},       {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},    {Qt::Key_Insert, 45},   {Qt::Key_Delete, 46},      {Qt::Key_Meta, 91},
    {Qt::Key_Menu, 93},     {Qt::Key_NumLock, 144}, {Qt::Key_ScrollLock, 145},
};

constexpr Key_Pair NUMBER_PAD[] = {
    {Qt::Key_Insert, 96}, {Qt::Key_End, 97},     {Qt::Key_Down, 98},      {Qt::Key_PageDown, 99},
    {Qt::Key_Left, 100},  {Qt::Key_Clear, 101},  {Qt::Key_Right, 102},    {Qt::Key_Home, 103},
    {Qt::Key_Up, 104},    {Qt::Key_PageUp, 105}, {Qt::Key_Asterisk, 106}, {Qt::Key_Plus, 107},
    {Qt::Key_Minus, 109}, {Qt::Key_Delete, 110}, {Qt::Key_Period, 110},   {Qt::Key_Comma, 110},
    {Qt::Key_Slash, 111}, {Qt::Key_Enter, 13},   {Qt::Key_Return, 13},
};

/// By scan code; blank where no letter is.
constexpr std::array<char, 51> LETTER_PLACES = [] {
    std::array<char, 51> places{};
    constexpr const char* ROWS[] = {"QWERTYUIOP", "ASDFGHJKL", "ZXCVBNM"};
    constexpr std::size_t FIRST[] = {16, 30, 44};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t i = 0; ROWS[row][i] != '\0'; ++i)
            places[FIRST[row] + i] = ROWS[row][i];
    return places;
}();

template <std::size_t Size>
int Code_Of(const Key_Pair (&pairs)[Size], int key) {
    for (const Key_Pair& pair : pairs)
        if (pair.key == key)
            return pair.code;
    return 0;
}

template <std::size_t Size>
int Key_Of(const Key_Pair (&pairs)[Size], int code) {
    for (const Key_Pair& pair : pairs)
        if (pair.code == code)
            return pair.key;
    return 0;
}

bool Is_Latin_Letter(int key) {
    return key >= Qt::Key_A && key <= Qt::Key_Z;
}

bool Is_Digit(int key) {
    return key >= Qt::Key_0 && key <= Qt::Key_9;
}

int Number_Pad_Code(int key) {
    return Is_Digit(key) ? NUMPAD_0 + key - Qt::Key_0 : Code_Of(NUMBER_PAD, key);
}

/// What a place of the main block stands for in the layout of the codes; 0 for none that is known.
int Code_Of_Place(int scanCode, int key) {
    if (scanCode >= FIRST_DIGIT_SCAN && scanCode <= LAST_DIGIT_SCAN)
        return scanCode == LAST_DIGIT_SCAN ? '0' : '1' + scanCode - FIRST_DIGIT_SCAN;
    // What types a sign of Latin script is that sign's key.
    const bool otherScript = key > 0xFF && key < Qt::Key_Escape;
    return otherScript && scanCode < static_cast<int>(LETTER_PLACES.size())
               ? LETTER_PLACES[static_cast<std::size_t>(scanCode)]
               : 0;
}

} // namespace

int Virtual_Key_Of(const QKeyEvent& event) {
    const int key = event.key();
    if ((event.modifiers() & Qt::KeypadModifier) != 0)
        return Number_Pad_Code(key);
    if (key >= Qt::Key_F1 && key < Qt::Key_F1 + LAST_F_KEY)
        return F1_CODE + key - Qt::Key_F1;
    if (const int code = Code_Of(PLAIN, key))
        return code;
    if (Is_Latin_Letter(key))
        return key;
    if (const int code = Code_Of_Place(Scan_Code_Of_Native(event.nativeScanCode()), key))
        return code;
    return Is_Digit(key) ? key : 0;
}

int Shift_Mask_Of(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers();
    int mask = 0;
    if ((held & Qt::ShiftModifier) != 0 && event.key() != Qt::Key_Shift)
        mask |= SHIFT;
    if ((held & Qt::ControlModifier) != 0 && event.key() != Qt::Key_Control)
        mask |= CONTROL;
    if ((held & Qt::AltModifier) != 0 && event.key() != Qt::Key_Alt)
        mask |= ALT;
    return mask;
}

QKeySequence Shown_Key(int keyCode, int shiftMask) {
    Qt::KeyboardModifiers held;
    held.setFlag(Qt::ShiftModifier, (shiftMask & SHIFT) != 0);
    held.setFlag(Qt::ControlModifier, (shiftMask & CONTROL) != 0);
    held.setFlag(Qt::AltModifier, (shiftMask & ALT) != 0);
    int key = 0;
    if (keyCode >= F1_CODE && keyCode < F1_CODE + LAST_F_KEY)
        key = Qt::Key_F1 + keyCode - F1_CODE;
    else if ((keyCode >= '0' && keyCode <= '9') || (keyCode >= 'A' && keyCode <= 'Z'))
        key = keyCode;
    else
        key = Key_Of(PLAIN, keyCode);
    if (key == 0) {
        held.setFlag(Qt::KeypadModifier);
        key = keyCode >= NUMPAD_0 && keyCode <= NUMPAD_0 + 9 ? Qt::Key_0 + keyCode - NUMPAD_0
                                                             : Key_Of(NUMBER_PAD, keyCode);
        if (keyCode == Code_Of(NUMBER_PAD, Qt::Key_Period))
            key = Qt::Key_Period;
    }
    return key == 0 ? QKeySequence() : QKeySequence(QKeyCombination(held, static_cast<Qt::Key>(key)));
}

bool Is_Key_Of(const QKeySequence& shortcut, int keyCode, int shiftMask) {
    if (shortcut.isEmpty() || keyCode == 0)
        return false;
    const QKeyCombination first = shortcut[0];
    const QKeyEvent event(QEvent::KeyPress, first.key(), first.keyboardModifiers());
    return Virtual_Key_Of(event) == keyCode && Shift_Mask_Of(event) == shiftMask;
}

} // namespace tonvex
