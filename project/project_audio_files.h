#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

namespace tonvex {

/// The audio files of a project: "<ProjectID>-<n>.wav" with a companion "<ProjectID>-<n>.snp", and the marker
/// "<ProjectID>.idp", all in one folder that all projects share. Project 0 is whatever has not been saved.

/// Smallest n from 1 to 1000000 without a file "<n>.idp" in the folder, or -1.
std::int32_t Find_Free_ProjectID(const std::filesystem::path& audioFolder);

std::filesystem::path Project_ID_File(const std::filesystem::path& audioFolder, std::int32_t projectId);

/// Deletes the audio of project 0, of which a song that was never saved left behind what it had.
void Delete_Unsaved_Audio(const std::filesystem::path& audioFolder);

/// A project takes a new ID, and its audio files go along. Until Keep is called the end of this object
/// undoes all of it.
class Project_ID_Change {
public:
    enum class Files { Copied, Renamed };

    Project_ID_Change(std::filesystem::path audioFolder, std::int32_t newId);
    ~Project_ID_Change();
    Project_ID_Change(const Project_ID_Change&) = delete;
    Project_ID_Change& operator=(const Project_ID_Change&) = delete;

    /// The marker, with one line that holds the project's path. False when it cannot be written.
    bool Make_Marker(const std::filesystem::path& projectPath);
    /// Each "<oldId>-<n>.wav" and its companion under the new ID, in place of what has that name. False when
    /// one cannot be.
    bool Bring_Files(std::int32_t oldId, Files how);
    void Keep() noexcept { kept = true; }

private:
    bool Bring_One(const std::filesystem::path& from, const std::filesystem::path& to, Files how);

    std::filesystem::path folder;
    std::int32_t id;
    bool marked = false;
    bool kept = false;
    Files manner = Files::Copied;
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> brought; ///< old name, new name
};

} // namespace tonvex
