#pragma once

#include "app/session.h"

#include <QObject>

#include <filesystem>
#include <functional>

namespace tonvex {

class frmRecorder;

/// The user's commands on the song as a file: new, open, save and what leads to them. Each first stops a run
/// that is on and goes on when that is over; each that would put another song in the place of an unsaved one
/// asks first. What goes wrong has been told when a command comes back. Interface thread. Session and
/// recorder outlive it.
class Song_Files final : public QObject, public Project_Observer {
    Q_OBJECT
public:
    Song_Files(Session& session, frmRecorder& recorder, QObject* parent = nullptr);
    ~Song_Files() override;

    void New();
    /// Asks which.
    void Open();
    void Open_File(const std::filesystem::path& file);
    /// Row of the recent files. One that is gone leaves the list.
    void Open_Recent(std::size_t row);
    void Save();
    void Save_As();
    /// Writes the song as a project template; path, title and modified mark stay. False when that was not
    /// possible.
    bool Save_Template(const std::filesystem::path& file);
    /// The song of a Standard MIDI File, which it has nothing more to do with.
    void Import_Midi(const std::filesystem::path& file);
    /// A new song that begins as the one in the file, which it has nothing more to do with.
    void Start_From_Template(const std::filesystem::path& file);
    /// As the song was when its session died: unsaved, its own file as told. The song there is left as by
    /// Open. False when it could not be brought back.
    bool Restore(const std::filesystem::path& copy, const std::filesystem::path& songPath);

    /// Stops a run, asks about unsaved changes and, unless the user cancels, acts: for whatever else puts
    /// another song in place.
    void Leave_Song_Then(const std::function<void()>& act);
    /// True when the song in hand may go: it has no unsaved changes, or was saved now, or the user gives the
    /// changes up. No song runs.
    bool May_Leave();

    /// A single existing file of the program's kind, by its name.
    static bool Is_Song_File(const std::filesystem::path& file);
    /// The same of a Standard MIDI File.
    static bool Is_Midi_File(const std::filesystem::path& file);
    /// What a song of that title may be called on any disk, without the ending.
    static std::string File_Name_For(const std::string& title);

    void On_Song_Replaced() override;
    void On_Project_Named(const std::filesystem::path& path) override;
    void On_Project_Saved() override;
    void On_Project_Busy(const std::string& status) override;
    void On_Project_Idle() override;

signals:
    /// Another song stands there.
    void replaced();
    /// The title and the recent files are due.
    void changed();

private:
    /// Told to the user while the keyboard window practises.
    bool Practice_Refuses(const char* text);
    /// The keys are silent while the song is changed under them.
    bool Work(const std::function<bool()>& work);
    bool Load(const std::filesystem::path& file, bool updateRecent);
    bool Save_Now();
    bool Save_Under_New_Name();

    Session& session;
    frmRecorder& recorder;
    bool asking = false;
};

} // namespace tonvex
