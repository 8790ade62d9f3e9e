#pragma once

#include "engine/transport_parts.h"

namespace tonvex {

/// What a transport run does with the player library, in its order: Prepare, Set_Channels, Start, then Step,
/// Follow_Performer and Seek while it goes on, Stop, End. With the polling engine nothing of it does
/// anything. Interface thread.
class Engine_Run {
public:
    /// Both outlive the object.
    Engine_Run(const Transport_Parts& parts, VGetTickCount& clock);

    /// Takes the stored events over, if the user wants it: they are rendered and handed to the library. The
    /// list of excludeRow (RenderModule::NO_CHANNEL: none) stays empty.
    void Prepare(int excludeRow);
    /// Where playing begins (beats), volumes and mutes, and the row that the performer plays on (-1: none).
    void Set_Channels(double startBeat, int performerRow);
    /// Sets the library's clock and lets it play. False when the clock cannot be set; the user was told.
    bool Start(double startBeat);
    void Step();
    /// The performer's channel may have been given another slot.
    void Follow_Performer(int performerRow);
    /// Silences the library; the clock has then to be set, and Start to be called.
    void Stop();
    void Set_Position(double beats);
    /// Stored events are the interface thread's again.
    void End();

private:
    bool Is_On() const noexcept { return parts.state.EngineRunning; }
    int Slot_Of(int row) const;

    const Transport_Parts& parts;
    VGetTickCount& clock;
    int performerSlot = -1;
};

} // namespace tonvex
