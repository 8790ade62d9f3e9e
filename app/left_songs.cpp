#include "app/left_songs.h"

#include <algorithm>
#include <utility>

namespace tonvex {

bool Leave_Song(const std::filesystem::path& base, const std::filesystem::path& folder) {
    // Its lock goes with this object, the folder stays: it is a dead session's.
    const auto left = Session_Temp_Folder::Make(base);
    return left && Move_Recovery_Copy(folder, left->Path());
}

Left_Songs::Left_Songs(const std::filesystem::path& base) {
    for (Session_Temp_Folder& folder : Session_Temp_Folder::Take_Left(base)) {
        if (auto find = Find_Recovery_Copy(folder.Path()))
            songs.push_back({std::move(folder), std::move(*find)});
        else
            rest.push_back(std::move(folder));
    }
    std::sort(songs.begin(), songs.end(),
              [](const Left_Song& a, const Left_Song& b) { return a.find.writtenAt > b.find.writtenAt; });
}

std::filesystem::path Left_Songs::Song_File(std::size_t i) const {
    return Recovery_Song_File(songs[i].folder.Path());
}

void Left_Songs::Discard(std::size_t i) {
    songs[i].folder.Remove();
    songs.erase(songs.begin() + static_cast<std::ptrdiff_t>(i));
}

void Left_Songs::Clear_The_Rest() {
    for (Session_Temp_Folder& folder : rest)
        folder.Remove();
    rest.clear();
}

} // namespace tonvex
