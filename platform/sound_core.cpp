#include "platform/sound_core.h"

#include "platform/audio_thread_mark.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>

namespace tonvex {

int Block_Frames_For(double periodMs, int sampleRate) noexcept {
    const double frames = std::clamp(periodMs * sampleRate / 1000.0, 64.0, 8192.0);
    return static_cast<int>(std::bit_floor(static_cast<unsigned>(frames)));
}

Sound_Core::Sound_Core(const Millisecond_Counter& clock) : counter(clock) {
    mapping.Start(sampleRate);
}

Sound_Core::~Sound_Core() {
    Collect_Garbage();
    delete incoming.exchange(nullptr);
    delete current;
}

void Sound_Core::Begin_Stream(int rate, int blockFrames, double behindMs) {
    sampleRate = rate;
    deviceLatencyMs.store(behindMs, std::memory_order_relaxed);
    delayedBlock = 0;
    Set_Delay(blockFrames);
    nextFrame = 0;
    pieceFrame = 0;
    pieceLeft = 0;
    timeFixed = false;
    mapping.Start(sampleRate);
    latencyMs.store(static_cast<double>(delayFrames) * 1000.0 / sampleRate, std::memory_order_relaxed);
    load.store(0.0F, std::memory_order_relaxed);
}

void Sound_Core::Silence() noexcept {
    for (Due_Queue* const queue : {&live, &ahead}) {
        for (queue->Collect(); queue->Next() != nullptr; queue->Pop(), queue->Collect()) {
            const Sound_Op op = queue->Next()->op;
            if (op == Sound_Op::Patch || op == Sound_Op::Pan || op == Sound_Op::Volume)
                graph.Apply(*queue->Next());
        }
    }
    graph.Silence();
}

void Sound_Core::Fix_Time(std::int64_t ns) noexcept {
    timeFixed = true;
    mapping.Fix(ns, 0);
}

void Sound_Core::Hand_Over(std::unique_ptr<Synth_Instance> fresh) {
    // One that the audio thread had not come to take yet is ours again.
    delete incoming.exchange(fresh.release(), std::memory_order_acq_rel);
    Collect_Garbage();
}

void Sound_Core::Collect_Garbage() {
    delete outgoing.exchange(nullptr, std::memory_order_acquire);
}

void Sound_Core::Take_Instance() noexcept {
    if (outgoing.load(std::memory_order_relaxed) != nullptr)
        return; // the one before has not been collected; this swap waits
    Synth_Instance* const fresh = incoming.exchange(nullptr, std::memory_order_acq_rel);
    if (fresh == nullptr)
        return;
    current = fresh;
    outgoing.store(graph.Swap_Instance(fresh), std::memory_order_release);
}

void Sound_Core::Set_Effects(int slot, const Effect_Settings& settings) noexcept {
    const auto n = static_cast<std::size_t>(slot);
    for (const Effect_Kind kind : ALL_EFFECTS)
        effects[n].values[static_cast<std::size_t>(kind)] = Bounded(kind, settings.Of(kind));
    effects[n].on = settings.on;
    if (chains[n] == nullptr && settings.Any_On()) {
        try {
            chains[n] = std::make_unique<Effect_Chain>(effectRate);
        } catch (const std::bad_alloc&) {
            return;
        }
    }
    effectOrders[n].Write({chains[n].get(), effects[n]});
}

void Sound_Core::Set_Effect_Rate(int rate) noexcept {
    if (rate == effectRate)
        return;
    effectRate = rate;
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        const auto n = static_cast<std::size_t>(slot);
        if (chains[n] == nullptr)
            continue;
        graph.Set_Effects(slot, nullptr, {});
        chains[n].reset();
        Set_Effects(slot, Effect_Settings(effects[n]));
    }
    Take_Effects();
}

void Sound_Core::Take_Effects() noexcept {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        if (const Effect_Order* const order = effectOrders[static_cast<std::size_t>(slot)].Take())
            graph.Set_Effects(slot, order->chain, order->settings);
}

