#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "widgets/banner.h"
#include "widgets/help_button.h"
#include "widgets/theme.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QAction;
class QDialog;
class QDockWidget;
class QLabel;
class QMenu;
class QTabWidget;

namespace tonvex {

class Autosave_Timer;
class Channels_Header;
class ChannelsList;
class frmHelp;
class frmChannelProperties;
class frmKeyboardSetup;
class frmEventsEditor;
class frmFX_Config;
class Maps_View;
class Mark_Selection;
class frmREC_PianoLayout;
class frmRecorder;
class Song_Files;
class Song_Overview;
class Test_Sound;

/// The main window: menus, transport bar, channels, what is in the middle, the record piano.
/// Interface thread. Session and theme outlive it; the session is loaded before the window is made.
/// Closing it during a run stops the run first and closes when that is over, after the question about unsaved
/// changes. The window does not shut the session down, which may happen only after the window has gone.
class frmMain final : public QMainWindow, public Transport_Observer, public Help_Shower {
    Q_OBJECT
public:
    frmMain(Session& session, Theme& theme);
    ~frmMain() override;

    /// A line above the editors, until it is closed or replaced by another of its subject. With an actionText
    /// a button runs the action.
    void Show_Banner(Banner::Subject subject, const QString& text, const QString& actionText = {},
                     const std::function<void()>& action = {});
    void Hide_Banner(Banner::Subject subject);

    /// ChannelID of the selected channel; NOT_GIVEN when none is.
    std::int32_t Selected_Channel() const;
    void Select_Channel(std::int32_t channelId);

    frmRecorder& Recorder() { return *recorder; }
    ChannelsList& Channels() { return *channelsList; }
    frmREC_PianoLayout& Piano() { return *piano; }
    frmEventsEditor& Events_Editor() { return *eventsEditor; }
    frmKeyboardSetup& Keyboard() { return *keyboard; }
    Song_Files& Files() { return *songFiles; }

    /// What the start brings, once the window is shown: see First_Song.
    void Open_First_Song(const std::optional<std::filesystem::path>& named);
    /// Opens the help on the page, a name as Help_Shower tells it; on the first steps when it is empty.
    void Show_Help(const QString& page) override;
    /// What a link of a help page may start ("record"); false for what none may.
    bool Knows_Help_Link(const QString& action) const;
    /// The first steps when the settings ask for them at the start; an offer of them on the first run.
    void Show_First_Help();
    /// The system wants the program to end, and nobody may be there to answer: a run is stopped, a recovery
    /// copy of what is unsaved is left for the next start, the application quits. Only when there can be no
    /// copy the user is asked.
    void End_For_System();
    /// Unsaved work is safe from now on, whatever becomes of the program.
    void Keep_Recovery_Copy();

    /// The computer key of this scan code plays now, so that it is no shortcut: it has a meaning in the
    /// layout and a recording is on or the keyboard button holds practice mode on.
    bool Key_Plays(int scanCode) const;

    /// The device opens again with the settings in force, after a setup or a loss.
    void Reopen_Output();
    /// Tells of devices that came or went. The window does so by itself: often while something sounds, seldom
    /// otherwise, and when something is plugged in or pulled out.
    void Check_Devices();

    void On_Run_Started(bool recording) override;
    void On_Run_Ended() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    using Keys = QList<QKeySequence>;
    enum class Function_Entry {
        Plain,
        Check,
        Of_Channel ///< tells when no channel is selected
    };
    struct Function_Action {
        QAction* action;
        const char* function;
    };
    /// By Effect_Kind.
    static constexpr std::array<const char*, EFFECT_KINDS> EFFECT_FUNCTIONS = {
        "Set Channel FX: Reverb", "Set Channel FX: Chorus", "Set Channel FX: Flanger", "Set Channel FX: Echo",
        "Set Channel FX: Distortion"};
    struct Fixed_Keys {
        QAction* action;
        Keys keys;
    };

    void Make_Panes();
    void Make_Events_Editor();
    void Make_Notices();
    QDockWidget* Make_Channels_Pane();
    QDockWidget* Make_Piano_Pane();
    void Make_Menus();
    void Make_Channel_Menu();
    void Make_Mix_Entries(QMenu* menu);
    void Make_File_Menu();
    void Make_Song_Entries(QMenu* menu);
    void New_From_Template();
    void Save_As_Template();
    void Show_Recent_Files();
    void Make_Midi_File_Entries(QMenu* menu);
    void Import_Midi();
    void Warn_Of_Midi_Files();
    void Import_Midi_File(const std::filesystem::path& file);
    void Export_Midi();
    void Make_Edit_Menu();
    void Refresh_Undo();
    void Make_Export_Entries(QMenu* menu);
    void Make_Record_Menu();
    void Make_Project_Menu();
    void Make_Marks_Menu();
    void Make_Metronome_Menu();
    void Make_Map_Entries(QMenu* menu);
    void Make_Options_Menu();
    void Make_Layout_Menus(QMenu* options);
    void Make_Appearance_Menu(QMenu* options);
    void Make_Help_Menu();
    void Make_Help_Option(QMenu* options);
    void Make_Video_Pane();
    void Follow_Help_Link(const QString& action);
    struct Help_Link;
    static const std::array<Help_Link, 11>& Help_Links();
    void Make_Scroll_Option(QMenu* options);
    void Make_Note_Names_Menu(QMenu* options);
    void Make_Windows_Menu();
    void Make_Key_Menu(QMenu* project, const QString& text, int mode);
    void Set_Song_Key(int key, int mode);
    void Show_Song_Key();
    void Set_Note_Names(int notation);
    void Restore_Panes();
    void Save_Panes();

