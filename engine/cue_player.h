#pragma once

#include "engine/cue_list.h"
#include "engine/cue_output.h"
#include "engine/first_of_lists.h"
#include "platform/millisecond_counter.h"
#include "song/vget_tick_count.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace tonvex {

/// Walks the lists of the player library against its clock: the part of it that knows no threads. Whoever
/// owns it calls everything on one thread. Moments are Millisecond_Counter ns.
///
/// Rows go out ahead of their moments by up to the lead. Until a row's moment has come it is in flight: what
/// changes the course of things first takes back all that is in flight, from a little behind now on, and the
/// next Advance walks from there again. So a change acts at once, and what it does not touch sounds as if
/// nothing had been.
///
/// Every on that went out gets its off: at its row, or when its list is muted, replaced or stopped. Of
/// several notes of one number on one slot the last to end sends it. An off for a note that was not sent is
/// not sent. A note whose velocity comes to nothing is not sent, nor one that yields to a note held by the
/// performer.
class Cue_Player {
public:
    static constexpr std::int64_t NEVER = INT64_MAX;
    using Live_Notes = std::array<std::int32_t, 128>;

    /// marginNs: how far behind now taking back begins; long enough to reach whoever sounds the rows. Both
    /// references outlive the player.
    Cue_Player(Cue_Output& output, const Millisecond_Counter& counter, std::int64_t marginNs);

    // ---- while idle --------------------------------------------------------------------------------------
    void Set_Output(bool synth, std::int64_t leadNs);
    /// Drops all lists and makes room for so many.
    void Set_List_Count(std::size_t count);
    void Set_List(std::size_t index, std::shared_ptr<const Cue_List> list);
    /// Every list goes on at its first row at or behind beats.
    void Set_Position(double beats);
    void Start();

    // ---- at any time -------------------------------------------------------------------------------------
    /// list goes in and the one before comes out. Its sounding notes get their offs; with keepSounding those
    /// that the new list has as well, and not renewed, go on to their new end.
    void Replace_List(std::size_t index, std::shared_ptr<const Cue_List>& list, bool keepSounding);
    void Set_Mute(int row, bool mute);
    void Set_Vol_Factor(int row, float factor);
    /// slot: the performer's, -1 for none.
    void Set_Performer_Slot(int slot);
    void Set_Live_Notes(const Live_Notes& notes);
    /// The same ahead of it, on the performer's thread: so that of him, who lets go and asks whether a row
    /// Holds the note, and of a row that ends, one at least sees that nobody is left to send the off.
    void Tell_Live_Notes(const Live_Notes& notes) noexcept;
    /// A row whose moment has come holds the note, and sends its end. Any thread; slot below OUTPUT_SLOTS,
    /// note 0 to 127.
    bool Holds(int slot, int note) const noexcept;
    /// The performer let go a note that Holds: its end is sent, now when no row holds it any more.
    void Take_Over(int slot, int note);
    /// segments: at least one. speed above 0.
    void Set_Clock(float speed, std::int64_t startTickMs, std::vector<Tempo_Segment> segments);
    void Stop();

    /// Sends what is due up to now and the lead. The moment at which to call again; NEVER when only a change
    /// can bring anything.
    std::int64_t Advance();
    bool Is_Playing() const noexcept { return playing; }
    /// Nothing is left to start, to end or in flight.
    bool At_End() const;

private:
    struct List {
        std::shared_ptr<const Cue_List> rows;
        std::size_t next = 0;
        bool muted = false;
        int missedPatches = 0; ///< walked since it was muted; 1 for a place sought while it is
        float factor = 1.0F;
        std::vector<std::uint8_t> sounding; ///< by note: its on went out and its off has not been walked
    };
    enum class Effect : std::uint8_t { None, Opened, Closed };
    /// A row that was walked and whose moment has not come, or an off that a change sent.
    struct In_Flight {
        Sound_Message message;
        std::int64_t at; ///< as Moment_At gives it; Cue_List::NEVER for an off of a change
        std::uint32_t list;
        std::size_t item;
        Effect effect = Effect::None;
        bool sent = false;
        bool heedsPerformer = false; ///< what the performer holds decides whether it is sent
    };
    template <typename Count>
    using Counts = std::array<std::array<Count, 128>, OUTPUT_SLOTS>;

    std::int64_t Moment_Of(std::int64_t at) const;
    void Note_Next(std::size_t index);
    std::int64_t Late_At(const List& list) const;
    bool Walk(std::size_t index, std::int64_t dueNs);
    bool Held(int slot, int note) const noexcept;
    bool Leave_Note(int slot, int note) noexcept;
    static bool Leaves_The_Note(const In_Flight& row);
    void Take_Back();
    void Undo(const In_Flight& row);
    void Close(List& list, std::int32_t note);
    void Close_All(List& list);
    void Send_Off(int slot, int note);
    void Send_Missed_Patch(List& list);
    void Send_At_Cut(In_Flight row);
    bool Send_Owed();
    void Settle(std::int64_t untilNs);
    bool Flies_With(int row) const;

    Cue_Output& output;
    const Millisecond_Counter& counter;
    std::int64_t marginNs;
    std::int64_t leadNs = 0;
    bool playing = false;
    std::int64_t position = 0; ///< where playing begins, as Moment_At gives it
    std::vector<List> lists;
    First_Of_Lists first;                      ///< by the lists' next rows
    Counts<std::int32_t> counts{};             ///< notes that are on by slot and number, as far as was walked
    Counts<std::atomic<std::int32_t>> holds{}; ///< the same as of now; written by the player thread alone
    Live_Notes liveNotes{};
    std::array<std::atomic<std::int32_t>, 128> liveNow{}; ///< the same, ahead of it
    int performerSlot = -1;

    bool clockSet = false;
    double speed = 1.0;
    std::int64_t startTickMs = 0;
    std::vector<Tempo_Segment> segments;

    std::deque<In_Flight> inFlight;            ///< in order of their moments
    std::int64_t lastDueNs = 0;                ///< of the row walked last; moments never go back
    std::int64_t settledNs = 0;                ///< what is due until here can no longer be taken back
    std::int64_t settledAt = 0;                ///< the place in the song of the last row that is so
    bool tookBack = false;                     ///< since the last Advance
    std::int64_t cutNs = 0;                    ///< from where it was taken back
    std::vector<Sound_Message> owed;           ///< for which the output had no room
    std::vector<std::pair<int, int>> doubtful; ///< slot and note of ons that may have sounded nevertheless
};

} // namespace tonvex
