#include "song/vget_tick_count.h"

#include "base/rounding.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr double NS_PER_MS = 1'000'000.0;
constexpr double LAST_MOMENT_NS = 9.1e18; ///< 288 years, about the most that 64 bits hold

} // namespace

std::int64_t Moment_In(std::span<const Tempo_Segment> segments, std::int64_t startTickMs, double speed,
                       double beats) {
    const auto next =
        std::partition_point(segments.begin() + 1, segments.end(),
                             [beats](const Tempo_Segment& segment) { return segment.startBeat < beats; });
    const Tempo_Segment& current = *(next - 1);
    double ms =
        (beats - current.startBeat) * Beat_Length_Ms(current.tempo) + static_cast<double>(current.startMs);
    // Where the next segment's start was rounded down its beats must not come before these.
    if (next != segments.end())
        ms = std::min(ms, static_cast<double>(next->startMs));
    const double ns = (static_cast<double>(startTickMs) + ms / speed) * NS_PER_MS;
    return RoundHalfEven(std::clamp(ns, -LAST_MOMENT_NS, LAST_MOMENT_NS));
}

VGetTickCount::VGetTickCount(const Millisecond_Counter& counterIn, const TempoChangeClass& tempoChangesIn,
                             const Project_State& projectIn)
    : counter(counterIn), tempoChanges(tempoChangesIn), project(projectIn) {}

double VGetTickCount::Usable_Speed() const noexcept {
    return Speed > 0.0F ? static_cast<double>(Speed) : 1.0;
}

std::int64_t VGetTickCount::Counter_Ms() const {
    return ManualClock ? ManualMS : counter.Now_Ms();
}

const std::vector<Tempo_Segment>& VGetTickCount::Segments() const {
    if (!segments.empty() && segmentsRevision == tempoChanges.Revision() &&
        segmentsTempo == project.ProjectTempo)
        return segments;
    segments.assign(1, {.startBeat = 0.0, .startMs = 0, .tempo = project.ProjectTempo});
    for (const TempoChange& change : tempoChanges.In_Time_Order()) {
        const Tempo_Segment& last = segments.back();
        const double ms =
            (change.BeatN - last.startBeat) * Beat_Length_Ms(last.tempo) + static_cast<double>(last.startMs);
        segments.push_back({.startBeat = change.BeatN, .startMs = RoundHalfEven(ms), .tempo = change.Tempo});
    }
    segmentsRevision = tempoChanges.Revision();
    segmentsTempo = project.ProjectTempo;
    return segments;
}

void VGetTickCount::Find_Segment(double beats) {
    const auto& all = Segments();
    // A change at exactly the asked position does not count yet.
    const auto next = std::partition_point(all.begin() + 1, all.end(), [beats](const Tempo_Segment& segment) {
        return segment.startBeat < beats;
    });
    const Tempo_Segment& current = *(next - 1);
    SegmentMS = current.startMs;
    SegmentBeat = current.startBeat;
    Tempo = current.tempo;
    NextChangeBeat = next == all.end() ? NO_CHANGE_BEAT : next->startBeat;
    foundRevision = tempoChanges.Revision();
    foundTempo = project.ProjectTempo;
}

bool VGetTickCount::Map_Changed() const noexcept {
    return UseTempoMap && (foundRevision != tempoChanges.Revision() || foundTempo != project.ProjectTempo);
}

std::int64_t VGetTickCount::GetTimeMS() const {
    return RoundHalfEven(static_cast<double>(Counter_Ms() - StartTickMS) * Usable_Speed());
}

double VGetTickCount::GetTime() {
    const auto ms = GetTimeMS();
    if (!UseTempoMap)
        return static_cast<double>(ms) / Beat_Length_Ms(Tempo) + StartBeat;
    const double beats = static_cast<double>(ms - SegmentMS) / Beat_Length_Ms(Tempo) + SegmentBeat;
    if (beats >= NextChangeBeat) {
        Find_Segment(beats);
        Set_RenderDLL_Clock();
    }
    return beats;
}

