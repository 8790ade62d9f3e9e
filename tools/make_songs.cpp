// Writes the demo song and the project templates that ship with the program: make_songs FOLDER (data).

#include "base/file_io.h"
#include "project/project_writer.h"
#include "tools/stock_songs.h"

#include <cstdio>
#include <filesystem>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_songs FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    tonvex::NotesStuff notes;
    std::string error;
    bool good = notes.Load_Chords(folder / "chords.txt", error);
    if (good) {
        for (const auto& stock : tonvex::Stock_Songs(notes)) {
            const auto bytes = tonvex::Write_Project(stock.song);
            good = good && bytes && tonvex::Replace_File(folder / stock.file, *bytes, error);
        }
    }
    if (!good)
        std::fprintf(stderr, "make_songs: %s\n", error.c_str());
    return good ? 0 : 1;
}
