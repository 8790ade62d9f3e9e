#include "app/windows/song_files.h"

#include "app/windows/frm_recovery.h"
#include "base/file_io.h"
#include "engine/windows/frm_recorder.h"
#include "project/project_reader.h"
#include "project/windows/frm_new_file.h"
#include "project/windows/frm_properties.h"
#include "project/windows/frm_save_as_template.h"
#include "support/child_process.h"
#include "support/window_program.h"
#include "support/window_world.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>

using namespace tonvex;
namespace fs = std::filesystem;

namespace {

const std::string QUESTION = "File has changed. Save changes ?";
constexpr const char* CHILD = "--a-window-to-be-killed";

/// A program with a song of three channels on disk, "three.tvx", and an unsaved one of two in hand.
struct With_Songs : Program {
    With_Songs() {
        Add_Channel();
        Add_Channel();
        dialogs.fileToSave = three.string();
        Files().Save_As();
        Files().New();
        Add_Channel();
        dialogs.fileToSave = two.string();
    }
    Song_Files& Files() { return window->Files(); }
    void Add_Channel() { session->hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Another"), false); }
    int Channels() const { return session->channels->Count_Channels(); }
    QAction* Entry(const QString& text) const {
        for (QAction* action : window->findChildren<QAction*>())
            if (action->text().remove('&').endsWith(text))
                return action;
        qFatal("no such entry");
        return nullptr;
    }
    void Drop(const fs::path& file) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &event);
    }
    fs::path three = folder / "three.tvx";
    fs::path two = folder / "two.tvx";
};

/// Live channels in the file, or the notes in its first; -1 when it is no song.
int Count_In(const fs::path& file, bool notes = false) {
    Song_Snapshot song;
    const auto bytes = Read_File(file);
    if (!bytes || Read_Project(*bytes, song) != Read_Outcome::Whole)
        return -1;
    if (notes)
        return song.Contents[0] ? static_cast<int>(song.Contents[0]->Events.size()) : 0;
    return static_cast<int>(std::count_if(song.Channels.begin(), song.Channels.end(),
                                          [](const GlobalChannel& row) { return Is_On(row.InUse); }));
}

/// The recovery copies of all sessions below a home.
std::vector<fs::path> Copies(const fs::path& home) {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(home / "temp"))
        if (entry.path().filename() == "recovery.tvx")
            found.push_back(entry.path());
    return found;
}

/// Presses the button of each recovery window that opens, the last of the names again and again.
class Answering : public QTimer {
public:
    explicit Answering(QStringList names) : buttons(std::move(names)) {
        callOnTimeout(this, [this] {
            auto* window = qobject_cast<frmRecovery*>(QApplication::activeModalWidget());
            if (window == nullptr)
                return;
            rowsSeen << window->findChild<QTreeWidget*>()->topLevelItemCount();
            window->findChild<QPushButton*>(buttons.size() > 1 ? buttons.takeFirst() : buttons[0])->click();
        });
        start(5);
    }
    QStringList buttons;
    QList<int> rowsSeen;
};

/// A window in which a take of eight notes is played, until somebody ends the process.
int Be_The_Child(const fs::path& home) {
    Program p(home);
    p.session->project.Path = home / "mine.tvx";
    p.session->project.ProjectTitle = "Mine";
    int step = 0;
    QTimer player;
    player.callOnTimeout([&] {
        if (!p.session->transport.Recording)
            return;
        if (step < 16)
            p.Edge(step % 2 == 0 ? QEvent::KeyPress : QEvent::KeyRelease, 44, Qt::Key_Z);
        else
            p.window->Recorder().Button_Stop();
        ++step;
    });
    player.start(10);
    p.window->Recorder().Button_Rec();
    return QApplication::exec();
}

} // namespace

class Song_Files_Test : public QObject {
    Q_OBJECT
private slots:
    void Nothing_Unsaved_Goes_Unasked();
    void A_Save_That_Fails_Keeps_The_Song();
    void The_Title_And_The_Recent_Files_Follow();
    void A_Template_Takes_Nothing_Of_The_Song();
    void Commands_Stop_A_Run_First();
    void The_Practice_Window_Refuses();
    void A_Killed_Window_Is_Offered_And_Its_Take_Is_There();
    void Finds_Are_Handled_One_After_Another();
    void A_System_That_Ends_Loses_Nothing();
};

