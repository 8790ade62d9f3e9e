#pragma once

namespace tonvex {

/// Under X11, asks the server to repeat a held key by presses alone, without the false releases between
/// them, which cannot be told from real ones. Nothing under other window systems.
void Drop_False_Releases();

} // namespace tonvex
