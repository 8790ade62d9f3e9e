#pragma once

#include "project/song_snapshot.h"
#include "song/notes_stuff.h"

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// What a channel of a stock song sounds like.
struct Builder_Channel {
    const char* name;
    std::uint8_t slot;
    std::uint8_t program;
    std::uint8_t volume;
    std::uint8_t pan;
    std::uint8_t style;
};

/// Puts a song together that ships with the program. Times and lengths in beats, notes and velocities 0 to
/// 127.
class Song_Builder {
public:
    Song_Builder(const NotesStuff& notes, const std::string& title, int tempo);

    /// Returns its row.
    int Add_Channel(const Builder_Channel& channel);
    void Add_Note(int row, double start, double length, int note, int velocity);
    /// octave 1 to 6, 0 for a chord that is fingered on the guitar.
    QChordData Chord(int root, int type, int octave, double length, int velocity) const;
    void Add_Chord(int row, double start, const QChordData& chord);
    void Add_Mark(double start, const std::string& name, std::int32_t colour);
    void Add_Tempo(double beat, int tempo);
    void Set_Effect(int slot, Effect_Kind kind, std::span<const float> values);
    /// values at the song's two ends first, then (beat, value).
    void Draw_Volume(int slot, int first, int last, std::span<const std::pair<double, int>> points);
    void Tell(const std::string& author, const std::string& comments);

    Song_Snapshot Take();

private:
    const NotesStuff& notes;
    Song_Snapshot song;
    std::vector<Channel_Content> contents;
};

} // namespace tonvex
