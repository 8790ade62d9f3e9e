#pragma once

#include "app/left_songs.h"
#include "app/session.h"
#include "widgets/theme.h"

#include <filesystem>
#include <optional>

class QWidget;

namespace tonvex {

class Autosave_Timer;
class Song_Files;

/// What stands in the window at the start: songs that a dead session left unsaved, if the user wants them;
/// the one named on the command line; else the user's default template; else what is there. Nothing that
/// dead sessions left is cleared away before the user has answered. Interface thread; the window is shown
/// and no song runs. All given to it outlive it.
class First_Song {
public:
    First_Song(Session& session, Song_Files& songFiles, Autosave_Timer& autosave, const Theme& theme,
               QWidget* window);
    void Open(const std::optional<std::filesystem::path>& named);

private:
    /// True when a song was restored.
    bool Recover(Left_Songs& left);

    Session& session;
    Song_Files& songFiles;
    Autosave_Timer& autosave;
    const Theme& theme;
    QWidget* window;
};

} // namespace tonvex
