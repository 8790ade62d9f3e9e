#pragma once

#include "platform/millisecond_counter.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tonvex {

/// A stretch of one tempo. startMs is in song milliseconds.
struct Tempo_Segment {
    double startBeat = 0.0;
    std::int64_t startMs = 0;
    std::int32_t tempo = 80;
    bool operator==(const Tempo_Segment&) const = default;
};

/// The moment (Millisecond_Counter ns) at which a clock that began at startTickMs and runs at speed (above 0)
/// through the segments, of which there is at least one, reads beats. Never falls when beats rises.
/// Logarithmic in the number of segments.
std::int64_t Moment_In(std::span<const Tempo_Segment> segments, std::int64_t startTickMs, double speed,
                       double beats);

/// Follows a clock, so as to compute the same position. Interface thread.
class Clock_Listener {
public:
    virtual ~Clock_Listener() = default;
    /// Position = SegmentBeat + ((counter ms - StartTick) * Speed - SegmentMs) / (60000 / Tempo) in the
    /// segment that the clock is in. map holds all segments of the song, this one among them, so that a
    /// listener that looks ahead need not wait for the next call; empty when the clock goes by one tempo
    /// alone.
    virtual void clock_SetPars(float Speed, std::int32_t Tempo, std::int64_t StartTick,
                               std::int64_t SegmentMs, double SegmentBeat,
                               std::span<const Tempo_Segment> map) = 0;
};

/// Turns the machine's millisecond counter into a song position through the tempo list.
/// Formulas: position = (clock ms - SegmentMS) / (60000 / Tempo) + SegmentBeat with the tempo map on,
/// clock ms / (60000 / Tempo) + StartBeat with it off; clock ms = (counter - StartTickMS) * Speed.
/// A Speed that is not above 0 counts as 1, a tempo below 1 as 1.
/// The song milliseconds at a change of tempo are rounded, and the rounding stays in the sum.
/// Interface thread.
class VGetTickCount {
public:
    static constexpr double NO_CHANGE_BEAT = TempoChangeClass::NO_CHANGE_BEAT;

    /// All three outlive the clock.
    VGetTickCount(const Millisecond_Counter& counter, const TempoChangeClass& tempoChanges,
                  const Project_State& project);

    float Speed = 1.0F;      ///< playback speed factor
    std::int32_t Tempo = 80; ///< tempo of the current segment
    double StartBeat = 0.0;  ///< the position that the clock was set to
    bool UseTempoMap = false;
    bool ManualClock = false; ///< takes ManualMS in place of the machine's counter
    std::int32_t ManualMS = 0;

    /// The clock's song milliseconds now, rounded half to even.
    std::int64_t GetTimeMS() const;
    /// The current position in beats. Steps into the next segment when the position has passed its end; the
    /// value returned is the one of the segment before.
    double GetTime();
    /// The position at a moment of the machine's clock (Millisecond_Counter ns), finer than a millisecond and
    /// by the whole tempo map; changes nothing. A key edge is stamped with it. It lies up to a millisecond
    /// ahead of GetTime, whose counter is cut to whole ones; with ManualClock it is the position of ManualMS.
    double GetTime_At(std::int64_t momentNs) const;
    /// The moment (Millisecond_Counter ns) at which the running clock reads beats: the inverse of GetTime_At,
    /// never falling when beats rises. Logarithmic in the number of tempo changes.
    std::int64_t Moment_Of(double beats) const;
    /// Make the clock read StartBeat (beats) now, at every Speed; with ManualClock, at a ManualMS of 0.
    void Reset();
    void SetTime(double beats);
    /// Re-anchors a running clock after a tempo edit; the caller then sets the clock to the position when it
    /// does not read it.
    void UpdateClockTempo(double beats);
    /// With the tempo map on: it is no longer the one that the current segment was found in. GetTime goes on
    /// by that segment, all that looks at the whole map goes by the new one, until the clock is re-anchored.
    bool Map_Changed() const noexcept;

    /// Tells the listener how the clock stands; done by itself whenever the position passes into another
    /// segment.
    void Set_RenderDLL_Clock() const;
    Clock_Listener* listener = nullptr; ///< may be null; outlives its registration

    double Next_Change_Beat() const noexcept { return NextChangeBeat; }
    std::int64_t Segment_MS() const noexcept { return SegmentMS; }
    double Segment_Beat() const noexcept { return SegmentBeat; }
    std::int64_t Start_Tick_MS() const noexcept { return StartTickMS; }

private:
    double Usable_Speed() const noexcept;
    std::int64_t Counter_Ms() const;
    const std::vector<Tempo_Segment>& Segments() const;
    void Find_Segment(double beats);

    const Millisecond_Counter& counter;
    const TempoChangeClass& tempoChanges;
    const Project_State& project;
    std::int64_t StartTickMS = 0;
    double NextChangeBeat = NO_CHANGE_BEAT;
    std::int64_t SegmentMS = 0;
    double SegmentBeat = 0.0;
    std::uint64_t foundRevision = 0; ///< of the tempo list in which the segment was found
    std::int32_t foundTempo = 0;     ///< and the song's tempo then

    // Worked out from the tempo list and the base tempo, kept until one of them changes.
    mutable std::vector<Tempo_Segment> segments;
    mutable std::uint64_t segmentsRevision = 0;
    mutable std::int32_t segmentsTempo = 0;
};

/// Position in beats of a song time in milliseconds, by the tempo map without any speed or rounding.
double MS_To_Beats(double ms, const TempoChangeClass& tempoChanges, const Project_State& project);
/// The inverse.
double Beats_To_MS(double beats, const TempoChangeClass& tempoChanges, const Project_State& project);

} // namespace tonvex
