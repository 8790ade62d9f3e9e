#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "widgets/plain_dialog.h"

#include <QTimer>

class QGridLayout;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace tonvex {

/// "Metronome": note and volume of the click, with a test at any speed. OK keeps note and volume in the
/// project; "Cancel" and Escape leave all as it was. The test ends with the window, and where a run begins.
/// What the song is given meanwhile shows in the fields that it changes.
/// Interface thread. Session and look outlive the window.
class frmMetronomeSetup final : public Plain_Dialog, public Transport_Observer {
    Q_OBJECT
public:
    frmMetronomeSetup(Session& session, const Theme& look, QWidget* parent = nullptr);
    ~frmMetronomeSetup() override;

    void accept() override;
    void done(int result) override;
    void On_Run_Started(bool recording) override;

private:
    /// A number and a scroll bar that show the same value, in one row of the grid.
    struct Pair {
        QSpinBox* text = nullptr;
        QSlider* bar = nullptr;
    };
    Pair Make_Pair(QGridLayout* grid, const QString& caption, const QString& name, int number, int most);
    void Take_Song();
    void Show_Note_Name();
    void Show_Speed();
    void Toggle_Test();
    void Stop_Test();
    void Click();

    Session& session;
    Observer_Link link;
    Pair note;
    Pair volume;
    Pair speed; ///< of the test, beats per minute
    QLabel* noteName = nullptr;
    QLabel* speedLabel = nullptr;
    QPushButton* Command3 = nullptr; ///< starts and stops the test
    QTimer clicks;
    std::int64_t nextClickMs = 0;
    int songNote = 0; ///< what the fields took from the song
    int songVolume = 0;
    int songTempo = 0;
    int subscription = 0;
};

} // namespace tonvex
