#pragma once

namespace tonvex {

/// Lets assistive tools see each event in view of a Roll_View as an object of its own, with what there is to
/// tell of it and whether it is selected. Calls after the first do nothing. Interface thread.
void Install_Roll_Faces();

} // namespace tonvex
