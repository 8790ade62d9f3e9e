#pragma once

#include "app/session.h"
#include "widgets/effect_gesture.h"
#include "widgets/theme.h"

#include <QDialog>
#include <QTimer>

#include <cstdint>
#include <vector>

class QCheckBox;
class QLabel;
class QSlider;
class QTabWidget;

namespace tonvex {

class Effect_Picture;

/// The effects of a channel's output, a page each: on or off, a picture of what it does, every parameter with
/// its figure, "Reset". What is turned sounds at once, while a song runs too; the song is changed once, when
/// the slider is let go, or after steps by keys or wheel when they pause; a double click brings one value
/// back. The window does not block; it closes with its channel. Interface thread. Session and theme outlive
/// it.
class frmFX_Config final : public QDialog {
    Q_OBJECT
public:
    frmFX_Config(Session& session, const Theme& theme, QWidget* parent = nullptr);
    ~frmFX_Config() override;
    void Show_Effect(std::int32_t channelId, Effect_Kind kind);
    /// While it is open the window can turn to another channel; NOT_GIVEN closes it.
    void Show_Channel(std::int32_t channelId);

    // what a slider shows; public for tests
    static constexpr int STEPS = 1000; ///< of a slider whose parameter is no whole number
    /// Frequencies lie on a line of equal ratios, all else on one of equal differences.
    static int Step_Of(const Effect_Parameter& parameter, float value);
    static float Value_At(const Effect_Parameter& parameter, int step);
    /// "Sine", "+90 degrees", "-18.0 dB".
    static QString Figure(const Effect_Parameter& parameter, float value);
    static constexpr int PAUSE_MS = 500; ///< between two steps by keys or wheel of one change, at most

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Page {
        QCheckBox* on = nullptr;
        Effect_Picture* picture = nullptr;
        std::vector<QSlider*> sliders;
        std::vector<QLabel*> figures;
    };
    QWidget* Make_Page(Effect_Kind kind);
    void Change(Effect_Kind kind, std::size_t parameter, int step);
    void Show_Picture(Effect_Kind kind);
    void End_Gesture();
    void Reset(Effect_Kind kind);
    void Refresh();
    /// Row of the table of effects, -1 when the channel is gone.
    int Row() const;

    Session& session;
    const Theme& theme;
    std::int32_t channelId = NOT_GIVEN;
    QLabel* about;
    QLabel* hint;
    QTabWidget* tabs;
    std::array<Page, EFFECT_KINDS> pages;
    Effect_Gesture gesture;
    QTimer pause;
    int subscription = 0;
};

/// "Reverb", "Chorus" and so on.
QString Effect_Caption(Effect_Kind kind);

} // namespace tonvex
