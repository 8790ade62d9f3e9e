#pragma once

#include "app/session.h"
#include "editors/clipboard_class.h"
#include "editors/windows/roll_view.h"
#include "engine/windows/observer_link.h"
#include "input/windows/test_sound.h"
#include "widgets/theme.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QComboBox;
class QDialog;
class QLabel;
class QMenu;

namespace tonvex {

class Tool_Button;
class Zoom_Scroll_Bar;

/// The piano roll: tool bar, roll, scroll bars, and every command on the events of the channel in hand.
/// Changes go through the hub, one undo step each; what is shown follows its notices. Interface thread.
/// Session and theme outlive it.
class EventsEditorCtrl final : public QWidget, public Transport_Observer, public Project_Observer {
    Q_OBJECT
public:
    EventsEditorCtrl(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~EventsEditorCtrl() override;

    /// NOT_GIVEN for none.
    void Show_Channel(std::int32_t channelId);
    Roll_View& View() { return *view; }
    Event_Display& Display() { return display; }

    // ---- what has changed ----
    void LoadData_From_ChannelClass() { Stale(NOT_GIVEN); }
    void AddEvent(std::int32_t channelId) { Stale(channelId); }
    void EventDeleted(std::int32_t channelId) { Stale(channelId); }
    void EventNoteChanged(std::int32_t channelId) { Stale(channelId); }
    void EventPropertiesChanged(std::int32_t channelId) { Stale(channelId); }
    void EventMoved(std::int32_t channelId) { Stale(channelId); }
    void EventResized(std::int32_t channelId) { Stale(channelId); }
    /// Draws what is stale now instead of soon.
    void Update_View();
    void LoadMarks();
    void UpdateTimeRule() { view->Changed(); }
    void UpdateMCNotesRule() { view->Changed(); }

    // ---- view ----
    /// Row of the zoom table.
    void UpdateZoom(int zoomIndex);
    void Show_RefLines() { Set_Option(&Roll_Options::ReferenceLines, true); }
    void Hide_RefLines() { Set_Option(&Roll_Options::ReferenceLines, false); }
    /// Names of notes in the notation in force.
    void Update_RefLabels_Captions() { view->Changed(); }
    void Update_HScrollBar();
    void Disable_H_Scrollbar();
    void Enable_h_Scrollbar();
    void Set_Options(const Roll_Options& options);
    void CView_ShowSelChannels();
    /// The editor of a channel that is shown behind.
    void CView_ShowEvEditor(std::int32_t channelId) { emit channelWanted(channelId); }

    // ---- the run ----
    /// True when the view follows the position.
    bool TimePos_SetStartTime(double beats);
    void TimePos_SetCurTime(double beats);
    void TimePos_End();
    void PlayPos_Set(double beats);

    // ---- undo ----
    Undo_Selection UNDO_Create_SelectedIDs_List() const;
    void UNDO_Load_SelectedIDs_List(const Undo_Selection& selection);

    // ---- settings of the song ----
    bool Settings_Load(Byte_Cursor& cursor);
    void Settings_Save(Byte_Writer& writer) const { session.editorSetup.Settings_Save(writer); }
    void Align_SetAlignForDrums() { session.editorSetup.AlignStep = 1.0 / 2.0; }
    /// Divisions of a beat; kept with the song.
    void Set_Grid(int div);
    void Set_Align(bool on);

    // ---- commands ----
    void Run(Roll_Command wanted);
    void Add_Note_At_Next_Click();
    void Add_Chord_At_Next_Click();
    void Copy_SelectedEvents_To_Clipboard();
    void Paste_Events_From_Clipboard();
    void Cut();
    void Delete_Selected();
    void Align_To_Beats(int div);
    void Set_Align_Strength(int percent) { alignStrength = percent; }
    void Transpose(int semitones);
    void Change_Volume(int delta);
    void Set_Copy_Mode(bool on);
    void Open_Properties();
    void Open_Time_Properties();
    void Open_Volume();
    void Open_View();
    void Open_Undo_List();
    void Add_Tempo_Change(double beat);
    void Insert_Multiple_Bars(int bar);

    void On_Run_Started(bool recording) override;
    void On_Position(double beats, std::int64_t songMs) override;
    void On_Run_Ended() override;
    void On_Song_Replaced() override;

signals:
    void goTo(double beats);
    void playWanted();
    void stopWanted();
    void recordWanted();
    void helpWanted(const QString& page);
    void soundFontsWanted();
    /// Another spelling of note names, 0 to 3.
    void noteNamesWanted(int notation);
    void channelWanted(std::int32_t channelId);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // events_editor_ctrl.cpp
    void Heard(int msgId, std::int32_t param);
    void Stale(std::int32_t channelId);
    void Show_Beats(double first, double length);
    void Show_Status();
    void Show_Undo();
    void Fit_Status();
    void Set_Option(bool Roll_Options::*option, bool on);
    void Load_Options();
    void Keep_Options() const;
    Event_Edits::IDs Selected() { return display.Own().Selected_IDs(); }
    void Sound_Note(int note, int volume);
    void Sound_Event(std::int32_t eventId);
    std::int32_t Slot() const;
    // events_editor_bar.cpp
    void Make_Bar();
    Tool_Button* Add_Button(const QString& picture, const QString& name, const QString& key,
                            const std::function<void()>& act);
    Tool_Button* Add_Tool(const QString& picture, const QString& name, Roll_Tool tool);
    void Show_Tool();
    void Show_Grid();
    void Fill_Zoom_Menu(QMenu* menu);
    void Fill_Grid_Menu(QMenu* menu);
    // events_editor_menus.cpp
    void Fill_Event_Menu(QMenu* menu, std::int32_t channelBehind);
    void Fill_Rule_Menu(QMenu* menu, double beat);
    void Fill_Bar_Menu(QMenu* menu, int bar);
    void Fill_Mark_Menu(QMenu* menu, double beat, int markRow);
    void Fill_Align_Menu(QMenu* menu);
    void Pop_Up(const QPoint& at, const std::function<void(QMenu*)>& fill);
    void Show_Event_Menu(const QPoint& at);
    void Show_Rule_Menu(const QPoint& at, double beat);
    void Show_Bar_Menu(const QPoint& at, int bar);
    void Show_Mark_Menu(const QPoint& at, double beat, int markRow);
    // events_editor_dialogs.cpp
    void Open(QDialog* dialog);
    void Open_Chord_At(double beat, int note);
    void frmPianoLayoutObj_Closed(std::int32_t eventId);
    void frmQChordConfigOBJ_Closed(std::optional<std::int32_t> eventId, double beat);
    void frmTimePropertiesOBJ_Closed();
    void frmVolumeObj_Closed();
    void frmSelChannelsViewOBJ_Closed();

    Session& session;
    Theme& theme;
    Event_Display display;
    Event_Edits edits;
    ClipboardClass clipboard;
    Test_Sound sound;
    Observer_Link link;
    Roll_View* view = nullptr;
    QWidget* CoolToolBar1 = nullptr;
    std::vector<Tool_Button*> toolButtons; ///< by Roll_Tool; some are null
    Tool_Button* copyModeButton = nullptr;
    Tool_Button* undoButton = nullptr;
    Tool_Button* redoButton = nullptr;
    Tool_Button* alignButton = nullptr;
    Tool_Button* gridButton = nullptr;
    Tool_Button* zoomButton = nullptr;
    std::vector<Tool_Button*> needSelection;
    QComboBox* Combo2 = nullptr; ///< marks
    QLabel* Label4 = nullptr;    ///< "Copy Mode"
    QLabel* status = nullptr;
    Zoom_Scroll_Bar* across = nullptr; ///< beats
    Zoom_Scroll_Bar* down = nullptr;   ///< rows
    QPointer<QDialog> dialog;
    QTimer updateTimer;
    QTimer undoTimer;
    QTimer QchordOffTimer;
    QTimer CopyModeTimer;
    QTimer takeTimer;
    QElapsedTimer lineClock;
    int lastAlign = 4; ///< divisions of the last alignment
    int alignStrength = 100;
    std::int32_t wantedChannel = NOT_GIVEN; ///< channel to be shown, as soon as it is there
    QString statusText;
    int subscription = 0;
};

} // namespace tonvex
