#pragma once

#include "app/session.h"
#include "engine/windows/observer_link.h"
#include "widgets/mark_flags.h"
#include "widgets/theme.h"

#include <QPixmap>
#include <QWidget>

#include <vector>

namespace tonvex {

/// Beats across a strip of pixels. Pure; beats 0 and up, the whole song fits.
class Overview_Scale {
public:
    static constexpr double BEATS_PER_BAR = 4.0;
    /// At least eight bars, whole bars, a bar of air behind the end.
    static double Shown_Beats(double songLength, double position) noexcept;
    Overview_Scale(double shownBeats, double leftPixel, double widthPixels) noexcept
        : beats(shownBeats), left(leftPixel), width(widthPixels) {}
    double X_Of(double beat) const noexcept { return left + beat / beats * width; }
    double Beat_At(double x) const noexcept;
    /// Bars from one numbered line to the next, so that numbers stand at least minPixels apart.
    int Bars_Per_Line(double minPixels) const noexcept;

private:
    double beats;
    double left;
    double width;
};

/// The whole song at a glance, to look at: one strip a channel with its notes, and the play line. A click
/// goes there. What is drawn is prepared when the song has changed; the play line repaints two thin strips.
class Song_Overview final : public QWidget, public Transport_Observer {
    Q_OBJECT
public:
    Song_Overview(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~Song_Overview() override;

    void Select(std::int32_t channelId);
    int Strip_Count() const noexcept { return static_cast<int>(strips.size()); }
    int Note_Count() const noexcept;
    /// The flags of the marks, in order of time: rows of the table, and their boxes.
    const std::vector<Mark_Flag>& Flags() const noexcept { return flags; }
    const std::vector<QRectF>& Flag_Places() const noexcept { return flagBoxes; }

    void On_Run_Started(bool recording) override;
    void On_Position(double beats, std::int64_t songMs) override;
    void On_Run_Ended() override;

    QSize minimumSizeHint() const override;

signals:
    void goTo(double beats);
    void markClicked(int markRow);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Bar {
        float startBeat;
        float length;
        std::uint8_t note;
    };
    struct Strip {
        std::int32_t channelId;
        int tableRow;
        bool silent; ///< muted, or not among the soloed
        QString name;
        std::vector<Bar> bars;
    };
    void Prepare();
    void Draw_Picture();
    void Draw_Strip(QPainter& painter, const Strip& strip, const QRectF& box, const Overview_Scale& scale);
    Overview_Scale Scale() const;
    void Move_Line(double beats);
    QRect Line_Place(double beats) const;
    void Changed();
    QString Hint() const;

    Session& session;
    Theme& theme;
    Observer_Link link;
    std::vector<Strip> strips;
    std::vector<Mark_Flag> flags;
    std::vector<QRectF> flagBoxes; ///< placed when the picture is drawn
    std::int32_t selectedId = NOT_GIVEN;
    QPixmap picture;
    bool pictureValid = false;
    bool recording = false;
    double shownBeats = 32.0;
    double line = 0.0;
    int subscription = 0;
};

} // namespace tonvex
