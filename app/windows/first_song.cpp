#include "app/windows/first_song.h"

#include "app/windows/autosave_timer.h"
#include "app/windows/frm_recovery.h"
#include "app/windows/song_files.h"
#include "project/project_audio_files.h"

namespace tonvex {

namespace fs = std::filesystem;

First_Song::First_Song(Session& owner, Song_Files& commands, Autosave_Timer& keeper, const Theme& look,
                       QWidget* mainWindow)
    : session(owner), songFiles(commands), autosave(keeper), theme(look), window(mainWindow) {}

void First_Song::Open(const std::optional<fs::path>& named) {
    Left_Songs left(session.paths.Get_Folder("temp"));
    const bool restored = Recover(left);
    left.Clear_The_Rest();
    // A song that was never saved has its recordings under the number 0.
    session.files->clearsUnsavedAudio = left.Count() == 0;
    if (session.files->clearsUnsavedAudio && !restored)
        Delete_Unsaved_Audio(session.settings.Projects_AudioPath);
    const fs::path usual = session.paths.Get_Folder("templates") / "default.tvx";
    std::error_code ignored;
    if (named)
        songFiles.Open_File(*named);
    else if (!restored && fs::is_regular_file(usual, ignored))
        songFiles.Start_From_Template(usual);
}

bool First_Song::Recover(Left_Songs& left) {
    bool restored = false;
    while (left.Count() > 0) {
        frmRecovery question(left, session.doors.dialogs, theme, window);
        if (question.exec() != QDialog::Accepted)
            break;
        const std::size_t row = question.Chosen();
        if (!songFiles.Restore(left.Song_File(row), left.Find(row).note.songPath))
            break;
        restored = true;
        // A song's only copy goes when there is another one.
        if (!autosave.Copy_Now())
            break;
        left.Discard(row);
    }
    return restored;
}

} // namespace tonvex
