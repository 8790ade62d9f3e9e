#pragma once

#include "project/song_snapshot.h"
#include "song/notes_stuff.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

/// A song that ships with the program.
struct Stock_Song {
    std::filesystem::path file; ///< below the data folder
    Song_Snapshot song;
};

/// The demo song and the project templates. notes knows the chord shapes that ship.
std::vector<Stock_Song> Stock_Songs(const NotesStuff& notes);

} // namespace tonvex
