#pragma once

#include "engine/cue_output.h"
#include "engine/cue_player.h"
#include "engine/cue_row.h"
#include "platform/millisecond_counter.h"
#include "song/vget_tick_count.h"

#include <array>
#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstdint>
#include <functional>
#include <semaphore.h>
#include <span>
#include <thread>
#include <vector>

namespace tonvex {

/// Who moves the player library on.
enum class Cue_Drive {
    Threaded, ///< its own thread, by the monotonic clock
    Stepped ///< whoever calls Step, by whatever clock: the same calls give the same rows at the same moments
};

/// The player library: plays lists of timed rows against a clock that the program sets.
///
/// Every operation belongs to the interface thread. Threaded, each becomes a command in a lock-free queue
/// that the player thread carries out, in order, before it sends the next row; rows and counters are copied
/// at the call. The player thread waits for nobody: it sleeps until the next row is due or a command comes.
/// Operations before InitDLL and after FreeDLL do nothing.
class CueEngine final : public Clock_Listener {
public:
    static constexpr std::int32_t MAX_LISTS = 199;
    /// How far ahead rows go to the synthesizer at least; two of its blocks when those are longer.
    static constexpr std::int64_t LEAD_NS = 10'000'000;
    /// Threaded: a change acts so far behind the moment at which the thread sees it.
    static constexpr std::int64_t MARGIN_NS = 3'000'000;
    using Live_Notes = Cue_Player::Live_Notes;

    /// Threaded needs the monotonic counter. Both outlive the engine.
    CueEngine(const Millisecond_Counter& counter, Cue_Output& output, Cue_Drive drive);
    ~CueEngine() override;
    CueEngine(const CueEngine&) = delete;
    CueEngine& operator=(const CueEngine&) = delete;

    /// The thread starts, paused. False when the system gives none: the library then stays idle.
    bool InitDLL();
    /// The thread ends, the lists go.
    void FreeDLL();
    /// Between InitDLL and FreeDLL.
    bool Is_Running() const noexcept { return running; }
    /// UseSynth: rows go to the synthesizer, ahead by LEAD_NS or, if that is more, twice blockNs; else to the
    /// MIDI port at their moments.
    void Init_SetOutput(bool UseSynth, std::int64_t blockNs);
    /// Drops all lists and makes room for LastList + 1, at most MAX_LISTS. MaxRows, the row count of the
    /// longest, is not needed. False: nothing may be sent.
    bool Init_Buffers(std::int32_t LastList, std::int32_t MaxRows);
    /// Rows of a list, copied, in any order; the marker among them names the channel row that the list
    /// belongs to.
    void AddEvents(std::int32_t List, const CueRow* Rows, std::int32_t Count);
    /// The list's rows are replaced at once, and playing goes on from the present position. What sounds of
    /// the old rows gets its off; with keepSounding only what the new rows do not have, or have RENEWED.
    void Channel_UpdateModded(std::int32_t List, const CueRow* Rows, std::int32_t Count,
                              bool keepSounding = false);
    /// Muted rows are walked and not sent; what sounds gets its off.
    void Channel_SetMute(std::int32_t Row, bool Mute);
    /// Velocities are multiplied by Factor and cut. A factor that is no number or below 0 counts as 0.
    void Channel_SetVolFactor(std::int32_t Row, float Factor);
    /// The performer plays on this channel row (-1: none), which sounds on Slot: rows for other slots never
    /// touch what the performer holds.
    void Player_SetRecChannelI(std::int32_t Row, std::int32_t Slot);
    /// Notes[n]: how many live presses hold note n. An off row on the performer's slot does not cut a note
    /// that is held, and an on row that YIELDS is left out.
    void Player_CopyRecActiveNotes(const Live_Notes& Notes);
    /// The performer let the note go, and Player_CopyRecActiveNotes has told so. True when a row sounds it:
    /// the library sends its end, also when the row ended before the press without having been seen yet.
    bool Player_TakesOver(int Slot, int Note);
    /// Playing begins at the first row at or behind Time (beats), in every list.
    void Player_SetPos(double Time);
    void clock_SetPars(float Speed, std::int32_t Tempo, std::int64_t StartTick, std::int64_t SegmentMs,
                       double SegmentBeat, std::span<const Tempo_Segment> map) override;
    /// 1 while the clock as set does not stand at or past Time (beats), to the millisecond that it counts in;
    /// else 0.
    std::int32_t clock_CheckValid(double Time) const;
    void Player_Start();
    void Player_Stop();
    /// All that was asked for has been done and nothing plays: the thread touches neither lists nor output.
    bool Player_IsPaused() const;
    /// Playing, and nothing is left to sound.
    bool At_End() const;

    /// Stepped: sends what is due. Threaded: nothing.
    void Step();

private:
    using Command = std::function<void(Cue_Player& player)>;
    static constexpr std::size_t QUEUE_CAPACITY = 1024;

    void Post(Command command);
    void Run() noexcept;
    void Carry_Out_Commands() noexcept;
    void Sleep_Until(std::int64_t ns) noexcept;
    void Collect_Done();

    const Millisecond_Counter& counter;
    Cue_Drive drive;
    Cue_Player player; ///< the player thread's while it runs, but for what any thread may ask and tell
    bool running = false;
    std::int32_t listCount = 0;

    // the clock as last set, for clock_CheckValid
    bool clockSet = false;
    double clockSpeed = 1.0;
    std::int64_t clockStartTick = 0;
    std::vector<Tempo_Segment> clockSegments;

    boost::lockfree::spsc_queue<Command*> commands{QUEUE_CAPACITY};
    boost::lockfree::spsc_queue<Command*> done{QUEUE_CAPACITY}; ///< to be freed on the interface thread
    std::uint64_t posted = 0;
    std::atomic<std::uint64_t> carriedOut{0};
    std::atomic<bool> playing{false}; ///< as of carriedOut commands, like atEnd
    std::atomic<bool> atEnd{false};
    std::atomic<bool> quit{false};
    sem_t wake{};
    std::thread thread;
};

} // namespace tonvex
