#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <array>
#include <vector>

namespace tonvex {

/// Places of piano keys in a box: pure geometry. Notes are MIDI notes 0 to 127; the first is white.
class Piano_Geometry {
public:
    Piano_Geometry(int firstNote, int lastNote, QSizeF box);
    static bool Is_Black(int note) noexcept;
    int White_Count() const noexcept { return whiteCount; }
    QRectF Key_Rect(int note) const;
    /// -1 outside; a black key lies above the white ones.
    int Note_At(QPointF point) const;

private:
    int White_Index(int note) const noexcept;
    int first;
    int last;
    int whiteCount;
    QSizeF size;
};

/// A piano that shows letters on keys and lights up what sounds. Repaints single keys.
class Piano_View final : public QWidget {
    Q_OBJECT
public:
    explicit Piano_View(const Theme& theme, QWidget* parent = nullptr);

    /// Both white, 0 to 127.
    void Set_Range(int firstNote, int lastNote);
    int First_Note() const noexcept { return first; }
    int Last_Note() const noexcept { return last; }
    void Set_Labels(const std::array<QString, 128>& labels);
    /// For those who cannot see it; those of C stand on their keys.
    void Set_Note_Names(const std::array<QString, 128>& names);
    const QString& Note_Name(int note) const { return noteNames[static_cast<std::size_t>(note)]; }
    const QString& Label(int note) const { return letters[static_cast<std::size_t>(note)]; }
    void Set_Lit(int note, bool lit);
    bool Is_Lit(int note) const;
    void Clear_Lit();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The mouse is on a key, from now until noteReleased; velocity 1 to 127, stronger nearer to the edge.
    void notePressed(int note, int velocity);
    void noteReleased(int note);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void Paint_Key(QPainter& painter, const Piano_Geometry& keys, int note);
    void Update_Key(int note);
    void Mouse_On(QPointF point);
    void Mouse_Off();

    const Theme& theme;
    int first = 36;
    int last = 96;
    int mouseNote = -1;
    std::array<QString, 128> letters;
    std::array<QString, 128> noteNames;
    std::array<bool, 128> lit{};
};

} // namespace tonvex
