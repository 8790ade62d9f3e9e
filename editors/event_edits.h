#pragma once

#include "app/event_raiser_class.h"
#include "platform/user_dialogs.h"
#include "song/change_hub.h"
#include "song/global_channels_manager.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// What edits go through. All outlive the edits.
struct Edit_Parts {
    Change_Hub& hub;
    EventRaiserClass& events;
    const GlobalChannelsManager& channels;
    User_Dialogs& dialogs;
};

/// Every edit of an events editor: change messages, one for each event, and the closing message; together one
/// undo step with the edit's label. Events that an edit would push out of the notes or before the song's
/// start are counted and asked about before any event changes. The events are those of the channel in hand,
/// given by their IDs; unknown ones are passed over. Interface thread. Times and lengths in beats.
class Event_Edits {
public:
    using IDs = std::vector<std::int32_t>;
    /// What is to be added: start and payload.
    using New_Events = std::vector<std::pair<double, EventData>>;

    /// sender: who tells the hub.
    Event_Edits(const Edit_Parts& editParts, Msg_Sender editor) : parts(editParts), sender(editor) {}

    std::int32_t Channel = NOT_GIVEN;

    /// rows: note rows downward, so -1 is a semitone up. False on a no. Without a row's change the closing
    /// message alone goes out.
    bool Move_Rows(const IDs& ids, int rows) const;
    bool Move_Beats(const IDs& ids, double beats) const;
    /// The same with copies that are added; their IDs, nothing on a no.
    IDs Copy_Events(const IDs& ids, double beats, int rows) const;
    /// Each event gets its own length and beats more; what becomes shorter stops at least.
    void Resize(const IDs& ids, double beats, double least = LEAST_LENGTH) const;
    /// To the grid of div divisions of a beat; strength in percent of the way there.
    void Align(const IDs& ids, int div, int strength = 100) const;
    /// Each event's length up to the next later start among them; the last ones stay.
    void Legato(const IDs& ids) const;
    /// New start and length where given; with add the values are added to what the events have. False on a
    /// no.
    bool Set_Times(const IDs& ids, std::optional<double> start, std::optional<double> length, bool add) const;
    /// 0 to 127.
    void Set_Volume(const IDs& ids, int volume) const;
    void Change_Volume(const IDs& ids, int delta) const;
    void Set_Volumes(const std::vector<std::pair<std::int32_t, int>>& volumes) const;
    void Set_Chord_Type(const IDs& ids, int chordType) const;
    /// Of one event; data of its kind.
    void Set_Properties(std::int32_t eventId, const EventData& data, const std::string& label) const;
    void Delete(const IDs& ids, const std::string& label = "Delete events") const;
    /// IDs of what was added, in the order given.
    IDs Add(const New_Events& events, const std::string& label) const;

    /// The shortest length that an edit leaves.
    static constexpr double LEAST_LENGTH = MIN_LENGTH_BEATS;

private:
    class Step;

    const ChannelClass* Store() const;
    std::optional<ChannelClass::Event_View> Event(std::int32_t eventId) const;
    /// Would leave the notes. Of kinds that have one.
    bool Leaves_Notes(std::int32_t eventId, int rows) const;
    bool Rows_Agreed(const IDs& ids, int rows) const;
    bool Start_Agreed(std::ptrdiff_t before) const;
    IDs Send_Adds(const New_Events& events) const;
    void Send_Rows(const IDs& ids, int rows) const;

    Edit_Parts parts;
    Msg_Sender sender;
};

} // namespace tonvex
