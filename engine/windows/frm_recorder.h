#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "engine/windows/practice_mode.h"
#include "widgets/theme.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QMenu;

namespace tonvex {

class Master_Volume;
class Tool_Button;
class Transport_Display;

/// The transport bar. Button_Rec and Button_Play return when the run is over; never call them from a key
/// handler, but through a timer. Interface thread.
class frmRecorder final : public QWidget, public Transport_Observer {
    Q_OBJECT
public:
    frmRecorder(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~frmRecorder() override;

    void Button_Rec();
    void Button_Play();
    void Button_Stop();
    /// At once when no run is on; else the run is stopped, and act follows when all is over. Of several that
    /// wait for one run the last alone is carried out.
    void Stop_Then(const std::function<void()>& act);
    void To_Start();
    void To_End();
    void Move_By_Seconds(int seconds);
    /// Beats, 0 and up; moves a play that is on. A recording cannot be moved.
    void Go_To(double beats);

    /// 20 to 100.
    void Set_Rec_Speed(int percent);
    void Set_Overwrite(bool overwrite);
    void Set_Metronome(bool on);
    void Set_Wait_For_Key(bool on);

    /// The channel that is recorded; NOT_GIVEN for none.
    void Set_Channel(std::int32_t channelId);
    Practice_Mode& Practice() { return practice; }
    /// Position and tempo as the model has them now.
    void UpdateTimeDisplay();
    void Show_Cpu(double percent);
    Master_Volume& Master() { return *master; }
    /// Shown values of master volume, speed and modes, after they changed elsewhere.
    void Refresh_Options();
    /// The buttons' tips tell the keys in force.
    void Show_Keys();

    void On_Run_Started(bool recording) override;
    void On_Position(double beats, std::int64_t songMs) override;
    void On_Waiting_For_Key(bool waiting) override;
    void On_Run_Ended() override;

    QSize minimumSizeHint() const override;

signals:
    void uiLocked(bool locked); ///< a run begins or is over
    void optionsChanged();
    void channelMissing();
    void keysRefused(); ///< the computer keys cannot sound: without a channel, or without an input

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Fit_Into(int width);
    void Transport_LockUI();
    void Transport_UnlockUI();
    void Make_Buttons();
    void Lay_Out();
    Tool_Button* Add_Transport_Button(const QString& picture, void (frmRecorder::*act)());
    void Back_5_Seconds() { Move_By_Seconds(-5); }
    void Forward_5_Seconds() { Move_By_Seconds(5); }

    Session& session;
    Theme& theme;
    Practice_Mode practice;
    Observer_Link link;
    std::int32_t channelId = NOT_GIVEN;
    Tool_Button* toStart = nullptr;
    Tool_Button* back = nullptr;
    Tool_Button* record = nullptr;
    Tool_Button* play = nullptr;
    Tool_Button* stop = nullptr;
    Tool_Button* forward = nullptr;
    Tool_Button* toEnd = nullptr;
    Transport_Display* display = nullptr;
    Tool_Button* speed = nullptr;
    Tool_Button* blend = nullptr;
    Tool_Button* overwrite = nullptr;
    Tool_Button* metronome = nullptr;
    Tool_Button* wait = nullptr;
    Tool_Button* keyboard = nullptr;
    QLabel* waiting = nullptr;
    Master_Volume* master = nullptr;
    QLabel* cpu = nullptr;
    std::vector<QWidget*> dispensable; ///< what a narrow bar leaves out, first to last
    QMenu* speedMenu = nullptr;
    std::function<void()> afterRun;
    int subscription = 0;
};

} // namespace tonvex