void Song_Files_Test::Nothing_Unsaved_Goes_Unasked() {
    const struct {
        const char* name;
        std::function<void(With_Songs&)> act;
        int channelsAfter; ///< 0: the window is closed
    } rows[] = {
        {"new", [](With_Songs& p) { p.Entry("New")->trigger(); }, 1},
        {"open", [](With_Songs& p) { p.Entry("Open...")->trigger(); }, 3},
        {"recent", [](With_Songs& p) { p.Entry("three.tvx")->trigger(); }, 3},
        {"dropped", [](With_Songs& p) { p.Drop(p.three); }, 3},
        {"on the command line", [](With_Songs& p) { p.window->Open_First_Song(p.three); }, 3},
        {"template",
         [](With_Songs& p) {
             fs::copy_file(p.three, p.folder / "templates/Band.tvx");
             p.Entry("New from template...")->trigger();
             auto* window = p.window->findChild<frmNewFile*>();
             Find<QListWidget>(*window, "List1")->setCurrentRow(0);
             window->accept();
         },
         3},
        {"import", [](With_Songs& p) { p.Files().Leave_Song_Then([&p] { p.session->New_Project(); }); }, 1},
        {"exit", [](With_Songs& p) { p.Entry("Exit")->trigger(); }, 0},
    };
    const char* const ways[] = {"yes", "no", "cancel", "yes, but no name", "nothing to ask"};
    enum Way { Yes, No, Cancel, Yes_But_No_Name, Nothing_To_Ask };
    for (const auto& row : rows) {
        for (const Way way : {Yes, No, Cancel, Yes_But_No_Name, Nothing_To_Ask}) {
            const std::string told = row.name + std::string(": ") + ways[way];
            With_Songs p;
            p.dialogs.fileToOpen = p.three.string();
            p.dialogs.answers[QUESTION] = way == Yes || way == Yes_But_No_Name;
            if (way == Cancel)
                p.dialogs.cancelled = {QUESTION};
            if (way == Yes_But_No_Name)
                p.dialogs.fileToSave.clear();
            if (way == Nothing_To_Ask)
                p.Files().Save();
            p.dialogs.asked.clear();
            row.act(p);
            QTest::qWait(1);
            const bool stays = way == Cancel || way == Yes_But_No_Name;
            const bool closed = row.channelsAfter == 0;
            QVERIFY2(p.window->isVisible() == (stays || !closed), told.c_str());
            QVERIFY2(p.dialogs.asked.size() == (way == Nothing_To_Ask ? 0U : 1U), told.c_str());
            QVERIFY2(Count_In(p.two) == (way == Yes || way == Nothing_To_Ask ? 2 : -1), told.c_str());
            QVERIFY2(p.Channels() == (stays || closed ? 2 : row.channelsAfter), told.c_str());
            QVERIFY2(bool(p.session->project.Modified) == (stays || (closed && way == No)), told.c_str());
            QVERIFY2(Count_In(p.three) == 3, told.c_str());
        }
    }
}

void Song_Files_Test::A_Save_That_Fails_Keeps_The_Song() {
    With_Songs p;
    p.dialogs.answers[QUESTION] = true;
    p.dialogs.fileToSave = (p.folder / "no such folder/two.tvx").string();
    p.Files().New();
    QCOMPARE(p.dialogs.shown.back().text, std::string("Error saving file"));
    QCOMPARE(p.Channels(), 2);
    QVERIFY(p.session->project.Modified && p.session->project.Path.empty());
    QVERIFY(!p.window->close());
}

