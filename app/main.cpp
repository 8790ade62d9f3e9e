#include "app/session.h"
#include "app/startup.h"
#include "app/windows/frm_main.h"
#include "app/windows/frm_mouse_status.h"
#include "app/windows/frm_start_up.h"
#include "audio/windows/frm_sf2_error.h"
#include "base/file_io.h"
#include "platform/make_sound_door.h"
#include "platform/qt/end_signals.h"
#include "platform/qt/qt_key_state.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_user_dialogs.h"
#include "platform/qt/translations.h"
#include "platform/qt/x11_auto_repeat.h"
#include "platform/rtmidi_ports.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QIcon>
#include <QPointer>
#include <QTimer>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tonvex {
namespace {

constexpr int BAD_CALL = 2;

constexpr const char* USAGE = "Usage: tonvex [options] [song.tvx]\n"
                              "\n"
                              "  --help        show this text and end\n"
                              "  --version     show the version and end\n"
                              "  -mousestatus  show where the mouse is\n";

constexpr const char* MOUSE_STATUS = "-mousestatus";

/// Answers what needs no display; false when the program is to start.
bool Answer_Call(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "--help" || word == "-h")
            std::fputs(USAGE, stdout);
        else if (word == "--version")
            std::puts("Tonvex " TONVEX_VERSION);
        else
            continue;
        return true;
    }
    return false;
}

/// The doors to the machine and the look, in the order in which they come to life.
struct Machine {
    explicit Machine(QApplication& application)
        : theme(application, store), sound(Make_Sound_Door(counter, Sound_Driver_Choice::Automatic)),
          midi(counter), keys(counter) {
        QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/tonvex.svg")));
        Drop_False_Releases();
    }

    Monotonic_Counter counter;
    Qt_Settings_Store store;
    Theme theme;
    std::unique_ptr<Sound_Door> sound;
    RtMidi_Ports midi;
    Qt_Key_State keys;
    Qt_Run_Loop loop;
};

/// The windowed program: the session on the machine, and its windows. Nothing of the machine is touched
/// before the start window is due, since a second program ends before that.
class Program final : public Start_Windows {
public:
    Program(QApplication& theApplication, std::optional<std::filesystem::path> projectToOpen,
            bool withMouseStatus)
        : application(theApplication), project(std::move(projectToOpen)), showMouseStatus(withMouseStatus) {}

    ~Program() override {
        // The windows look at the session and the theme while they go.
        delete startWindow.data();
        mouseStatus.reset();
        window.reset();
        if (session)
            session->Shutdown();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    User_Dialogs& Dialogs() { return dialogs; }

    void Show_Start_Window() override {
        machine = std::make_unique<Machine>(application);
        startWindow = new frmStartUp(machine->theme);
        startWindow->show();
    }

    void Let_Messages_Run() override { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

    bool Load_Main_Window(const AppPaths_Class& paths, const std::filesystem::path& dataFolder) override {
        session = std::make_unique<Session>(Session_Doors{*machine->sound, machine->midi, machine->keys,
                                                          machine->counter, machine->loop, machine->store,
                                                          dialogs, Cue_Drive::Threaded},
                                            paths, dataFolder);
        if (!session->Load())
            return false;
        Draw_Installation_ID(session->settings);
        if (!session->fontsLoaded && !Ask_For_A_Font())
            return false;
        window = std::make_unique<frmMain>(*session, machine->theme);
        dialogs.parent = window.get();
        machine->keys.accept = [this](int scanCode) { return window && window->Key_Plays(scanCode); };
        machine->loop.onQuit = [this] {
            session->transport.StopTransportRequest = true;
            session->transport.PlayRequested = false;
        };
        return true;
    }

    void Show_Main_Window() override {
        window->show();
        if (startWindow)
            startWindow->raise();
        if (showMouseStatus) {
            mouseStatus = std::make_unique<frmMouseStatus>(machine->theme);
            mouseStatus->show();
        }
        // Dialogs that this opens stand before a window that is there.
        QTimer::singleShot(0, window.get(), [this] {
            window->Open_First_Song(project);
            window->Show_First_Help();
        });
    }

    /// The system wants an end: nothing may be lost that was made by then.
    void End_For_System() {
        if (window)
            window->End_For_System();
        else
            QApplication::quit();
    }

    /// The desktop's session ends, and the program may be ended without further notice.
    void Save_State() {
        if (window)
            window->Keep_Recovery_Copy();
    }

private:
    bool Ask_For_A_Font() {
        if (startWindow)
            startWindow->close();
        frmSF2Error error(*session, machine->theme);
        error.exec();
        return !error.Program_Ends();
    }

    QApplication& application;
    Qt_User_Dialogs dialogs;
    std::optional<std::filesystem::path> project;
    bool showMouseStatus;
    std::unique_ptr<Machine> machine;
    std::unique_ptr<Session> session;
    std::unique_ptr<frmMain> window;
    std::unique_ptr<frmMouseStatus> mouseStatus;
    QPointer<frmStartUp> startWindow;
};

int Run(int argc, char** argv) {
    std::error_code ignored;
    // The working folder changes during the start.
    const std::filesystem::path calledIn = std::filesystem::current_path(ignored);
    QApplication::setApplicationName(QStringLiteral("Tonvex"));
    QApplication::setApplicationVersion(QStringLiteral(TONVEX_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tonvex"));
    End_Signals::Hold_Back();
    QApplication application(argc, argv);
    End_Signals endSignals;
    QStringList words = QApplication::arguments();
    const bool withMouseStatus = words.removeAll(QLatin1String(MOUSE_STATUS)) > 0;
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (i > 1 || words.at(i).startsWith(QLatin1Char('-'))) {
            std::fprintf(stderr, "tonvex: %s: not understood\n%s", qPrintable(words.at(i)), USAGE);
            return BAD_CALL;
        }
    }
    const std::filesystem::path folder = QApplication::applicationDirPath().toStdString();
    const std::string argument = words.size() > 1 ? words.at(1).toStdString() : std::string();
    const Program_Files files = Find_Program_Files(folder, TONVEX_SOURCE_DATA);
    const Translations translations(files.dataFolder / "translations", QLocale());
    Program program(application, Project_Argument(argument, calledIn), withMouseStatus);
    endSignals.onEnd = [&program] { program.End_For_System(); };
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [&program](QSessionManager&) { program.Save_State(); });
    Start_Routine start(program.Dialogs(), program);
    switch (start.Run({folder, Instance_Lock_File(), files, Path_Macros::From_Environment(folder)})) {
    case Start_Result::Started:
        return QApplication::exec();
    case Start_Result::Already_Running:
        return 0;
    default:
        return 1;
    }
}

} // namespace
} // namespace tonvex

int main(int argc, char** argv) {
    if (tonvex::Answer_Call(argc, argv))
        return 0;
    tonvex::Survive_File_Limits();
    return tonvex::Run(argc, argv);
}
