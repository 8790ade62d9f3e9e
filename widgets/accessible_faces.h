#pragma once

namespace tonvex {

/// Gives the controls of ours their roles, and lets assistive tools ask a Level_Meter for its level (dB below
/// full scale, -48 to 0), a Piano_View for the notes that sound, a Segment_Selector and a Zoom_Scroll_Bar for
/// their places. They are asked: nothing is told at the pace of the sound. Calls after the first do nothing.
/// Interface thread.
void Install_Accessible_Faces();

} // namespace tonvex
