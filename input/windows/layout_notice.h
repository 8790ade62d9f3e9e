#pragma once

#include "app/session.h"

namespace tonvex {

/// Tells every view that keys, tuning or octaves of the layout are other ones now. Interface thread.
inline void Tell_Layout_Changed(Session& session) {
    // By index: an observer may leave the list meanwhile.
    for (std::size_t i = 0; i < session.observers.size(); ++i)
        session.observers[i]->On_Octaves_Changed();
}

} // namespace tonvex
