#pragma once

namespace tonvex {

/// How long work that the user can stop has ended.
enum class Work_Outcome {
    Done,
    Cancelled, ///< by the user: nothing was written or changed
    Failed     ///< the user has been told
};

} // namespace tonvex
