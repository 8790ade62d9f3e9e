#pragma once

#include "song/channel_content.h"
#include "song/event_data.h"
#include "song/event_tables.h"
#include "song/event_time_list.h"
#include "song/song_length_source.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tonvex {

/// What a channel's store needs to know of the world. All calls on the interface thread.
class Channel_Host : public Song_Length_Source {
public:
    /// True while the transport runs: changes are then logged as mods.
    virtual bool Live_Changes_On() const = 0;
    /// An edit pushed the event before the start of the song or off the notes: change message 1017, which
    /// leads back into DeleteEvent of the same store. The store deletes the event itself if it is still
    /// there afterwards.
    virtual void Event_Fell_Out(std::int32_t channelNumber, std::int32_t eventId) = 0;
    /// Length in beats of a clip of sampleCount samples that starts at startBeat, by the tempo map.
    virtual double Clip_Length_Beats(double startBeat, std::int32_t sampleCount) const = 0;
    /// Gives the chord another type: its notes, used count, ChordTypeIndex and name, from ChordFlagA.
    virtual void Retype_Chord(QChordData& chord, std::uint8_t chordType) const = 0;
    /// Moves the leading note name of ChordName by -11 to 11 semitones, in the notation in force. Root and
    /// notes have been moved already.
    virtual void Rename_Chord(QChordData& chord, int semitones) const = 0;
};

/// The store of one channel's events: rows in order of arrival, linked in order of time, payloads by kind
/// beside them, the recording buffer, and the log of changes made while the transport runs.
/// Interface thread only; no locks. Times and lengths in beats.
///
/// EventID is the stable handle, EventI a row. ReSort_StartTime changes rows, Defrag_Data moves payloads; a
/// row may also be taken anew once the channel has become empty. Bad rows and unknown IDs give -1 or do
/// nothing.
/// Order: by start time, among equals by row, which is the order of arrival.
/// Start times lie in 0 to MAX_EVENT_BEATS. A new event outside goes to the nearer end, one whose time is
/// not a number to 0; a length that is not a number becomes the shortest. So nothing is lost and the order
/// is always defined. A setter refuses what is not a number.
/// Costs: adding at the end, reading and finding by ID are constant on average; deleting and adding
/// elsewhere logarithmic; sorting n log n; compaction linear.
class ChannelClass {
public:
    /// One event as ReadEvent shows it. The pointers hold until the next add or defrag.
    struct Event_View {
        std::int32_t EventI = -1;
        double StartTime = 0.0;
        Event_Kind Kind = EV_NOTE;
        std::int32_t EventID = 0;
        const NoteData* Note = nullptr;
        const QChordData* QChord = nullptr;
        const NamedEventData* Named = nullptr;
        const MCEventData* MC = nullptr;
        const AudioEventData* Audio = nullptr;
        std::int32_t DataRef = -1; ///< row in the kind's table; for EV_PATCH the row of the patch table
        double RecLength = 0.0;    ///< ReadEvent_RecMode only
        /// A copy of the payload.
        EventData Payload() const;
    };
    struct Mod {
        std::int32_t ID;
        std::int32_t Code;
        bool operator==(const Mod&) const = default;
    };
    /// Mod codes.
    enum : std::int32_t {
        MOD_SPECIAL = 0,
        MOD_DELETED = 1,
        MOD_LENGTH = 2,
        MOD_START_TIME = 3,
        MOD_ADDED = 4,
        MOD_NOTE = 5,
        MOD_PROPERTIES = 6,
        MOD_VOLUME = 7
    };

    /// host outlives the store.
    explicit ChannelClass(Channel_Host& host);

    std::int32_t ChannelNumber = 0; ///< the ChannelID of the owning row