    // The functions of the table; see frm_main_keys.cpp.
    void Set_Function(const std::string& internalName, const std::function<void()>& act);
    void Make_Functions();
    void Make_Transport_Functions();
    void Make_Key_Timers();
    void Release_Functions();
    /// The entry of a function: shows its key and does what it does.
    QAction* Add_Function(QMenu* menu, const QString& text, const char* function,
                          Function_Entry kind = Function_Entry::Plain);
    /// After the table of functions changed.
    void Refresh_Keys();
    bool Take_Key(QKeyEvent& event);
    /// Keys are to sound from now on: no field that is written in keeps them.
    void Give_Keys_To_Piano();
    void Open_Key_Access();
    void Open_Effect(Effect_Kind kind);
    void Open_Metronome();
    void Open_Tempo();
    void Undo_Or_Redo(bool (UndoModule::*bringBack)());

    /// keys: fixed ones, which give way where the table has them.
    QAction* Add_Action(QMenu* menu, const QString& text, const Keys& keys, const std::function<void()>& act);
    QAction* Add_Check(QMenu* menu, const QString& text, const Keys& keys,
                       const std::function<void(bool)>& act);
    /// The entries whose functions do not work while the song runs.
    void Lock_Functions(bool locked);
    /// Records or plays behind the key handler of the moment: a transport call blocks.
    void Run_From_Key(std::string_view tag);
    void Lock(bool locked);
    bool Needs_Channel();
    void Add_Channel();
    void Add_Channel_From_Template();
    void Delete_Channel();
    void Edit_Channel_Properties();
    void Rename_Channel();
    void Clear_Channel_Events();
    void Set_Tuning(int tuning);
    void Choose_Midi_Input(bool on);
    void Tell_Midi_Missing();
    void Tell_Why_Keys_Are_Refused();
    void Set_Up_Devices();
    void Edit_Sound_Fonts();
    void Open_Device_Window(QDialog* dialog);
    void Open_Marks(bool editName);
    void Open_Map(int slotMessage, int audioMessage);
    /// The window of that object name comes to the front; make makes it when it is not open.
    void Show_Window(const char* name, const std::function<QDialog*()>& make);
    void Check_Sound(const Sound_Status& status);
    void Check_Midi();
    void Show_Meters(const Sound_Status& status);
    void Start_Meters();
    void Song_Replaced();
    void Refresh_Title();
    void Fit_Title(int barWidth);
    void Refresh_Actions();
    void Channel_Selected(std::int32_t channelId);

    Session& session;
    Theme& theme;
    Observer_Link link;
    frmRecorder* recorder = nullptr;
    Song_Files* songFiles = nullptr;
    Autosave_Timer* autosave = nullptr;
    ChannelsList* channelsList = nullptr;
    frmChannelProperties* properties = nullptr;
    frmREC_PianoLayout* piano = nullptr;
    frmEventsEditor* eventsEditor = nullptr;
    Song_Overview* overview = nullptr;
    frmKeyboardSetup* keyboard = nullptr;
    frmFX_Config* effects = nullptr; ///< from its first opening on
    Maps_View* maps = nullptr;
    Mark_Selection* marks = nullptr;
    Banner* banner = nullptr;
    QTabWidget* tabs = nullptr;
    QDockWidget* channelsDock = nullptr;
    QDockWidget* pianoDock = nullptr;
    QDockWidget* videosDock = nullptr;
    std::unique_ptr<frmHelp> help; ///< from its first opening on
    Test_Sound* linkSound = nullptr;
    QLabel* titleLabel = nullptr;
    Channels_Header* channelsHeader = nullptr;
    QMenu* recentMenu = nullptr;
    QMenu* layoutMenu = nullptr;
    QAction* undoAction = nullptr;
    QAction* redoAction = nullptr;
    QAction* redoKeys = nullptr;
    QAction* practiceAction = nullptr;
    QAction* pianoAction = nullptr;
    QAction* midiInputAction = nullptr;
    QAction* keysAction = nullptr;
    QAction* metronomeAction = nullptr;
    QAction* waitAction = nullptr;
    QAction* blendAction = nullptr;
    QAction* overwriteAction = nullptr;
    QAction* showHelpAction = nullptr;
    std::vector<QAction*> tunings;
    std::vector<QAction*> songKeys; ///< twelve in major, twelve in minor
    std::vector<Function_Action> functionEntries;
    std::vector<Fixed_Keys> fixedKeys;
    std::vector<std::string> ownFunctions; ///< of which the session hears from here
    QKeyCombination offeredKey;            ///< no widget of the window wanted it
    int heldKey = 0;                       ///< virtual key code of the key taken last, until a key is let go
    std::string_view keyPressTag;
    QTimer GlobalKeyPressTimer;        ///< runs the key that is pending
    QTimer KeyPressRunFuncTimer;       ///< one shot: begins what keyPressTag names
    std::vector<QAction*> lockedInRun; ///< beside the functions, for which the table tells it
    bool isLocked = false;
    QPointer<QWidget> focusBeforeRun;
    QTimer deviceTimer;
    QFileSystemWatcher plugWatch;
    QTimer refreshTimer;
    QTimer meterTimer;
    QElapsedTimer meterClock;
    int quietMs = 0; ///< for how long the meters have had nothing to show
    int subscription = 0;
    bool lossShown = false;
    bool quietTold = false;
    bool midiGoneShown = false;
    bool endsForSystem = false; ///< a recovery copy stands; nobody is asked
    bool systemEnds = false;    ///< while the system's wish to end is carried out
    bool exportDrumsSplit = false;
    bool anyVideos = false;
};

} // namespace tonvex
