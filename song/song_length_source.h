#pragma once

namespace tonvex {

/// Tells where the song ends. Interface thread.
class Song_Length_Source {
public:
    virtual ~Song_Length_Source() = default;
    /// Beats, 0 or above.
    virtual double Song_Length_Beats() const = 0;
};

} // namespace tonvex