    // ---- adding, deleting, changing ----
    /// Behind all events of equal time; with notSorted behind the last event whatever its time, and the
    /// caller runs ReSort_StartTime when done. Returns the EventID.
    std::int32_t AddNewEvent(double startTime, const EventData& data, bool notSorted = false);
    /// By row when eventI is not -1, else by ID. False when there is no such event.
    bool DeleteEvent(std::int32_t eventId, std::int32_t eventI = -1);
    /// Each setter takes an absolute value or, when delta is given, the change. See the markers NOT_GIVEN;
    /// with neither given nothing changes.
    /// False when the event is unknown, the time is not a number, or it fell before the start of the song
    /// and is gone. The list is not re-linked: the caller runs ReSort_StartTime when done.
    bool Set_Event_StartTime(std::int32_t eventId, double newTime, double delta = NOT_GIVEN_TIME,
                             std::int32_t eventI = -1);
    /// At least MIN_LENGTH_BEATS. Events without a stored length stay as they are.
    void Set_Event_Length(std::int32_t eventId, double newLength, double delta = NOT_GIVEN_TIME);
    /// Kept within 0 to 127. Notes and chords.
    void Set_Event_Volume(std::int32_t eventId, std::int32_t newVol, std::int32_t delta = NOT_GIVEN);
    /// Moves a note, all used notes of a chord (newNote is its first note) or a style fragment's root
    /// (newNote is root + 48). A note or chord that would leave 0 to 127 falls out.
    void Set_Event_Note(std::int32_t eventId, std::int32_t newNote, std::int32_t delta = NOT_GIVEN);
    void Set_Event_ChordType(std::int32_t eventId, std::uint8_t chordType);
    /// The payload of a live event but its length. Data of another kind changes nothing.
    void Set_Event_Properties(std::int32_t eventId, const EventData& data);

    // ---- reading ----
    std::optional<Event_View> ReadEvent(std::int32_t eventI) const;
    std::optional<Event_View> ReadEvent_RecMode(std::int32_t recI) const;
    std::int32_t GetEvent_I(std::int32_t eventId) const;
    std::int32_t GetEvent_ID(std::int32_t eventI) const;
    /// A plain read of the link; -1 behind the last event.
    std::int32_t Get_NextEventI(std::int32_t eventI) const;
    bool ExistsEventI(std::int32_t eventI) const;
    bool ValidEventI(std::int32_t eventI) const;
    /// Number of live events minus one; -1 in an empty channel.
    std::int32_t GetTotalEvents() const noexcept { return LastEventN; }
    std::int32_t FirstEvent() const noexcept { return timeList.First(); }
    std::int32_t LastTimeEvent() const noexcept { return timeList.Last(); }
    /// The row on which an editor draws the event.
    std::int32_t Get_Event_BaseNote(std::int32_t eventI) const;
    double GetEvent_Length(std::int32_t eventI) const;
    /// End of the event that ends last; 0 in an empty channel. Logarithmic after an edit, linear after a
    /// re-sort and in a channel with clips.
    double Get_ChannelLength_Beats() const;
    /// First event at or after time, -1 when there is none. Logarithmic, linear once after a re-sort and
    /// while one is owed.
    std::int32_t First_Event_At(double time) const;

