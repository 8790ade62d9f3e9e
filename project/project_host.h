#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace tonvex {

/// What the project files need of the program around them. Interface thread.
class Project_Host {
public:
    virtual ~Project_Host() = default;
    /// The session's own folder for files that do not outlive it; empty when there is none.
    virtual std::filesystem::path Temp_Folder() const = 0;
    /// Where the audio files of all projects lie.
    virtual std::filesystem::path Audio_Folder() const = 0;
    virtual std::int32_t Installation_ID() const = 0;
    /// A new song's EvEdViewBeats.
    virtual bool Shows_Beats() const = 0;
    /// To the top of the recent files.
    virtual void Add_Recent(const std::filesystem::path& path) = 0;
};

/// Who follows what becomes of the project: windows, undo, autosave. Interface thread.
class Project_Observer {
public:
    virtual ~Project_Observer() = default;
    /// Another song, a new one or a loaded one, stands in the place of the one before.
    virtual void On_Song_Replaced() {}
    /// The song's file has a name, or, with an empty path, none: the window's title and the recent files are
    /// due.
    virtual void On_Project_Named(const std::filesystem::path& /*path*/) {}
    /// The song was written to its file.
    virtual void On_Project_Saved() {}
    /// Work that takes a while begins, and ends.
    virtual void On_Project_Busy(const std::string& /*status*/) {}
    virtual void On_Project_Idle() {}
};

} // namespace tonvex
