#include "app/windows/song_files.h"

#include "base/text_codec.h"
#include "engine/windows/frm_recorder.h"

#include <QApplication>
#include <QRegularExpression>
#include <QScopedValueRollback>

#include <algorithm>
#include <vector>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* SAVE_QUESTION = "File has changed. Save changes ?";
constexpr const char* EXTENSION = ".tvx";
constexpr const char* MIDI_EXTENSION = ".mid";

bool Is_File_Of_Kind(const fs::path& file, const char* extension) {
    std::error_code ignored;
    return Lower_Ascii(file.extension().string()) == extension && fs::is_regular_file(file, ignored);
}

std::vector<std::string> Filters() {
    return {"Tonvex Files (*.tvx)", "All Files (*.*)"};
}

} // namespace

Song_Files::Song_Files(Session& owner, frmRecorder& transport, QObject* parent)
    : QObject(parent), session(owner), recorder(transport) {
    session.files->observers.push_back(this);
}

Song_Files::~Song_Files() {
    auto& observers = session.files->observers;
    observers.erase(std::remove(observers.begin(), observers.end(), this), observers.end());
}

void Song_Files::On_Song_Replaced() {
    emit replaced();
}

void Song_Files::On_Project_Named(const fs::path&) {
    emit changed();
}

void Song_Files::On_Project_Saved() {
    emit changed();
}

void Song_Files::On_Project_Busy(const std::string&) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void Song_Files::On_Project_Idle() {
    QApplication::restoreOverrideCursor();
}

// ---- leaving a song ----

bool Song_Files::May_Leave() {
    if (!session.project.Modified)
        return true;
    // The wish to close may come again while the question stands.
    if (asking)
        return false;
    const QScopedValueRollback<bool> standing(asking, true);
    switch (session.doors.dialogs.Ask_YesNoCancel(SAVE_QUESTION)) {
    case Answer::Yes:
        return Save_Now();
    case Answer::No:
        return true;
    default:
        return false;
    }
}

void Song_Files::Leave_Song_Then(const std::function<void()>& act) {
    recorder.Stop_Then([this, act] {
        if (May_Leave())
            act();
    });
}

bool Song_Files::Practice_Refuses(const char* text) {
    if (!recorder.Practice().Plain())
        return false;
    session.doors.dialogs.Show_Message(Box_Kind::Information, text);
    return true;
}

bool Song_Files::Work(const std::function<bool()>& work) {
    recorder.Practice().Hold();
    const bool done = work();
    recorder.Practice().Let_Go();
    emit changed(); // the modified mark too
    return done;
}

// ---- new and open ----

void Song_Files::New() {
    if (Practice_Refuses("You need to close the Practice window to create a new file"))
        return;
    Leave_Song_Then([this] { Work([this] { return session.New_Project(), true; }); });
}

void Song_Files::Open() {
    if (Practice_Refuses("You need to close the Practice window to open a file"))
        return;
    Leave_Song_Then([this] {
        const std::string chosen = session.doors.dialogs.Choose_File_To_Open("Open File", Filters());
        if (!chosen.empty())
            Load(chosen, true);
    });
}

void Song_Files::Open_File(const fs::path& file) {
    if (Practice_Refuses("You need to close the Practice window to open a file"))
        return;
    Leave_Song_Then([this, file] { Load(file, true); });
}

void Song_Files::Open_Recent(std::size_t row) {
    if (row >= session.settings.LRU.size() || session.settings.LRU[row].empty() ||
        Practice_Refuses("You need to close the Practice window to open a file"))
        return;
    Leave_Song_Then([this, file = session.settings.LRU[row]] {
        std::error_code error;
        const bool gone = !fs::exists(file, error) && !error;
        Load(file, true);
        if (gone) {
            session.settings.Remove_Recent(file);
            session.Keep_Recent_Files();
            emit changed();
        }
    });
}

bool Song_Files::Load(const fs::path& file, bool updateRecent) {
    return Work([this, &file, updateRecent] { return session.files->LoadProject(file, 0, updateRecent); });
}

void Song_Files::Start_From_Template(const fs::path& file) {
    if (Practice_Refuses("You need to close the Practice window to create a new file"))
        return;
    Leave_Song_Then([this, file] {
        if (!Load(file, false))
            return;
        session.project.Path.clear();
        session.project.ProjectTitle = "Untitled";
        emit changed();
    });
}

void Song_Files::Import_Midi(const fs::path& file) {
    if (Practice_Refuses("You need to close the Practice window to open a file"))
        return;
    Leave_Song_Then([this, file] {
        Work([this, &file] { return session.midiImport->ImportMidi(file) == Work_Outcome::Done; });
    });
}

bool Song_Files::Restore(const fs::path& copy, const fs::path& songPath) {
    if (!May_Leave() || !Load(copy, false))
        return false;
    session.project.Path = songPath;
    session.project.Modified = true;
    emit changed();
    return true;
}

bool Song_Files::Is_Song_File(const fs::path& file) {
    return Is_File_Of_Kind(file, EXTENSION);
}

bool Song_Files::Is_Midi_File(const fs::path& file) {
    return Is_File_Of_Kind(file, MIDI_EXTENSION);
}

std::string Song_Files::File_Name_For(const std::string& title) {
    constexpr int LONGEST = 60; // characters: at most 180 bytes of the 255 that a name may have
    static const QRegularExpression REFUSED(QStringLiteral("[\\x00-\\x1F\\x7F/\\\\:*?\"<>|]"));
    static const QRegularExpression HIDING(QStringLiteral("^[\\s.]+"));
    const QString name = QString::fromStdString(title)
                             .replace(REFUSED, QStringLiteral("-"))
                             .remove(HIDING)
                             .left(LONGEST)
                             .trimmed();
    return name.isEmpty() ? "Untitled" : name.toStdString();
}

// ---- save ----

void Song_Files::Save() {
    recorder.Stop_Then([this] { (void)Save_Now(); });
}

void Song_Files::Save_As() {
    recorder.Stop_Then([this] { (void)Save_Under_New_Name(); });
}

bool Song_Files::Save_Template(const fs::path& file) {
    if (session.transport.Song_Runs()) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information, tr("Stop the song before you save it as a template.").toStdString());
        return false;
    }
    return Work([this, &file] { return session.files->SaveProject(file, Project_Files::SAVE_AS, false); });
}

bool Song_Files::Save_Now() {
    if (session.project.Path.empty())
        return Save_Under_New_Name();
    return Work([this] { return session.files->SaveProject(session.project.Path, 0, true); });
}

bool Song_Files::Save_Under_New_Name() {
    Save_Request request{"Save File", Filters(), EXTENSION, session.project.Path.string()};
    if (request.suggestion.empty())
        request.suggestion = File_Name_For(session.project.ProjectTitle) + EXTENSION;
    const std::string chosen = session.doors.dialogs.Choose_File_To_Save(request);
    return !chosen.empty() &&
           Work([this, &chosen] { return session.files->SaveProject(chosen, Project_Files::SAVE_AS, true); });
}

} // namespace tonvex
