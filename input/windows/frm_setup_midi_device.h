#pragma once

#include "app/session.h"
#include "input/windows/test_sound.h"
#include "widgets/theme.h"

#include <QDialog>
#include <QTimer>

#include <vector>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QSlider;

namespace tonvex {

/// "Output device setup": the output, the MIDI input, the synthesizer's buffer, with a test of each device.
/// OK keeps the choice in the settings and opens what was chosen; "Cancel" and Escape leave all as it was,
/// an output that a test had opened included. Devices that come and go show within a second.
/// Interface thread. Session and theme outlive the window.
class frmSetUpMidiDevice final : public QDialog {
    Q_OBJECT
public:
    frmSetUpMidiDevice(Session& session, const Theme& theme, QWidget* parent = nullptr);
    ~frmSetUpMidiDevice() override;

    void done(int result) override;

private:
    void Make_Controls(const Theme& theme);
    QWidget* Make_Output_Column(const Theme& theme);
    QWidget* Make_Input_Column(const Theme& theme);
    QWidget* Make_Buffer_Part(const Theme& theme);

    void Fill_Lists();
    void Refresh_Lists();
    /// DeviceID of the row selected; false when none is.
    static bool Selected(const QListWidget* list, std::int32_t& deviceId);
    bool Synth_Selected() const;
    void Enable_Controls();
    void Show_Buffer();
    void Show_Latency();

    void Test_Input();
    void Stop_Input_Test();
    void Look_For_Edge();
    void Toggle_Output_Test();
    void Start_Output_Test();
    void Accept_Choice();

    Session& session;
    QListWidget* List1 = nullptr;  ///< outputs
    QListWidget* List2 = nullptr;  ///< inputs
    QSlider* HScroll1 = nullptr;   ///< buffer, ms
    QWidget* bufferPart = nullptr; ///< all that concerns the buffer
    QLabel* bufferValue = nullptr;
    QLabel* latency = nullptr;
    QCheckBox* Check1 = nullptr;
    QPushButton* Command1 = nullptr; ///< tests the input
    QPushButton* Command2 = nullptr; ///< OK
    QPushButton* Command3 = nullptr; ///< Cancel
    QPushButton* Command4 = nullptr; ///< tests the output
    QPushButton* noInput = nullptr;
    QLabel* Label2 = nullptr; ///< what the input test heard
    QLabel* inputHint = nullptr;
    QTimer Timer1;    ///< input test
    Test_Sound sound; ///< output test
    QTimer deviceTimer;
    std::vector<Device_Row> outputs;
    std::vector<Device_Row> inputs;
    bool outputTested = false; ///< another output than that of the settings may be open
    bool inputTested = false;
};

} // namespace tonvex
