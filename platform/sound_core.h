#pragma once

#include "platform/clock_mapping.h"
#include "platform/due_queue.h"
#include "platform/latest_value.h"
#include "platform/millisecond_counter.h"
#include "platform/sound_driver.h"
#include "platform/synth_graph.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tonvex {

/// What a door's callback runs: takes the messages that are due, lets the graph render, keeps the figures.
/// Whichever driver asks for blocks is the audio thread; there is one at a time. The callback neither
/// allocates, locks nor touches a file; what it is done with is taken back by Collect_Garbage.
class Sound_Core final : public Block_Source {
public:
    /// Rows that each sending thread can have under way, 512 KiB each.
    static constexpr std::size_t QUEUE_CAPACITY = 8192;

    explicit Sound_Core(const Millisecond_Counter& clock);
    ~Sound_Core() override;

    // ---- sending threads: interface thread and player thread ------------------------------------------
    bool Post(const Sound_Message& message) noexcept { return live.Push(message); }
    bool Post_From_Player(const Sound_Message& message) noexcept { return ahead.Push(message); }
    bool Take_Back_From_Player(std::int64_t fromNs) noexcept { return ahead.Push_Take_Back(fromNs); }

    // ---- interface thread -----------------------------------------------------------------------------
    /// Ends what sounds and drops the notes under way; patches, pans and volumes are taken. No driver may
    /// be running.
    void Silence() noexcept;
    /// A new stream from frame 0 on; what it sounds leaves the program behindMs after its callback. No
    /// driver may be running; any thread.
    void Begin_Stream(int sampleRate, int blockFrames, double behindMs);
    /// Ties the stream's frame 0 to ns; for streams pulled in step with a simulated counter.
    void Fix_Time(std::int64_t ns) noexcept;
    /// Swapped in between two blocks.
    void Hand_Over(std::unique_ptr<Synth_Instance> fresh);
    /// Destroys what the audio thread has let go.
    void Collect_Garbage();
    /// Takes over the instance and the effects handed over last when no driver is running.
    void Settle() noexcept {
        Take_Instance();
        Take_Effects();
    }
    /// slot 0 to 31. A slot's first effect makes its chain; without the memory for that it stays dry.
    void Set_Effects(int slot, const Effect_Settings& settings) noexcept;
    /// Chains for that rate in place of those there are. No driver may be running.
    void Set_Effect_Rate(int rate) noexcept;
    void Set_Gain(float linear) noexcept { gain.store(linear, std::memory_order_relaxed); }
    float Take_Slot_Peak(int slot) noexcept { return graph.Take_Slot_Peak(slot); }
    /// The figures that the callback keeps: latency, load, drops, peaks.
    void Fill(Sound_Status& status) noexcept;
    /// Keeps the samples of the streams to come, up to so many frames; for tests. Before a stream begins.
    void Keep_Samples(std::size_t frames);
    /// Frames from a message's moment to its sound, the synthesizer's grid apart.
    std::int64_t Delay_Frames() const noexcept { return delayFrames; }
    /// Interleaved; what is kept so far.
    std::span<const float> Kept_Samples() const noexcept;

    // ---- audio thread ---------------------------------------------------------------------------------
    bool Pull(float* stereo, int frames) noexcept override;
    /// Nothing posted is left, no voice sounds and no effect rings.
    bool At_Rest() const noexcept;

private:
    /// The chain that a slot is to have, and how it is to be set.
    struct Effect_Order {
        Effect_Chain* chain = nullptr;
        Effect_Settings settings;
    };
    void Take_Instance() noexcept;
    void Take_Effects() noexcept;
    void Render_Piece() noexcept;
    void Deliver_Due(std::int64_t beforeFrame) noexcept;
    void Set_Delay(int blockFrames) noexcept;
    void Note_Latency(std::int64_t dueNs) noexcept;
    void Note_Load(std::int64_t startedNs, int frames) noexcept;
    void Keep(const float* stereo, int frames) noexcept;

    const Millisecond_Counter& counter;
    Due_Queue live{QUEUE_CAPACITY};
    Due_Queue ahead{QUEUE_CAPACITY};
    Synth_Graph graph;
    Clock_Mapping mapping;
    bool timeFixed = false;
    double sampleRate = 44100.0;
    int delayedBlock = 0;         ///< block for which delayFrames was worked out
    std::int64_t delayFrames = 0; ///< one block, the latency of every message
    std::int64_t nextFrame = 0;   ///< the first of the next block
    std::int64_t pieceFrame = 0;  ///< the first of the next piece
    std::array<float, Synth_Graph::PIECE> left{};
    std::array<float, Synth_Graph::PIECE> right{};
    int pieceLeft = 0; ///< frames of the last piece not yet given out

    std::atomic<float> gain{1.0F};
    std::atomic<Synth_Instance*> incoming{nullptr};
    std::atomic<Synth_Instance*> outgoing{nullptr};
    std::atomic<double> latencyMs{0.0};       ///< to the callback, smoothed
    std::atomic<double> deviceLatencyMs{0.0}; ///< behind the callback
    std::atomic<float> load{0.0F};
    std::array<Latest_Value<Effect_Order>, OUTPUT_SLOTS> effectOrders;
    Synth_Instance* current = nullptr;
    std::array<std::unique_ptr<Effect_Chain>, OUTPUT_SLOTS> chains; ///< interface thread's, once in use kept
    std::array<Effect_Settings, OUTPUT_SLOTS> effects;              ///< interface thread's
    int effectRate = 44100;
    std::vector<float> kept;
    std::atomic<std::size_t> keptFrames{0};
};

} // namespace tonvex
