#pragma once

#include <QKeySequence>

class QKeyEvent;

namespace tonvex {

/// The virtual key code of a key event, as the table of functions counts them; 0 for a key that has none.
/// Independent of the keyboard's layout where that helps: the digits of the upper row are digits by their
/// place, and a letter of another script is the Latin one of its place. A key of the number pad is that key
/// whether Num Lock is on or not; its Enter is Enter.
int Virtual_Key_Of(const QKeyEvent& event);

/// The shift mask of a key event: 1 Shift, 2 Control, 4 Alt. A modifier that is pressed itself counts not.
int Shift_Mask_Of(const QKeyEvent& event);

/// The key as menus show it; empty for code 0 and for codes that no function can have.
QKeySequence Shown_Key(int keyCode, int shiftMask);

/// Whether a shortcut's first key is the one of a function.
bool Is_Key_Of(const QKeySequence& shortcut, int keyCode, int shiftMask);

} // namespace tonvex