    // ---- whole channel ----
    /// Squeezes out free rows and links all events anew.
    void ReSort_StartTime();
    /// Squeezes out payload rows that no event uses, stored or being recorded.
    void Defrag_Data();
    /// Start times and stored lengths times factor. A factor not above 0 changes nothing.
    void Project_ChangeSpeed(float factor);
    /// Events at or behind the bar move by bars (4 beats each); what falls before 0 goes as in
    /// Set_Event_StartTime.
    void MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars);
    /// Deletes the events that start in the bars and moves the later ones up.
    void MC_DeleteBarEvents(std::int32_t fromBar, std::int32_t bars);
    /// As new, NextID and ChannelNumber included.
    void Clear();
    /// IDs go on at next at the earliest: whoever brings back events with their IDs says where they ended.
    void Raise_NextID(std::int32_t next) noexcept;

    // ---- recording ----
    /// Into the recording buffer; the time list does not see it before CopyRecEvents. Returns its row.
    std::int32_t AddNewEvent_RecMode(double startTime, const EventData& data);
    std::int32_t Recorded_Count() const noexcept { return static_cast<std::int32_t>(RecEvents.size()); }
    /// The take joins the stored events, each behind those of equal time, with the ID it has.
    void CopyRecEvents();

    // ---- changes made while the transport runs; logged only while Live_Changes_On ----
    bool Mods_Pending() const noexcept { return ModsPending; }
    std::vector<Mod> Get_Mods() const;
    void Clear_Mods() noexcept;
    void Add_Special_Mod(std::int32_t code);

    // ---- the whole as plain rows ----
    /// Rises with every change of what Content gives; an edit that leaves all as it was leaves it, too.
    std::uint64_t Revision() const noexcept { return revision; }
    /// All rows as they stand. As long as nothing changes and somebody still holds the last one, the same
    /// object is given again, so that a copy of a big song shares what has not changed since the one before.
    std::shared_ptr<const Channel_Content> Content() const;
    /// Becomes what content says, row for row, with its links and IDs; what is being recorded and the log
    /// go. Links that do not visit every live row once are made anew, in order of time.
    void Take_Content(const Channel_Content& content);

private:
    struct RecEvent {
        std::int32_t ID = 0;
        double StartTime = 0.0;
        Event_Kind Kind = EV_NOTE;
        std::int32_t DataRef = -1;
        double Length = 0.0;
    };
    ChannelEvent& Row(std::int32_t eventI) { return Events[static_cast<std::size_t>(eventI)]; }
    const ChannelEvent& Row(std::int32_t eventI) const { return Events[static_cast<std::size_t>(eventI)]; }
    std::int32_t New_ID();
    void Place(const ChannelEvent& event, bool notSorted);
    void Relink();
    std::size_t Payload_Count() const;
    void Fall_Out(std::int32_t eventId);
    void Shift_Notes(std::int32_t eventI, std::int64_t semitones);
    void Point_At_Data(Event_View& view) const;
    void Note_End(std::int32_t eventI);
    void Forget_Ends() const;
    double Length_Of(Event_Kind kind, std::int32_t dataRef, double startTime) const;
    void Log(std::int32_t eventId, std::int32_t code);
    std::unordered_map<std::int32_t, std::int32_t>& Row_By_ID() const;
    void Changed() noexcept {
        lastContent.reset();
        ++revision;
    }

    Channel_Host& host;
    std::vector<ChannelEvent> Events; ///< in order of arrival; the links are timeList's, not NextI
    Event_Tables tables;
    Event_Time_List timeList;
    /// A start time was changed, or an event appended, without linking in order.
    bool reSortOwed = false;
    /// Row by ID; -1 for an event in the recording buffer. Made when an ID is first looked for, kept in step
    /// from then on: a song that is only loaded, played and saved never pays for it.
    mutable std::unordered_map<std::int32_t, std::int32_t> rowById;
    mutable bool rowsIndexed = false;
    mutable std::weak_ptr<const Channel_Content> lastContent;
    std::uint64_t revision = 0;
    std::int32_t NextID = FIRST_ID;
    /// No ID from 0 to below this is free, once NextID has run out.
    std::int32_t lowestSpareId = 0;
    std::int32_t LastEventN = -1;
    /// Ends and rows, the latest on top, since the length was last asked for. Entries that no longer hold
    /// are dropped when they come to the top, so asking after each of many edits stays cheap.
    mutable std::vector<Event_Time_List::Place> ends;
    mutable bool endsKnown = false;
    mutable bool endsAsked = false;
    std::vector<RecEvent> RecEvents;
    std::vector<Mod> mods;
    bool ModsPending = false;
};

} // namespace tonvex