bool Sound_Core::Pull(float* stereo, int frames) noexcept {
    const Audio_Thread_Mark mark;
    const std::int64_t startedNs = counter.Now_Ns();
    if (!timeFixed)
        mapping.Observe(startedNs, nextFrame);
    Set_Delay(frames); // a server may change its block while it runs
    Take_Instance();
    Take_Effects();
    live.Collect();
    ahead.Collect();
    for (int done = 0; done < frames;) {
        if (pieceLeft == 0)
            Render_Piece();
        const int count = std::min(pieceLeft, frames - done);
        const auto from = static_cast<std::size_t>(Synth_Graph::PIECE - pieceLeft);
        for (std::size_t i = from; i < from + static_cast<std::size_t>(count); ++i) {
            *stereo++ = left[i];
            *stereo++ = right[i];
        }
        pieceLeft -= count;
        done += count;
    }
    nextFrame += frames;
    Keep(stereo - 2 * static_cast<std::ptrdiff_t>(frames), frames);
    Note_Load(startedNs, frames);
    return true;
}

void Sound_Core::Set_Delay(int blockFrames) noexcept {
    if (blockFrames <= delayedBlock)
        return;
    delayedBlock = blockFrames;
    // A block that ends inside a piece has the rest of that piece rendered ahead.
    const bool onGrid = blockFrames % Synth_Graph::PIECE == 0;
    delayFrames = blockFrames + (onGrid ? 0 : Synth_Graph::PIECE - 1);
}

void Sound_Core::Render_Piece() noexcept {
    Deliver_Due(pieceFrame + Synth_Graph::PIECE);
    graph.Render(left.data(), right.data(), gain.load(std::memory_order_relaxed));
    pieceFrame += Synth_Graph::PIECE;
    pieceLeft = Synth_Graph::PIECE;
}

void Sound_Core::Deliver_Due(std::int64_t beforeFrame) noexcept {
    for (;;) {
        const Sound_Message* const fromLive = live.Next();
        const Sound_Message* const fromAhead = ahead.Next();
        const bool takeLive =
            fromLive != nullptr && (fromAhead == nullptr || fromLive->dueNs <= fromAhead->dueNs);
        const Sound_Message* const next = takeLive ? fromLive : fromAhead;
        if (next == nullptr || mapping.Frame_At(next->dueNs) + delayFrames >= beforeFrame)
            return;
        graph.Apply(*next);
        Note_Latency(next->dueNs);
        (takeLive ? live : ahead).Pop();
    }
}

void Sound_Core::Note_Latency(std::int64_t dueNs) noexcept {
    const std::int64_t frames = pieceFrame - mapping.Frame_At(dueNs);
    // Orders without a moment of their own, and those after a stall, say nothing about the road.
    if (frames < 0 || static_cast<double>(frames) > sampleRate)
        return;
    const double before = latencyMs.load(std::memory_order_relaxed);
    const double ms = static_cast<double>(frames) * 1000.0 / sampleRate;
    latencyMs.store(before + (ms - before) * 0.1, std::memory_order_relaxed);
}

void Sound_Core::Note_Load(std::int64_t startedNs, int frames) noexcept {
    const double blockNs = frames * 1e9 / sampleRate;
    const double share = 100.0 * static_cast<double>(counter.Now_Ns() - startedNs) / blockNs;
    const float before = load.load(std::memory_order_relaxed);
    load.store(before + (static_cast<float>(share) - before) * 0.05F, std::memory_order_relaxed);
}

void Sound_Core::Fill(Sound_Status& status) noexcept {
    status.latencyMs =
        latencyMs.load(std::memory_order_relaxed) + deviceLatencyMs.load(std::memory_order_relaxed);
    status.cpuPercent = static_cast<double>(load.load(std::memory_order_relaxed));
    status.droppedMessages = live.Dropped_Count();
    status.peakLeft = graph.Take_Left_Peak();
    status.peakRight = graph.Take_Right_Peak();
}

void Sound_Core::Keep_Samples(std::size_t frames) {
    kept.assign(frames * 2, 0.0F);
    keptFrames.store(0, std::memory_order_release);
}

std::span<const float> Sound_Core::Kept_Samples() const noexcept {
    return {kept.data(), keptFrames.load(std::memory_order_acquire) * 2};
}

void Sound_Core::Keep(const float* stereo, int frames) noexcept {
    const std::size_t used = keptFrames.load(std::memory_order_relaxed);
    const std::size_t count = std::min(kept.size() / 2 - used, static_cast<std::size_t>(frames));
    std::copy_n(stereo, count * 2, kept.begin() + static_cast<std::ptrdiff_t>(used * 2));
    keptFrames.store(used + count, std::memory_order_release);
}

bool Sound_Core::At_Rest() const noexcept {
    return live.Empty() && ahead.Empty() && graph.Voice_Count() == 0 && !graph.Rings();
}

} // namespace tonvex