void Song_Files_Test::The_Title_And_The_Recent_Files_Follow() {
    With_Songs p;
    const auto title = [&p] { return p.window->windowTitle() + (p.window->isWindowModified() ? "*" : ""); };
    QTRY_COMPARE(title(), QStringLiteral("Untitled[*] - Tonvex*"));
    p.Files().Save();
    QCOMPARE(title(), QStringLiteral("two.tvx[*] - Tonvex"));
    p.Entry("Properties...")->trigger();
    QVERIFY(p.window->findChild<frmProperties*>());
    p.Files().Start_From_Template(p.three);
    QTRY_VERIFY(!p.window->findChild<frmProperties*>()); // its OK would name this song as the one before
    QCOMPARE(title(), QStringLiteral("Untitled[*] - Tonvex"));
    QVERIFY(p.session->project.Path.empty());
    const QAction* first = p.Entry("two.tvx");
    QCOMPARE(first->toolTip(), QString::fromStdString(p.two.string()));
    p.Entry("three.tvx")->trigger();
    QTRY_COMPARE(title(), QStringLiteral("three.tvx[*] - Tonvex"));
    fs::remove(p.two);
    p.Entry("two.tvx")->trigger();
    QTRY_COMPARE(p.session->settings.LRU[1], std::string());
    QCOMPARE(p.dialogs.shown.back().text, std::string("File does not exist"));
    QCOMPARE(p.Channels(), 3);
    QCOMPARE(p.window->Selected_Channel(), p.Channel(0).ChannelID);
    p.folder.Write("broken.tvx", "no song");
    p.Drop(p.folder / "broken.tvx");
    QTRY_COMPARE(title(), QStringLiteral("Untitled[*] - Tonvex"));
    QVERIFY(!Song_Files::Is_Song_File(p.folder / "nothing.tvx") && Song_Files::Is_Song_File(p.three));
    QCOMPARE(Song_Files::File_Name_For(".AC/DC: \"K\u00E4te 1%\"\n"), std::string("AC-DC- -K\u00E4te 1%--"));
    QCOMPARE(Song_Files::File_Name_For(" . "), std::string("Untitled"));
}

void Song_Files_Test::A_Template_Takes_Nothing_Of_The_Song() {
    With_Songs p;
    QTRY_VERIFY(p.window->isWindowModified());
    const QString title = p.window->windowTitle();
    const auto recent = p.session->settings.LRU;
    p.Entry("Save as template...")->trigger();
    auto* window = p.window->findChild<frmSaveAsTemplate*>();
    Find<QLineEdit>(*window, "Text1")->setText(QStringLiteral("Duo"));
    p.session->transport.PlayRequested = true;
    window->accept();
    QCOMPARE(p.dialogs.shown.back().text, std::string("Stop the song before you save it as a template."));
    p.session->transport.PlayRequested = false;
    window->accept();
    QVERIFY(!window->isVisible());
    QCOMPARE(Count_In(p.folder / "templates/Duo.tvx"), 2);
    QTest::qWait(1);
    QVERIFY(p.session->project.Modified && p.window->isWindowModified() && p.session->project.Path.empty());
    QCOMPARE(p.window->windowTitle(), title);
    QVERIFY(p.session->settings.LRU == recent);
}

void Song_Files_Test::Commands_Stop_A_Run_First() {
    With_Songs p;
    p.dialogs.answers[QUESTION] = true;
    for (const bool leaves : {false, true}) {
        p.Add_Channel();
        QTimer::singleShot(30, p.window.get(), [&] { leaves ? p.Files().New() : p.Files().Save(); });
        p.window->Recorder().Button_Rec();
        QVERIFY(!p.session->transport.Song_Runs());
        QTRY_COMPARE(Count_In(p.two), leaves ? 4 : 3);
        QTRY_COMPARE(p.Channels(), leaves ? 1 : 3);
    }
}

void Song_Files_Test::The_Practice_Window_Refuses() {
    With_Songs p;
    p.window->Recorder().Practice().Set_Plain(true);
    p.Files().New();
    QCOMPARE(p.dialogs.shown.back().text,
             std::string("You need to close the Practice window to create a new file"));
    p.Files().Open();
    QCOMPARE(p.dialogs.shown.back().text,
             std::string("You need to close the Practice window to open a file"));
    p.window->Recorder().Button_Rec();
    QCOMPARE(p.dialogs.shown.back().text,
             std::string("You need to close the Practice window to start recording"));
    QCOMPARE(p.Channels(), 2);
}

