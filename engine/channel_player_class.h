#pragma once

#include "engine/gcm_midi.h"
#include "engine/qchord_class.h"
#include "platform/millisecond_counter.h"
#include "song/vget_tick_count.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <vector>

namespace tonvex {

class RenderModule;

/// Walks one channel's events against the song position and sounds them. One object a MIDI channel for
/// one transport run. Interface thread. Times in beats.
///
/// What begins or ends goes out in order of time, at equal times ends first, each due at its own moment
/// and never later than now. Style events are passed over.
/// A step costs what begins and ends in it, whatever the length of the channel.
class CHannelPlayerClass {
public:
    /// The next thing to happen in the channel.
    struct Moment {
        std::int64_t at; ///< position as Moment_At gives it; NEVER when nothing is left
        bool isStart;    ///< an event begins or a chord goes a step on; else one ends
        bool operator<(const Moment& other) const noexcept {
            return at < other.at || (at == other.at && !isStart && other.isStart);
        }
    };
    static constexpr std::int64_t NEVER = INT64_MAX;
    /// Positions are compared in billionths of a beat, so that a start and a length whose sum misses the
    /// next start by a rounding error still meet it.
    static std::int64_t Moment_At(double beats) noexcept;
    /// EndTime of a row that ends in the next step, whatever the position.
    static constexpr double END_NOW = -1000.0;

    /// clock gives the due moment of stored rows; all outlive the player.
    CHannelPlayerClass(GlobalChannelsManager& channels, GCM_Midi& output, const VGetTickCount& clock,
                       const Millisecond_Counter& counter, const QChord_Parts& chords);

    /// Not null: the player library sounds the stored events. The player then starts and ends nothing, and
    /// has the channel's list replaced when it changes.
    RenderModule* renderer = nullptr;
    bool Sounding = true;    ///< off: the player tracks the song and sounds nothing
    double TimeOffset = 0.0; ///< subtracted from every position on entry

    /// row -1 finds the channel by its ID. Drops the changes that the store has logged so far.
    void SetChannel(std::int32_t channelId, int row = -1);
    void InitChannel_MidiData(double startTime);
    /// Ends what sounds; the next event is the first at or behind time. Unless muted, the last patch
    /// change before time is sent. What began before time stays silent.
    void SetTimePos(double time);
    /// One step: Take_Changes, then all that is due up to time.
    void PlayNextEvent(double time);
    /// Acts on the changes made to the channel since the last step.
    void Take_Changes(double time);
    Moment Next_Moment() const noexcept;
    /// Carries out Next_Moment; nothing when there is none.
    void Play_Next_Moment();
    /// Silences the channel at once.
    void MuteChannel();
    /// What was cut stays silent; the next event sounds.
    void UnMuteChannel();
    bool Muted() const noexcept { return muted; }
    /// Nothing left to start and nothing sounding.
    bool At_End() const noexcept { return NextEventI < 0 && activeEvents.empty(); }
    int Row() const noexcept { return channelRow; }
    std::int32_t ChannelID() const noexcept { return channelId; }
    /// The row still belongs to the channel that was given.
    bool Channel_Is_There() const;

private:
    struct Active_Chord {
        QChordClass QChord;
        std::uint8_t volume;
        std::bitset<128> leftOut; ///< notes of it that were not begun: the performer held them, or
                                  ///< they lie before the start of the run
    };
    struct ActiveEventRow {
        double EndTime;
        std::uint64_t order; ///< of arrival: equal ends go out in the order in which they began
        double length;       ///< as it was when the event began or was last changed
        std::int32_t ID;
        std::uint8_t Note;                   ///< of a note event
        std::unique_ptr<Active_Chord> chord; ///< null for a note event
        double nextTime = 0.0;               ///< EndTime, or the chord's next step where that comes first
        Moment next{};
        void Find_Next() noexcept;
        /// For a heap with the row on top that has something to do first.
        bool operator<(const ActiveEventRow& other) const noexcept {
            return other.next < next || (!(next < other.next) && order > other.order);
        }
    };

    /// Lets go of a channel that was deleted during the run.
    void Drop_If_Gone();
    void Set_Next(std::int32_t eventI);
    void Start_Next_Event();
    void Start_Note(const ChannelClass::Event_View& event);
    void Start_Chord(const ChannelClass::Event_View& event, double from);
    /// Chords that began before position and last past it go on with their next step.
    void Resume_Chords(double position);
    void Add_Active(ActiveEventRow row);
    void Step_First_Chord();
    void Play_Messages(Active_Chord& chord, const QChord_Messages& messages, std::int64_t due);
    int Velocity(std::uint8_t volume) const;
    void ActiveEventsStep(double time);
    ActiveEventRow Take_First_Row();
    void End_First_Row();
    void Mark_Ended(std::int32_t eventId);
    void Mark_All_Ended();
    /// Row of the patch table that holds just before position; -1 when no change lies before it.
    std::int32_t Patch_Before(double position);
    void Change_Length(std::int32_t eventId);
    bool Take_Change(const ChannelClass::Mod& mod, double position);
    void Restore_Heap();
    std::int64_t Due(double beat) const;

    GlobalChannelsManager& channels;
    GCM_Midi& output;
    const VGetTickCount& clock;
    const Millisecond_Counter& counter;
    const QChord_Parts chordParts;
    ChannelClass* store = nullptr;
    int channelRow = -1;
    std::int32_t channelId = 0;
    bool muted = false;
    std::int32_t NextEventI = -1; ///< event to start next, -1 at the end
    std::int32_t nextEventId = 0; ///< tells when a sort has moved the rows
    double nextStart = 0.0;
    std::vector<ActiveEventRow> activeEvents; ///< a heap, what happens first on top
    std::uint64_t nextOrder = 0;
    struct Patch_Change {
        double startTime;
        std::int32_t patchRow;
    };
    std::vector<Patch_Change> patchChanges; ///< of the channel, in order of time
    bool patchChangesKnown = false;
};

} // namespace tonvex
