#pragma once

#include "engine/gcm_midi.h"
#include "engine/qchord_class.h"
#include "engine/song_moment.h"
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
/// and never later than now. Style events, and all that would sound nothing, are passed over.
/// A step costs what begins and ends in it, whatever the length of the channel; a change to the channel
/// costs a look at its events.
class CHannelPlayerClass {
public:
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
    /// change before time is sent. A note that began before time stays silent, a chord goes on with its
    /// next step.
    void SetTimePos(double time);
    /// One step: Take_Changes, then all that is due up to time.
    void PlayNextEvent(double time);
    /// Acts on the changes made to the channel since the last call. What has sounded is not sounded again;
    /// a chord that is changed ends, and the rest of it sounds as it is now.
    void Take_Changes();
    /// The tempo list was edited: steps given in milliseconds last other beats. Counts as a change.
    void Tempo_Changed() noexcept { tempoChanged = true; }
    /// The next thing to happen in the channel; NEVER when nothing is left.
    Song_Moment Next_Moment() const noexcept;
    /// Carries out Next_Moment; nothing when there is none.
    void Play_Next_Moment();
    /// Everything up to the moment, it included, has been played.
    void Played_Until(std::int64_t moment) noexcept { playFrom = moment + 1; }
    /// Silences the channel at once. A chord goes on unheard.
    void MuteChannel();
    /// What was cut stays silent; the next event sounds, and the next step of a chord. A patch change that
    /// was passed in between is sent now, so that they sound right.
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
        QChord_Messages step;        ///< the last one taken
        bool startsWait = false;     ///< its ends have gone out, its starts have not
        std::bitset<128> sounding{}; ///< notes that went out
    };
    struct ActiveEventRow {
        double EndTime;
        std::uint64_t order; ///< of arrival: equal ends go out in the order in which they began
        double length;       ///< as it was when the event began or was last changed
        std::int32_t ID;
        std::uint8_t Note;                   ///< of a note event
        std::unique_ptr<Active_Chord> chord; ///< null for a note event
        double nextTime = 0.0;               ///< EndTime, or the chord's next step where that comes first
        bool isStep = false;                 ///< the latter
        Song_Moment next{};
        /// A step of a chord is the end of some notes, then the start of others.
        void Find_Next() noexcept;
        /// A chord of which nothing sounds, nor will. Behind Find_Next.
        bool Is_Over() const noexcept;
        /// For a heap with the row on top that has something to do first.
        bool operator<(const ActiveEventRow& other) const noexcept {
            return other.next < next || (!(next < other.next) && order > other.order);
        }
    };
    struct Patch_Change {
        double startTime;
        std::int32_t patchRow;
    };

    // channel_player_class.cpp: the place in the channel
    /// Lets go of a channel that was deleted during the run.
    void Drop_If_Gone();
    /// The next event is eventI, or the first behind it that is to be heard.
    void Set_Next(std::int32_t eventI);
    std::int32_t First_At(std::int64_t moment) const;
    bool Is_Heard(const ChannelClass::Event_View& event) const;
    void Start_Next_Event();
    void Go_On_From(std::int64_t moment);
    /// Row of the patch table that holds just before moment; -1 when no change lies before it.
    std::int32_t Patch_Before(std::int64_t moment);
    bool Slot_Changed() const;
    std::vector<std::int32_t> Chords_In_Ms() const;
    /// True when the place in the channel has to be found anew.
    bool Take_Change(const ChannelClass::Mod& mod, std::vector<std::int32_t>& renewed);
    std::int64_t Moment_Of(double storeBeat) const noexcept { return Moment_At(storeBeat + TimeOffset); }

    // active_events.cpp: what sounds
    void Start_Note(const ChannelClass::Event_View& event);
    void Start_Chord(const ChannelClass::Event_View& event);
    /// Chords that began before playFrom and last past it go on with their next step.
    void Resume_Chords();
    void Add_Active(ActiveEventRow row);
    void Step_First_Chord();
    void Sound_Step(Active_Chord& chord, std::uint8_t action);
    void Start_Note_Of(Active_Chord& chord, std::uint8_t note, std::int64_t due);
    void End_Note_Of(Active_Chord& chord, std::uint8_t note, std::int64_t due);
    void Silence(Active_Chord& chord, std::int64_t due);
    int Velocity(std::uint8_t volume) const;
    ActiveEventRow Take_First_Row();
    void End_First_Row();
    void Mark_Ended(std::int32_t eventId);
    void End_Marked();
    void End_All();
    void Change_Length(std::int32_t eventId);
    void Change_Volume(std::int32_t eventId);
    std::int64_t Due(double beat) const;

    GlobalChannelsManager& channels;
    GCM_Midi& output;
    const VGetTickCount& clock;
    const Millisecond_Counter& counter;
    const QChord_Parts chordParts;
    ChannelClass* store = nullptr;
    int channelRow = -1;
    std::int32_t channelId = 0;
    std::uint8_t OutputMidiChannel = 0; ///< as the channel was last seen
    bool muted = false;
    bool patchMissed = false; ///< while muted a patch change was passed, or a place sought
    bool tempoChanged = false;
    std::int64_t playFrom = 0;    ///< what lies before has been played or sought past
    std::int32_t NextEventI = -1; ///< event to start next, -1 at the end
    std::int32_t nextEventId = 0; ///< tells when a sort has moved the rows
    double nextStart = 0.0;
    std::vector<ActiveEventRow> activeEvents; ///< a heap, what happens first on top
    std::uint64_t nextOrder = 0;
    std::vector<Patch_Change> patchChanges; ///< of the channel, in order of time
    bool patchChangesKnown = false;
};

} // namespace tonvex
