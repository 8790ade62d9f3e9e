#pragma once

#include "song/event_data.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tonvex {

/// What a channel's store needs to know of the world. All calls on the interface thread.
class Channel_Host {
public:
    virtual ~Channel_Host() = default;
    /// True while the transport runs: changes are then logged as mods.
    virtual bool Live_Changes_On() const = 0;
    /// An edit pushed the event before the start of the song or off the notes: change message 1017.
    virtual void Event_Fell_Out(std::int32_t channelNumber, std::int32_t eventId) = 0;
    /// Length in beats of a clip of sampleCount samples that starts at startBeat, by the tempo map.
    virtual double Clip_Length_Beats(double startBeat, std::int32_t sampleCount) const = 0;
    /// The name of chord root (0 to 11) in the notation in force, and a chord type's notes and suffix.
    virtual void Retype_Chord(QChordData& chord, std::uint8_t chordType) const = 0;
    virtual void Rename_Chord(QChordData& chord, int semitones) const = 0;
};

/// The store of one channel's events: a time-ordered linked list through a table of rows, payloads by kind
/// beside it, the recording buffer, and the log of changes made while the transport runs.
/// Interface thread only; no locks. Times and lengths in beats.
/// EventID is the stable handle, EventI a row that ReSort_StartTime changes. Bad rows give -1 or nothing.
/// Costs: adding at the end, reading, finding by ID and deleting are constant on average; adding elsewhere
/// and sorting are n log n over a batch.
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
        MOD_PROPERTIES = 6
    };

    /// host outlives the store.
    explicit ChannelClass(Channel_Host& host);

    std::int32_t ChannelNumber = 0; ///< the ChannelID of the owning row

    // ---- adding, deleting, changing ----
    /// Behind all events of equal time; with notSorted appended behind the last row placed, and the caller
    /// runs ReSort_StartTime when done. Returns the EventID.
    std::int32_t AddNewEvent(double startTime, const EventData& data, bool notSorted = false);
    /// By row when eventI is not -1, else by ID. False when there is no such event.
    bool DeleteEvent(std::int32_t eventId, std::int32_t eventI = -1);
    /// Each setter takes an absolute value or, when delta is given, the change. See the markers NOT_GIVEN.
    bool Set_Event_StartTime(std::int32_t eventId, double newTime, double delta = NOT_GIVEN_TIME,
                             std::int32_t eventI = -1);
    void Set_Event_Length(std::int32_t eventId, double newLength, double delta = NOT_GIVEN_TIME);
    void Set_Event_Volume(std::int32_t eventId, std::int32_t newVol, std::int32_t delta = NOT_GIVEN);
    void Set_Event_Note(std::int32_t eventId, std::int32_t newNote, std::int32_t delta = NOT_GIVEN);
    void Set_Event_ChordType(std::int32_t eventId, std::uint8_t chordType);
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
    std::int32_t FirstEvent() const noexcept { return FirstEventI; }
    std::int32_t LastTimeEvent() const noexcept { return LastTimeI; }
    /// The row on which an editor draws the event.
    std::int32_t Get_Event_BaseNote(std::int32_t eventI) const;
    double GetEvent_Length(std::int32_t eventI) const;
    /// End of the event that ends last; 0 in an empty channel.
    double Get_ChannelLength_Beats() const;
    /// First event at or after time in time order, -1 when there is none. n log n to build after a
    /// change, logarithmic then.
    std::int32_t First_Event_At(double time) const;

    // ---- whole channel ----
    void ReSort_StartTime();
    void Defrag_Data();
    void Project_ChangeSpeed(float factor);
    void MC_MoveBarEvents(std::int32_t fromBar, std::int32_t bars);
    void MC_DeleteBarEvents(std::int32_t fromBar, std::int32_t bars);

    // ---- recording ----
    /// Into the recording buffer; the time list does not see it before CopyRecEvents.
    std::int32_t AddNewEvent_RecMode(double startTime, const EventData& data);
    std::int32_t Recorded_Count() const noexcept { return RecCount; }
    void CopyRecEvents();

    // ---- changes made while the transport runs ----
    bool Mods_Pending() const noexcept { return ModsPending; }
    std::vector<Mod> Get_Mods() const;
    void Clear_Mods() noexcept;
    void Add_Special_Mod(std::int32_t code);

private:
    std::int32_t FirstEventI = -1;
    std::int32_t LastTimeI = -1;
    std::int32_t LastEventN = -1;
    std::int32_t RecCount = 0;
    bool ModsPending = false;
    Channel_Host& host;
};

} // namespace tonvex