void Song_Files_Test::A_Killed_Window_Is_Offered_And_Its_Take_Is_There() {
    const Temp_Folder home;
    fs::create_directories(home / "temp");
    home.Write("projectsaudio/0-1.wav", "recorded");
    {
        test::Child_Process child;
        QVERIFY(child.Start(
            {QCoreApplication::applicationFilePath().toStdString(), CHILD, home.Path().string()}));
        QTRY_VERIFY_WITH_TIMEOUT(
            Copies(home.Path()).size() == 1 && Count_In(Copies(home.Path())[0], true) == 8, 20000);
        child.End(SIGKILL);
    }
    const fs::path left = Copies(home.Path())[0];
    {
        Answering later({"later"});
        Program p(home.Path());
        p.window->Open_First_Song({});
        QCOMPARE(later.rowsSeen, QList<int>{1});
        QCOMPARE(p.Events(0), 0);
        QVERIFY(fs::exists(left) && fs::exists(home / "projectsaudio/0-1.wav"));
    }
    Answering restore({"restore"});
    Program p(home.Path());
    p.window->Open_First_Song({});
    QCOMPARE(p.Events(0), 8);
    QVERIFY(p.session->project.Modified);
    QCOMPARE(p.session->project.Path, home / "mine.tvx");
    QVERIFY2(!fs::exists(home / "mine.tvx"), "only a save writes it");
    QVERIFY(!fs::exists(left.parent_path()));
    QCOMPARE(Copies(home.Path()).size(), 1U); // its own
    QVERIFY(fs::exists(home / "projectsaudio/0-1.wav"));
    p.window->Files().Save();
    QCOMPARE(Count_In(home / "mine.tvx", true), 8);
    QCOMPARE(Copies(home.Path()).size(), 0U);
}

void Song_Files_Test::Finds_Are_Handled_One_After_Another() {
    With_Songs p;
    p.Files().Save();
    for (const char* name : {"1", "2", "3"}) {
        p.folder.Write("temp/session-" + std::string(name) + "/recovery.tvx", Temp_Folder::Text_Of(p.three));
        p.folder.Write("temp/session-" + std::string(name) + "/undofile1.dat", "");
    }
    p.folder.Write("temp/session-4/undofile1.dat", "");
    p.folder.Write("projectsaudio/0-1.wav", "");
    p.dialogs.answers["Discard this song ?\nWhat was not saved of it will be lost."] = true;
    Answering answers({"restore", "discard", "later"});
    p.window->Open_First_Song(p.two);
    QCOMPARE(answers.rowsSeen, (QList<int>{3, 2, 1}));
    QCOMPARE(p.dialogs.asked.back(), QUESTION); // the restored song, before the named one is opened
    QCOMPARE(p.Channels(), 2);
    QVERIFY(!fs::exists(p.folder / "temp/session-4"));
    QCOMPARE(Copies(p.folder.Path()).size(), 1U);
    QVERIFY(fs::exists(p.folder / "projectsaudio/0-1.wav")); // may be the kept song's
    p.Files().New();
    QVERIFY(fs::exists(p.folder / "projectsaudio/0-1.wav"));
    answers.buttons = {"discard"};
    p.window->Open_First_Song({});
    QCOMPARE(Copies(p.folder.Path()).size(), 0U);
    QVERIFY(!fs::exists(p.folder / "projectsaudio/0-1.wav"));
}

void Song_Files_Test::A_System_That_Ends_Loses_Nothing() {
    const Temp_Folder home;
    for (const bool modified : {true, false}) {
        Program p(home.Path());
        if (modified)
            p.session->hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Another"), false);
        p.session->layout->KeyboardModified = true;
        QTimer::singleShot(0, p.window.get(), [&p] { p.window->End_For_System(); });
        QApplication::exec();
        QVERIFY(!p.window->isVisible() && p.dialogs.asked.empty());
        p.window.reset();
        p.session->Shutdown();
        QCOMPARE(Copies(home.Path()).size(), 1U); // of the first
    }
    QCOMPARE(Count_In(Copies(home.Path())[0]), 2);
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc > 2 && std::string(argv[1]) == CHILD)
        return Be_The_Child(argv[2]);
    Song_Files_Test test;
    return QTest::qExec(&test, argc, argv);
}
#include "song_files_test.moc"
