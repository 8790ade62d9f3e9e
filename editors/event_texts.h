#pragma once

#include "song/channel_class.h"
#include "song/global_channels_manager.h"
#include "song/notes_stuff.h"

#include <optional>
#include <string>

namespace tonvex {

/// What names an event needs.
struct Event_Names {
    const NotesStuff& notes;
    const GlobalChannelsManager& channels;
    bool drums = false;       ///< the channel sounds on the drum slot: notes are drums
    bool noteNumbers = false; ///< MIDI numbers stand behind note names
};

/// A note's name, on the drum slot the drum's, as far as there is one.
std::string Note_Text(int note, const Event_Names& names);
/// The name alone, for a small place: "E5", "Am7".
std::string Short_Text(const ChannelClass::Event_View& event, const Event_Names& names);
/// "N: E5 Vol: 96" and its like, by kind.
std::string Event_Text(const ChannelClass::Event_View& event, const Event_Names& names);
/// All that there is to tell of an event: name, bar and beat, length, volume.
std::string Spoken_Text(const ChannelClass::Event_View& event, double length, const Event_Names& names);

/// Beats of a position: "bar:beat" from 1:1, or beats with a decimal point. barBeat tells which is meant.
std::optional<double> Parse_Position(const std::string& text, bool barBeat);
/// Beats of a length or a difference, which may be negative: "bars:beats" from 0:0, or beats.
std::optional<double> Parse_Distance(const std::string& text, bool barBeat);
/// As Parse_Distance reads it: 5.5 beats are "1:1.5".
std::string Distance_Text(double beats, bool barBeat);
/// Beats with at most three decimals, without trailing zeros.
std::string Beats_Text(double beats);

} // namespace tonvex
