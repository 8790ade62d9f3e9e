#pragma once

#include <string>

namespace tonvex {

/// What the user sees of long work, from its making to its end. Interface thread; each call lets the window
/// breathe, so the worker holds nothing that an event handler could change under it.
class Work_Progress {
public:
    virtual ~Work_Progress() = default;
    /// percent 0 to 100. False once the user has asked for the end: the worker stops, leaves nothing half
    /// done and tells its caller.
    virtual bool Show(const std::string& status, int percent) = 0;
};

/// Work that nobody watches.
class Unseen_Progress final : public Work_Progress {
public:
    bool Show(const std::string&, int) override { return true; }
};

} // namespace tonvex
