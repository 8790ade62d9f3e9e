#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "engine/windows/practice_mode.h"
#include "widgets/theme.h"

#include <QDialog>
#include <QPointer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;

namespace tonvex {

class Keyboard_View;
class Segment_Selector;

/// "Keyboard": what every computer key plays, and the layouts. Interface thread. Session, theme and practice
/// outlive it. While a run is on it shows and changes nothing.
class frmKeyboardSetup final : public QWidget, public Transport_Observer, public Key_Mark_Observer {
    Q_OBJECT
public:
    frmKeyboardSetup(Session& session, const Theme& theme, Practice_Mode& practice,
                     QWidget* parent = nullptr);
    ~frmKeyboardSetup() override;

    /// Repaints all keys from the tables.
    void UpdateLayout();
    void Set_Channel(std::int32_t channelId) { selectedChannel = channelId; }
    /// Opens the editor of what a key plays; the menu when it plays nothing yet.
    void Configure(int key);
    /// 0 note, 1 chord, 4 disabled.
    void OurMsgClass_MsgReceived(int key, int menuCode);
    Keyboard_View& Keys() { return *view; }
    /// As a click on the practice button.
    void Press_Practice();
    /// The editor of a key, while one is open.
    QDialog* Editor() const { return editor; }

    void On_Octaves_Changed() override { UpdateLayout(); }
    void On_Key_Pressed(int key) override { On_Key_Mark(key, true); }
    void On_Key_Released(int key) override { On_Key_Mark(key, false); }
    void On_Run_Started(bool recording) override;
    void On_Run_Ended() override;
    void On_Key_Mark(int scanCode, bool pressed) override;
    void On_All_Marks_Off() override;

signals:
    void tuningChanged(); ///< the project was modified by it

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Make_Controls();
    QWidget* Make_Layout_Row();
    QWidget* Make_Sound_Row();
    QWidget* Make_Key_Row();
    void Connect_Controls();
    void Refresh_Choices();
    void Show_Key();
    void Enable_Controls();
    void Show_Menu(int key, const QPoint& place);
    void Edit_Note(int key);
    void Edit_QChord(int key);
    void PianoLayoutObj_Closed(int key);
    void frmQChordConfigOBJ_Closed(int key);
    void Open_Editor(QDialog* window);
    void Load_Layout(const QString& name);
    void wbButton2_Click();
    void Save_Under(const QString& name);
    void wbButton3_Click();
    void wbButton4_Click(bool on);
    void Command3_Click();
    /// Asks before it overwrites; failures are told.
    void Write_Template(const QString& name);
    void Show_Practice(bool on);
    void mnuKeyboardTuning(int tuning);
    /// Runs a change of the tables with the keys at rest and tells the views.
    template <typename Change>
    void Change_Layout(const Change& change);

    Session& session;
    const Theme& theme;
    Practice_Mode& practice;
    Observer_Link link;
    std::int32_t selectedChannel = NOT_GIVEN;
    QPointer<QDialog> editor;
    Keyboard_View* view = nullptr;
    QComboBox* Combo1 = nullptr;      ///< layouts
    QPushButton* wbButton2 = nullptr; ///< save under a new name
    QPushButton* wbButton3 = nullptr; ///< delete
    QPushButton* wbButton4 = nullptr; ///< practice
    QPushButton* Command3 = nullptr;  ///< save as channel template
    QComboBox* tuning = nullptr;
    QCheckBox* matchSongKey = nullptr;
    Segment_Selector* notesOctave = nullptr;
    Segment_Selector* chordsOctave = nullptr;
    QLabel* modified = nullptr;
    QLabel* keyText = nullptr;
    QPushButton* configure = nullptr;
    QPushButton* functions = nullptr;
    QMenu* menu = nullptr;
};

} // namespace tonvex
