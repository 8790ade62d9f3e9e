#pragma once

#include "widgets/theme.h"

#include <QFrame>

class QSpinBox;

namespace tonvex {

/// Position as bar:beat and as time, and the tempo, which can be typed. Repaints only the digits that
/// changed.
class Transport_Display final : public QFrame {
    Q_OBJECT
public:
    static constexpr int LEAST_TEMPO = 10;
    static constexpr int MOST_TEMPO = 500;

    explicit Transport_Display(const Theme& theme, QWidget* parent = nullptr);

    /// beats from the start of the song; songMs the same place in milliseconds.
    void Show_Position(double beats, std::int64_t songMs);
    void Show_Tempo(int tempo);
    QString Bar_Text() const { return barText; }
    QString Time_Text() const { return timeText; }
    QSpinBox* Tempo_Box() { return tempoBox; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    /// The user has set a tempo in beats per minute.
    void tempoEntered(int tempo);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Take_Theme();
    QRect Bar_Place() const;
    QRect Time_Place() const;
    QRect Tempo_Place() const;

    const Theme& theme;
    QSpinBox* tempoBox;
    QString barText;
    QString timeText;
    int shownTempo = 0;
};

} // namespace tonvex
