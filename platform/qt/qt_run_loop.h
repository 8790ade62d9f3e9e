#pragma once

#include "platform/run_loop.h"

namespace tonvex {

/// Rounds on a 1 ms precise timer of a local event loop. The timer also fires in the loop of a modal
/// dialog that a handler opens, so such a dialog does not stop the run; but a run that ends meanwhile
/// returns only when that dialog is closed. Interface thread, which needs its QCoreApplication.
class Qt_Run_Loop final : public Run_Loop {
public:
    /// A run started while one is on returns at once, without a round.
    void Run(const std::function<bool()>& round) override;
    void Let_Messages_Run() override;
    bool Is_Running() const noexcept { return running; }

    /// The application quits in the middle of a run: whoever can ask the run to stop does it here. Rounds
    /// go on until round gives false, for at most 2 s. Without it the run is cut at once.
    std::function<void()> onQuit;

private:
    void Run_Out(const std::function<bool()>& round);

    bool running = false;
    bool roundsHeld = false; ///< inside a round, or while messages run without one
};

} // namespace tonvex