double VGetTickCount::GetTime_At(std::int64_t momentNs) const {
    const double counterMs =
        ManualClock ? static_cast<double>(ManualMS) : static_cast<double>(momentNs) / NS_PER_MS;
    const double ms = (counterMs - static_cast<double>(StartTickMS)) * Usable_Speed();
    if (!UseTempoMap)
        return ms / Beat_Length_Ms(Tempo) + StartBeat;
    const auto& all = Segments();
    const auto next = std::partition_point(all.begin() + 1, all.end(), [ms](const Tempo_Segment& segment) {
        return static_cast<double>(segment.startMs) <= ms;
    });
    const Tempo_Segment& current = *(next - 1);
    const double beats =
        (ms - static_cast<double>(current.startMs)) / Beat_Length_Ms(current.tempo) + current.startBeat;
    // Where the next segment's start was rounded up the time until then belongs to its first beat.
    return next == all.end() ? beats : std::min(beats, next->startBeat);
}

std::int64_t VGetTickCount::Moment_Of(double beats) const {
    if (UseTempoMap)
        return Moment_In(Segments(), StartTickMS, Usable_Speed(), beats);
    const Tempo_Segment only{.startBeat = StartBeat, .startMs = 0, .tempo = Tempo};
    return Moment_In({&only, 1}, StartTickMS, Usable_Speed(), beats);
}

void VGetTickCount::Set_RenderDLL_Clock() const {
    if (listener == nullptr)
        return;
    const auto speed = static_cast<float>(Usable_Speed());
    if (UseTempoMap)
        listener->clock_SetPars(speed, Tempo, StartTickMS, SegmentMS, SegmentBeat, Segments());
    else
        listener->clock_SetPars(speed, Tempo, StartTickMS, 0, StartBeat, {});
}

void VGetTickCount::Reset() {
    const std::int64_t now = ManualClock ? 0 : counter.Now_Ms();
    StartTickMS = now;
    if (!UseTempoMap)
        return;
    Find_Segment(StartBeat);
    const double songMs = static_cast<double>(SegmentMS) + (StartBeat - SegmentBeat) * Beat_Length_Ms(Tempo);
    StartTickMS = RoundHalfEven(static_cast<double>(now) - songMs / Usable_Speed());
}

void VGetTickCount::SetTime(double beats) {
    StartBeat = beats;
    Reset();
}

void VGetTickCount::UpdateClockTempo(double beats) {
    Find_Segment(beats);
    const double beatMs = Beat_Length_Ms(Tempo);
    const double behind =
        (beats - static_cast<double>(SegmentMS) / beatMs + SegmentBeat) / Usable_Speed() * beatMs;
    StartTickMS = RoundHalfEven(static_cast<double>(Counter_Ms()) - behind);
}

double MS_To_Beats(double ms, const TempoChangeClass& tempoChanges, const Project_State& project) {
    double startMs = 0.0;
    double startBeat = 0.0;
    double beatMs = Beat_Length_Ms(project.ProjectTempo);
    for (const TempoChange& change : tempoChanges.In_Time_Order()) {
        const double changeMs = startMs + (change.BeatN - startBeat) * beatMs;
        if (changeMs >= ms)
            break;
        startMs = changeMs;
        startBeat = change.BeatN;
        beatMs = Beat_Length_Ms(change.Tempo);
    }
    return startBeat + (ms - startMs) / beatMs;
}

double Beats_To_MS(double beats, const TempoChangeClass& tempoChanges, const Project_State& project) {
    double startMs = 0.0;
    double startBeat = 0.0;
    double beatMs = Beat_Length_Ms(project.ProjectTempo);
    for (const TempoChange& change : tempoChanges.In_Time_Order()) {
        if (change.BeatN >= beats)
            break;
        startMs += (change.BeatN - startBeat) * beatMs;
        startBeat = change.BeatN;
        beatMs = Beat_Length_Ms(change.Tempo);
    }
    return startMs + (beats - startBeat) * beatMs;
}

} // namespace tonvex
