// The entries of the File menu for Standard MIDI Files.

#include "app/windows/frm_main.h"

#include "app/windows/song_files.h"
#include "engine/windows/frm_recorder.h"
#include "platform/local_day.h"

#include <QAction>
#include <QMenu>

#include <filesystem>

namespace tonvex {

namespace {

const std::vector<std::string> FILTERS = {"Midi Files (*.mid)", "All Files (*.*)"};
constexpr const char* EXTENSION = ".mid";

} // namespace

void frmMain::Make_Midi_File_Entries(QMenu* menu) {
    lockedInRun.push_back(Add_Action(menu, tr("Import Midi &File..."), {}, [this] { Import_Midi(); }));
    lockedInRun.push_back(Add_Action(menu, tr("&Export to midi file..."), {}, [this] { Export_Midi(); }));
    QAction* split =
        Add_Check(menu, tr("Export each &drum as a track"), {}, [this](bool on) { exportDrumsSplit = on; });
    split->setToolTip(tr("The next midi file has a track for each drum note"));
}

void frmMain::Import_Midi() {
    Warn_Of_Midi_Files();
    const std::string path = session.doors.dialogs.Choose_File_To_Open("Import Midi File", FILTERS);
    if (!path.empty())
        songFiles->Import_Midi(path);
}

void frmMain::Import_Midi_File(const std::filesystem::path& file) {
    Warn_Of_Midi_Files();
    songFiles->Import_Midi(file);
}

void frmMain::Warn_Of_Midi_Files() {
    if (session.settings.Global_MidiImport_Warning != 0)
        return;
    session.settings.Global_MidiImport_Warning = 1;
    session.doors.dialogs.Show_Message(
        Box_Kind::Information,
        "This is a experimental function and some Midi file\r\nwon't be compatible with Tonvex");
}

void frmMain::Export_Midi() {
    Save_Request request{"Export to midi file", FILTERS, EXTENSION, {}};
    if (!session.project.Path.empty())
        request.suggestion =
            std::filesystem::path(session.project.Path).replace_extension(EXTENSION).string();
    const std::string path = session.doors.dialogs.Choose_File_To_Save(request);
    if (path.empty())
        return;
    recorder->Practice().Hold();
    (void)session.midiExport->Export(path, {exportDrumsSplit, Local_Day()});
    recorder->Practice().Let_Go();
}

} // namespace tonvex
